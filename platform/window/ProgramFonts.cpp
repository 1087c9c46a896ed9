// SPDX-License-Identifier: GPL-3.0-or-later
#include "ProgramFonts.h"

#include "ProgramFont.h"

#include <QApplication>
#include <QFile>
#include <QFontDatabase>

#include <array>

namespace lantern {
namespace {

// Where distributions keep the family.
constexpr std::array kFontFolders = {
    "/usr/share/fonts/truetype/liberation2/",
    "/usr/share/fonts/truetype/liberation/",
    "/usr/share/fonts/liberation-sans/",
    "/usr/share/fonts/liberation/",
};
constexpr std::array kFontFiles = {"LiberationSans-Regular.ttf", "LiberationSans-Bold.ttf"};
constexpr std::array kStandsFor = {"Arial", "Tahoma", "MS Sans Serif"};
constexpr const char* kFamily = "Liberation Sans";

void LoadFontFile(const char* name)
{
    for (const char* folder : kFontFolders) {
        const QString path = QString::fromLatin1(folder) + QLatin1String(name);
        if (QFile::exists(path)) {
            QFontDatabase::addApplicationFont(path);
            return;
        }
    }
}

} // namespace

void LoadProgramFonts()
{
    for (const char* name : kFontFiles)
        LoadFontFile(name);
    for (const char* family : kStandsFor)
        QFont::insertSubstitution(QLatin1String(family), QLatin1String(kFamily));
    QApplication::setFont(ProgramFont(QLatin1String(kFamily), 12));
}

} // namespace lantern
