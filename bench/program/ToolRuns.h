// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Contestants.h"
#include "Measurement.h"

namespace lantern::bench {

// A thumbnail, drawn as file managers have it drawn.
Measurement MeasureThumbnail(const Stage& stage, Effort effort);

} // namespace lantern::bench
