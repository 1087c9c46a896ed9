// SPDX-License-Identifier: GPL-3.0-or-later
#include "TrackLoad.h"

#include "MakeZipHandler.h"
#include "MeasuringEngine.h"
#include "MediaLoader.h"

#include <QStringList>

#include <algorithm>

namespace lantern::tool {
namespace {

// There is no window to keep in step with the track.
class NoWindow final : public MediaHost {
public:
    explicit NoWindow(std::vector<SkippedMember>& skipped) : m_skipped(skipped) {}

private:
    void SetTicker(int, bool) override {}
    void SetSliderValues(std::int32_t, std::int32_t, std::int32_t) override {}
    void HideMessage() override {}
    void ResetView() override {}
    void FreeSnapshots() override {}
    void ResetPlayedPacket() override {}
    void ClearPicture() override {}
    void Play(std::int32_t) override {}
    void RememberLastPlayed(const QString&) override {}
    void MemberSkipped(const QString& name, const QString& reason) override
    {
        m_skipped.push_back({name, reason});
    }

    std::vector<SkippedMember>& m_skipped;
};

// An archive may hold thousands of members; the first ones tell enough.
QString ReasonsOf(const std::vector<SkippedMember>& skipped)
{
    constexpr std::size_t kMostReasons = 5;
    QStringList reasons;
    for (std::size_t i = 0; i < std::min(skipped.size(), kMostReasons); ++i) {
        const SkippedMember& member = skipped[i];
        const QString name = member.name.isEmpty() ? QString() : member.name + QStringLiteral(": ");
        reasons += name + member.reason;
    }
    if (skipped.size() > kMostReasons)
        reasons += QStringLiteral("...");
    return reasons.isEmpty() ? QString()
                             : QStringLiteral(" (%1)").arg(reasons.join(QStringLiteral("; ")));
}

} // namespace

QString LoadTrack(const QString& path, Track& track, std::vector<SkippedMember>& skipped)
{
    MeasuringEngine engine;
    NoWindow window(skipped);
    // There is no folder of the program to unpack to, and nothing is unpacked to one.
    MediaLoader loader(track, engine, window, {[] { return MakeZipHandler(); }, QString()});
    QString message = loader.AddMedia(path);
    if (!message.isEmpty())
        return message;
    if (track.PacketCount() == 0 && track.ClipCount() == 0)
        return QStringLiteral("Nothing to play: ") + path + ReasonsOf(skipped);
    return {};
}

} // namespace lantern::tool
