// SPDX-License-Identifier: GPL-3.0-or-later
#include "RunPlayer.h"

#include "ActivationToken.h"
#include "Application.h"
#include "Complaint.h"
#include "InstalledFiles.h"
#include "PathText.h"
#include "ProgramFonts.h"
#include "RuntimeFolder.h"
#include "ScreenMetrics.h"
#include "SilentBus.h"
#include "StartNotice.h"
#include "TerminationSignals.h"
#include "Version.h"
#include "ZipService.h"
#include "fDDE.h"
#include "modAPI.h"

#include <QApplication>

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <pwd.h>
#include <system_error>
#include <unistd.h>

namespace lantern {
namespace {

std::filesystem::path NativePath(const QString& path)
{
    return NativeFromText(path).toStdString();
}

QByteArray HomeFolder()
{
    QByteArray home = qgetenv("HOME");
    if (!home.isEmpty())
        return home;
    const passwd* user = getpwuid(geteuid());
    return user ? QByteArray(user->pw_dir) : QByteArray();
}

class SystemZip : public ZipComponent {
public:
    bool Works() override { return ZipServiceWorks(); }
    QString LibraryName() override { return ZipLibraryName(); }
    void Load(const QString& libraryPath) override { LoadZipLibrary(libraryPath); }
};

// The process: it owns all, and is the system that the start acts on.
class PlayerProcess : public StartUpHost {
public:
    PlayerProcess(int& argc, char** argv, const MainWindowFactory& makeMainWindow,
                  const LaterStart& laterStart)
        : m_argc(argc), m_argv(argv), m_makeMainWindow(makeMainWindow), m_laterStart(laterStart),
          m_state(RuntimeFolder(), ProgramArguments::Of(std::span<const char* const>(
                                       argv, static_cast<std::size_t>(argc))))
    {
    }

    int Run()
    {
        switch (StartUp(m_state, *this)) {
        case StartUpResult::HandedOver:
            return m_isHandedOver ? 0 : 1;
        case StartUpResult::ComponentMissing:
        case StartUpResult::NoMainWindow:
            return 1;
        case StartUpResult::Running:
            break;
        }
        return QApplication::exec();
    }

    void ExecuteDDE(const QString& commandArgs) override
    {
        if (m_laterStart) {
            m_isHandedOver = m_laterStart();
            EndStartNotice();
            return;
        }
        const QString nameComplaint = NameComplaint(commandArgs);
        Complain(nameComplaint);
        const QByteArray linkPath = m_state.InstanceMutex.LinkPath();
        LeaveActivationToken(linkPath, qgetenv("XDG_ACTIVATION_TOKEN"));
        fDDE link(linkPath);
        link.ExecuteDDE(commandArgs);
        if (nameComplaint.isEmpty() && !link.IsSent())
            Complain(LinkComplaint(commandArgs));
        EndStartNotice();
    }

    void StartToolkit() override
    {
        LeaveSilentBusOut();
        m_application.emplace(m_argc, m_argv);
        QApplication::setApplicationName(kApplicationTitle);
        QApplication::setApplicationVersion(QStringLiteral(LANTERN_VERSION));
        QApplication::setDesktopFileName(kApplicationId);
        LoadProgramFonts();
        m_signals.emplace([this] { EndOnRequest(); });
    }

    QString ProgramFile() override { return lantern::ProgramFile(); }

    void SetCurrentFolder(const QString& folder) override
    {
        std::error_code error;
        std::filesystem::current_path(NativePath(folder), error);
    }

    QString UserFolderRoot() override
    {
        return UserFolderRootOf(qgetenv("appdata"), qgetenv("XDG_CONFIG_HOME"), HomeFolder());
    }

    QString StateFolderRoot() override
    {
        return StateFolderRootOf(qgetenv("XDG_STATE_HOME"), HomeFolder());
    }

    void CreateFolders(const QString& folder) override
    {
        std::error_code error;
        std::filesystem::create_directories(NativePath(folder), error);
    }

    ZipComponent& Zip() override { return m_zip; }
    void ShowWarning(const QString& text) override { ShowMessage(text, WarningIcon); }
    TwipsPerPixel ReadTwips() override { return ScreenTwips(); }

    bool ShowMainWindow() override
    {
        m_mainWindow = m_makeMainWindow(m_state);
        return m_mainWindow != nullptr;
    }

    void ShowFileError(const QString& detail, const QString& head, const QString& title) override
    {
        lantern::ShowFileError(detail, head, title);
    }

private:
    void EndOnRequest()
    {
        if (!m_mainWindow)
            std::_Exit(1); // a message stands before there is a window: nothing is to be saved
        m_mainWindow->close();
        // If it was closing already, a message keeps it: that is read, and the close goes on.
        QApplication::exit();
    }

    int& m_argc;
    char** m_argv;
    const MainWindowFactory& m_makeMainWindow;
    const LaterStart& m_laterStart;
    bool m_isHandedOver = true;
    ProgramState m_state;
    SystemZip m_zip;
    std::optional<QApplication> m_application;
    std::optional<TerminationSignals> m_signals;
    std::unique_ptr<QWidget> m_mainWindow;
};

} // namespace

int RunPlayer(int argc, char** argv, const MainWindowFactory& makeMainWindow,
              const LaterStart& laterStart)
{
    return PlayerProcess(argc, argv, makeMainWindow, laterStart).Run();
}

} // namespace lantern
