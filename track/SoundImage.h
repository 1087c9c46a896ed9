// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>
#include <span>
#include <utility>
#include <vector>

namespace lantern {

// The bytes of a sound, as a file would hold them. They stay where they are for as long as any
// copy of the image lives: an engine may be playing out of them.
class SoundImage {
public:
    SoundImage() = default;
    explicit SoundImage(std::vector<std::uint8_t> bytes)
    {
        const auto owner = std::make_shared<std::vector<std::uint8_t>>(std::move(bytes));
        m_bytes = *owner;
        m_owner = owner;
    }
    // Declared so that a move copies: what is left behind then stays whole.
    SoundImage(const SoundImage&) = default;
    SoundImage& operator=(const SoundImage&) = default;

    // That many zero bytes. They come from the system as such, and those that are never written
    // cost no memory: hours of silence are had at once.
    static SoundImage OfZeros(std::size_t size)
    {
        SoundImage image;
        if (size == 0)
            return image;
        image.m_owner.reset(std::calloc(size, 1), std::free);
        if (!image.m_owner)
            throw std::bad_alloc();
        image.m_bytes = {static_cast<std::uint8_t*>(image.m_owner.get()), size};
        return image;
    }

    std::span<const std::uint8_t> Bytes() const { return m_bytes; }
    std::span<std::uint8_t> Bytes() { return m_bytes; }

private:
    std::shared_ptr<void> m_owner; // shared, since two kinds of memory are held in one way
    std::span<std::uint8_t> m_bytes;
};

} // namespace lantern
