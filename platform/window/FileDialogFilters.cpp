// SPDX-License-Identifier: GPL-3.0-or-later
#include "FileDialogFilters.h"

#include <QLatin1String>

namespace lantern {
namespace {

constexpr QChar kPatternSeparator = u';';
// What the toolkit takes for a part of a pattern, besides letters and digits.
constexpr QLatin1String kPlainSigns("_.,*?+#-[]@{}/!<>$%&=^~:|");

bool IsAsciiLetter(QChar character)
{
    return character.unicode() < 0x80 && character.isLetter();
}

QString InBothCases(QChar character, bool inBrackets)
{
    if (IsAsciiLetter(character) && inBrackets)
        return QString(character.toLower()) + character.toUpper();
    if (IsAsciiLetter(character))
        return QStringLiteral("[%1%2]").arg(character.toLower()).arg(character.toUpper());
    const bool isPlain =
        (character.unicode() < 0x80 && character.isDigit()) || kPlainSigns.contains(character);
    return isPlain ? QString(character) : QStringLiteral("?");
}

QString ToolkitPattern(const QString& pattern)
{
    if (pattern == QStringLiteral("*.*"))
        return QStringLiteral("*"); // names without a full stop count, too
    QString both;
    bool inBrackets = false;
    for (const QChar character : pattern) {
        inBrackets = character == u'[' || (inBrackets && character != u']');
        both += InBothCases(character, inBrackets);
    }
    return both;
}

} // namespace

QStringList ToolkitFilters(const std::vector<FileFilter>& filters)
{
    QStringList lines;
    for (const FileFilter& filter : filters) {
        QStringList patterns;
        for (const QString& pattern : filter.patterns.split(kPatternSeparator, Qt::SkipEmptyParts))
            patterns += ToolkitPattern(pattern.trimmed());
        lines += QStringLiteral("%1 (%2)").arg(filter.label, patterns.join(u' '));
    }
    return lines;
}

} // namespace lantern
