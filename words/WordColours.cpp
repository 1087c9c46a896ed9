// SPDX-License-Identifier: GPL-3.0-or-later
#include "WordColours.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <unordered_map>

namespace lantern {
namespace {

// Counts which colour becomes which, and how much of the picture each one has.
class ColourCount final : public SettledWatcher {
public:
    struct Change {
        WordColours::Pair pair;
        std::int64_t count = 0;
    };

    explicit ColourCount(const SettledPicture& picture) : m_picture(picture) {}

    void PixelSettled(const SettledPixel& pixel) override
    {
        if (pixel.isByColourTable)
            m_recoloured.push_back({pixel.from, pixel.to});
        else
            Count(pixel.from, pixel.to);
    }
    void Rolled(int, int) override {}
    void Looked(PacketIndex now) override
    {
        // A word may be sung by a change of its colour; what changes much more is a fade.
        constexpr std::size_t kMostOfWord = std::size_t{kPictureWidth} * kPictureHeight / 8;
        if (m_recoloured.size() <= kMostOfWord) {
            for (const auto& [from, to] : m_recoloured)
                Count(from, to);
        }
        m_recoloured.clear();
        Sample(now);
    }
    void Filled(DiscColour colour) override { ++m_fills[colour]; }

    std::bitset<kDiscColours> Backdrop() const
    {
        std::int64_t area = 0;
        std::int64_t fills = 0;
        for (std::size_t colour = 0; colour < kDiscColours; ++colour) {
            area += m_area[colour];
            fills += m_fills[colour];
        }
        std::bitset<kDiscColours> backdrop;
        for (std::size_t colour = 0; colour < kDiscColours; ++colour)
            backdrop[colour] = m_area[colour] * 100 > area * 15 || m_fills[colour] * 10 > fills;
        return backdrop;
    }
    DiscColour Ground() const
    {
        return static_cast<DiscColour>(std::ranges::max_element(m_area) - m_area.begin());
    }
    std::int64_t CountOf(DiscColour from, DiscColour to) const
    {
        const auto found = m_changes.find(std::uint32_t{from} << 12 | to);
        return found == m_changes.end() ? 0 : found->second;
    }
    std::vector<Change> Changes() const
    {
        std::vector<Change> changes;
        for (const auto& [key, count] : m_changes)
            changes.push_back({{static_cast<DiscColour>(key >> 12),
                                static_cast<DiscColour>(key & (kDiscColours - 1))},
                               count});
        std::ranges::sort(changes, {}, &Change::pair);
        return changes;
    }
    std::int64_t Born(DiscColour colour) const { return m_born[colour]; }

private:
    void Count(DiscColour from, DiscColour to)
    {
        ++m_born[to];
        const std::uint32_t key = std::uint32_t{from} << 12 | to;
        // A track of noise has millions of pairs, and no words.
        constexpr std::size_t kMostPairs = 20000;
        if (const auto found = m_changes.find(key); found != m_changes.end())
            ++found->second;
        else if (m_changes.size() < kMostPairs)
            m_changes.emplace(key, 1);
    }
    void Sample(PacketIndex now)
    {
        constexpr PacketIndex kSampleInterval = 300;
        if (now % kSampleInterval != 0)
            return;
        for (int y = 0; y < kPictureHeight; y += 2) {
            for (int x = 0; x < kPictureWidth; x += 2)
                ++m_area[m_picture.At(x, y)];
        }
    }

    const SettledPicture& m_picture;
    std::vector<WordColours::Pair> m_recoloured; // since the last look
    std::unordered_map<std::uint32_t, std::int64_t> m_changes;
    std::array<std::int64_t, kDiscColours> m_born{};
    std::array<std::int64_t, kDiscColours> m_area{};
    std::array<std::int64_t, kDiscColours> m_fills{};
};

constexpr std::int64_t kLeastPercent = 2;

std::vector<ColourCount::Change> WipesAmong(const ColourCount& count,
                                            const std::bitset<kDiscColours>& backdrop)
{
    std::vector<ColourCount::Change> changes = count.Changes();
    // What goes on between colours of the backdrop is no business of the words.
    std::erase_if(changes, [&](const ColourCount::Change& change) {
        return backdrop[change.pair.first] && backdrop[change.pair.second];
    });
    std::int64_t all = 0;
    for (const ColourCount::Change& change : changes)
        all += change.count;
    std::erase_if(changes, [&](const ColourCount::Change& change) {
        const auto [from, to] = change.pair;
        return backdrop[from] || backdrop[to] || change.count * 100 < all * kLeastPercent ||
               change.count <= 2 * count.CountOf(to, from) ||
               change.count * 10 < count.Born(from) * 3;
    });
    const std::vector<ColourCount::Change> candidates = changes;
    std::erase_if(changes, [&](const ColourCount::Change& change) {
        return std::ranges::any_of(candidates, [&](const ColourCount::Change& other) {
            return other.pair.first == change.pair.second && other.count > change.count;
        });
    });
    return changes;
}

// As bright as it looks, in thousandths.
int Brightness(DiscColour colour)
{
    return (299 * (colour >> 8) + 587 * (colour >> 4 & 15) + 114 * (colour & 15)) / 15;
}

// Without a wipe, words are what stands out most.
std::bitset<kDiscColours> Brightest(const ColourCount& count,
                                    const std::bitset<kDiscColours>& backdrop)
{
    std::int64_t all = 0;
    for (std::size_t colour = 0; colour < kDiscColours; ++colour)
        all += backdrop[colour] ? 0 : count.Born(static_cast<DiscColour>(colour));
    std::bitset<kDiscColours> text;
    int most = 0;
    const int ground = Brightness(count.Ground());
    std::array<int, kDiscColours> contrasts{};
    for (std::size_t i = 0; i < kDiscColours; ++i) {
        const auto colour = static_cast<DiscColour>(i);
        if (backdrop[i] || count.Born(colour) == 0 ||
            count.Born(colour) * 100 < all * kLeastPercent)
            continue;
        contrasts[i] = std::abs(Brightness(colour) - ground);
        most = std::max(most, contrasts[i]);
    }
    for (std::size_t i = 0; i < kDiscColours; ++i)
        text[i] = contrasts[i] > 0 && contrasts[i] * 10 > most * 6;
    return text;
}

} // namespace

bool WordColours::IsWipe(DiscColour from, DiscColour to) const
{
    return std::ranges::binary_search(wipes, Pair(from, to));
}

WordColours FindWordColours(const OneBasedArray<CdgPacket>& packets)
{
    SettledPicture picture(packets);
    ColourCount count(picture);
    picture.Run(count);
    const std::bitset<kDiscColours> backdrop = count.Backdrop();
    WordColours colours;
    for (const ColourCount::Change& change : WipesAmong(count, backdrop)) {
        colours.wipes.push_back(change.pair);
        colours.text.set(change.pair.first);
        colours.text.set(change.pair.second);
    }
    if (colours.wipes.empty())
        colours.text = Brightest(count, backdrop);
    return colours;
}

} // namespace lantern
