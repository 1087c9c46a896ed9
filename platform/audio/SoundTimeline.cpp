// SPDX-License-Identifier: GPL-3.0-or-later
#include "SoundTimeline.h"

#include <algorithm>

namespace lantern {

void SoundTimeline::Restart(std::int64_t mediaFrame, double speed)
{
    m_stretches.assign(1, {0, mediaFrame, speed});
    m_end.reset();
}

void SoundTimeline::Change(std::int64_t outputFrame, std::int64_t mediaFrame, double speed)
{
    while (!m_stretches.empty() && m_stretches.back().outputFrame >= outputFrame)
        m_stretches.pop_back();
    m_end.reset();
    m_stretches.push_back({outputFrame, mediaFrame, speed});
}

double SoundTimeline::MediaAt(double outputFrame) const
{
    double frame = std::max(outputFrame, 0.0);
    if (m_end)
        frame = std::min(frame, static_cast<double>(*m_end));
    auto stretch = m_stretches.rbegin();
    while (std::next(stretch) != m_stretches.rend() &&
           static_cast<double>(stretch->outputFrame) > frame)
        ++stretch;
    const double since = std::max(frame - static_cast<double>(stretch->outputFrame), 0.0);
    return static_cast<double>(stretch->mediaFrame) + since * stretch->speed;
}

void SoundTimeline::Forget(double outputFrame)
{
    while (m_stretches.size() > 1 && static_cast<double>(m_stretches[1].outputFrame) <= outputFrame)
        m_stretches.pop_front();
}

} // namespace lantern
