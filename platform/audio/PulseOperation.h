// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <pulse/operation.h>

namespace lantern {

// Nobody asks again what became of it.
inline void Forget(pa_operation* operation)
{
    if (operation)
        pa_operation_unref(operation);
}

} // namespace lantern
