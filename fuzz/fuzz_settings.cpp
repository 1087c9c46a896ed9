// SPDX-License-Identifier: GPL-3.0-or-later

// A settings file of any bytes gives settings within their limits, and saving them settles.
#include "PlayerSettings.h"
#include "ScratchFile.h"
#include "clsINI.h"

#include <cmath>

using namespace lantern;

namespace {

const QString kFile = QStringLiteral("data_player.ini");

class NoFailure : public FileErrorHost {
public:
    void ShowFileError(const QString&, const QString&, const QString&) override { Require(false); }
};

QByteArray SavedAgain(const ScratchFolder& folder)
{
    NoFailure host;
    clsINI settings(folder.Path(), host);
    settings.LoadSettings(kPlayerSection.toString());
    const PlayerSettings values = ReadPlayerSettings(settings);
    Require(values.Zoom >= 0 && values.Zoom <= 5);
    Require(std::isfinite(values.Volume) && std::isfinite(values.CustomSpeed));
    Require(values.AudioSave || values.AudioDevice.isEmpty());
    settings.SaveSettings();
    return folder.BytesOf(kFile);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    static const ScratchFolder folder;
    folder.Make(kFile, bytes, size);
    // Keys that differ only in what can't be written become one at the first reading.
    SavedAgain(folder);
    const QByteArray saved = SavedAgain(folder);
    // A key that begins with the mark of UTF-8 loses it each time the file is read.
    if (!saved.contains("\xEF\xBB\xBF"))
        Require(SavedAgain(folder) == saved);
    return 0;
}
