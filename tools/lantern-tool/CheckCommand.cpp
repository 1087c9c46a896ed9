// SPDX-License-Identifier: GPL-3.0-or-later
#include "CheckCommand.h"

#include "CheckReport.h"

#include <utility>

namespace lantern::tool {
namespace {

class CheckCommand final : public TrackCommand {
public:
    CheckCommand(bool isJson, bool isQuick) : m_isJson(isJson), m_isQuick(isQuick) {}

    TrackResult DoTrack(const WantedTrack& wanted, const TellProgress&) override
    {
        return Told(wanted, FindFacts(wanted.path, !m_isQuick));
    }
    // What can't be done is a verdict, too.
    TrackResult Failed(const WantedTrack& wanted, const QString& error) override
    {
        TrackFacts facts;
        facts.unreadable = error;
        return Told(wanted, facts);
    }

    QByteArray Begin(bool several) override
    {
        m_isSeveral = several;
        return m_isJson ? "{\"tracks\":[" : "";
    }
    QByteArray Next(const TrackResult& result) override
    {
        m_summary.Add(std::any_cast<Verdict>(result.found));
        if (!m_isJson)
            return result.output;
        return (std::exchange(m_hasOne, true) ? ",\n" : "\n") + result.output;
    }
    QByteArray End() override
    {
        if (m_isJson)
            return "\n],\n\"summary\":" + SummaryJson(m_summary) + "}\n";
        return m_isSeveral ? SummaryText(m_summary) : QByteArray();
    }
    int FailureCode() const override { return kUnreadableCode; }

    static constexpr int kUnreadableCode = 2;

private:
    TrackResult Told(const WantedTrack& wanted, const TrackFacts& facts) const
    {
        const Verdict verdict = VerdictOf(facts, FindingsOf(facts));
        TrackResult result;
        result.exitCode = static_cast<int>(verdict);
        result.output = m_isJson ? CheckJson(wanted.path, facts)
                                 : CheckText(wanted.path, facts, !wanted.isOneOfMany);
        result.found = verdict;
        return result;
    }

    bool m_isJson;
    bool m_isQuick;
    bool m_isSeveral = false;
    bool m_hasOne = false;
    CheckSummary m_summary;
};
static_assert(static_cast<int>(Verdict::Good) == 0 && static_cast<int>(Verdict::Faulty) == 1 &&
              static_cast<int>(Verdict::Unreadable) == CheckCommand::kUnreadableCode);

} // namespace

ParsedCommand ParseCheck(const QCommandLineParser& parser, const SharedOptions& shared)
{
    return {std::make_unique<CheckCommand>(shared.json, parser.isSet(option::kQuick))};
}

} // namespace lantern::tool
