// SPDX-License-Identifier: GPL-3.0-or-later
#include "Arguments.h"

#include "CommandTable.h"
#include "TrackList.h"

namespace lantern::tool {
namespace {

constexpr int kMostJobs = 64;

const QCommandLineOption kHelp(QStringList{QStringLiteral("h"), QStringLiteral("help")});
const QCommandLineOption kVersion(QStringList{QStringLiteral("v"), QStringLiteral("version")});
const QCommandLineOption kRecursive(QStringLiteral("recursive"));
const QCommandLineOption kQuiet(QStringLiteral("quiet"));
const QCommandLineOption kJobs(QStringLiteral("jobs"), {}, QStringLiteral("N"));
// Of all commands.
const QList<QCommandLineOption> kSharedOptions = {kHelp, kVersion, kRecursive, kQuiet, kJobs};

// The result is an error message, empty on success.
QString ReadShared(const QCommandLineParser& parser, SharedOptions& shared)
{
    shared.recursive = parser.isSet(kRecursive);
    shared.quiet = parser.isSet(kQuiet);
    shared.force = parser.isSet(option::kForce);
    shared.json = parser.isSet(option::kJson);
    if (!parser.isSet(kJobs))
        return {};
    const QString jobs = parser.value(kJobs);
    shared.jobs = jobs.toInt(); // 0 for what is no number
    const bool isPossible = shared.jobs >= 1 && shared.jobs <= kMostJobs;
    return isPossible ? QString() : BadValue(kJobs, jobs);
}

void ReadCommand(const QCommandLineParser& parser, Arguments& arguments)
{
    const QString command = parser.positionalArguments().value(0);
    const CommandRow* const row = FindCommand(command);
    if (!row) {
        arguments.error = command.isEmpty() ? QStringLiteral("no command; try --help")
                                            : QStringLiteral("Unknown command '%1'").arg(command);
        return;
    }
    arguments.errorCode = row->failureCode;
    for (const QCommandLineOption& option : CommandOptions()) {
        const QString name = option.names().constFirst();
        if (parser.isSet(option) && !row->options.contains(name)) {
            arguments.error = QStringLiteral("--%1 is not for %2").arg(name, command);
            return;
        }
    }
    arguments.error = ReadShared(parser, arguments.shared);
    if (!arguments.error.isEmpty())
        return;
    ParsedCommand parsed = row->parse(parser, arguments.shared);
    arguments.command = std::move(parsed.command);
    arguments.error = parsed.error;
}

} // namespace

Arguments ParseArguments(const QStringList& commandLine)
{
    QCommandLineParser parser;
    parser.addOptions(kSharedOptions + CommandOptions());
    Arguments arguments;
    if (!parser.parse(commandLine)) {
        arguments.error = parser.errorText();
        const CommandRow* const row = FindCommand(parser.positionalArguments().value(0));
        arguments.errorCode = row ? row->failureCode : 1;
        return arguments;
    }
    if (parser.isSet(kHelp) || parser.isSet(kVersion)) {
        arguments.wish = parser.isSet(kHelp) ? Wish::Help : Wish::Version;
        return arguments;
    }
    arguments.tracks = parser.positionalArguments().mid(1);
    arguments.shared.several = NamesSeveral(arguments.tracks);
    ReadCommand(parser, arguments);
    if (arguments.error.isEmpty() && arguments.tracks.isEmpty())
        arguments.error = QStringLiteral("no track");
    return arguments;
}

} // namespace lantern::tool
