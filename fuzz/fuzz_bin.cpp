// SPDX-License-Identifier: GPL-3.0-or-later

// A file of any bytes as sectors: sound and packets as long as the file, and in step.
#include "FakeAudioEngine.h"
#include "MediaLoader.h"
#include "NoWindow.h"
#include "ScratchFile.h"

#include <cmath>

using namespace lantern;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    static const ScratchFolder folder;
    const QString path = folder.Make(QStringLiteral("track.bin"), bytes, size);
    Track track;
    FakeAudioEngine engine;
    NoWindow window;
    MediaLoader loader(track, engine, window, {});
    Require(loader.AddMedia(path).isEmpty());
    if (size == 0) {
        Require(track.ClipCount() == 0 && track.PacketCount() == 0);
        return 0;
    }
    const double sectors = static_cast<double>(size) / 2448;
    Require(std::abs(track.ClipList[1].LengthMs - sectors / 75 * 1000) <= 0.5);
    Require(std::abs(track.PacketCount() - track.TotalLengthMs * 0.3) <= 2);
    Require(std::abs(static_cast<double>(track.ClipList[1].Data.Bytes().size()) - 46 -
                     sectors * 2352) <= 0.5);
    return 0;
}
