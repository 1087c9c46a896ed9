// SPDX-License-Identifier: GPL-3.0-or-later
#include "SungWords.h"

namespace lantern::test {
namespace {

const QStringList kEnglish = {
    QStringLiteral("Lanterns on the river"),     QStringLiteral("I turn around and go"),
    QStringLiteral("Every corner burning"),      QStringLiteral("Don't you know my name?"),
    QStringLiteral("We run until the morning"),  QStringLiteral("Slowly, slowly, come on"),
    QStringLiteral("Oh, what a quiet night"),    QStringLiteral("Just a little longer"),
    QStringLiteral("I'll be there in the fall"), QStringLiteral("Kiss the rain goodbye"),
    QStringLiteral("Zebras dance in velvet"),    QStringLiteral("Is it you I wanted?"),
    QStringLiteral("Yesterday is far away"),     QStringLiteral("Hold me like a melody"),
    QStringLiteral("And the wheel keeps on"),    QStringLiteral("Nobody ever told me"),
    QStringLiteral("Ten thousand empty miles"),  QStringLiteral("Give my heart a minute"),
    QStringLiteral("You and me, my darling"),    QStringLiteral("Under the summer moon"),
    QStringLiteral("Well, I can't let it be"),   QStringLiteral("Jump into the blue"),
    QStringLiteral("Quick as a silver fox"),     QStringLiteral("When the modern world ends"),
};

const QStringList kGerman = {
    QStringLiteral("Über alle Wälder weit"),      QStringLiteral("Ich höre dich im Traum"),
    QStringLiteral("Schöne grüne Hügel"),         QStringLiteral("Und wir müssen gehen"),
    QStringLiteral("Süße Lieder, alte Zeit"),     QStringLiteral("Komm zurück nach Hause"),
    QStringLiteral("Der Mond ist groß und rund"), QStringLiteral("Jeder Weg führt heim"),
    QStringLiteral("Nur ein Stück vom Glück"),    QStringLiteral("Öffne mir die Tür"),
    QStringLiteral("Lass uns tanzen, Mädchen"),   QStringLiteral("Wo die Vögel ziehen"),
};

} // namespace

const QStringList& LinesIn(const std::string& language)
{
    return language == "deu" ? kGerman : kEnglish;
}

} // namespace lantern::test
