// SPDX-License-Identifier: GPL-3.0-or-later
#include "Complaint.h"

#include "NameSearch.h"
#include "PathHelpers.h"
#include "PathText.h"

#include <cstdio>

namespace lantern {

QString NameComplaint(const QString& commandArgs)
{
    const QString path = PathInText(commandArgs);
    if (path.isEmpty() || FileCheck(path) == QStringLiteral("FILE"))
        return {};
    return QStringLiteral("File not found: ") + path;
}

QString LinkComplaint(const QString& commandArgs)
{
    const QString path = PathInText(commandArgs);
    if (path.isEmpty())
        return {};
    return QStringLiteral("The running player can't be reached: ") + path;
}

QString OpeningComplaint(const QString& message, const QString& commandArgs)
{
    const QString path = PathInText(commandArgs);
    const QString reason = message.isEmpty() ? QStringLiteral("Nothing to play") : message;
    return reason.endsWith(path) ? reason : reason + QStringLiteral(": ") + path;
}

QByteArray ComplaintLine(const QString& complaint)
{
    QString text = QStringLiteral("lyric-lantern: ") + complaint;
    for (QChar& character : text) {
        if (character.category() == QChar::Other_Control)
            character = u'?';
    }
    return NativeFromText(text) + '\n';
}

void Complain(const QString& complaint)
{
    if (complaint.isEmpty())
        return;
    const QByteArray line = ComplaintLine(complaint);
    std::fwrite(line.constData(), 1, static_cast<std::size_t>(line.size()), stderr);
}

} // namespace lantern
