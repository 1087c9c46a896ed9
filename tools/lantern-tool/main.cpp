// SPDX-License-Identifier: GPL-3.0-or-later
// The player's companion for scripts: tells what is in tracks, and draws their pictures, without a
// display and without a sound device.
#include "Arguments.h"
#include "ErrorLine.h"
#include "HelpText.h"
#include "Interruption.h"
#include "PathText.h"
#include "TrackRun.h"
#include "Version.h"

namespace {

// The result is an error message, empty on success.
QString PrintWished(lantern::tool::Wish wish)
{
    return lantern::tool::PrintText(wish == lantern::tool::Wish::Help
                                        ? lantern::tool::kHelpText
                                        : "lantern-tool " LANTERN_VERSION "\n");
}

} // namespace

int main(int argc, char** argv)
{
    using namespace lantern::tool;
    QStringList commandLine;
    for (int i = 0; i < argc; ++i)
        commandLine += lantern::TextFromNative(argv[i]);
    Arguments arguments = ParseArguments(commandLine);
    if (arguments.error.isEmpty() && arguments.wish != Wish::Tracks)
        arguments.error = PrintWished(arguments.wish);
    else if (arguments.error.isEmpty()) {
        SilenceLibraries();
        Interruption::Watch();
        return RunTracks(*arguments.command, arguments.tracks, arguments.shared);
    }
    if (arguments.error.isEmpty())
        return 0;
    PrintError(arguments.error);
    return arguments.errorCode;
}
