// SPDX-License-Identifier: GPL-3.0-or-later

// What comes over the link, and command lines, of any bytes.
#include "CommandArgs.h"
#include "CommandLink.h"
#include "PathText.h"
#include "ScratchFile.h"
#include "fDDE.h"

using namespace lantern;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const QByteArray input(reinterpret_cast<const char*>(bytes), static_cast<qsizetype>(size));
    if (const auto command = ReceivedCommand(input)) {
        Require(command->size() == (input.size() + 3) / 4);
        Require(DecodeCommand(EncodeCommand(*command)) == *command);
    }
    const QString line = TextFromNative(input);
    const QString args = ParseCommandArgs(line);
    Require(line.contains(args));
    ResolveTypedPath(args, QStringLiteral("/home/me"));
    return 0;
}
