// SPDX-License-Identifier: GPL-3.0-or-later
// The main function of tests that start themselves as an instance of the player.
#include "LinkPartner.h"

#include <QCoreApplication>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsSet(lantern::kLinkPartner))
        return lantern::RunLinkPartner(argc, argv);
    testing::InitGoogleMock(&argc, argv);
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
