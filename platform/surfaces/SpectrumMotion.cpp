// SPDX-License-Identifier: GPL-3.0-or-later
#include "SpectrumMotion.h"

#include <algorithm>

namespace lantern {
namespace {

constexpr float kFallPerSecond = 1.6F;
constexpr float kCapRestSeconds = 0.35F;
constexpr float kCapAcceleration = 3.0F; // full heights a second, each second

} // namespace

SpectrumBar MovedBar(const SpectrumBar& bar, float strength, float seconds)
{
    // Written so that what is no number ends at 0.
    const float wanted = strength > 0.0F ? std::min(strength, 1.0F) : 0.0F;
    const float passed = seconds > 0.0F ? seconds : 0.0F;

    SpectrumBar moved = bar;
    moved.height = std::max({wanted, bar.height - kFallPerSecond * passed, 0.0F});
    const float falling = std::max(passed - bar.capRestSeconds, 0.0F);
    moved.capRestSeconds = std::max(bar.capRestSeconds - passed, 0.0F);
    moved.capSpeed += kCapAcceleration * falling;
    moved.cap -= (bar.capSpeed + moved.capSpeed) / 2.0F * falling;
    if (moved.cap > moved.height)
        return moved;
    const bool isThrown = wanted > 0.0F && moved.height == wanted;
    return {moved.height, moved.height, 0.0F, isThrown ? kCapRestSeconds : 0.0F};
}

bool SpectrumMotion::IsAtRest() const
{
    return std::ranges::all_of(m_bars, [](const SpectrumBar& bar) { return bar.cap <= 0.0F; });
}

void SpectrumMotion::SetBarCount(int count)
{
    const auto wanted = static_cast<std::size_t>(std::max(count, 0));
    if (m_bars.size() != wanted)
        m_bars.assign(wanted, {});
}

void SpectrumMotion::Clear()
{
    std::ranges::fill(m_bars, SpectrumBar{});
}

bool SpectrumMotion::Advance(std::span<const float> strengths, float seconds)
{
    bool isNew = false;
    for (std::size_t i = 0; i < m_bars.size(); ++i) {
        const SpectrumBar before = m_bars[i];
        m_bars[i] = MovedBar(before, i < strengths.size() ? strengths[i] : 0.0F, seconds);
        isNew = isNew || m_bars[i].height != before.height || m_bars[i].cap != before.cap;
    }
    return isNew;
}

} // namespace lantern
