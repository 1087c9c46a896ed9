// SPDX-License-Identifier: GPL-3.0-or-later

#include "StartPartner.h"

#include "CommandLink.h"
#include "PathText.h"
#include "RunPlayer.h"

#include <QApplication>
#include <QSocketNotifier>
#include <QTimer>

#include <cstdio>
#include <filesystem>
#include <unistd.h>

namespace lantern {
namespace {

void Print(const char* name, const QString& text)
{
    std::printf("%s %s\n", name, NativeFromText(text).constData());
    std::fflush(stdout);
}

class EmptyWindow : public QWidget, private CommandHost {
public:
    explicit EmptyWindow(ProgramState& state)
        : m_state(state), m_link(state.InstanceMutex, *this),
          m_input(STDIN_FILENO, QSocketNotifier::Read)
    {
        connect(&m_input, &QSocketNotifier::activated, this, [this] {
            m_input.setEnabled(false);
            close();
        });
        m_watch.callOnTimeout(this, [this] {
            if (QApplication::activeModalWidget() == nullptr)
                return;
            m_watch.stop();
            Print("Message", {});
        });
        m_watch.start(10);
        Print("AppPath", state.AppPath);
        Print("UserDataPath", state.UserDataPath);
        Print("TwipsX", QString::number(state.TwipsX));
        Print("Current", TextFromNative(std::filesystem::current_path().native()));
        Print("Args", GetCommandArgs(state.Arguments));
        show();
    }

protected:
    void closeEvent(QCloseEvent*) override
    {
        ReleaseInstance(m_state);
        m_state.Settings->SaveSettings();
        Print("Closed", {});
        QApplication::quit();
    }

private:
    void TakeFocus(const QByteArray& token) override { Print("Focus", QString::fromUtf8(token)); }
    void OpenMedia(const QString& commandText) override { Print("Open", commandText); }

    ProgramState& m_state;
    CommandLink m_link;
    QSocketNotifier m_input;
    QTimer m_watch; // for a message box
};

} // namespace

int RunStartPartner(int argc, char** argv)
{
    return RunPlayer(argc, argv,
                     [](ProgramState& state) { return std::make_unique<EmptyWindow>(state); });
}

} // namespace lantern
