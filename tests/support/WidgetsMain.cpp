// SPDX-License-Identifier: GPL-3.0-or-later
// The main function of tests that show widgets: without a display, unless the environment names
// one, and with the fonts that the program shows them in.
#include "ProgramFonts.h"

#include <QApplication>

#include <gtest/gtest.h>

#ifdef LANTERN_SCREENS
constexpr const char* kPlatform = "offscreen:configfile=" LANTERN_SCREENS;
#else
constexpr const char* kPlatform = "offscreen";
#endif

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    // The plain platform has no screens of its own: it is given those of this program.
    if (const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
        platform.isEmpty() || platform == "offscreen")
        qputenv("QT_QPA_PLATFORM", kPlatform);
    if (!qEnvironmentVariableIsSet("QT_FONT_DPI"))
        qputenv("QT_FONT_DPI", "96");
    const QApplication application(argc, argv);
    lantern::LoadProgramFonts();
    return RUN_ALL_TESTS();
}
