// SPDX-License-Identifier: GPL-3.0-or-later
#include "TerminationSignals.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <csignal>

namespace lantern {
namespace {

TEST(TerminationSignals, EachSignalArrivesAsOneCallFromTheEventLoop)
{
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        int calls = 0;
        const TerminationSignals signals([&] { ++calls; });
        QCoreApplication::processEvents();
        ASSERT_EQ(calls, 0);
        ASSERT_EQ(std::raise(number), 0);
        EXPECT_EQ(calls, 0) << "not from inside the signal";
        for (int i = 0; i < 100 && calls == 0; ++i)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        EXPECT_EQ(calls, 1);
    }
}

class IgnoredSignal : public ::testing::TestWithParam<int> {
protected:
    IgnoredSignal() : m_before(std::signal(GetParam(), SIG_IGN)) {}
    ~IgnoredSignal() override { std::signal(GetParam(), m_before); }

    static bool IsIgnored()
    {
        struct sigaction current = {};
        return sigaction(GetParam(), nullptr, &current) == 0 && current.sa_handler == SIG_IGN;
    }

private:
    void (*m_before)(int);
};

INSTANTIATE_TEST_SUITE_P(EachOfThem, IgnoredSignal, ::testing::Values(SIGTERM, SIGINT, SIGHUP));

TEST_P(IgnoredSignal, StaysIgnored)
{
    {
        int calls = 0;
        const TerminationSignals signals([&] { ++calls; });
        EXPECT_TRUE(IsIgnored());
        ASSERT_EQ(std::raise(GetParam()), 0);
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
        EXPECT_EQ(calls, 0);
        const int other = GetParam() == SIGTERM ? SIGINT : SIGTERM;
        ASSERT_EQ(std::raise(other), 0);
        for (int i = 0; i < 100 && calls == 0; ++i)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        EXPECT_EQ(calls, 1) << "the others are still heard";
        EXPECT_TRUE(IsIgnored());
    }
    EXPECT_TRUE(IsIgnored());
}

TEST(TerminationSignalsDeathTest, AfterItsEndASignalEndsTheProcess)
{
    EXPECT_EXIT(
        {
            {
                const TerminationSignals signals([] {});
            }
            std::raise(SIGHUP);
        },
        ::testing::KilledBySignal(SIGHUP), "");
}

TEST(TerminationSignalsDeathTest, ASecondSignalEndsTheProcess)
{
    EXPECT_EXIT(
        {
            const TerminationSignals signals([] {});
            std::raise(SIGTERM);
            QCoreApplication::processEvents(QEventLoop::AllEvents, 100);
            std::raise(SIGTERM);
        },
        ::testing::KilledBySignal(SIGTERM), "");
}

} // namespace
} // namespace lantern
