// SPDX-License-Identifier: GPL-3.0-or-later
#include "SongMemory.h"

#include "HandStore.h"
#include "Moment.h"
#include "PathText.h"
#include "Process.h"
#include "SqliteSongStore.h"

#include <QCoreApplication>

#include <gtest/gtest.h>
#include <optional>

namespace lantern {
namespace {

using test::Clock;
using test::Eventually;
using namespace std::chrono_literals;

SongId SongNumber(int number)
{
    return QByteArray::number(number).rightJustified(kSongIdSize, '0');
}

SongRecord Sung(int key)
{
    return {.tune = {key, 0}, .loudness = {}};
}

class SongMemoryCase : public ::testing::Test {
protected:
    SongMemoryCase()
    {
        if (!QCoreApplication::instance())
            m_application.emplace(m_argc, &m_argv);
    }

    void Begin()
    {
        m_memory.emplace(std::make_unique<HandStore>(m_file));
        m_memory->Read = [this] { ++m_toldRead; };
        m_memory->Trouble = [this](StoreOutcome outcome) { m_troubles.push_back(outcome); };
    }
    void AwaitRead()
    {
        ASSERT_TRUE(Eventually([&] { return m_memory->IsRead(); }));
    }
    bool EventuallyTold(auto&& predicate)
    {
        return Eventually([&] {
            QCoreApplication::processEvents();
            return predicate();
        });
    }

    int m_argc = 1;
    char* m_argv = const_cast<char*>("test");
    std::optional<QCoreApplication> m_application;
    std::shared_ptr<HandFile> m_file = std::make_shared<HandFile>();
    std::optional<SongMemory> m_memory;
    int m_toldRead = 0;
    std::vector<StoreOutcome> m_troubles;
};

TEST_F(SongMemoryCase, WhatTheFileHoldsIsKnownOnceItIsRead)
{
    m_file->records = {{SongNumber(1), Sung(3)}};
    m_file->Hang(true);
    Begin();
    EXPECT_FALSE(m_memory->IsRead());
    EXPECT_EQ(m_memory->Find(SongNumber(1)), SongRecord());
    m_file->Hang(false);
    EXPECT_TRUE(EventuallyTold([&] { return m_toldRead == 1; }));
    EXPECT_TRUE(m_memory->IsRead());
    EXPECT_EQ(m_memory->Find(SongNumber(1)), Sung(3));
    EXPECT_EQ(m_memory->Count(), 1);
    EXPECT_TRUE(m_troubles.empty());
}

TEST_F(SongMemoryCase, AChangeIsKnownAndWrittenAtOnce)
{
    Begin();
    AwaitRead();
    m_memory->Keep(SongNumber(1), Sung(3));
    EXPECT_EQ(m_memory->Find(SongNumber(1)), Sung(3));
    EXPECT_TRUE(Eventually([&] { return m_file->Records().value(SongNumber(1)) == Sung(3); }));
}

TEST_F(SongMemoryCase, AWheelThatTurnsIsWrittenAFewTimesAndItsLastTurnIsKept)
{
    Begin();
    AwaitRead();
    for (int i = 0; i < 1000; ++i)
        m_memory->Keep(SongNumber(1), Sung(1 + i % 9));
    m_memory.reset();
    EXPECT_EQ(m_file->Records().value(SongNumber(1)), Sung(1 + 999 % 9));
    EXPECT_LE(m_file->Writings(), 20U);
}

TEST_F(SongMemoryCase, WhatIsKnownAlreadyIsNotWrittenAgain)
{
    m_file->records = {{SongNumber(1), Sung(3)}};
    Begin();
    AwaitRead();
    m_memory->Keep(SongNumber(1), Sung(3));
    m_memory->Keep(SongNumber(2), {});
    m_memory.reset();
    EXPECT_EQ(m_file->Writings(), 0U);
}

TEST_F(SongMemoryCase, WhatIsChangedBeforeTheFileIsReadHolds)
{
    m_file->records = {
        {SongNumber(1), Sung(1)}, {SongNumber(2), Sung(2)}, {SongNumber(3), Sung(3)}};
    m_file->Hang(true);
    Begin();
    m_memory->Keep(SongNumber(1), Sung(9));
    m_memory->Keep(SongNumber(2), {});
    m_file->Hang(false);
    AwaitRead();
    EXPECT_EQ(m_memory->Find(SongNumber(1)), Sung(9));
    EXPECT_EQ(m_memory->Find(SongNumber(2)), SongRecord());
    EXPECT_EQ(m_memory->Find(SongNumber(3)), Sung(3));
    m_memory.reset();
    EXPECT_EQ(m_file->Records(), (SongRecords{{SongNumber(1), Sung(9)}, {SongNumber(3), Sung(3)}}));
}

TEST_F(SongMemoryCase, AllIsForgottenAlsoBeforeTheFileIsRead)
{
    m_file->records = {{SongNumber(1), Sung(1)}};
    m_file->Hang(true);
    Begin();
    m_memory->Keep(SongNumber(2), Sung(2));
    m_memory->ForgetAll();
    m_memory->Keep(SongNumber(3), Sung(3));
    m_file->Hang(false);
    AwaitRead();
    EXPECT_EQ(m_memory->Count(), 1);
    m_memory.reset();
    EXPECT_EQ(m_file->Records(), (SongRecords{{SongNumber(3), Sung(3)}}));
}

TEST_F(SongMemoryCase, AFileThatIsHeldIsReadAndWrittenAsSoonAsItIsFree)
{
    m_file->records = {{SongNumber(1), Sung(1)}};
    m_file->Set(StoreOutcome::Later);
    Begin();
    EXPECT_TRUE(Eventually([&] { return m_file->Tries() >= 2; }));
    EXPECT_FALSE(m_memory->IsRead());
    m_file->Set(StoreOutcome::Done);
    AwaitRead();
    EXPECT_EQ(m_memory->Find(SongNumber(1)), Sung(1));

    m_file->Set(StoreOutcome::Later);
    m_memory->Keep(SongNumber(2), Sung(2));
    const int tries = m_file->Tries();
    EXPECT_TRUE(Eventually([&] { return m_file->Tries() >= tries + 2; }));
    m_memory->Keep(SongNumber(2), Sung(5));
    m_file->Set(StoreOutcome::Done);
    EXPECT_TRUE(Eventually([&] { return m_file->Records().value(SongNumber(2)) == Sung(5); }));
    QCoreApplication::processEvents();
    EXPECT_TRUE(m_troubles.empty()); // it was for a moment
}

TEST_F(SongMemoryCase, ForgettingAllStandsBehindAHeldFile)
{
    m_file->records = {{SongNumber(1), Sung(1)}};
    Begin();
    AwaitRead();
    m_file->Set(StoreOutcome::Later);
    m_memory->ForgetAll();
    const int tries = m_file->Tries();
    EXPECT_TRUE(Eventually([&] { return m_file->Tries() >= tries + 1; }));
    m_memory->Keep(SongNumber(2), Sung(2));
    m_file->Set(StoreOutcome::Done);
    EXPECT_TRUE(Eventually([&] { return m_file->Records().contains(SongNumber(2)); }));
    EXPECT_EQ(m_file->Records().size(), 1);
}

TEST_F(SongMemoryCase, ADiskThatStaysFullIsToldOnceAndTheEveningGoesOn)
{
    Begin();
    AwaitRead();
    m_file->Set(StoreOutcome::Later);
    m_memory->Keep(SongNumber(1), Sung(1));
    EXPECT_TRUE(EventuallyTold([&] { return !m_troubles.empty(); }));
    EXPECT_EQ(m_troubles, std::vector{StoreOutcome::Later});
    EXPECT_EQ(m_memory->Find(SongNumber(1)), Sung(1));
    m_file->Set(StoreOutcome::Done);
    EXPECT_TRUE(Eventually([&] { return m_file->Records().size() == 1; }));
}

TEST_F(SongMemoryCase, AFileThatIsOfNoUseIsToldAndLeftAlone)
{
    for (const StoreOutcome outcome :
         {StoreOutcome::NewerVersion, StoreOutcome::Unusable, StoreOutcome::ReadOnly}) {
        m_troubles.clear();
        m_file->Set(outcome);
        Begin();
        EXPECT_TRUE(EventuallyTold([&] { return !m_troubles.empty(); }));
        EXPECT_EQ(m_troubles, std::vector{outcome});
        EXPECT_TRUE(m_memory->IsRead());
        const int tries = m_file->Tries();
        m_memory->Keep(SongNumber(1), Sung(1));
        EXPECT_EQ(m_memory->Find(SongNumber(1)), Sung(1)); // for the evening
        std::this_thread::sleep_for(20ms);
        m_memory.reset();
        EXPECT_EQ(m_file->Tries(), tries);
    }
}

TEST_F(SongMemoryCase, OfADamagedFileAllThatIsKnownIsWrittenAnew)
{
    m_file->records = {{SongNumber(1), Sung(1)}};
    Begin();
    AwaitRead();
    m_file->Set(StoreOutcome::Damaged);
    m_memory->Keep(SongNumber(2), Sung(2));
    const int tries = m_file->Tries();
    EXPECT_TRUE(Eventually([&] { return m_file->Tries() >= tries + 1; }));
    {
        const std::scoped_lock lock(m_file->mutex);
        m_file->records.clear();
        m_file->outcome = StoreOutcome::Done;
    }
    EXPECT_TRUE(Eventually([&] { return m_file->Records().size() == 2; }));
}

TEST_F(SongMemoryCase, WhatWasReadOfADamagedFileIsWrittenAnew)
{
    m_file->records = {{SongNumber(1), Sung(1)}, {SongNumber(2), Sung(2)}};
    m_file->Set(StoreOutcome::Damaged);
    m_file->Hang(true);
    Begin();
    EXPECT_TRUE(Eventually([&] { return m_file->Tries() == 1; }));
    m_memory->Keep(SongNumber(2), Sung(7));
    m_file->Hang(false);
    AwaitRead();
    {
        const std::scoped_lock lock(m_file->mutex);
        m_file->records.clear();
        m_file->outcome = StoreOutcome::Done;
    }
    m_memory.reset();
    EXPECT_EQ(m_file->Records(), (SongRecords{{SongNumber(1), Sung(1)}, {SongNumber(2), Sung(7)}}));
}

TEST_F(SongMemoryCase, NeitherAHangingDiskNorAHeldFileKeepsTheProgramFromEnding)
{
    Begin();
    AwaitRead();
    m_file->Set(StoreOutcome::Later);
    m_memory->Keep(SongNumber(1), Sung(1));
    auto start = Clock::now();
    m_memory.reset();
    EXPECT_LT(Clock::now() - start, 3s);

    m_file->Set(StoreOutcome::Done);
    Begin();
    AwaitRead();
    m_file->Hang(true);
    m_memory->Keep(SongNumber(1), Sung(1));
    EXPECT_TRUE(Eventually([&] { return m_file->Tries() >= 4; }));
    start = Clock::now();
    EXPECT_EQ(m_memory->Find(SongNumber(1)), Sung(1)); // nothing waits for the disk
    m_memory->Keep(SongNumber(2), Sung(2));
    m_memory->ForgetAll();
    EXPECT_LT(Clock::now() - start, 1s);
    m_memory.reset();
    EXPECT_LT(Clock::now() - start, 3s);
    m_file->Hang(false); // the thread that was left behind ends, and harms nobody
    std::this_thread::sleep_for(50ms);
}

TEST_F(SongMemoryCase, TheEndWaitsForAFileThatIsHeldForAMoment)
{
    Begin();
    AwaitRead();
    m_file->Set(StoreOutcome::Later);
    m_memory->Keep(SongNumber(1), Sung(1));
    std::thread other([&] {
        std::this_thread::sleep_for(150ms);
        m_file->Set(StoreOutcome::Done);
    });
    m_memory.reset();
    EXPECT_EQ(m_file->Records().size(), 1);
    other.join();
}

TEST(SongMemory, TenThousandSongsAreAllFoundAgain)
{
    const test::ScratchFolder folder;
    const QString file = TextFromNative((folder / "songs.db").c_str());
    SongRecords many;
    for (int i = 0; i < 10'000; ++i)
        many.insert(SongNumber(i),
                    {.tune = {1 + i % 10, 2}, .loudness = KeptLoudness{SongNumber(i), -9, 1}});
    ASSERT_EQ(MakeSqliteSongStore(file)->Write({.records = many}), StoreOutcome::Done);

    SongMemory memory(MakeSqliteSongStore(file));
    ASSERT_TRUE(Eventually([&] { return memory.IsRead(); }, 20s, 1ms));
    for (int i = 0; i < 10'000; ++i)
        ASSERT_EQ(memory.Find(SongNumber(i)), many.value(SongNumber(i)));
}

} // namespace
} // namespace lantern
