// SPDX-License-Identifier: GPL-3.0-or-later
#include "RoomTable.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <optional>
#include <regex>
#include <sstream>

namespace lantern::test {
namespace {

constexpr std::string_view kAllAbove = "all of the above";
constexpr std::size_t kColumns = 6;

// The libraries that the table may name, by how their headers begin.
struct Library {
    std::string_view name;
    std::string_view headers;
};
constexpr std::array kLibraries = {
    Library{"FFmpeg", "libavcodec/"},
    Library{"FFmpeg", "libavformat/"},
    Library{"FFmpeg", "libavutil/"},
    Library{"FFmpeg", "libswresample/"},
    Library{"Rubber Band", "rubberband/"},
    Library{"libebur128", "ebur128.h"},
    Library{"libpulse", "pulse/"},
    Library{"SQLite", "sqlite3.h"},
    Library{"libarchive", "archive.h"},
    Library{"libunarr", "unarr.h"},
    Library{"liblzma", "lzma.h"},
    Library{"zlib", "zlib.h"},
    Library{"Tesseract", "tesseract/"},
    Library{"xcb", "xcb/"},
    Library{"libXss", "X11/"},
};
// Of the system itself, which every room may use.
constexpr std::array<std::string_view, 8> kSystemHeaders = {
    "dirent.h", "dlfcn.h", "fcntl.h", "linux/", "poll.h", "pwd.h", "sys/", "unistd.h"};

std::string Trimmed(std::string_view text)
{
    const auto isBlank = [](char c) { return c == ' ' || c == '`'; };
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return std::string(text);
}

std::vector<std::string> Parts(std::string_view text, char separator)
{
    std::vector<std::string> parts;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(separator), text.size());
        if (const std::string part = Trimmed(text.substr(0, end)); !part.empty())
            parts.push_back(part);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return parts;
}

bool EndsInFolder(std::string_view folder, std::string_view name)
{
    return folder == name ||
           (folder.ends_with(name) && folder[folder.size() - name.size() - 1] == '/');
}

// The folder of the row above that the name stands for.
std::optional<std::string> RoomAbove(const RoomTable& table, std::string_view name)
{
    std::optional<std::string> found;
    for (const Room& room : table.rooms) {
        if (!EndsInFolder(room.folder, name))
            continue;
        if (found)
            return std::nullopt;
        found = room.folder;
    }
    return found;
}

Room ReadRow(RoomTable& table, const std::vector<std::string>& cells)
{
    Room room;
    room.level = cells[0].front() - '0';
    room.folder = Trimmed(cells[1]);
    room.libraries = Parts(cells[2], ',');
    for (const std::string& name : Parts(cells[3], ',')) {
        if (name == kAllAbove) {
            room.mayUseAllAbove = true;
            for (const Room& above : table.rooms)
                room.rooms.insert(above.folder);
        } else if (const auto folder = RoomAbove(table, name)) {
            room.rooms.insert(*folder);
        } else {
            table.faults.push_back(room.folder + ": no one room above it is called " + name);
        }
    }
    for (const std::string& name : Parts(cells[4], ','))
        room.outside.insert(name);
    return room;
}

bool BeginsWithOneOf(std::string_view header, const auto& beginnings)
{
    return std::ranges::any_of(beginnings,
                               [&](std::string_view begin) { return header.starts_with(begin); });
}

// What the table calls the library of a header between angle brackets: empty for the system's own
// and the language's, nothing for one that it doesn't know.
std::optional<std::string> LibraryOf(std::string_view header, const Headers& headers)
{
    const std::size_t slash = header.find('/');
    if (header.starts_with("Qt") && slash != header.npos)
        return "Qt " + std::string(header.substr(2, slash - 2));
    if (const auto part = headers.toolkit.find(header); part != headers.toolkit.end())
        return "Qt " + part->second;
    const auto* library = std::ranges::find_if(
        kLibraries, [&](const Library& each) { return header.starts_with(each.headers); });
    if (library != kLibraries.end())
        return std::string(library->name);
    if (BeginsWithOneOf(header, kSystemHeaders) || header.find_first_of("/.") == header.npos)
        return std::string();
    return std::nullopt;
}

void CheckOwn(const Room& room, const std::string& header, const Headers& headers,
              IncludeReport& report)
{
    const auto found = headers.own.find(header);
    if (found == headers.own.end()) {
        report.faults.push_back(header + " lies in no room");
        return;
    }
    if (found->second.contains(room.folder))
        return;
    for (const std::string& folder : found->second) {
        if (room.rooms.contains(folder)) {
            report.usedRooms.insert(folder);
            return;
        }
    }
    report.faults.push_back(header + " is of " + *found->second.begin());
}

void CheckOutside(const Room& room, const std::string& header, const Headers& headers,
                  IncludeReport& report)
{
    const std::optional<std::string> library = LibraryOf(header, headers);
    if (!library)
        report.faults.push_back(header + " is of a library that no room may use");
    else if (!library->empty() && !room.outside.contains(*library))
        report.faults.push_back(header + " is of " + *library);
    else if (!library->empty())
        report.usedOutside.insert(*library);
}

} // namespace

const Room* RoomTable::Find(std::string_view folder) const
{
    const auto room = std::ranges::find(rooms, folder, &Room::folder);
    return room == rooms.end() ? nullptr : &*room;
}

RoomTable ReadRoomTable(std::string_view page)
{
    RoomTable table;
    std::istringstream lines{std::string(page)};
    for (std::string line; std::getline(lines, line);) {
        const bool isRow = line.size() > 3 && line.starts_with("| ") &&
                           std::isdigit(static_cast<unsigned char>(line[2])) != 0;
        if (!isRow)
            continue;
        std::vector<std::string> cells;
        std::istringstream row(line.substr(1));
        for (std::string cell; std::getline(row, cell, '|');)
            cells.push_back(Trimmed(cell));
        if (cells.size() == kColumns)
            table.rooms.push_back(ReadRow(table, cells));
        else
            table.faults.push_back("not " + std::to_string(kColumns) + " columns: " + line);
    }
    return table;
}

IncludeReport CheckIncludes(const Room& room, std::string_view text, const Headers& headers)
{
    static const std::regex s_include(R"(^\s*#\s*include\s*(["<])([^">]+))");
    IncludeReport report;
    std::istringstream lines{std::string(text)};
    for (std::string line; std::getline(lines, line);) {
        std::smatch found;
        if (!std::regex_search(line, found, s_include))
            continue;
        const bool isOwn = found[1] == "\"";
        const std::string header = found[2];
        if (isOwn)
            CheckOwn(room, header, headers, report);
        else
            CheckOutside(room, header, headers, report);
    }
    return report;
}

} // namespace lantern::test
