// SPDX-License-Identifier: GPL-3.0-or-later
#include "LastErrorText.h"

#include <cerrno>
#include <system_error>

namespace lantern {
namespace {

// Several codes here say what "access denied" says elsewhere.
bool IsAccessDenied(int code)
{
    return code == EACCES || code == EPERM || code == EROFS;
}

} // namespace

QString ErrorText(int code)
{
    QString text = QString::fromStdString(std::generic_category().message(code)).trimmed();
    if (IsAccessDenied(code)) {
        text += QStringLiteral("\n\nPossible Causes:"
                               "\n- The file or folder may be read-only"
                               "\n- You may not have the correct permissions to write to it"
                               "\n- It may have been opened or locked by another program");
    }
    return text;
}

QString LastErrorText()
{
    return ErrorText(errno);
}

} // namespace lantern
