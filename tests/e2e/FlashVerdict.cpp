// SPDX-License-Identifier: GPL-3.0-or-later
#include "FlashVerdict.h"

#include <algorithm>
#include <cmath>
#include <sstream>

namespace lantern::test {
namespace {

// Flashes a second: the track has more, at every speed that is measured, and of these at least half
// have to be beyond doubt.
constexpr double kFewestSeen = 0.7;
constexpr double kFewestBeyondDoubt = kFewestSeen / 2.0;
// In each of the quarters that a drift is told from: one or two flashes differ by more than drifts.
constexpr std::size_t kFewestInQuarter = 3;

Clock::duration LengthOf(const std::vector<Stretch>& stretches)
{
    Clock::duration length = {};
    for (const Stretch& stretch : stretches)
        length += stretch.to - stretch.from;
    return length;
}

double Seconds(Clock::duration length)
{
    return Milliseconds(length) / 1e3;
}

std::string WithNumber(const std::string& what, double milliseconds)
{
    std::ostringstream text;
    text << what << " by " << milliseconds << " ms";
    return text.str();
}

} // namespace

FlashVerdict Judge(const Comparison& comparison, const std::vector<Stretch>& stretches)
{
    FlashVerdict verdict;
    for (const Contradiction& contradiction : comparison.contradictions) {
        if (!contradiction.isDoubtful)
            verdict.complaints.push_back(contradiction.what);
    }
    const std::vector<double> errors = comparison.Sorted();
    const auto worst =
        std::ranges::max_element(errors, {}, [](double error) { return std::abs(error); });
    const auto isFarOff = [](double error) { return std::abs(error) > kMostOffMs; };
    if (const auto count = std::ranges::count_if(errors, isFarOff); count > 0)
        verdict.complaints.push_back(
            WithNumber(std::to_string(count) + " flashes were off, the worst", *worst));
    if (std::abs(comparison.Median()) > kMedianOffMs)
        verdict.complaints.push_back(WithNumber("the median is off", comparison.Median()));
    // A few flashes after each command are too few to drift.
    const bool mayDrift = stretches.size() == 1;
    const bool isDriftMeasured = errors.size() / 4 >= kFewestInQuarter;
    if (mayDrift && isDriftMeasured && std::abs(comparison.Drift()) > kMostDriftMs)
        verdict.complaints.push_back(WithNumber("picture and sound drift", comparison.Drift()));

    const Clock::duration length = LengthOf(stretches);
    if (static_cast<double>(comparison.errors.size()) <
        kFewestSeen * Seconds(length - comparison.stalled))
        verdict.complaints.emplace_back("too few flashes were seen and heard");
    verdict.isMeasured =
        static_cast<double>(errors.size()) >= kFewestBeyondDoubt * Seconds(length) &&
        (isDriftMeasured || !mayDrift);
    return verdict;
}

} // namespace lantern::test
