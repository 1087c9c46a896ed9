// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <unistd.h>
#include <utility>

namespace lantern {

// A file descriptor of the system, closed when the object goes. -1 stands for none.
class OwnedDescriptor {
public:
    OwnedDescriptor() = default;
    explicit OwnedDescriptor(int number) : m_number(number) {}
    OwnedDescriptor(OwnedDescriptor&& other) noexcept : m_number(std::exchange(other.m_number, -1))
    {
    }
    OwnedDescriptor& operator=(OwnedDescriptor&& other) noexcept
    {
        std::swap(m_number, other.m_number);
        return *this;
    }
    ~OwnedDescriptor()
    {
        if (m_number >= 0)
            close(m_number);
    }

    int Number() const { return m_number; }
    // It is the caller's to close from here on.
    int Release() { return std::exchange(m_number, -1); }
    explicit operator bool() const { return m_number >= 0; }

private:
    int m_number = -1;
};

} // namespace lantern
