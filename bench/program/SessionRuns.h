// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Measurement.h"

namespace lantern::bench {

// What a bus of the user's session costs: the media session on it, and the service that is asked to
// keep the screen on.
std::vector<Measurement> MeasureSession(const Effort& effort);

} // namespace lantern::bench
