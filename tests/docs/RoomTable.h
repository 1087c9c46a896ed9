// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace lantern::test {

// A row of the table of rooms.
struct Room {
    int level = 0;
    std::string folder;
    std::vector<std::string> libraries;
    std::set<std::string> rooms;   // whose headers it may include, by their folders
    std::set<std::string> outside; // libraries whose headers it may include
    bool mayUseAllAbove = false;
};

// What the table says, with all that is wrong with the table itself.
struct RoomTable {
    std::vector<Room> rooms; // in the order of the rows
    std::vector<std::string> faults;

    const Room* Find(std::string_view folder) const;
};

// The rows of a page that begin with the number of a level:
// | level | `folder` | `library`, ... | `room`, ... | library from outside, ... | anything |
// A room is named by its folder, or by the end of it.
RoomTable ReadRoomTable(std::string_view page);

// Where a header is found.
struct Headers {
    std::map<std::string, std::set<std::string>, std::less<>> own; // file name to folders
    std::map<std::string, std::string, std::less<>> toolkit;       // header to the part it is of
};

// What a file of a room includes against the table, a line each; and what of the table it needs.
struct IncludeReport {
    std::vector<std::string> faults;
    std::set<std::string> usedRooms;
    std::set<std::string> usedOutside;
};
IncludeReport CheckIncludes(const Room& room, std::string_view text, const Headers& headers);

} // namespace lantern::test
