// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SoundHealth.h"

namespace lantern {

class ByteSource;
class WorkLimit;

// Takes as long as a decode does; once halted, it tells what was found until then.
SoundHealth ExamineSound(const ByteSource& bytes, const WorkLimit& limit);

} // namespace lantern
