// SPDX-License-Identifier: GPL-3.0-or-later

#include "LinkPartner.h"

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
    void TakeFocus(const QByteArray&) override { Print("focus"); }
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

} // namespace

int RunLinkPartner(int argc, char** argv)
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

} // namespace lantern
