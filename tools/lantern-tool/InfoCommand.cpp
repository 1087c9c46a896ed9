// SPDX-License-Identifier: GPL-3.0-or-later
#include "InfoCommand.h"

#include "TrackInfo.h"
#include "TrackLoad.h"

namespace lantern::tool {
namespace {

// One object for one track, and a list of them where several are asked for.
class InfoCommand final : public TrackCommand {
public:
    TrackResult DoTrack(const WantedTrack& wanted, const TellProgress&) override
    {
        Track track;
        std::vector<SkippedMember> skipped;
        const QString error = LoadTrack(wanted.path, track, skipped);
        if (!error.isEmpty())
            return TrackResult::Failure(error);
        TrackResult result;
        result.output = TrackInfo(track, skipped, wanted.isOneOfMany ? wanted.path : QString());
        return result;
    }
    QByteArray Begin(bool several) override
    {
        m_isList = several;
        return several ? "[\n" : "";
    }
    QByteArray Next(const TrackResult& result) override
    {
        if (!m_isList || result.output.isEmpty())
            return result.output;
        const QByteArray separator = m_hasOne ? ",\n" : "";
        m_hasOne = true;
        return separator + result.output.trimmed();
    }
    QByteArray End() override { return !m_isList ? "" : m_hasOne ? "\n]\n" : "]\n"; }

private:
    bool m_isList = false;
    bool m_hasOne = false;
};

} // namespace

ParsedCommand ParseInfo(const QCommandLineParser&, const SharedOptions&)
{
    return {std::make_unique<InfoCommand>()};
}

} // namespace lantern::tool
