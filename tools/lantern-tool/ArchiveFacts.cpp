// SPDX-License-Identifier: GPL-3.0-or-later
#include "ArchiveFacts.h"

#include "MediaTypes.h"
#include "NativeFile.h"
#include "PathHelpers.h"
#include "PathText.h"
#include "ZipDirectory.h"

#include <algorithm>
#include <array>

namespace lantern::tool {
namespace {

// As PKWARE's application note numbers them.
constexpr std::uint16_t kStored = 0;
constexpr std::uint16_t kDeflated = 8;

struct MethodName {
    std::uint16_t number;
    QStringView name;
};
constexpr std::array kMethodNames = {
    MethodName{9, u"Deflate64"},  MethodName{12, u"BZip2"}, MethodName{14, u"LZMA"},
    MethodName{93, u"Zstandard"}, MethodName{95, u"XZ"},    MethodName{98, u"PPMd"},
};

QString NameOfMethod(std::uint16_t method)
{
    const auto* const found = std::ranges::find(kMethodNames, method, &MethodName::number);
    return found == kMethodNames.end() ? QStringLiteral("method %1").arg(method)
                                       : found->name.toString();
}

} // namespace

ArchiveFacts FindArchiveFacts(const QString& path)
{
    ArchiveFacts facts;
    const auto file = NativeFile::OpenForReading(path);
    if (!file)
        return facts;
    for (const ZipEntry& entry : ReadZipDirectory(FileBytes(*file)).entries) {
        const QString name = TextFromNative(entry.name.c_str());
        const bool isPackets = FileExtension(name) == QStringLiteral("cdg");
        const bool isOfTrack = isPackets || IsAudioExtension(name);
        // A Mac's twins of files are no tracks.
        if (!entry.isPlainFile || !isOfTrack || name.startsWith(QStringLiteral("__MACOSX/")))
            continue;
        QString& first = isPackets ? facts.packets : facts.audio;
        if (!first.isEmpty()) {
            facts.hasMoreSongs = facts.hasMoreSongs || isPackets;
            continue;
        }
        first = name;
        if (isPackets)
            facts.packetBytes =
                static_cast<std::int64_t>(std::min<std::uint64_t>(entry.size, INT64_MAX));
        const QString method = NameOfMethod(entry.method);
        if (entry.method != kStored && entry.method != kDeflated &&
            !facts.rareMethods.contains(method))
            facts.rareMethods += method;
    }
    return facts;
}

} // namespace lantern::tool
