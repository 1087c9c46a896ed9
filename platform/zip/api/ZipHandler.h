// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace lantern {

// Where the bytes of a member go.
enum class ZipDestination : std::int32_t { Folder = 0, Memory = 1 };

// Unpacks chosen members of one archive. Whatever the archive holds, it comes to an end: a member
// that can't be read is skipped, and the others are unpacked.
//
// Life cycle: construct, connect the events, name archive and filter, ZipRun, destroy. Everything
// happens on one thread; the events come from within ZipRun. Each member's bytes are the
// receiver's. The name of a member is what the archive holds, by TextFromNative.
class ZipHandler {
public:
    virtual ~ZipHandler() = default;

    virtual void ZipOpenArchive(const QString& path) = 0;
    // Only members that match are offered: patterns with a vertical bar between each two, where "*"
    // stands for any text. Letter case doesn't count.
    virtual void ZipSetFilter(const QString& patterns) = 0;
    // The folder for members that don't go to memory.
    virtual void ZipSetFolder(const QString& folder) = 0;
    // Offers the members in the archive's own order. The result is 0 if the archive could be read.
    virtual void ZipRun(std::int32_t& result) = 0;

    // For each member that matches, and then, unless that excluded it, with all its bytes.
    std::function<void(const QString& name, bool& exclude, ZipDestination& destination)>
        UnzipPreprocessingFile;
    std::function<void(const QString& name, std::vector<std::uint8_t> bytes)> UnzippingMemoryFile;

    // For each member that was not delivered, besides those that an event excluded; with an empty
    // name for the archive as a whole. May stay empty.
    std::function<void(const QString& name, const QString& reason)> MemberSkipped;
};

// A new handler for each archive.
using ZipHandlerFactory = std::function<std::unique_ptr<ZipHandler>()>;

} // namespace lantern
