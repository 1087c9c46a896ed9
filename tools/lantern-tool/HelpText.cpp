// SPDX-License-Identifier: GPL-3.0-or-later
#include "HelpText.h"

namespace lantern::tool {

const char* const kHelpText =
    R"(usage: lantern-tool info TRACK... [--json]
       lantern-tool frame TRACK... --packet N[,N...] --out FILE
                    [--raw | --size WxH [--smooth]] [--force]
       lantern-tool frame TRACK... --at SECONDS[,SECONDS...] --out FILE
                    [--raw | --size WxH [--smooth]] [--force]
       lantern-tool thumbnail TRACK... [--size N] --out FILE [--force]
       lantern-tool check TRACK... [--json] [--quick]
       lantern-tool video TRACK... --out FILE [--size WxH] [--smooth] [--fps N]
                    [--key N] [--speed N] [--from SECONDS] [--to SECONDS]
                    [--force]
       lantern-tool lyrics TRACK... [--format txt|lrc|srt|json]
                    [--language LANGUAGE] [--out FILE] [--force]
       lantern-tool --help | --version

TRACK is what the player opens: a .cdg file, an audio file, a .bin or a .zip.
A folder stands for the tracks in it.

info   prints one JSON object: packets, length_ms, clips, each with its kind
       ("FILE" or "DATA"), start_ms, length_ms and, where it has one, path, and
       skipped: the members of a .zip that are no part of the track, each with
       its name and the reason. A byte of a path or a name that is no UTF-8
       appears as \udc80 to \udcff, the escape whose low byte it is.
       Of several tracks it prints a list, each with its path as track.
frame  writes the picture after packet N (300 packets are a second; 0 is the
       empty picture before the first, and a number beyond the last packet shows
       the last picture): the visible 288 by 192 pixels as a PNG. Several
       packets are visited in the order given. Each %d in FILE becomes N.
       --size WxH scales it to W by H pixels, 8192 by 8192 at most, as sharp
       as in the window. With --smooth its letters have smooth edges, if it is
       1.5 times as large or more.
       --raw writes the whole picture of 300 by 216 colour indexes as a PGM
       instead, and its 16 colours to FILE.colours, one #rrggbb a line.
thumbnail
       writes a telling picture of the track, one with many words, as a PNG whose
       longer side has N pixels (256). Of a .cdg file nothing but its first ten
       minutes is read.
check  tells whether the track plays, here and elsewhere: its packets and their
       parity, colours that are never defined, sound that ends before the words,
       is missing, cut off or damaged, names that pair only here, and archives
       that others can't read. --json tells all of it as JSON. --quick doesn't
       decode the sound, which takes most of the time.
video  makes a film of the song, by the name of FILE: .mp4 (H.264 and AAC),
       .webm (VP9 and Opus), or .mkv (FFV1 and FLAC: nothing is lost). It has
       1920 by 1080 pixels, or those of --size, the picture in its middle with
       the border around it, and up to 30 pictures a second, or so many as --fps
       says. --key moves the sound by -10 to 10 semitones, --speed makes the song
       -90 to 90 percent faster, --from and --to choose a part of it.
lyrics reads the words out of the picture, and when they are sung, and prints
       them: as lines (txt), with times (lrc), as subtitles (srt) or with all
       that is known (json). They are recognised and may err. It needs
       Tesseract and its data for the language, which is eng if nothing is
       said. An output that exists is kept, unless --force is given.

All commands:
--recursive  goes into the folders of folders, too.
--jobs N     does so many tracks at a time; otherwise as many as there are
             processors.
--quiet      shows no progress bar. In a pipe there is none.

In FILE %t stands for the track's title and %f for the folder that it lies in.
For several tracks a FILE without %t is a folder, in which each has a file of
its title. Films and words that exist are kept, unless --force is given, and so
is each picture of several tracks. A file of the track itself is never replaced.

The exit code is 0, or 1 with a line on standard error for each track that
failed. That of check is 0 if all tracks are good, 1 if some are faulty, and 2
if some can't be read.
)";

} // namespace lantern::tool
