// SPDX-License-Identifier: GPL-3.0-or-later
#include "FlashComparison.h"

#include <algorithm>
#include <cmath>
#include <iomanip>
#include <sstream>

namespace lantern::test {
namespace {

// Neighbouring flashes are further apart than twice this at every speed that is measured.
constexpr Clock::duration kPartnerReach = 220ms;
constexpr Clock::duration kStallReach = 60ms;
// A tone that begins this shortly before a stretch ends may be cut by the command that follows,
// and then its pitch tells nothing. Its time still counts.
constexpr Clock::duration kCutReach = 150ms;

struct Event {
    Moment moment;
    std::optional<int> kind;
    bool isDoubtful = false;
    bool mayBeCut = false;
};

std::vector<Event> Flashes(const std::vector<Eyes::Change>& seen)
{
    std::vector<Event> flashes;
    bool isFirst[2] = {true, true};
    for (const Eyes::Change& change : seen) {
        const bool isPicture = change.point == PictureWatched;
        // What was there when the eyes opened did not flash.
        if (std::exchange(isFirst[isPicture ? 0 : 1], false))
            continue;
        flashes.push_back({change.firstSeen,
                           isPicture ? FlashTrack::KindOfPictureColour(change.colour)
                                     : FlashTrack::KindOfBorderColour(change.colour),
                           change.firstSeen - change.lastSeenBefore > StallWatch::kStall});
    }
    return flashes;
}

std::vector<Event> Tones(const Recording& heard, const std::vector<Stretch>& stretches)
{
    std::vector<Event> tones;
    for (const Burst& burst : FindBursts(heard.stereo, Recording::kRate)) {
        const Moment moment = heard.HeardAt(burst.startFrame);
        for (const Stretch& stretch : stretches) {
            if (moment >= stretch.from && moment < stretch.to)
                tones.push_back({moment, FlashTrack::KindOfTone(burst.frequency, stretch.halfTones),
                                 false, moment > stretch.to - kCutReach});
        }
    }
    return tones;
}

const Event* NearestTo(Moment moment, const std::vector<Event>& events)
{
    const auto nearest = std::ranges::min_element(
        events, {}, [&](const Event& event) { return std::chrono::abs(event.moment - moment); });
    return nearest == events.end() ? nullptr : &*nearest;
}

double Middle(std::vector<double> values)
{
    if (values.empty())
        return 0.0;
    const auto middle = values.begin() + std::ssize(values) / 2;
    std::ranges::nth_element(values, middle);
    return *middle;
}

bool IsWithin(Moment moment, const std::vector<Stretch>& stretches)
{
    // A flash near the edge may have its tone beyond it.
    return std::ranges::any_of(stretches, [&](const Stretch& stretch) {
        return moment >= stretch.from + kPartnerReach && moment < stretch.to - kPartnerReach;
    });
}

std::string AsText(const Event& event, Moment start)
{
    std::ostringstream text;
    text << "at " << std::fixed << std::setprecision(3) << Milliseconds(event.moment - start) / 1e3
         << " s, kind ";
    if (event.kind)
        text << *event.kind;
    else
        text << "unknown";
    return text.str();
}

} // namespace

Comparison Compare(const Recording& heard, const std::vector<Eyes::Change>& seen,
                   const std::vector<Stretch>& stretches, const StallWatch& stalls)
{
    Comparison result;
    const std::vector<Event> flashes = Flashes(seen);
    const std::vector<Event> tones = Tones(heard, stretches);
    const Moment start = stretches.front().from;
    const auto contradict = [&](const std::string& what, const Event& event) {
        const bool stalled =
            stalls.StalledBetween(event.moment - kPartnerReach, event.moment + kPartnerReach);
        result.contradictions.push_back({what, event.isDoubtful || stalled});
    };
    for (const Event& tone : tones) {
        const Event* flash = NearestTo(tone.moment, flashes);
        if (flash == nullptr || std::chrono::abs(flash->moment - tone.moment) > kPartnerReach) {
            contradict("a tone without a flash " + AsText(tone, start), tone);
            continue;
        }
        const bool tellsNoKind = tone.mayBeCut && !tone.kind;
        if (!tellsNoKind && (!tone.kind || flash->kind != tone.kind)) {
            contradict("a tone " + AsText(tone, start) + ", with a flash " + AsText(*flash, start),
                       *flash);
        }
        const auto [first, last] = std::minmax(tone.moment, flash->moment);
        result.errors.push_back(
            {tone.moment, Milliseconds(flash->moment - tone.moment),
             flash->isDoubtful || stalls.StalledBetween(first - kStallReach, last + kStallReach)});
    }
    for (const Event& flash : flashes) {
        const Event* tone = NearestTo(flash.moment, tones);
        if (IsWithin(flash.moment, stretches) &&
            (tone == nullptr || std::chrono::abs(tone->moment - flash.moment) > kPartnerReach))
            contradict("a flash without a tone " + AsText(flash, start), flash);
    }
    for (const Stretch& stretch : stretches)
        result.stalled += stalls.NearStalls(stretch.from, stretch.to, kPartnerReach);
    return result;
}

std::vector<double> Comparison::Sorted() const
{
    std::vector<double> values;
    for (const FlashError& error : errors) {
        if (!error.isDoubtful)
            values.push_back(error.pictureLateMs);
    }
    std::ranges::sort(values);
    return values;
}

double Comparison::Median() const
{
    return Middle(Sorted());
}

double Comparison::Drift() const
{
    std::vector<double> inOrder;
    for (const FlashError& error : errors) {
        if (!error.isDoubtful)
            inOrder.push_back(error.pictureLateMs);
    }
    const auto quarter = std::ssize(inOrder) / 4;
    return Middle({inOrder.end() - quarter, inOrder.end()}) -
           Middle({inOrder.begin(), inOrder.begin() + quarter});
}

std::size_t Comparison::DoubtfulCount() const
{
    return static_cast<std::size_t>(
        std::ranges::count_if(errors, [](const FlashError& error) { return error.isDoubtful; }));
}

std::string Comparison::Distribution() const
{
    const std::vector<double> sorted = Sorted();
    std::ostringstream text;
    text << std::fixed << std::setprecision(1) << std::setw(3) << errors.size() << " flashes";
    if (!sorted.empty()) {
        const auto at = [&](double part) {
            return sorted[static_cast<std::size_t>(part * static_cast<double>(sorted.size() - 1))];
        };
        text << ", picture late by ms: least " << at(0.0) << ", 5 % " << at(0.05) << ", median "
             << at(0.5) << ", 95 % " << at(0.95) << ", most " << at(1.0) << ", drift " << Drift();
    }
    if (DoubtfulCount() > 0)
        text << " (" << DoubtfulCount() << " not counted: the machine stalled)";
    return text.str();
}

} // namespace lantern::test
