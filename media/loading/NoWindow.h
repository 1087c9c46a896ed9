// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "MediaLoader.h"

namespace lantern {

// There is no window to keep in step with the track.
class NoWindow : public MediaHost {
    void SetTicker(int, bool) override {}
    void SetSliderValues(std::int32_t, std::int32_t, std::int32_t) override {}
    void HideMessage() override {}
    void ForgetPicture() override {}
    void Play(std::int32_t) override {}
    void RememberLastPlayed(const QString&) override {}
};

} // namespace lantern
