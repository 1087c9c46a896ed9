// SPDX-License-Identifier: GPL-3.0-or-later
#include "ErrorLine.h"

#include "PathText.h"

#include <cstdio>

namespace lantern::tool {

QString OneLine(QString text)
{
    for (QChar& letter : text) {
        if (letter.category() == QChar::Other_Control)
            letter = u'?';
    }
    return text;
}

void PrintError(const QString& message)
{
    std::fprintf(stderr, "lantern-tool: %s\n", NativeFromText(OneLine(message)).constData());
}

QString PrintText(const QByteArray& text)
{
    const auto size = static_cast<std::size_t>(text.size());
    if (std::fwrite(text.constData(), 1, size, stdout) != size || std::fflush(stdout) != 0)
        return QStringLiteral("Cannot write to standard output");
    return {};
}

} // namespace lantern::tool
