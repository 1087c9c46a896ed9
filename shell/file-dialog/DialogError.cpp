// SPDX-License-Identifier: GPL-3.0-or-later
#include "DialogError.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string_view>

namespace lantern {
namespace {

// The first number of the range that is free for the errors of objects.
constexpr std::int32_t kFirstObjectError = std::numeric_limits<std::int32_t>::min() + 0x40000;

struct ErrorText {
    std::int32_t code;
    std::u16string_view text;
};

constexpr std::u16string_view kNoResource =
    u"The common dialog box function failed to find a specified resource.";

// The spelling of the first is what programs know it by.
constexpr std::array kErrorTexts = {
    ErrorText{kCancelled, u"Cancel was seleted"},
    ErrorText{1, u"The lStructSize member of the initialization structure for the corresponding "
                 u"common dialog box is invalid."},
    ErrorText{2, u"The common dialog box function failed during initialization."},
    ErrorText{3, u"The ENABLETEMPLATE flag was set in the Flags member of the initialization "
                 u"structure for the corresponding common dialog box, but you failed to provide a "
                 u"corresponding template."},
    ErrorText{4, u"The ENABLETEMPLATE flag was set in the Flags member of the initialization "
                 u"structure for the corresponding common dialog box, but you failed to provide a "
                 u"corresponding instance handle."},
    ErrorText{5, u"The common dialog box function failed to load a specified string."},
    ErrorText{6, kNoResource},
    ErrorText{7, kNoResource},
    ErrorText{8, u"The common dialog box function failed to lock a specified resource."},
    ErrorText{9, u"The common dialog box function was unable to allocate memory for internal "
                 u"structures."},
    ErrorText{10, u"The common dialog box function was unable to lock the memory associated with "
                  u"a handle."},
    ErrorText{12, u"The RegisterWindowMessage function returned an error code when it was called "
                  u"by the common dialog box function."},
    ErrorText{12289, u"An attempt to subclass a list box failed because sufficient memory was not "
                     u"available."},
    ErrorText{12290, u"A file name is invalid."},
    ErrorText{kBufferTooSmall,
              u"The PathFileBufferSize is too small for the file name(s) specified by the user."},
    ErrorText{65535, u"The dialog box could not be created"},
};

QString DescriptionOf(std::int32_t code)
{
    const auto* found = std::ranges::find(kErrorTexts, code, &ErrorText::code);
    if (found == kErrorTexts.end())
        return QStringLiteral("Unknown error code of %1").arg(code);
    return QStringView(found->text).toString();
}

QString SourceOf(DialogKind kind)
{
    return kind == DialogKind::Open ? QStringLiteral("Common Dialog Open")
                                    : QStringLiteral("Common Dialog Save");
}

} // namespace

DialogError::DialogError(std::int32_t code, DialogKind kind)
    : Number(code == kCancelled ? kFirstObjectError : code), Source(SourceOf(kind)),
      Description(DescriptionOf(code)),
      m_what((Source + QStringLiteral(": ") + Description).toUtf8())
{
}

} // namespace lantern
