// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QStringList>
#include <Qt>

#include <optional>

class QMimeData;

namespace lantern {

// Where a drag is, seen from the widget under it.
enum class DragState { Enter = 0, Leave = 1, Over = 2 };

// What a widget does with what it is offered. "Move" says that the drag may end there; what the
// program is told that it came from is HarmlessAction's choice.
enum class DropEffect { None = 0, Move = 2 };

// The action to answer a drag with: one that its source offers, and after which no source deletes
// what was dragged. The player only reads a track where it lies. Qt::IgnoreAction if the source
// offers nothing but to move it: such a drag is refused.
Qt::DropAction HarmlessAction(DropEffect effect, Qt::DropActions offered);

// What is being dragged, as long as the event lasts that tells of it.
class DropData {
public:
    // None if nothing is offered, as when a drag leaves. It is borrowed.
    explicit DropData(const QMimeData* offer) : m_offer(offer) {}

    bool HasFileList() const;

    // The full names of the files, as native bytes, in the order of the list. It asks the program
    // that they come from, and waits for the answer: the toolkit gives up after five seconds.
    // Nothing if there is no such list or it did not come.
    std::optional<QList<QByteArray>> FetchFileNames() const;

    // The names as text. Whoever fetches them keeps them here.
    QStringList Files;

private:
    const QMimeData* m_offer;
};

} // namespace lantern
