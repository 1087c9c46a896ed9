// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Hand.h"
#include "Process.h"

#include <string>
#include <string_view>
#include <vector>

namespace lantern::test {

// Files in another program, to be dragged out of it by the hand. What it offers is the bytes of a
// text/uri-list; the first of the actions is the one that it would like.
class FileDrag {
public:
    FileDrag(const XServer& screen, Hand& hand, std::string_view uriList,
             const std::vector<std::string>& actions = {"move", "copy", "link"},
             const EnvironmentChanges& environment = {});
    ~FileDrag(); // lets go where the pointer is

    // Where its window is, if that is not at the top left: in the colour of kShown.
    void LiesAt(Point middle) { m_source = middle; }
    static constexpr unsigned kShown = 0xFF808000;

    // Takes the files, or goes on with them, to a point of the screen.
    void CarryTo(Point point);
    // Whether the program is told, now or soon, that this would be done at this place: "copy",
    // "move", "link" or "none".
    bool AwaitAnswer(std::string_view action) const;
    // Whether its list is fetched, now or soon.
    bool AwaitQuestion() const;
    // The program dies in the middle of the drag.
    void Kill();
    // Lets go: what the program is told was done in the end.
    std::string Drop();

private:
    bool AwaitWord(std::string_view word) const;
    std::string LastOf(std::string_view word) const;

    Hand& m_hand;
    ScratchFolder m_folder;
    Process m_program;
    Point m_source;
    Point m_pointer;
    bool m_isCarrying = false;
};

// The URI of a file, as file managers write it.
std::string FileUri(const std::filesystem::path& path);

} // namespace lantern::test
