// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QMimeData>
#include <QStringList>
#include <QVariant>

#include <utility>

namespace lantern::test {

// A list of files to be dragged, of any bytes: QMimeData::setData would read such a list and write
// it anew.
class RawFileList : public QMimeData {
public:
    explicit RawFileList(QByteArray bytes) : m_bytes(std::move(bytes)) {}

    QStringList formats() const override { return {QStringLiteral("text/uri-list")}; }
    bool hasFormat(const QString& type) const override { return formats().contains(type); }

    mutable int timesAsked = 0;

protected:
    QVariant retrieveData(const QString& type, QMetaType) const override
    {
        ++timesAsked;
        return hasFormat(type) ? QVariant(m_bytes) : QVariant();
    }

private:
    QByteArray m_bytes;
};

} // namespace lantern::test
