// SPDX-License-Identifier: GPL-3.0-or-later
#include "WindowActivation.h"

#include <QApplication>
#include <QWidget>
#include <gtest/gtest.h>

namespace lantern {
namespace {

constexpr const char* kVariable = "XDG_ACTIVATION_TOKEN";

TEST(WindowActivation, TheWindowHasTheKeyboardWithATokenOrWithout)
{
    QWidget first;
    QWidget second;
    first.show();
    second.show();
    ActivateBy({}, first);
    QApplication::processEvents();
    EXPECT_TRUE(first.isActiveWindow());
    ActivateBy("token", second);
    QApplication::processEvents();
    EXPECT_TRUE(second.isActiveWindow());
}

TEST(WindowActivation, TheToolkitHasTheTokenWhileTheWindowAsks)
{
    QByteArray seen;
    AskBy("token", [&] { seen = qgetenv(kVariable); });
    EXPECT_EQ(seen, "token");
    AskBy({}, [&] { seen = qgetenv(kVariable); });
    EXPECT_EQ(seen, "");
}

TEST(WindowActivation, NoProgramThatIsStartedLaterInheritsTheToken)
{
    QWidget window;
    window.show();
    qputenv(kVariable, "of the start");
    ActivateBy("token", window);
    EXPECT_FALSE(qEnvironmentVariableIsSet(kVariable));
    ActivateBy("token", window);
    EXPECT_FALSE(qEnvironmentVariableIsSet(kVariable));
}

} // namespace
} // namespace lantern
