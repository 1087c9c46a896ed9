// SPDX-License-Identifier: GPL-3.0-or-later
#include "ErrorLine.h"

#include "PathText.h"

#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace lantern::tool {
namespace {

FILE* g_errors = nullptr; // standard error as it was, where it was changed

} // namespace

FILE* ErrorStream()
{
    return g_errors ? g_errors : stderr;
}

void SilenceLibraries()
{
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    const int kept = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    g_errors = nowhere >= 0 && kept >= 0 ? fdopen(kept, "w") : nullptr;
    if (g_errors) {
        std::setbuf(g_errors, nullptr);
        dup2(nowhere, STDERR_FILENO);
    }
#endif
}

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
    std::fprintf(ErrorStream(), "lantern-tool: %s\n", NativeFromText(OneLine(message)).constData());
}

QString PrintText(const QByteArray& text)
{
    const auto size = static_cast<std::size_t>(text.size());
    if (std::fwrite(text.constData(), 1, size, stdout) != size || std::fflush(stdout) != 0)
        return QStringLiteral("Cannot write to standard output");
    return {};
}

} // namespace lantern::tool
