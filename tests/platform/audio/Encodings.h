// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <ostream>
#include <string>
#include <vector>

namespace lantern {

// What an encoder makes of four seconds of ticks.
struct Encoding {
    std::string name;
    QString file;
    QStringList command;
    bool lossless = false;
    int sampleRate = 44100;
    int channels = 2;
    int delayFrames = 0;  // that the file doesn't tell how to remove
    int paddingMs = 0;    // that the file doesn't tell how to remove, at most
    bool wholeMs = false; // the length is stated in whole milliseconds
};

void PrintTo(const Encoding& encoding, std::ostream* out);

const std::vector<Encoding>& AllEncodings();

// The words of a command line for SoundFolder::Encode.
QStringList Ffmpeg(const QString& options);
QStringList Words(const QString& text);

} // namespace lantern
