// SPDX-License-Identifier: GPL-3.0-or-later
#include "Application.h"
#include "AskForStage.h"
#include "Complaint.h"
#include "InstalledFiles.h"
#include "MakeAudioEngine.h"
#include "PathHelpers.h"
#include "PathText.h"
#include "RunPlayer.h"
#include "Version.h"
#include "f101.h"
#include "modAPI.h"

#include <array>
#include <cstdio>
#include <string>
#include <string_view>

namespace lantern {
namespace {

constexpr std::string_view kUsage =
    "Usage: lyric-lantern [TRACK | --demo | --stage]\n"
    "Plays a CD+G karaoke track: a .cdg file with its sound beside it, a sound file with its\n"
    ".cdg beside it, a .bin file, or a .zip archive of the two. A file:// address will do, too,\n"
    "and a name that begins with a dash is one behind \"--\".\n"
    "\n"
    "      --demo     play the demo song\n"
    "      --stage    show the stage window, of the player that runs if there is one\n"
    "  -h, --help     show this text and end\n"
    "      --version  show the version and end\n";

// The text that a first argument asks for; empty if it asks for none.
std::string InformationFor(std::string_view argument)
{
    if (argument == "-h" || argument == "--help")
        return std::string(kUsage);
    if (argument == "--version")
        return kApplicationTitle.toStdString() + " " LANTERN_VERSION "\n";
    return {};
}

std::unique_ptr<QWidget> MakeMainWindow(ProgramState& state)
{
    auto window = std::make_unique<f101>(
        state, MakeAudioEngine(), [](const QString& text) { ShowMessage(text, WarningIcon); });
    if (!window->Load())
        return nullptr;
    window->show();
    window->JoinDesktop();
    return window;
}

std::unique_ptr<QWidget> MakeMainWindowWithStage(ProgramState& state)
{
    std::unique_ptr<QWidget> window = MakeMainWindow(state);
    if (auto* const player = dynamic_cast<f101*>(window.get()))
        player->ShowStage();
    return window;
}

bool AskRunningPlayer()
{
    if (AskForStage(kApplicationBusName, qgetenv("XDG_ACTIVATION_TOKEN")))
        return true;
    Complain(QStringLiteral("The running player can't be asked over the session's bus; "
                            "press F2 in its window"));
    return false;
}

int ShowStage(char* program)
{
    std::array arguments = {program, static_cast<char*>(nullptr)};
    return RunPlayer(1, arguments.data(), MakeMainWindowWithStage, AskRunningPlayer);
}

int PlayDemo(char* program)
{
    const QString song = InstalledFile(QStringLiteral("demo/demo.cdg"));
    QByteArray path = NativeFromText(song);
    if (FileCheck(song) != QStringLiteral("FILE")) {
        std::fprintf(stderr, "lyric-lantern: the demo song is not installed: %s\n",
                     path.constData());
        return 1;
    }
    std::array arguments = {program, path.data(), static_cast<char*>(nullptr)};
    return RunPlayer(2, arguments.data(), MakeMainWindow);
}

} // namespace
} // namespace lantern

int main(int argc, char** argv)
{
    const std::string text = lantern::InformationFor(argc > 1 ? argv[1] : "");
    if (!text.empty()) {
        std::fwrite(text.data(), 1, text.size(), stdout);
        return 0;
    }
    if (argc == 2 && std::string_view(argv[1]) == "--demo")
        return lantern::PlayDemo(argv[0]);
    if (argc == 2 && std::string_view(argv[1]) == "--stage")
        return lantern::ShowStage(argv[0]);
    return lantern::RunPlayer(argc, argv, lantern::MakeMainWindow);
}
