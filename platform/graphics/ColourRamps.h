// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PictureScaler.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace lantern {

// Which of a pair of colours a third one is a shade of: the nearer one, if it lies on the line
// through both.
enum class ColourSide : std::uint8_t { Unknown, Neither, From, To };

// The colours of a picture by their looks, and the steps from one to another. What is told of a
// pair is worked out when it is first asked for.
class ColourRamps {
public:
    static constexpr int kStepBits = 6;
    static constexpr int kSteps = 1 << kStepBits;
    using Ramp = std::array<std::uint32_t, kSteps + 1>; // from the one to the other

    // Forgets all that it worked out if the colours differ from the last ones.
    void SetColours(const ColourWords& colours);
    // Indexes of one colour are one look. Looks are numbered from 0 on.
    std::uint8_t LookOf(std::uint8_t index) const { return m_looks[index]; }
    std::uint32_t Word(std::uint8_t look) const { return m_words[look]; }
    // Of two different looks; it stays where it is until the colours change.
    const std::uint32_t* RampOf(std::uint8_t from, std::uint8_t to)
    {
        return PairOf(from, to).ramp.data();
    }
    ColourSide SideOf(std::uint8_t from, std::uint8_t to, std::uint8_t third)
    {
        ColourSide& side = PairOf(from, to).sides[third];
        if (side == ColourSide::Unknown)
            side = FindSide(from, to, third);
        return side;
    }

private:
    struct Pair {
        Ramp ramp;
        std::array<ColourSide, 256> sides{};
    };

    Pair& PairOf(std::uint8_t from, std::uint8_t to)
    {
        std::unique_ptr<Pair>& pair = m_pairs[from * m_words.size() + to];
        if (!pair)
            pair = MakePair(from, to);
        return *pair;
    }
    std::unique_ptr<Pair> MakePair(std::uint8_t from, std::uint8_t to) const;
    ColourSide FindSide(std::uint8_t from, std::uint8_t to, std::uint8_t third) const;

    ColourWords m_colours{};
    std::array<std::uint8_t, 256> m_looks{}; // by index
    std::vector<std::uint32_t> m_words;      // by look
    std::vector<std::unique_ptr<Pair>> m_pairs;
};

} // namespace lantern
