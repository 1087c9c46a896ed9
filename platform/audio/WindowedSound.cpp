// SPDX-License-Identifier: GPL-3.0-or-later
#include "WindowedSound.h"

#include <algorithm>
#include <cerrno>
#include <utility>

namespace lantern {
namespace {

// Half a minute of CD sound; of deeper and faster sound less, but for ten seconds.
constexpr std::int64_t kWindowSeconds = 32;
constexpr std::int64_t kLargestWindow = std::int64_t{16} << 20;

// Of the window: so much stays behind the place that is read, for a leap back; as much as is
// decoded ahead of it, and what is left of that when more is decoded.
constexpr std::int64_t Behind(std::int64_t window)
{
    return window * 3 / 8;
}
constexpr std::int64_t Ahead(std::int64_t window)
{
    return window / 2;
}
constexpr std::int64_t LeastAhead(std::int64_t window)
{
    return window * 5 / 16;
}

// What is reached in a moment is waited for.
constexpr int kNearMs = 5000;
// A change of the key is led in with what precedes the place.
constexpr int kBeforeMs = 250;
// A file that fails is tried again after so much has been read.
constexpr int kRetryMs = 2000;

std::int64_t WindowFrames(const DecodedStream& stream)
{
    const auto frameSize = static_cast<std::int64_t>(StereoFrameSize(stream.Kind()));
    return std::min(kWindowSeconds * stream.SampleRate(), kLargestWindow / frameSize);
}

} // namespace

WindowedSound::WindowedSound(OpenedSound sound, std::int64_t longestFrames)
    : m_sound(std::move(sound)), m_longestFrames(longestFrames),
      m_window(m_sound.stream->Kind(), WindowFrames(*m_sound.stream)),
      m_index(m_sound.stream->Kind(), m_sound.stream->SampleRate()),
      m_follower(*m_sound.bytes, *m_sound.limit, m_index), m_thread([this] { Run(); })
{
}

WindowedSound::~WindowedSound()
{
    m_sound.limit->Stop();
    Wake();
    m_thread.join();
}

void WindowedSound::Release()
{
    m_sound.limit->Stop();
    m_sound.bytes->Release();
    Wake();
}

std::int64_t WindowedSound::FrameCount() const
{
    // Asked in this order, the end can't come between: then the count is final.
    const bool ended = DecodedToEnd();
    const std::int64_t counted = m_countedFrames.load(std::memory_order_relaxed);
    return ended ? counted : std::max(counted, m_expectedFrames);
}

SoundDecoder::Chunk WindowedSound::Read(std::int64_t firstFrame, std::span<float> stereo)
{
    constexpr std::int64_t kFarBeyondAll = std::int64_t{1} << 60;
    const std::int64_t first = std::clamp<std::int64_t>(firstFrame, 0, kFarBeyondAll);
    Follow(first);
    const bool ended = DecodedToEnd();
    const std::int64_t counted = m_countedFrames.load(std::memory_order_relaxed);
    constexpr std::int64_t kMost = std::numeric_limits<int>::max();
    const auto wanted = std::min(static_cast<std::int64_t>(stereo.size() / 2), kMost);
    // What was decoded ahead of the count may have gone beyond the end.
    const std::int64_t there =
        ended ? std::clamp<std::int64_t>(counted - first, 0, wanted) : wanted;
    const PcmWindow::Part part =
        m_window.Read(first, stereo.first(static_cast<std::size_t>(there) * 2));
    Chunk chunk;
    chunk.frames = part.frames;
    chunk.atEnd = part.atEnd || (ended && first + part.frames >= counted);
    // Once released, what is there is all there is.
    const bool isLast = ended && m_sound.limit->Reached();
    chunk.atEnd = chunk.atEnd || (isLast && part.frames < wanted);
    chunk.notYet = part.frames < wanted && !chunk.atEnd;
    return chunk;
}

// The thread sets what is calm before it looks where is read, and here it is the other way round:
// so one of the two sees what the other did.
void WindowedSound::Follow(std::int64_t frame)
{
    m_readFrame.store(frame);
    if (!IsCalm(frame))
        Wake();
}

void WindowedSound::Wake()
{
    m_wakes.fetch_add(1);
    m_wakes.notify_one();
}

void WindowedSound::Run()
{
    Count(); // the first block is there, whatever happens
    for (;;) {
        const std::uint32_t wakes = m_wakes.load();
        if (m_sound.limit->Reached())
            break;
        const std::int64_t read = m_readFrame.load();
        const bool filled = FillWindow(read);
        if (!m_ended && Count())
            continue;
        if (filled)
            continue;
        SetCalm(read);
        if (IsCalm(m_readFrame.load()))
            m_wakes.wait(wakes);
    }
    if (!m_ended)
        EndCount(0);
}

// A block of the decode from the start. False at its end.
bool WindowedSound::Count()
{
    const auto block = m_sound.stream->NextBlock();
    const auto frameSize = StereoFrameSize(m_index.Kind());
    const std::int64_t room = m_longestFrames - m_index.Frames();
    const std::int64_t frames = std::min(static_cast<std::int64_t>(block.size() / frameSize), room);
    const auto taken = block.first(static_cast<std::size_t>(frames) * frameSize);
    if (!taken.empty()) {
        const std::int64_t window = m_window.CapacityFrames();
        const std::int64_t left = std::max<std::int64_t>(m_readFrame - Behind(window), 0);
        const bool isWanted = m_window.NextFrame() == m_index.Frames() && frames <= window / 2 &&
                              m_window.NextFrame() + frames <= left + window;
        if (isWanted)
            m_window.Append(taken);
        m_index.Note(taken, m_sound.stream->BlockStamp());
        m_countedFrames.store(m_index.Frames(), std::memory_order_relaxed);
    }
    const bool isCut = taken.size() < block.size();
    if (block.empty() || isCut)
        EndCount(isCut ? EFBIG : 0);
    return !block.empty() && !isCut;
}

void WindowedSound::EndCount(int trouble)
{
    m_trouble.store(trouble, std::memory_order_relaxed);
    m_index.Finish();
    m_ended.store(true, std::memory_order_release);
    m_sound.stream.reset();
}

// True if there is more to do at once.
bool WindowedSound::FillWindow(std::int64_t read)
{
    if (m_ended && read >= m_index.Frames())
        return false;
    const bool isHere =
        read >= m_window.FirstFrame() && read <= m_window.NextFrame() + FramesIn(kNearMs);
    if (!isHere)
        return Leap(read);
    if (m_window.Ends() && !m_follower.IsProven() && m_window.NextFrame() < m_index.Frames())
        m_window.SetEnd(false); // the count has come to more
    const std::int64_t ahead = m_window.NextFrame() - read;
    m_filling = (m_filling && ahead < Ahead(m_window.CapacityFrames())) ||
                ahead < LeastAhead(m_window.CapacityFrames());
    const bool countBringsIt = !m_ended && m_window.NextFrame() == m_index.Frames();
    return m_filling && !countBringsIt && !HoldsTheRest() && Extend(read);
}

bool WindowedSound::HoldsTheRest() const
{
    return m_window.Ends() || (m_ended && m_window.NextFrame() >= m_index.Frames());
}

bool WindowedSound::Leap(std::int64_t read)
{
    const std::int64_t counted = m_index.Frames();
    m_filling = true;
    if (read >= counted && read < counted + FramesIn(kNearMs)) {
        m_follower.Leave();
        m_window.Restart(counted);
        return false;
    }
    if (!BeginAt(std::max<std::int64_t>(read - FramesIn(kBeforeMs), 0)))
        return false;
    m_window.Restart(m_follower.NextFrame());
    return Extend(read);
}

bool WindowedSound::BeginAt(std::int64_t frame)
{
    if (frame >= m_index.Frames() && frame >= m_impossibleFrom)
        return false;
    const bool isPossible = m_follower.Begin(frame);
    if (!isPossible)
        m_impossibleFrom = frame; // such as behind the end; a place before may be possible
    return isPossible;
}

bool WindowedSound::Extend(std::int64_t read)
{
    const std::int64_t next = m_window.NextFrame();
    const bool isOvertaken = !m_follower.IsProven() && next < m_index.Frames();
    const bool goesOn = m_follower.IsUnderWay() && !isOvertaken && m_follower.NextFrame() <= next &&
                        m_follower.NextFrame() + FramesIn(kNearMs) > next;
    if (!goesOn && !BeginAt(next))
        return false;
    const std::int64_t first = m_follower.NextFrame();
    const SoundFollower::Step step = m_follower.Next();
    switch (step.outcome) {
    case SoundFollower::Outcome::Frames: {
        m_failing = false;
        const auto skipped =
            static_cast<std::size_t>(next - first) * StereoFrameSize(m_index.Kind());
        m_window.Append(step.frames.subspan(std::min(skipped, step.frames.size())));
        return true;
    }
    case SoundFollower::Outcome::Busy:
        return true;
    case SoundFollower::Outcome::Waits:
        return false;
    case SoundFollower::Outcome::End:
        break;
    }
    // More is known to be there: a share or a drive may only be away for a while.
    m_failing = m_follower.IsProven();
    const bool mayWait = m_failing && read + FramesIn(kRetryMs) < next;
    if (mayWait)
        m_follower.Leave(); // and is begun anew
    if (!mayWait && !m_sound.limit->Reached()) {
        m_window.SetEnd(true);
        if (m_failing)
            m_trouble.store(EIO, std::memory_order_relaxed);
    }
    return false;
}

void WindowedSound::SetCalm(std::int64_t read)
{
    constexpr std::int64_t kEver = std::numeric_limits<std::int64_t>::max();
    const std::int64_t first = m_window.FirstFrame();
    const std::int64_t next = m_window.NextFrame();
    const std::int64_t least = LeastAhead(m_window.CapacityFrames());
    Calm calm = {first, HoldsTheRest() ? kEver : next - least + 1};
    if (read < calm.from || read >= calm.until)
        calm = {read, m_failing ? std::clamp(next, read + 1, read + FramesIn(kRetryMs)) : read + 1};
    m_calmFrom.store(calm.from);
    m_calmUntil.store(calm.until);
}

} // namespace lantern
