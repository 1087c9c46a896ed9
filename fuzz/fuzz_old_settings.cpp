// SPDX-License-Identifier: GPL-3.0-or-later

// An older settings file of any bytes is imported, saved in the new form, and read back the same;
// not so with a tab in it, at which the new form cuts keys and values off.
#include "PlayerSettings.h"
#include "ScratchFile.h"
#include "clsINI.h"

#include <algorithm>

using namespace lantern;

namespace {

class NoFailure : public FileErrorHost {
public:
    void ShowFileError(const QString&, const QString&, const QString&) override { Require(false); }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    static const ScratchFolder folder;
    folder.Make(QStringLiteral("data_player.ini"), bytes, 0);
    folder.Make(QStringLiteral("ll.ini"), bytes, size);
    NoFailure host;
    clsINI settings(folder.Path(), host);
    settings.LoadSettings(kPlayerSection.toString());
    const PlayerSettings imported = ReadPlayerSettings(settings);
    Require(imported.Zoom >= 0 && imported.Zoom <= 5);
    settings.SetSetting(kPlayerPathKey.toString(), QStringLiteral("/player.exe"));
    settings.SaveSettings();

    clsINI again(folder.Path(), host);
    again.LoadSettings(kPlayerSection.toString());
    const PlayerSettings loaded = ReadPlayerSettings(again);
    if (std::find(bytes, bytes + size, '\t') == bytes + size)
        Require(loaded.Zoom == imported.Zoom && loaded.Volume == imported.Volume);
    return 0;
}
