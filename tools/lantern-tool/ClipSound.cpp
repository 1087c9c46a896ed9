// SPDX-License-Identifier: GPL-3.0-or-later
#include "ClipSound.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <thread>
#include <utility>

namespace lantern::tool {
namespace {

using namespace std::chrono_literals;

constexpr auto kDecodesMoreIn = 1ms;
constexpr std::size_t kBlockFrames = 1024;
constexpr int kFadeMs = 5;

} // namespace

std::unique_ptr<ClipSound> ClipSound::Open(const AudioClip& clip)
{
    auto sound = clip.Kind == ClipKind::File ? SoundDecoder::OpenFile(clip.Path)
                                             : SoundDecoder::OpenMemory(clip.Data.Bytes());
    return sound ? std::unique_ptr<ClipSound>(new ClipSound(std::move(sound))) : nullptr;
}

void ClipSound::Start(std::int64_t fromMs, SoundShape shape, int rate)
{
    // In the middle of the sound it comes out of silence; at its start it is as it is.
    const std::size_t fade = fromMs > 0 ? static_cast<std::size_t>(kFadeMs * OwnRate() / 1000) : 0;
    m_shaper.Start(*m_sound, fromMs * OwnRate() / 1000, shape, std::vector<float>(2 * fade));
    if (rate == OwnRate())
        return;
    m_changer.emplace(OwnRate(), rate);
    m_framesForOne = static_cast<double>(rate) / OwnRate();
    m_block.resize(2 * kBlockFrames);
    m_left.resize(kBlockFrames);
    m_right.resize(kBlockFrames);
}

std::size_t ClipSound::ReadShaped(std::span<float> stereo)
{
    std::size_t frames = 0;
    while (!m_isShapedToEnd && 2 * frames < stereo.size()) {
        const SoundShaper::Block block = m_shaper.Render(stereo.subspan(2 * frames));
        frames += static_cast<std::size_t>(block.frames);
        m_isShapedToEnd = block.atEnd;
        if (block.notYet)
            std::this_thread::sleep_for(kDecodesMoreIn);
    }
    return frames;
}

// False at the sound's end.
bool ClipSound::ChangeMore()
{
    if (m_end && m_changedFrames >= *m_end)
        return false;
    std::ranges::fill(m_block, 0.0F);
    const std::size_t frames = ReadShaped(m_block);
    m_shapedFrames += static_cast<std::int64_t>(frames);
    // Silence behind it brings out what is still to come.
    if (frames < kBlockFrames && !m_end)
        m_end = std::llround(static_cast<double>(m_shapedFrames) * m_framesForOne);
    for (std::size_t i = 0; i < kBlockFrames; ++i) {
        m_left[i] = m_block[2 * i];
        m_right[i] = m_block[2 * i + 1];
    }
    m_changed = m_changer->Convert(m_left, m_right);
    return true;
}

std::size_t ClipSound::Read(std::span<float> stereo)
{
    if (!m_changer)
        return ReadShaped(stereo);
    const std::size_t wanted = stereo.size() / 2;
    std::size_t frames = 0;
    while (frames < wanted) {
        if (m_changed.left.empty()) {
            if (!ChangeMore())
                break;
            continue;
        }
        std::size_t count = std::min(wanted - frames, m_changed.left.size());
        if (m_end)
            count = std::min(count, static_cast<std::size_t>(
                                        std::max<std::int64_t>(*m_end - m_changedFrames, 0)));
        if (count == 0)
            break;
        for (std::size_t i = 0; i < count; ++i) {
            stereo[2 * (frames + i)] = m_changed.left[i];
            stereo[2 * (frames + i) + 1] = m_changed.right[i];
        }
        m_changed = {m_changed.left.subspan(count), m_changed.right.subspan(count)};
        m_changedFrames += static_cast<std::int64_t>(count);
        frames += count;
    }
    return frames;
}

} // namespace lantern::tool
