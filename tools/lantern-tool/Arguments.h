// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "TrackCommand.h"

#include <QString>
#include <QStringList>

#include <memory>

namespace lantern::tool {

enum class Wish { Help, Version, Tracks };

struct Arguments {
    Wish wish = Wish::Tracks;
    std::unique_ptr<TrackCommand> command; // for tracks
    QStringList tracks;
    SharedOptions shared;
    QString error; // if it isn't empty, the rest means nothing
    int errorCode = 1;
};

// From the command line, the program's name first.
Arguments ParseArguments(const QStringList& commandLine);

} // namespace lantern::tool
