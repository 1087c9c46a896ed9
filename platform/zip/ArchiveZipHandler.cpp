// SPDX-License-Identifier: GPL-3.0-or-later
#include "MakeZipHandler.h"

#include "NamePatterns.h"
#include "NativeFile.h"
#include "PathText.h"
#include "ZipMember.h"

#include <optional>

namespace lantern {
namespace {

// What a Mac adds to its archives: for each file a twin with its icon and the like, which has the
// file's name in a folder of its own.
bool IsTwinOfAMac(const QString& name)
{
    return name.startsWith(QStringLiteral("__MACOSX/")) &&
           name.sliced(name.lastIndexOf(u'/') + 1).startsWith(QStringLiteral("._"));
}

class ArchiveZipHandler final : public ZipHandler {
public:
    explicit ArchiveZipHandler(std::int64_t largestMember) : m_largestMember(largestMember) {}

    void ZipOpenArchive(const QString& path) override { m_path = path; }
    void ZipSetFilter(const QString& patterns) override { m_patterns = patterns; }
    // Nothing is ever written.
    void ZipSetFolder(const QString&) override {}

    void ZipRun(std::int32_t& result) override
    {
        const std::optional<NativeFile> file = NativeFile::OpenForReading(m_path);
        if (!file) {
            result = kUnreadable;
            Skip(QString(), QStringLiteral("not a readable file"));
            return;
        }
        const FileBytes archive(*file);
        const ZipDirectory directory = ReadZipDirectory(archive);
        result = directory.failure.isEmpty() ? 0 : kUnreadable;
        if (result != 0)
            Skip(QString(), directory.failure);
        for (const ZipEntry& entry : directory.entries)
            Offer(archive, entry);
    }

private:
    static constexpr std::int32_t kUnreadable = 1;

    void Offer(const ArchiveBytes& archive, const ZipEntry& entry)
    {
        const QString name = TextFromNative(entry.name.c_str());
        if (IsTwinOfAMac(name)) {
            Skip(name, QStringLiteral("notes of a Mac about a file"));
        } else if (!MatchesPatterns(name.endsWith(u'/') ? name.chopped(1) : name, m_patterns)) {
            if (entry.isPlainFile)
                Skip(name, QStringLiteral("not of the types asked for"));
        } else if (entry.isPlainFile) {
            Unpack(archive, entry, name);
        } else {
            Skip(name, QStringLiteral("a folder or a link"));
        }
    }

    void Unpack(const ArchiveBytes& archive, const ZipEntry& entry, const QString& name)
    {
        bool exclude = false;
        ZipDestination destination = ZipDestination::Folder;
        if (UnzipPreprocessingFile)
            UnzipPreprocessingFile(name, exclude, destination);
        if (exclude)
            return;
        if (destination != ZipDestination::Memory) {
            Skip(name, QStringLiteral("not for memory"));
            return;
        }
        ZipMember member = ReadZipMember(archive, entry, m_largestMember);
        if (!member.failure.isEmpty())
            Skip(name, member.failure);
        else if (UnzippingMemoryFile)
            UnzippingMemoryFile(name, std::move(member.bytes));
    }

    void Skip(const QString& name, const QString& reason) const
    {
        if (MemberSkipped)
            MemberSkipped(name, reason);
    }

    const std::int64_t m_largestMember;
    QString m_path;
    QString m_patterns;
};

} // namespace

std::unique_ptr<ZipHandler> MakeZipHandler(std::int64_t largestMember)
{
    return std::make_unique<ArchiveZipHandler>(largestMember);
}

} // namespace lantern
