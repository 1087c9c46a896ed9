// SPDX-License-Identifier: GPL-3.0-or-later
#include "MeasuringEngine.h"

#include "ByteSource.h"
#include "SoundExamination.h"
#include "SoundModule.h"
#include "WorkLimit.h"

#include <type_traits>
#include <utility>

namespace lantern::tool {
namespace {

constexpr std::int32_t kNoSound = -1;
// An hour of sound takes some seconds.
constexpr std::chrono::seconds kTimeToExamine{60};

} // namespace

std::int32_t MeasuringEngine::GetFileDuration(const QString& path)
{
    return SoundDecoder::FileDurationMs(path);
}

std::int32_t MeasuringEngine::LoadFile(const QString& path)
{
    return Take(SoundDecoder::OpenFile(path));
}

std::int32_t MeasuringEngine::LoadMemory(std::span<const std::uint8_t> image)
{
    return Take(SoundDecoder::OpenMemory(image));
}

std::int32_t MeasuringEngine::Take(std::unique_ptr<SoundDecoder> sound)
{
    m_sound = std::move(sound);
    return m_sound ? 0 : kNoSound;
}

std::int32_t MeasuringEngine::GetLoadedDuration()
{
    if (!m_sound)
        return 0;
    const std::int64_t rate = m_sound->SampleRate();
    return static_cast<std::int32_t>((m_sound->FrameCount() * 1000 + rate / 2) / rate);
}

SoundStatus MeasuringEngine::GetSoundStatus()
{
    return m_sound ? SoundStatus::Stopped : SoundStatus::Empty;
}

} // namespace lantern::tool

extern "C" __attribute__((visibility("default"))) lantern::AudioEngine* LanternMakeMeasuringEngine()
{
    return new lantern::tool::MeasuringEngine;
}
extern "C" __attribute__((visibility("default"))) void
LanternExamineSound(const QString& path, std::span<const std::uint8_t> image,
                    lantern::SoundHealth& health)
{
    const auto bytes =
        path.isEmpty() ? lantern::OpenMemoryBytes(image) : lantern::OpenFileBytes(path);
    if (bytes)
        health = lantern::ExamineSound(*bytes, lantern::WorkLimit(lantern::tool::kTimeToExamine));
}
static_assert(std::is_same_v<decltype(&LanternExamineSound), lantern::tool::Examine>);
static_assert(std::is_same_v<decltype(&LanternMakeMeasuringEngine), lantern::tool::MakeEngine>);
