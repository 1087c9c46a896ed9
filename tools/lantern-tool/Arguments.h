// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "FrameWriter.h"

#include <QString>
#include <QStringList>

namespace lantern::tool {

enum class Command { Help, Version, Info, Frame };

struct Arguments {
    Command command = Command::Help;
    QString track;
    FrameRequest frame;
    QString error; // if it isn't empty, the rest means nothing
};

// From the command line, the program's name first.
Arguments ParseArguments(const QStringList& commandLine);

} // namespace lantern::tool
