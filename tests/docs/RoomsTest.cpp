// SPDX-License-Identifier: GPL-3.0-or-later
// The table of rooms in docs/architecture.md, and whether the tree keeps to it.
#include "RoomTable.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>
#include <sstream>

namespace lantern::test {
namespace {

namespace fs = std::filesystem;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

// Folders at the root whose sources may use whatever they need.
const std::set<std::string> kOutsideTheHouse = {"bench", "build", "fuzz", "tests"};

std::string ReadAll(const fs::path& file)
{
    std::ifstream in(file);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

bool IsSource(const fs::path& file)
{
    return file.extension() == ".h" || file.extension() == ".cpp" ||
           file.filename().string().ends_with(".h.in");
}

// The sources of the tree, by their folders.
std::map<std::string, std::vector<fs::path>> SourcesOf(const fs::path& root)
{
    std::map<std::string, std::vector<fs::path>> sources;
    for (const fs::directory_entry& top : fs::directory_iterator(root)) {
        const std::string name = top.path().filename().string();
        if (!top.is_directory() || name.starts_with('.') || kOutsideTheHouse.contains(name))
            continue;
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(top)) {
            if (entry.is_regular_file() && IsSource(entry.path()))
                sources[fs::relative(entry.path().parent_path(), root).string()].push_back(
                    entry.path());
        }
    }
    return sources;
}

// The parts of Qt are folders of headers, side by side.
std::map<std::string, std::string, std::less<>> ToolkitHeaders()
{
    std::map<std::string, std::string, std::less<>> headers;
    for (const fs::directory_entry& part : fs::directory_iterator(LANTERN_QT_HEADERS)) {
        const std::string name = part.path().filename().string();
        if (!part.is_directory() || !name.starts_with("Qt"))
            continue;
        for (const fs::directory_entry& header : fs::directory_iterator(part))
            headers.try_emplace(header.path().filename().string(), name.substr(2));
    }
    return headers;
}

class Rooms : public ::testing::Test {
protected:
    static void SetUpTestSuite()
    {
        s_table = ReadRoomTable(ReadAll(Root() / "docs/architecture.md"));
        s_sources = SourcesOf(Root());
        s_headers.toolkit = ToolkitHeaders();
        for (const auto& [folder, files] : s_sources) {
            for (const fs::path& file : files) {
                std::string name = file.filename().string();
                if (name.ends_with(".in"))
                    name.resize(name.size() - 3);
                s_headers.own[name].insert(folder);
            }
        }
    }
    static fs::path Root() { return LANTERN_SOURCE_FOLDER; }

    static inline RoomTable s_table;
    static inline std::map<std::string, std::vector<fs::path>> s_sources;
    static inline Headers s_headers;
};

TEST_F(Rooms, TheTableCanBeRead)
{
    EXPECT_THAT(s_table.faults, IsEmpty());
    EXPECT_GE(s_table.rooms.size(), 25U);
    EXPECT_GE(s_headers.toolkit.size(), 1000U);
}

TEST_F(Rooms, EveryFolderWithSourcesIsARoomOfTheTable)
{
    std::set<std::string> rooms;
    for (const Room& room : s_table.rooms)
        EXPECT_TRUE(rooms.insert(room.folder).second) << room.folder << " stands twice";
    std::set<std::string> folders;
    for (const auto& [folder, files] : s_sources)
        folders.insert(folder);
    EXPECT_EQ(folders, rooms);
}

TEST_F(Rooms, EachRoomBuildsTheLibrariesThatTheTableNames)
{
    for (const Room& room : s_table.rooms) {
        // An interface has its library defined beside that of the room around it.
        const std::string lists = ReadAll(Root() / room.folder / "CMakeLists.txt") +
                                  ReadAll(Root() / room.folder / "../CMakeLists.txt");
        EXPECT_THAT(room.libraries, ::testing::Not(IsEmpty())) << room.folder;
        for (const std::string& library : room.libraries)
            EXPECT_THAT(lists, ::testing::ContainsRegex("(library|program)\\(" + library + "[ \n]"))
                << room.folder;
    }
}

TEST_F(Rooms, NoRoomIncludesWhatItMayNot)
{
    for (const Room& room : s_table.rooms) {
        for (const fs::path& file : s_sources[room.folder])
            EXPECT_THAT(CheckIncludes(room, ReadAll(file), s_headers).faults, IsEmpty()) << file;
    }
}

TEST_F(Rooms, NoRoomMayUseMoreThanItDoes)
{
    for (const Room& room : s_table.rooms) {
        IncludeReport all;
        for (const fs::path& file : s_sources[room.folder]) {
            const IncludeReport one = CheckIncludes(room, ReadAll(file), s_headers);
            all.usedRooms.insert(one.usedRooms.begin(), one.usedRooms.end());
            all.usedOutside.insert(one.usedOutside.begin(), one.usedOutside.end());
        }
        EXPECT_EQ(all.usedOutside, room.outside) << room.folder;
        if (!room.mayUseAllAbove) {
            EXPECT_EQ(all.usedRooms, room.rooms) << room.folder;
        }
    }
}

TEST_F(Rooms, TheLevelsRiseDownTheTable)
{
    int level = 0;
    for (const Room& room : s_table.rooms) {
        EXPECT_GE(room.level, level) << room.folder;
        level = room.level;
    }
}

TEST_F(Rooms, AWrongIncludeIsReported)
{
    const auto faults = [](const char* folder, const char* text) {
        return CheckIncludes(*s_table.Find(folder), text, s_headers).faults;
    };
    EXPECT_THAT(faults("controls", "#include \"AudioEngine.h\"\n"),
                ElementsAre("AudioEngine.h is of platform/audio/api"));
    for (const char* text : {"  #include \"AudioEngine.h\"", "# include \"AudioEngine.h\"",
                             "#include\"AudioEngine.h\""})
        EXPECT_THAT(faults("controls", text), SizeIs(1));
    EXPECT_THAT(faults("playback", "#pragma once\n\n#include \"f101.h\"\n"),
                ElementsAre("f101.h is of shell/main-window"));
    for (const char* text : {"#include <QLabel>", "#include <QtWidgets/QLabel>"})
        EXPECT_THAT(faults("media/loading", text), ElementsAre(HasSubstr("is of Qt Widgets")));
    EXPECT_THAT(faults("controls", "#include <pulse/pulseaudio.h>"),
                ElementsAre("pulse/pulseaudio.h is of libpulse"));
    EXPECT_THAT(faults("controls", "#include <zip.h>"), ElementsAre(HasSubstr("no room")));
    EXPECT_THAT(faults("controls", "#include \"Nowhere.h\""), ElementsAre(HasSubstr("no room")));
    EXPECT_THAT(faults("controls", "#include <QLabel>\n#include \"ctlBtn.h\"\n#include <vector>\n"),
                IsEmpty());
}

TEST(RoomTable, ARowThatIsNoneIsReported)
{
    EXPECT_THAT(ReadRoomTable("| 0 | `a` | `b` |\n").faults, Contains(HasSubstr("columns")));
    const RoomTable upward = ReadRoomTable("| 0 | `x/a` | `la` | `b` | | |\n"
                                           "| 0 | `x/b` | `lb` | `a` | | |\n");
    EXPECT_THAT(upward.faults, ElementsAre("x/a: no one room above it is called b"));
    EXPECT_THAT(upward.Find("x/b")->rooms, ElementsAre("x/a"));
    EXPECT_EQ(upward.Find("b"), nullptr);
    const RoomTable twice = ReadRoomTable("| 0 | `x/a` | | | | |\n| 0 | `y/a` | | | | |\n"
                                          "| 1 | `c` | | `a` | | |\n");
    EXPECT_THAT(twice.faults, ElementsAre("c: no one room above it is called a"));
}

} // namespace
} // namespace lantern::test
