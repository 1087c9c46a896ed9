// SPDX-License-Identifier: GPL-3.0-or-later
#include "modPlayer.h"

#include "Application.h"
#include "PathHelpers.h"
#include "PathText.h"
#include "PlayerSettings.h"

namespace lantern {

StartUpResult StartUp(ProgramState& state, StartUpHost& host)
{
    state.DebugRun = false;
    if (InstanceRunning(state)) {
        host.ExecuteDDE(GetCommandArgs(state.Arguments));
        return StartUpResult::HandedOver;
    }
    host.StartToolkit();

    const QString programFile = host.ProgramFile();
    state.AppPath = AppPathOf(programFile);
    host.SetCurrentFolder(state.AppPath);
    state.UserDataPath = host.UserFolderRoot() + QStringLiteral("/Lyric Lantern/");
    host.CreateFolders(state.UserDataPath);
    state.SongsFile = host.StateFolderRoot() + QStringLiteral("/Lyric Lantern/songs.db");
    if (!CheckComponents(state.AppPath, host))
        return StartUpResult::ComponentMissing;

    const TwipsPerPixel twips = host.ReadTwips();
    state.TwipsX = twips.x;
    state.TwipsY = twips.y;

    clsINI& settings = state.Settings.emplace(state.UserDataPath, host);
    settings.LoadSettings(kPlayerSection.toString());
    settings.SetSetting(kPlayerPathKey.toString(), PlayerPathOf(programFile));
    settings.SaveSettings();

    return host.ShowMainWindow() ? StartUpResult::Running : StartUpResult::NoMainWindow;
}

bool InstanceRunning(ProgramState& state)
{
    // Where there can be no lock, each start is a first one.
    return !state.DebugRun && state.InstanceMutex.Take() == LockResult::HeldByAnother;
}

void ReleaseInstance(ProgramState& state)
{
    if (!state.DebugRun)
        state.InstanceMutex.Release();
}

bool CheckComponents(const QString& appPath, StartUpHost& host)
{
    ZipComponent& zip = host.Zip();
    if (zip.Works())
        return true;
    const QString library = appPath + zip.LibraryName();
    if (FileCheck(library) == QStringLiteral("FILE")) {
        zip.Load(library);
        return true;
    }
    host.ShowWarning(QStringLiteral("A component of %1 could not be found.\n"
                                    "Please re-install %1 to correct this fault.")
                         .arg(kApplicationTitle));
    return false;
}

QString AppPathOf(const QString& programFile)
{
    return programFile.left(programFile.lastIndexOf(u'/')) + u'/';
}

QString PlayerPathOf(const QString& programFile)
{
    const QString name = programFile.mid(programFile.lastIndexOf(u'/') + 1);
    return AppPathOf(programFile) + StripExtension(name) + QStringLiteral(".exe");
}

QString UserFolderRootOf(QByteArrayView appdata, QByteArrayView configHome, QByteArrayView home)
{
    if (!appdata.isEmpty())
        return TextFromNative(appdata);
    // A relative root of the configuration is to be ignored, by the convention that names it.
    if (configHome.startsWith('/'))
        return TextFromNative(configHome);
    return TextFromNative(home) + QStringLiteral("/.config");
}

QString StateFolderRootOf(QByteArrayView stateHome, QByteArrayView home)
{
    if (stateHome.startsWith('/'))
        return TextFromNative(stateHome);
    return TextFromNative(home) + QStringLiteral("/.local/state");
}

} // namespace lantern
