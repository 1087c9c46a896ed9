// SPDX-License-Identifier: GPL-3.0-or-later
#include "NamePatterns.h"

#include "PathText.h"

#include <QList>
#include <QStringView>

#include <algorithm>

namespace lantern {
namespace {

// At a mismatch only the last star can still take more: an earlier one would but take what comes
// after it further right. So the time is at most the product of the lengths.
bool Matches(QStringView name, QStringView pattern)
{
    qsizetype at = 0;
    qsizetype inPattern = 0;
    qsizetype lastStar = -1;
    qsizetype takenByStar = 0;
    while (at < name.size()) {
        if (inPattern < pattern.size() && pattern[inPattern] == u'*') {
            lastStar = inPattern++;
            takenByStar = at;
        } else if (inPattern < pattern.size() && pattern[inPattern] == name[at]) {
            ++inPattern;
            ++at;
        } else if (lastStar >= 0) {
            inPattern = lastStar + 1;
            at = ++takenByStar;
        } else {
            return false;
        }
    }
    while (inPattern < pattern.size() && pattern[inPattern] == u'*')
        ++inPattern;
    return inPattern == pattern.size();
}

} // namespace

bool MatchesPatterns(const QString& name, const QString& patterns)
{
    const QString lowerName = LowerCase(name);
    const QString lowerPatterns = LowerCase(patterns);
    const QList<QStringView> each = QStringView(lowerPatterns).split(u'|');
    return std::ranges::any_of(each, [&](QStringView one) { return Matches(lowerName, one); });
}

} // namespace lantern
