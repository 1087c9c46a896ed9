// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace lantern {

// Says to the processor that the upper halves of its vector registers hold nothing of this thread.
//
// As long as they seem in use, many x86 processors wait at each change between instructions with
// and without the AVX encoding. The stretcher and the mathematics it calls change at every sample,
// and take twice as long. A thread can be born in that state, since it inherits its creator's
// registers, and stays in it until somebody says so. Does nothing on other processors.
inline void ReleaseWideRegisters()
{
#if defined(__x86_64__) && defined(__GNUC__)
    if (__builtin_cpu_supports("avx") != 0)
        asm volatile("vzeroupper" ::: "memory");
#endif
}

} // namespace lantern
