// SPDX-License-Identifier: GPL-3.0-or-later
#include "SqliteSongStore.h"

#include "PathText.h"
#include "Process.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <random>
#include <sched.h>
#include <sqlite3.h>
#include <string>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace lantern {
namespace {

SongId Id(int number)
{
    return QByteArray::number(number).rightJustified(kSongIdSize, '0');
}

SongRecord Record(int key, float speed = 0)
{
    return {.tune = {key, speed}, .loudness = {}};
}

class SqliteSongStore : public ::testing::Test {
protected:
    std::string Path() const { return (m_folder / "state" / "songs.db").string(); }
    std::string Aside() const { return Path() + ".damaged"; }
    std::unique_ptr<SongStore> Store() const
    {
        return MakeSqliteSongStore(TextFromNative(Path().c_str()));
    }
    SongRecords Stored(StoreOutcome expected = StoreOutcome::Done) const
    {
        SongRecords records;
        EXPECT_EQ(Store()->Read(records), expected);
        return records;
    }
    StoreOutcome Keep(const SongRecords& records) const
    {
        return Store()->Write({.records = records});
    }
    void MakeFile(const std::string& bytes) const
    {
        std::filesystem::create_directories(m_folder / "state");
        test::WriteFile(Path(), bytes);
    }
    // As another program would, that knows the file.
    void Sql(const std::string& statements) const
    {
        std::filesystem::create_directories(m_folder / "state");
        sqlite3* file = nullptr;
        ASSERT_EQ(sqlite3_open(Path().c_str(), &file), SQLITE_OK);
        EXPECT_EQ(sqlite3_exec(file, statements.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
            << sqlite3_errmsg(file);
        sqlite3_close(file);
    }

    test::ScratchFolder m_folder;
};

TEST_F(SqliteSongStore, WhatIsWrittenIsReadAgain)
{
    SongRecord full = Record(-3, 12.5F);
    full.loudness = {Id(77), -11.25, 1.125};
    const SongRecords records = {{Id(1), full}, {Id(2), Record(10, -90)}};
    EXPECT_EQ(Keep(records), StoreOutcome::Done);
    EXPECT_EQ(Stored(), records);
}

TEST_F(SqliteSongStore, NothingIsMadeToReadNothing)
{
    EXPECT_EQ(Stored(), SongRecords());
    EXPECT_FALSE(std::filesystem::exists(m_folder / "state"));
}

TEST_F(SqliteSongStore, NothingIsMadeToForget)
{
    EXPECT_EQ(Store()->Write({.forgetAll = true, .records = {{Id(1), {}}}}), StoreOutcome::Done);
    EXPECT_FALSE(std::filesystem::exists(m_folder / "state"));
}

TEST_F(SqliteSongStore, ChangesReplaceAddAndTakeAway)
{
    Keep({{Id(1), Record(1)}, {Id(2), Record(2)}, {Id(3), Record(3)}});
    Keep({{Id(2), Record(5)}, {Id(3), {}}, {Id(4), Record(4)}});
    EXPECT_EQ(Stored(), (SongRecords{{Id(1), Record(1)}, {Id(2), Record(5)}, {Id(4), Record(4)}}));
    EXPECT_EQ(Store()->Write({.forgetAll = true, .records = {{Id(9), Record(9)}}}),
              StoreOutcome::Done);
    EXPECT_EQ(Stored(), (SongRecords{{Id(9), Record(9)}}));
}

TEST_F(SqliteSongStore, AnEmptyFileIsOneWithoutSongs)
{
    for (const char* nothing : {"", "x"}) {
        MakeFile(nothing);
        EXPECT_EQ(Stored(), SongRecords());
        EXPECT_EQ(Keep({{Id(1), Record(1)}}), StoreOutcome::Done);
        EXPECT_EQ(Stored().size(), 1);
        EXPECT_FALSE(std::filesystem::exists(Aside()));
    }
}

TEST_F(SqliteSongStore, AFileOfALaterVersionIsNeitherReadNorTouched)
{
    Keep({{Id(1), Record(1)}});
    Sql("ALTER TABLE song ADD COLUMN more; PRAGMA user_version=2");
    const std::string before = test::ReadFile(Path());
    EXPECT_EQ(Stored(StoreOutcome::NewerVersion), SongRecords());
    EXPECT_EQ(Keep({{Id(2), Record(2)}}), StoreOutcome::NewerVersion);
    EXPECT_EQ(Store()->Write({.forgetAll = true, .records = {}}), StoreOutcome::NewerVersion);
    EXPECT_TRUE(test::ReadFile(Path()) == before);
}

TEST_F(SqliteSongStore, RandomBytesArePutAsideAndANewFileIsBegun)
{
    std::mt19937 random(7);
    std::string bytes(20000, '\0');
    std::ranges::generate(bytes, [&] { return static_cast<char>(random()); });
    for (const std::string& kind :
         {bytes, "SQLite format 3" + bytes, "SQLite format 3" + std::string(1, '\0') + bytes}) {
        MakeFile(kind);
        EXPECT_EQ(Stored(StoreOutcome::Damaged), SongRecords());
        EXPECT_TRUE(test::ReadFile(Aside()) == kind);
        EXPECT_EQ(Keep({{Id(1), Record(1)}}), StoreOutcome::Done);
        EXPECT_EQ(Stored().size(), 1);
    }
}

TEST_F(SqliteSongStore, AFileThatIsDamagedWhileTheProgramRunsIsPutAsideByTheWriting)
{
    MakeFile(std::string(5000, 'x'));
    EXPECT_EQ(Keep({{Id(1), Record(1)}}), StoreOutcome::Damaged);
    EXPECT_TRUE(std::filesystem::exists(Aside()));
    EXPECT_EQ(Keep({{Id(1), Record(1)}}), StoreOutcome::Done);
    EXPECT_EQ(Stored().size(), 1);
}

// Whatever is wrong with the file, the program gets through, and keeps songs afterwards.
TEST_F(SqliteSongStore, NoDamageKeepsSongsFromBeingKept)
{
    SongRecords many;
    for (int i = 0; i < 500; ++i)
        many.insert(Id(i), Record(1 + i % 10, 1));
    Keep(many);
    const std::string good = test::ReadFile(Path());
    std::mt19937 random(11);
    for (int round = 0; round < 150; ++round) {
        std::string bytes = good;
        const int faults = 1 + static_cast<int>(random() % 40);
        for (int i = 0; i < faults; ++i) {
            const std::size_t end = round % 3 == 0 ? 200 : bytes.size();
            bytes[random() % end] = static_cast<char>(random());
        }
        if (round % 5 == 0)
            bytes.resize(random() % bytes.size());
        MakeFile(bytes);
        SongRecords records;
        const StoreOutcome read = Store()->Read(records);
        if (read == StoreOutcome::NewerVersion)
            continue; // as it seems
        EXPECT_TRUE(read == StoreOutcome::Done || read == StoreOutcome::Damaged);
        const StoreOutcome first = Keep({{Id(1000), Record(4)}});
        if (first != StoreOutcome::Done) {
            EXPECT_EQ(first, StoreOutcome::Damaged);
            EXPECT_EQ(Keep({{Id(1000), Record(4)}}), StoreOutcome::Done);
        }
        for (const SongRecord& record : records) {
            EXPECT_LE(std::abs(record.tune.keyPitch), 10);
            EXPECT_LE(std::abs(record.tune.speed), 90);
        }
    }
}

TEST_F(SqliteSongStore, WhatCanBeReadOfADamagedFileIsKnown)
{
    SongRecords many;
    for (int i = 0; i < 2000; ++i)
        many.insert(Id(i), Record(5, 1));
    Keep(many);
    std::string bytes = test::ReadFile(Path());
    std::fill(bytes.end() - 4096, bytes.end(), '\xEE');
    MakeFile(bytes);
    const SongRecords left = Stored(StoreOutcome::Damaged);
    EXPECT_GT(left.size(), 100);
    EXPECT_LT(left.size(), 2000);
}

TEST_F(SqliteSongStore, SomebodyElsesTablesArePutAside)
{
    Sql("CREATE TABLE song(title TEXT); INSERT INTO song VALUES('x')");
    EXPECT_EQ(Stored(StoreOutcome::Damaged), SongRecords());
    EXPECT_EQ(Keep({{Id(1), Record(1)}}), StoreOutcome::Done);

    Sql("DROP TABLE song; CREATE TABLE song(title TEXT)");
    EXPECT_EQ(Stored(StoreOutcome::Damaged), SongRecords());

    Sql("PRAGMA user_version=1");
    EXPECT_EQ(Keep({{Id(1), Record(1)}}), StoreOutcome::Damaged);
    Sql("PRAGMA user_version=-4");
    EXPECT_EQ(Stored(StoreOutcome::Damaged), SongRecords());
}

// A view that never ends would keep the thread busy for ever.
TEST_F(SqliteSongStore, AViewInPlaceOfTheTableIsDamage)
{
    Sql("CREATE VIEW song(id, keypitch, speed, sound, lufs, truepeak) AS "
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) "
        "SELECT zeroblob(3), i, 0, 0, 0, 0 FROM n; PRAGMA user_version=1");
    EXPECT_EQ(Stored(StoreOutcome::Damaged), SongRecords());
}

TEST_F(SqliteSongStore, RowsThatMakeNoSenseAreLeftOut)
{
    Keep({{Id(1), Record(1)}});
    Sql("INSERT INTO song VALUES(x'00', 3, 0, NULL, NULL, NULL);"
        "INSERT INTO song VALUES(zeroblob(20), 11, 0, NULL, NULL, NULL);"
        "INSERT INTO song VALUES(zeroblob(21), 1, 0, NULL, NULL, NULL);"
        "INSERT INTO song VALUES('text of twenty chars', 0, 90.5, NULL, NULL, NULL);"
        "INSERT INTO song VALUES(randomblob(20), 'three', 9e999, NULL, NULL, NULL);"
        "INSERT INTO song VALUES(randomblob(20), 'zero', 'none', NULL, NULL, NULL);"
        "INSERT INTO song VALUES(randomblob(20), 9e18, 0, NULL, NULL, NULL);"
        "INSERT INTO song VALUES(randomblob(20), 0, 0, zeroblob(20), -9e999, 1);"
        "INSERT INTO song VALUES(randomblob(20), 0, 0, zeroblob(20), -10, -1);"
        "INSERT INTO song VALUES(randomblob(20), 0, 0, zeroblob(20), -10, 9e999);"
        "INSERT INTO song VALUES(randomblob(20), 0, 0, zeroblob(19), -10, 1)");
    EXPECT_EQ(Stored(), (SongRecords{{Id(1), Record(1)}}));
}

TEST_F(SqliteSongStore, AFileThatAnotherProgramHoldsIsForLater)
{
    Keep({{Id(1), Record(1)}});
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(Path().c_str(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(Stored(StoreOutcome::Later), SongRecords());
    EXPECT_EQ(Keep({{Id(2), Record(2)}}), StoreOutcome::Later);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
    sqlite3_close(other);
    EXPECT_EQ(Keep({{Id(2), Record(2)}}), StoreOutcome::Done);
    EXPECT_EQ(Stored().size(), 2);
}

TEST_F(SqliteSongStore, WhatIsNoFileIsOfNoUse)
{
    std::filesystem::create_directories(Path());
    EXPECT_EQ(Stored(StoreOutcome::Unusable), SongRecords());
    EXPECT_EQ(Keep({{Id(1), Record(1)}}), StoreOutcome::Unusable);
    std::filesystem::remove(Path());
    ASSERT_EQ(mkfifo(Path().c_str(), 0600), 0);
    EXPECT_EQ(Stored(StoreOutcome::Unusable), SongRecords());
    std::filesystem::remove_all(m_folder / "state");
    test::WriteFile(m_folder / "state", "a file in place of the folder");
    EXPECT_EQ(Stored(StoreOutcome::Unusable), SongRecords());
    EXPECT_EQ(Keep({{Id(1), Record(1)}}), StoreOutcome::Unusable);
}

TEST_F(SqliteSongStore, AFileThatGoesIsMadeAnew)
{
    const auto store = Store();
    store->Write({.records = {{Id(1), Record(1)}}});
    std::filesystem::remove_all(m_folder / "state");
    EXPECT_EQ(store->Write({.records = {{Id(2), Record(2)}}}), StoreOutcome::Done);
    EXPECT_EQ(Stored(), (SongRecords{{Id(2), Record(2)}}));
}

// What a program that was killed while it wrote leaves behind: the file half written, and beside it
// what undoes that.
TEST_F(SqliteSongStore, AWritingThatWasCutShortIsUndone)
{
    Keep({{Id(1), Record(1)}, {Id(2), Record(2)}});
    const pid_t child = fork();
    if (child == 0) {
        sqlite3* file = nullptr;
        sqlite3_open(Path().c_str(), &file);
        sqlite3_exec(file,
                     "PRAGMA cache_spill=1; PRAGMA cache_size=1; BEGIN IMMEDIATE; DELETE FROM song;"
                     "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n LIMIT 3000) "
                     "INSERT INTO song SELECT randomblob(20), 9, 9, NULL, NULL, NULL FROM n",
                     nullptr, nullptr, nullptr);
        _exit(0);
    }
    ASSERT_GT(child, 0);
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_TRUE(std::filesystem::exists(Path() + "-journal"));
    EXPECT_EQ(Stored(), (SongRecords{{Id(1), Record(1)}, {Id(2), Record(2)}}));
}

// For this thread, the folder lies on a disk of its own.
bool Mount(const std::string& folder, const char* type, unsigned long flags, const char* options)
{
    return unshare(CLONE_NEWNS) == 0 &&
           mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           mount(folder.c_str(), folder.c_str(), type, flags, options) == 0;
}

TEST_F(SqliteSongStore, AReadOnlyFileIsReadAndNeverWritten)
{
    Keep({{Id(1), Record(1)}});
    const std::string folder = (m_folder / "state").string();
    bool mayMount = false;
    std::thread([&] {
        mayMount =
            Mount(folder, nullptr, MS_BIND, nullptr) &&
            mount(nullptr, folder.c_str(), nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr) == 0;
        if (!mayMount)
            return;
        EXPECT_EQ(Stored(), (SongRecords{{Id(1), Record(1)}}));
        EXPECT_EQ(Keep({{Id(2), Record(2)}}), StoreOutcome::ReadOnly);
    }).join();
    if (!mayMount)
        GTEST_SKIP() << "No disk may be mounted here.";
    EXPECT_EQ(Stored().size(), 1);
}

TEST_F(SqliteSongStore, AFullDiskIsForLaterAndLosesNothing)
{
    m_folder.PrivateFolder("state");
    const std::string folder = (m_folder / "state").string();
    bool mayMount = false;
    std::thread([&] {
        mayMount = Mount(folder, "tmpfs", 0, "size=96k");
        if (!mayMount)
            return;
        EXPECT_EQ(Keep({{Id(1), Record(1)}}), StoreOutcome::Done);
        SongRecords many;
        for (int i = 0; i < 5000; ++i)
            many.insert(Id(i), Record(2));
        EXPECT_EQ(Keep(many), StoreOutcome::Later);
        EXPECT_EQ(Stored(), (SongRecords{{Id(1), Record(1)}}));
        EXPECT_EQ(Keep({{Id(2), Record(2)}}), StoreOutcome::Done);
        std::ofstream(folder + "/filler") << std::string(200000, 'x');
        EXPECT_EQ(Keep({{Id(3), Record(3)}}), StoreOutcome::Later);
        EXPECT_EQ(Stored().size(), 2);
        std::filesystem::remove(Path());
        std::ofstream(folder + "/filler", std::ios::app) << std::string(200000, 'x');
        EXPECT_EQ(Keep({{Id(4), Record(4)}}), StoreOutcome::Later);
    }).join();
    if (!mayMount)
        GTEST_SKIP() << "No disk may be mounted here.";
}

} // namespace
} // namespace lantern
