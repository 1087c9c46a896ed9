// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <vector>

namespace lantern {

// One bar of a spectrum and the cap that it threw up, in parts of the full height, 0 to 1.
struct SpectrumBar {
    float height = 0.0F;
    float cap = 0.0F;            // never below the bar
    float capSpeed = 0.0F;       // at which it falls, in full heights a second
    float capRestSeconds = 0.0F; // before it falls

    bool operator==(const SpectrumBar&) const = default;
};

// The bar after so many seconds, at whose end its strength is the given one. It rises at once and
// falls evenly; the cap stays a moment and then falls ever faster. A strength that is no number
// counts as 0.
SpectrumBar MovedBar(const SpectrumBar& bar, float strength, float seconds);

// All bars of a spectrum.
class SpectrumMotion {
public:
    std::span<const SpectrumBar> Bars() const { return m_bars; }
    bool IsAtRest() const; // nothing is to be seen

    // Makes so many bars, all at 0, unless there are as many.
    void SetBarCount(int count);
    void Clear();
    // A strength for each bar. Tells whether there is anything new to be seen.
    bool Advance(std::span<const float> strengths, float seconds);

private:
    std::vector<SpectrumBar> m_bars;
};

} // namespace lantern
