// SPDX-License-Identifier: GPL-3.0-or-later
#include "ChannelGuide.h"

namespace lantern {
namespace {

constexpr StereoLevel kBothShares = {1.0F, 0.0F};
constexpr StereoLevel kLeftShares = {1.0F, 1.0F};
constexpr StereoLevel kRightShares = {0.0F, 0.0F};

StereoLevel SharesFor(VoiceGuide guide)
{
    switch (guide) {
    case VoiceGuide::Left:
        return kLeftShares;
    case VoiceGuide::Right:
        return kRightShares;
    case VoiceGuide::Both:
        break;
    }
    return kBothShares;
}

// All of one channel is that channel, whatever the other one holds.
float Mixed(float left, float right, float leftShare)
{
    if (leftShare == 1.0F)
        return left;
    if (leftShare == 0.0F)
        return right;
    return left * leftShare + right * (1.0F - leftShare);
}

} // namespace

void ChannelGuide::SetTarget(VoiceGuide guide)
{
    m_leftShare.SetTarget(SharesFor(guide));
}

void ChannelGuide::Apply(std::span<float> stereo)
{
    m_leftShare.LookForTarget();
    for (std::size_t i = 0; i + 1 < stereo.size(); i += 2) {
        if (!m_leftShare.IsOnTheWay() && m_leftShare.Now() == kBothShares)
            return;
        m_leftShare.Step();
        const float left = stereo[i];
        const float right = stereo[i + 1];
        stereo[i] = Mixed(left, right, m_leftShare.Now().left);
        stereo[i + 1] = Mixed(left, right, m_leftShare.Now().right);
    }
}

} // namespace lantern
