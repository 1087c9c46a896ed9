// SPDX-License-Identifier: GPL-3.0-or-later

// A file of any bytes as an archive: at most one member of each kind, none above the limit.
#include "FakeAudioEngine.h"
#include "MakeZipHandler.h"
#include "MediaLoader.h"
#include "NoWindow.h"
#include "ScratchFile.h"

#include <cmath>

using namespace lantern;

namespace {

constexpr std::size_t kLargestMember = std::size_t{8} << 20;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    static const ScratchFolder folder;
    const QString path = folder.Make(QStringLiteral("track.zip"), bytes, size);
    Track track;
    FakeAudioEngine engine;
    engine.DurationMs = 1000;
    NoWindow window;
    const ZipAccess zip = {[] { return MakeZipHandler(kLargestMember); }, folder.Path()};
    MediaLoader loader(track, engine, window, zip, {.silenceMs = 2000});
    Require(loader.AddMedia(path).isEmpty());
    Require(track.ClipCount() <= 2 && !track.TempoHeld);
    Require(engine.LoadedImage.size() <= kLargestMember);
    Require(static_cast<std::size_t>(track.PacketCount()) <= kLargestMember / kPacketSize);
    return 0;
}
