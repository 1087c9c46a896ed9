// SPDX-License-Identifier: GPL-3.0-or-later
// The main function of tests that show widgets, with the fonts that the program shows them in.
#include "ProgramFonts.h"

#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    // The build asks for the names of the tests where no window system need be.
    if (GTEST_FLAG_GET(list_tests))
        return RUN_ALL_TESTS();
    const QApplication application(argc, argv);
    lantern::LoadProgramFonts();
    return RUN_ALL_TESTS();
}
