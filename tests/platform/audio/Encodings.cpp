// SPDX-License-Identifier: GPL-3.0-or-later
#include "Encodings.h"

namespace lantern {

using namespace Qt::Literals::StringLiterals;

void PrintTo(const Encoding& encoding, std::ostream* out)
{
    *out << encoding.name;
}

QStringList Ffmpeg(const QString& options)
{
    return QStringLiteral("ffmpeg -y -v error -i in.wav %1")
        .arg(options)
        .split(u' ', Qt::SkipEmptyParts);
}

QStringList Words(const QString& text)
{
    return text.split(u' ');
}

const std::vector<Encoding>& AllEncodings()
{
    static const std::vector<Encoding> encodings = {
        {"Wav", u"a.wav"_s, Ffmpeg(u"-c:a pcm_s16le"_s), true},
        {"WavMono", u"a.wav"_s, Ffmpeg(u"-c:a pcm_s16le"_s), true, 44100, 1},
        {"Wav24Bit", u"a.wav"_s, Ffmpeg(u"-c:a pcm_s24le"_s), true},
        {"WavFloat", u"a.wav"_s, Ffmpeg(u"-c:a pcm_f32le"_s), true},
        {"WavMicrosoftAdpcm", u"a.wav"_s, Ffmpeg(u"-c:a adpcm_ms"_s), false, 44100, 2, 0, 50},
        {"Aif", u"a.aif"_s, Ffmpeg({}), true},
        {"AifMono", u"a.aif"_s, Ffmpeg({}), true, 22050, 1},
        {"Au", u"a.au"_s, Ffmpeg(u"-c:a pcm_s16be"_s), true},
        {"AuMuLaw", u"a.au"_s, Ffmpeg(u"-c:a pcm_mulaw"_s)},
        {"Flac", u"a.flac"_s, Words(u"flac -s -f in.wav -o"_s), true},
        {"FlacMono", u"a.flac"_s, Words(u"flac -s -f in.wav -o"_s), true, 48000, 1},
        {"FlacHighRate", u"a.flac"_s, Words(u"flac -s -f in.wav -o"_s), true, 192000},
        {"Alac", u"a.mp4"_s, Ffmpeg(u"-c:a alac"_s), true},
        {"Mp4", u"a.mp4"_s, Ffmpeg(u"-c:a aac"_s), false, 44100, 2, 0, 0, true},
        {"Mp4Mono", u"a.mp4"_s, Ffmpeg(u"-c:a aac"_s), false, 48000, 1, 0, 0, true},
        {"Mp4FastStart", u"a.mp4"_s, Ffmpeg(u"-c:a aac -movflags +faststart"_s), false, 44100, 2, 0,
         0, true},
        {"Aac", u"a.aac"_s, Ffmpeg({}), false, 44100, 2, 1024, 32},
        {"Mp3Cbr", u"a.mp3"_s, Words(u"lame --quiet -b 128 in.wav"_s)},
        {"Mp3Vbr", u"a.mp3"_s, Words(u"lame --quiet -V 4 in.wav"_s)},
        {"Mp3VbrWithoutXing", u"a.mp3"_s, Words(u"lame --quiet -t -V 4 in.wav"_s), false, 44100, 2,
         1105, 32},
        {"Mp3LowRateMono", u"a.mp3"_s, Words(u"lame --quiet -b 64 in.wav"_s), false, 22050, 1},
        {"Mp3WithTags", u"a.mp3"_s,
         Words(u"lame --quiet --add-id3v2 --id3v1-only --tt Song --ta Singer in.wav"_s)},
        {"Ogg", u"a.ogg"_s, Words(u"oggenc -Q in.wav -o"_s)},
        {"OggMono", u"a.ogg"_s, Words(u"oggenc -Q in.wav -o"_s), false, 22050, 1},
        {"OggOpus", u"a.ogg"_s, Ffmpeg(u"-c:a libopus"_s), false, 48000},
        {"OggFlac", u"a.ogg"_s, Ffmpeg(u"-c:a flac"_s), true},
        {"Mpc", u"a.mpc"_s, Words(u"mpcenc --silent in.wav"_s)},
        {"MpcMono", u"a.mpc"_s, Words(u"mpcenc --silent in.wav"_s), false, 48000, 1},
        {"Wma", u"a.wma"_s, Ffmpeg(u"-c:a wmav2 -b:a 128k"_s), false, 44100, 2, 0, 50},
        {"WmaMono", u"a.wma"_s, Ffmpeg(u"-c:a wmav2 -b:a 64k"_s), false, 22050, 1, 0, 50},
        {"WmaLowRate", u"a.wma"_s, Ffmpeg(u"-c:a wmav2 -b:a 64k"_s), false, 16000, 2, 0, 50},
        {"WmaVersion1", u"a.wma"_s, Ffmpeg(u"-c:a wmav1 -b:a 128k"_s), false, 32000, 2, 0, 50},
    };
    return encodings;
}

} // namespace lantern
