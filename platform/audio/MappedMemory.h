// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <sys/mman.h>

namespace lantern {

// Memory of its own: a page of it costs something only once it is written, and all of it goes back
// to the system at its end.
class MappedMemory {
public:
    explicit MappedMemory(std::size_t size) : m_size(size)
    {
        void* const memory = mmap(nullptr, size, PROT_READ | PROT_WRITE,
                                  MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
        if (memory == MAP_FAILED)
            m_size = 0;
        else
            m_data = static_cast<std::byte*>(memory);
    }
    ~MappedMemory()
    {
        if (m_data)
            munmap(m_data, m_size);
    }
    MappedMemory(const MappedMemory&) = delete;
    MappedMemory& operator=(const MappedMemory&) = delete;

    std::byte* Data() const { return m_data; }
    std::size_t Size() const { return m_size; } // 0 if there was none to be had

private:
    std::size_t m_size;
    std::byte* m_data = nullptr;
};

} // namespace lantern
