// SPDX-License-Identifier: GPL-3.0-or-later

// One instance, as the player starts: the first one prints "first", then a line for each command;
// a later one hands its arguments over and ends.
#include "CommandArgs.h"
#include "CommandLink.h"
#include "InstanceLock.h"
#include "PathText.h"
#include "RuntimeFolder.h"
#include "fDDE.h"

#include <QCoreApplication>

#include <cstdio>
#include <vector>

namespace lantern {
namespace {

class Printer : public CommandHost {
public:
    void TakeFocus() override { Print("focus"); }
    void OpenMedia(const QString& commandText) override
    {
        Print("open " + NativeFromText(commandText));
    }
    static void Print(const QByteArray& line)
    {
        std::printf("%s\n", line.constData());
        std::fflush(stdout);
    }
};

int Run(int argc, char** argv)
{
    InstanceLock lock{RuntimeFolder()};
    const LockResult result = lock.Take();
    if (result == LockResult::HeldByAnother) {
        const std::vector<const char*> arguments(argv, argv + argc);
        fDDE(lock.LinkPath()).ExecuteDDE(GetCommandArgs(ProgramArguments::Of(arguments)));
        return 0;
    }
    if (result == LockResult::Unavailable)
        return 2;
    const QCoreApplication application(argc, argv);
    Printer printer;
    const CommandLink link(lock, printer);
    Printer::Print("first");
    return QCoreApplication::exec();
}

} // namespace
} // namespace lantern

int main(int argc, char** argv)
{
    return lantern::Run(argc, argv);
}
