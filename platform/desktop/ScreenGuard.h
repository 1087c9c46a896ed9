// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

namespace lantern {

// One way of asking for a screen that stays on. It never waits for an answer.
class ScreenWay {
public:
    virtual ~ScreenWay() = default;

    // Called from the event loop when it is worth to ask anew, as whoever is asked by this way may
    // have come.
    std::function<void()> Changed;

    // The function is called from here or from the event loop later, unless the wish is given back
    // before: with true, and then the screen stays on until that is given back, or the process ends
    // in any way; with false, and then nothing is wished for any more. Where whoever granted it is
    // gone, false follows true. To be called while nothing is wished for.
    virtual void Keep(std::function<void(bool isKept)> answered) = 0;
    virtual void GiveBack() = 0;
};

// Keeps the screen on while that is wanted, by the first of its ways that leads there, and by an
// earlier one as soon as that does. Everything is called on the user-interface thread.
class ScreenGuard {
public:
    explicit ScreenGuard(std::vector<std::unique_ptr<ScreenWay>> ways);
    ~ScreenGuard(); // gives it back

    void Follow(bool isWanted);

private:
    void Try(std::size_t way);
    void TryAgain(std::size_t way);

    std::vector<std::unique_ptr<ScreenWay>> m_ways;
    bool m_isWanted = false;
    std::size_t m_tried = 0; // the way that is tried, or that led there
};

} // namespace lantern
