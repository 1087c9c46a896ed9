// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "LoudnessMeter.h"

#include <functional>
#include <memory>
#include <optional>
#include <span>

namespace lantern {

class ByteSource;
class WorkLimit;

using SoundSources = std::span<const std::unique_ptr<ByteSource>>;

// The loudness of the sounds as one, by all that they hold. Those that are none count as nothing,
// and are no silence: without any sound at all there is none. What comes until the limit ends the
// work is no whole. Progress is told now and then, from 0 to 1 for each sound.
std::optional<SoundLoudness> MeasureLoudness(
    SoundSources sources, const WorkLimit& limit,
    const std::function<void(double)>& progress = [](double) {});

// The same by stretches from all over the sounds, in a fraction of the time; nothing where the
// middle of a sound can't be told. The peak is that of the stretches.
std::optional<SoundLoudness> EstimateLoudness(SoundSources sources, const WorkLimit& limit);

} // namespace lantern
