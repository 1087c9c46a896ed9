// SPDX-License-Identifier: GPL-3.0-or-later
#include "MakeAudioEngine.h"
#include "RunPlayer.h"
#include "Version.h"
#include "f101.h"
#include "modAPI.h"

#include <cstdio>
#include <string_view>

namespace lantern {
namespace {

constexpr std::string_view kUsage =
    "Usage: lyric-lantern [TRACK]\n"
    "Plays a CD+G karaoke track: a .cdg file with its sound beside it, a sound file with its\n"
    ".cdg beside it, a .bin file, or a .zip archive of the two.\n"
    "\n"
    "      --help     show this text and end\n"
    "      --version  show the version and end\n";

// The text that a first argument asks for; empty if it asks for none.
std::string_view InformationFor(std::string_view argument)
{
    if (argument == "--help")
        return kUsage;
    if (argument == "--version")
        return "Lyric Lantern CDG Player " LANTERN_VERSION "\n";
    return {};
}

std::unique_ptr<QWidget> MakeMainWindow(ProgramState& state)
{
    auto window = std::make_unique<f101>(
        state, MakeAudioEngine(), [](const QString& text) { ShowMessage(text, WarningIcon); });
    if (!window->Load())
        return nullptr;
    window->show();
    return window;
}

} // namespace
} // namespace lantern

int main(int argc, char** argv)
{
    const std::string_view text = lantern::InformationFor(argc > 1 ? argv[1] : "");
    if (!text.empty()) {
        std::fwrite(text.data(), 1, text.size(), stdout);
        return 0;
    }
    return lantern::RunPlayer(argc, argv, lantern::MakeMainWindow);
}
