// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "TrackVerdict.h"

#include <QByteArray>
#include <QString>

#include <array>

namespace lantern::tool {

// What is told of one track: a line with its verdict, and below it, if it is the only one, what was
// counted.
QByteArray CheckText(const QString& path, const TrackFacts& facts, bool withNumbers);
// The same as a JSON object in one line.
QByteArray CheckJson(const QString& path, const TrackFacts& facts);

// How many tracks have each verdict.
struct CheckSummary {
    std::array<std::int64_t, 3> counts = {};

    void Add(Verdict verdict) { ++counts[static_cast<std::size_t>(verdict)]; }
    std::int64_t Tracks() const { return counts[0] + counts[1] + counts[2]; }
};
QByteArray SummaryText(const CheckSummary& summary);
QByteArray SummaryJson(const CheckSummary& summary);

} // namespace lantern::tool
