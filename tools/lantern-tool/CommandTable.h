// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "TrackCommand.h"

#include <QCommandLineParser>
#include <QList>
#include <QStringList>

#include <memory>

namespace lantern::tool {

// A command whose options are read, or why they can't be.
struct ParsedCommand {
    std::unique_ptr<TrackCommand> command;
    QString error = {};

    static ParsedCommand Failure(const QString& error) { return {nullptr, error}; }
};

// The options that have a value or belong to some commands only.
namespace option {
extern const QCommandLineOption kPacket;
extern const QCommandLineOption kAt;
extern const QCommandLineOption kOut;
extern const QCommandLineOption kRaw;
extern const QCommandLineOption kSize;
extern const QCommandLineOption kSmooth;
extern const QCommandLineOption kFps;
extern const QCommandLineOption kKey;
extern const QCommandLineOption kSpeed;
extern const QCommandLineOption kFrom;
extern const QCommandLineOption kTo;
extern const QCommandLineOption kForce;
extern const QCommandLineOption kJson;
extern const QCommandLineOption kQuick;
extern const QCommandLineOption kFormat;
extern const QCommandLineOption kLanguage;
} // namespace option

struct CommandRow {
    QString name;
    QStringList options; // those that it takes, besides those that all take
    ParsedCommand (*parse)(const QCommandLineParser& parser, const SharedOptions& shared);
    int failureCode = 1; // where the command line is bad
};

const CommandRow* FindCommand(const QString& name);
// All that some command takes and another doesn't.
const QList<QCommandLineOption>& CommandOptions();

QString BadValue(const QCommandLineOption& option, const QString& value);

} // namespace lantern::tool
