// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace lantern::test {

// Tracks of each form whose picture tells at any moment which track it is and which second: it
// changes its colour once a second.
class SoakTracks {
public:
    static constexpr int kSeconds = 150;

    struct Shown {
        int track = 0;
        int second = 0;
    };

    // Writes them into the folder.
    explicit SoakTracks(std::filesystem::path folder);

    int Count() const { return static_cast<int>(m_paths.size()); }
    const std::filesystem::path& Path(int track) const { return m_paths.at(Index(track)); }
    // What the track needs besides, or is itself.
    const std::filesystem::path& SoundOf(int track) const { return m_sounds.at(Index(track)); }
    // Writes the track's files again, after somebody has damaged them.
    void Write(int track) const;

    // Nothing for a colour that no picture of theirs has.
    static std::optional<Shown> Decode(QRgb colour);

private:
    static std::size_t Index(int track) { return static_cast<std::size_t>(track); }

    std::filesystem::path m_folder;
    std::vector<std::filesystem::path> m_paths;
    std::vector<std::filesystem::path> m_sounds;
};

} // namespace lantern::test
