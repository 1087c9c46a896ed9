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
