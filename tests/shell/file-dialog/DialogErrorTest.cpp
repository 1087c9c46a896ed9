// SPDX-License-Identifier: GPL-3.0-or-later
#include "DialogError.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <limits>
#include <string>

namespace lantern {
namespace {

struct Expected {
    std::int32_t code;
    const char* text;
};

constexpr const char* kNoTemplate =
    "The ENABLETEMPLATE flag was set in the Flags member of the initialization structure for the "
    "corresponding common dialog box, but you failed to provide a corresponding template.";
constexpr const char* kNoInstance =
    "The ENABLETEMPLATE flag was set in the Flags member of the initialization structure for the "
    "corresponding common dialog box, but you failed to provide a corresponding instance handle.";
constexpr const char* kNoResource =
    "The common dialog box function failed to find a specified resource.";

constexpr std::array kExpected = {
    Expected{1, "The lStructSize member of the initialization structure for the corresponding "
                "common dialog box is invalid."},
    Expected{2, "The common dialog box function failed during initialization."},
    Expected{3, kNoTemplate},
    Expected{4, kNoInstance},
    Expected{5, "The common dialog box function failed to load a specified string."},
    Expected{6, kNoResource},
    Expected{7, kNoResource},
    Expected{8, "The common dialog box function failed to lock a specified resource."},
    Expected{9, "The common dialog box function was unable to allocate memory for internal "
                "structures."},
    Expected{10, "The common dialog box function was unable to lock the memory associated with a "
                 "handle."},
    Expected{12, "The RegisterWindowMessage function returned an error code when it was called by "
                 "the common dialog box function."},
    Expected{12289, "An attempt to subclass a list box failed because sufficient memory was not "
                    "available."},
    Expected{12290, "A file name is invalid."},
    Expected{12291, "The PathFileBufferSize is too small for the file name(s) specified by the "
                    "user."},
    Expected{65535, "The dialog box could not be created"},
};

TEST(DialogError, EachCodeHasItsText)
{
    for (const Expected& expected : kExpected) {
        const DialogError error(expected.code, DialogKind::Open);
        EXPECT_EQ(error.Number, expected.code);
        EXPECT_EQ(error.Description.toStdString(), expected.text);
    }
}

TEST(DialogError, EveryOtherCodeIsNamedInTheText)
{
    for (std::int32_t code = -70000; code <= 70000; ++code) {
        const bool hasText = std::ranges::find(kExpected, code, &Expected::code) != kExpected.end();
        if (code == kCancelled || hasText)
            continue;
        const DialogError error(code, DialogKind::Open);
        ASSERT_EQ(error.Number, code);
        ASSERT_EQ(error.Description.toStdString(), "Unknown error code of " + std::to_string(code));
    }
    constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
    EXPECT_EQ(DialogError(kLowest, DialogKind::Save).Description.toStdString(),
              "Unknown error code of -2147483648");
}

TEST(DialogError, ACancelHasTheFirstNumberOfObjectErrors)
{
    const DialogError error(kCancelled, DialogKind::Save);
    EXPECT_EQ(error.Number, -2147221504);
    EXPECT_EQ(error.Description, QStringLiteral("Cancel was seleted"));
}

TEST(DialogError, TheSourceNamesTheKindOfDialog)
{
    EXPECT_EQ(DialogError(2, DialogKind::Open).Source, QStringLiteral("Common Dialog Open"));
    EXPECT_EQ(DialogError(2, DialogKind::Save).Source, QStringLiteral("Common Dialog Save"));
    EXPECT_STREQ(DialogError(12290, DialogKind::Save).what(),
                 "Common Dialog Save: A file name is invalid.");
}

} // namespace
} // namespace lantern
