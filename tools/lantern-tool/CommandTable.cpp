// SPDX-License-Identifier: GPL-3.0-or-later
#include "CommandTable.h"

#include "CheckCommand.h"
#include "FrameCommand.h"
#include "InfoCommand.h"
#include "LyricsCommand.h"
#include "ThumbnailCommand.h"
#include "VideoCommand.h"

#include <algorithm>
#include <array>

namespace lantern::tool {
namespace option {

const QCommandLineOption kPacket(QStringLiteral("packet"), {}, QStringLiteral("N"));
const QCommandLineOption kAt(QStringLiteral("at"), {}, QStringLiteral("SECONDS"));
const QCommandLineOption kOut(QStringLiteral("out"), {}, QStringLiteral("FILE"));
const QCommandLineOption kRaw(QStringLiteral("raw"));
const QCommandLineOption kSize(QStringLiteral("size"), {}, QStringLiteral("SIZE"));
const QCommandLineOption kSmooth(QStringLiteral("smooth"));
const QCommandLineOption kFps(QStringLiteral("fps"), {}, QStringLiteral("N"));
const QCommandLineOption kKey(QStringLiteral("key"), {}, QStringLiteral("N"));
const QCommandLineOption kSpeed(QStringLiteral("speed"), {}, QStringLiteral("N"));
const QCommandLineOption kFrom(QStringLiteral("from"), {}, QStringLiteral("SECONDS"));
const QCommandLineOption kTo(QStringLiteral("to"), {}, QStringLiteral("SECONDS"));
const QCommandLineOption kForce(QStringLiteral("force"));
const QCommandLineOption kJson(QStringLiteral("json"));
const QCommandLineOption kQuick(QStringLiteral("quick"));
const QCommandLineOption kFormat(QStringLiteral("format"), {}, QStringLiteral("FORMAT"));
const QCommandLineOption kLanguage(QStringLiteral("language"), {}, QStringLiteral("LANGUAGE"));

} // namespace option

namespace {

const std::array kCommands = {
    CommandRow{QStringLiteral("info"), {QStringLiteral("json")}, ParseInfo},
    CommandRow{QStringLiteral("frame"),
               {QStringLiteral("packet"), QStringLiteral("at"), QStringLiteral("out"),
                QStringLiteral("raw"), QStringLiteral("size"), QStringLiteral("smooth"),
                QStringLiteral("force")},
               ParseFrame},
    CommandRow{QStringLiteral("thumbnail"),
               {QStringLiteral("size"), QStringLiteral("out"), QStringLiteral("force")},
               ParseThumbnail},
    CommandRow{
        QStringLiteral("check"), {QStringLiteral("json"), QStringLiteral("quick")}, ParseCheck, 2},
    CommandRow{QStringLiteral("video"),
               {QStringLiteral("out"), QStringLiteral("size"), QStringLiteral("smooth"),
                QStringLiteral("fps"), QStringLiteral("key"), QStringLiteral("speed"),
                QStringLiteral("from"), QStringLiteral("to"), QStringLiteral("force")},
               ParseVideo},
    CommandRow{QStringLiteral("lyrics"),
               {QStringLiteral("format"), QStringLiteral("language"), QStringLiteral("out"),
                QStringLiteral("force")},
               ParseLyrics},
};

} // namespace

const CommandRow* FindCommand(const QString& name)
{
    const auto* row = std::ranges::find(kCommands, name, &CommandRow::name);
    return row == kCommands.end() ? nullptr : &*row;
}

const QList<QCommandLineOption>& CommandOptions()
{
    static const QList<QCommandLineOption> options = {
        option::kPacket, option::kAt,     option::kOut,    option::kRaw,
        option::kSize,   option::kSmooth, option::kFps,    option::kKey,
        option::kSpeed,  option::kFrom,   option::kTo,     option::kForce,
        option::kJson,   option::kQuick,  option::kFormat, option::kLanguage};
    return options;
}

QString BadValue(const QCommandLineOption& option, const QString& value)
{
    return QStringLiteral("Bad value for --%1: '%2'").arg(option.names().constFirst(), value);
}

} // namespace lantern::tool
