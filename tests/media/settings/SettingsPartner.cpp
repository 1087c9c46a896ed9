// SPDX-License-Identifier: GPL-3.0-or-later

// Saves settings without end, now of one size, now of another, until it is killed. It tells when it
// has saved for the first time.
#include "PathText.h"
#include "clsINI.h"

#include <cstdio>
#include <cstdlib>

namespace {

class Failed : public lantern::FileErrorHost {
    void ShowFileError(const QString&, const QString&, const QString&) override { std::_Exit(1); }
};

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2)
        return 2;
    Failed failed;
    lantern::clsINI settings(lantern::TextFromNative(argv[1]), failed);
    settings.LoadSettings(QStringLiteral("player"));
    bool hasSaved = false;
    for (int length = 1;; length = 4000 - length) {
        settings.SetSetting(QStringLiteral("lastplayed"), QString(length, u'x'));
        settings.SaveSettings();
        if (!hasSaved)
            std::puts("saved");
        std::fflush(stdout);
        hasSaved = true;
    }
}
