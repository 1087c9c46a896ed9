// SPDX-License-Identifier: GPL-3.0-or-later
#include "TrackLoad.h"

#include "MeasuringEngine.h"
#include "MediaLoader.h"

namespace lantern::tool {
namespace {

// There is no window to keep in step with the track.
class NoWindow final : public MediaHost {
    void SetTicker(int, bool) override {}
    void SetSliderValues(std::int32_t, std::int32_t, std::int32_t) override {}
    void HideMessage() override {}
    void ResetView() override {}
    void FreeSnapshots() override {}
    void ResetPlayedPacket() override {}
    void ClearPicture() override {}
    void Play(std::int32_t) override {}
    void RememberLastPlayed(const QString&) override {}
};

} // namespace

QString LoadTrack(const QString& path, Track& track)
{
    MeasuringEngine engine;
    NoWindow window;
    MediaLoader loader(track, engine, window);
    QString message = loader.AddMedia(path);
    if (!message.isEmpty())
        return message;
    if (track.PacketCount() == 0 && track.ClipCount() == 0)
        return QStringLiteral("Nothing to play: ") + path;
    return {};
}

} // namespace lantern::tool
