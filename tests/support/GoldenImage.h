// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QString>

#include <gtest/gtest.h>

namespace lantern {

// Compares an image with tests/golden/NAME.png, pixel by pixel. If they differ, what was drawn and
// a picture of the difference are written to the folder golden-failures beside the test program.
// With LANTERN_RENEW_GOLDEN=1 in the environment the golden image is written instead.
::testing::AssertionResult MatchesGolden(const QImage& image, const QString& name);

// For tests that wait until something looks as it should. Null if there is none.
QImage GoldenImage(const QString& name);
bool AreGoldenImagesRenewed();

} // namespace lantern
