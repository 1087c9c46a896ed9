// SPDX-License-Identifier: GPL-3.0-or-later
// Makes the demo song: FOLDER/demo.cdg and FOLDER/demo.wav, the same bytes at every run.
#include "Picture.h"
#include "Synthesizer.h"

#include <QDir>
#include <QFontDatabase>
#include <QFontInfo>
#include <QGuiApplication>
#include <QSaveFile>

#include <QtEndian>
#include <cstdio>
#include <exception>

namespace lantern::demo {
namespace {

void Write(const QString& path, const QByteArray& bytes)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        throw std::runtime_error(
            QStringLiteral("%1: %2").arg(path, file.errorString()).toStdString());
}

QByteArray CdgBytes(const std::vector<CdgPacket>& packets)
{
    return QByteArray(reinterpret_cast<const char*>(packets.data()),
                      static_cast<qsizetype>(packets.size() * kPacketSize));
}

// A RIFF file of 16-bit stereo PCM.
QByteArray WavBytes(const std::vector<std::int16_t>& pcm)
{
    constexpr std::uint16_t kChannels = 2, kSampleBytes = 2, kFrameBytes = kChannels * kSampleBytes;
    QByteArray bytes;
    const auto add = [&bytes](auto value) {
        value = qToLittleEndian(value);
        bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
    };
    const auto dataSize = static_cast<std::uint32_t>(pcm.size() * kSampleBytes);
    bytes += "RIFF";
    add(dataSize + 36);
    bytes += "WAVEfmt ";
    add(std::uint32_t{16});
    add(std::uint16_t{1}); // PCM
    add(kChannels);
    add(std::uint32_t{kSampleRate});
    add(std::uint32_t{kSampleRate * kFrameBytes});
    add(kFrameBytes);
    add(std::uint16_t{8 * kSampleBytes});
    bytes += "data";
    add(dataSize);
    for (const std::int16_t sample : pcm)
        add(sample);
    return bytes;
}

void Make(const QString& folder)
{
    if (QFontInfo(QFont(QStringLiteral("Liberation Sans"))).family() !=
        QStringLiteral("Liberation Sans"))
        throw std::runtime_error("the font Liberation Sans is not installed");
    if (!QDir().mkpath(folder))
        throw std::runtime_error("the folder can't be made");
    Write(folder + QStringLiteral("/demo.cdg"), CdgBytes(DrawSong()));
    Write(folder + QStringLiteral("/demo.wav"), WavBytes(RenderSong()));
}

} // namespace
} // namespace lantern::demo

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    if (argc != 2) {
        std::fputs("usage: demo-song FOLDER\n", stderr);
        return 1;
    }
    try {
        lantern::demo::Make(QString::fromLocal8Bit(argv[1]));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "demo-song: %s\n", error.what());
        return 1;
    }
    return 0;
}
