// SPDX-License-Identifier: GPL-3.0-or-later
// The main function of tests that show widgets and start themselves as a player.
#include "ProgramFonts.h"
#include "StartPartner.h"

#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsSet(lantern::kStartPartner))
        return lantern::RunStartPartner(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    if (qgetenv("QT_QPA_PLATFORM").isEmpty())
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    lantern::LoadProgramFonts();
    return RUN_ALL_TESTS();
}
