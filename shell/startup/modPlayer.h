// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CommandArgs.h"
#include "InstanceLock.h"
#include "Twips.h"
#include "clsINI.h"

#include <QByteArrayView>
#include <QString>

#include <array>
#include <cstdint>
#include <optional>

// How the player starts: the program-wide state, and the steps that fill it.
namespace lantern {

// The value of a bit by its number.
inline constexpr std::array<std::int32_t, 9> BitMasks = {1, 2, 4, 8, 16, 32, 64, 128, 256};

// The names that the whole program knows. StartUp fills them, in this order, and nobody changes
// them later; they live until the process ends. AudioExtensions and BitMasks are tables.
struct ProgramState {
    ProgramState(QByteArray runtimeFolder, ProgramArguments arguments)
        : InstanceMutex(std::move(runtimeFolder)), Arguments(std::move(arguments))
    {
    }

    bool DebugRun = false; // a switch for development: no lock, no link, no track at the start
    InstanceLock InstanceMutex;
    ProgramArguments Arguments;
    QString AppPath;      // the folder of the program, with one slash at its end
    QString UserDataPath; // the folder of the user's data, with one slash at its end
    QString SongsFile;    // where what is remembered of songs is kept; its folder may be missing
    std::int32_t TwipsX = 0;
    std::int32_t TwipsY = 0;
    std::optional<clsINI> Settings;
};

// The service that archives are read with, as the start sees it.
class ZipComponent {
public:
    virtual ~ZipComponent() = default;
    virtual bool Works() = 0;
    virtual QString LibraryName() = 0;
    virtual void Load(const QString& libraryPath) = 0; // an attempt: nobody asks what came of it
};

// What the steps of the start ask of the system.
class StartUpHost : public FileErrorHost {
public:
    virtual void ExecuteDDE(const QString& commandArgs) = 0;
    // Makes messages and windows possible. Never called in a later instance.
    virtual void StartToolkit() = 0;
    virtual QString ProgramFile() = 0;
    virtual void SetCurrentFolder(const QString& folder) = 0;
    virtual QString UserFolderRoot() = 0;
    virtual QString StateFolderRoot() = 0;
    virtual void CreateFolders(const QString& folder) = 0; // with all parents
    virtual ZipComponent& Zip() = 0;
    virtual void ShowWarning(const QString& text) = 0;
    virtual TwipsPerPixel ReadTwips() = 0;
    virtual bool ShowMainWindow() = 0; // false if its load ended the program
};

enum class StartUpResult { HandedOver, ComponentMissing, NoMainWindow, Running };

// The start of the program, step by step. Each step relies on those before it.
StartUpResult StartUp(ProgramState& state, StartUpHost& host);

// Whether another instance runs. If none does, this one holds the lock from now on.
bool InstanceRunning(ProgramState& state);
// First of all that the main window does when it goes: a new start may then run beside it.
void ReleaseInstance(ProgramState& state);

// Whether the zip service can be used; if not, the user has been told. A library that lies beside
// the program gets one chance.
bool CheckComponents(const QString& appPath, StartUpHost& host);

// The folder of the program's file, with one slash at its end.
QString AppPathOf(const QString& programFile);
// What the setting "PlayerPath" records.
QString PlayerPathOf(const QString& programFile);

// The folder that the user's folder lies in: the variable "appdata", or else the root of all
// configuration, or else ".config" in the home. Empty values count as missing ones.
QString UserFolderRootOf(QByteArrayView appdata, QByteArrayView configHome, QByteArrayView home);
// The folder for what a program remembers by itself: the root of all such, or else ".local/state"
// in the home. An empty or a relative value counts as a missing one.
QString StateFolderRootOf(QByteArrayView stateHome, QByteArrayView home);

} // namespace lantern
