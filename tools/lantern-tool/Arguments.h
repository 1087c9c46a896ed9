// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "FrameWriter.h"

#include <QString>
#include <QStringList>

namespace lantern::tool {

enum class Command { Help, Version, Info, Frame, Thumbnail };

struct ThumbnailRequest {
    int size = 256; // of the longer side, in pixels
    QString out;
};

struct Arguments {
    Command command = Command::Help;
    QString track;
    FrameRequest frame;
    ThumbnailRequest thumbnail;
    QString error; // if it isn't empty, the rest means nothing
};

// From the command line, the program's name first.
Arguments ParseArguments(const QStringList& commandLine);

} // namespace lantern::tool
