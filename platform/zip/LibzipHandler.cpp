// SPDX-License-Identifier: GPL-3.0-or-later
#include "MakeZipHandler.h"

#include "DirectoryClaims.h"
#include "NamePatterns.h"
#include "NativeFile.h"
#include "PathText.h"
#include "ZipMember.h"

#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <tuple>
#include <unistd.h>
#include <zip.h>

namespace lantern {
namespace {

// The library reads a directory whole, at several times its size in memory. A track's has a few
// entries; this is room for a hundred thousand and more.
constexpr std::uint64_t kLargestDirectory = std::uint64_t{16} << 20;

struct ArchiveDiscarder {
    void operator()(zip_t* archive) const { zip_discard(archive); }
};
using Archive = std::unique_ptr<zip_t, ArchiveDiscarder>;

// Gives the error code of the library, 0 on success.
int OpenForReading(const QString& path, Archive& archive)
{
    const std::optional<NativeFile> file = NativeFile::OpenForReading(path);
    if (!file)
        return ZIP_ER_OPEN;
    if (ClaimedDirectoryBytes(file->Descriptor(), file->Size()) > kLargestDirectory)
        return ZIP_ER_MEMORY;
    // The library closes the descriptor that it takes.
    const int descriptor = fcntl(file->Descriptor(), F_DUPFD_CLOEXEC, 0);
    if (descriptor < 0)
        return ZIP_ER_OPEN;
    int error = ZIP_ER_OK;
    archive.reset(zip_fdopen(descriptor, ZIP_RDONLY, &error));
    if (!archive)
        close(descriptor);
    return error;
}

// A folder has a slash at its end or says so in its attributes, as a link does.
bool IsPlainFile(zip_t& archive, zip_uint64_t index, const QString& name)
{
    if (name.endsWith(u'/'))
        return false;
    zip_uint8_t system = 0;
    zip_uint32_t attributes = 0;
    std::ignore = zip_file_get_external_attributes(&archive, index, 0, &system, &attributes);
    if (system != ZIP_OPSYS_UNIX)
        return true;
    const mode_t type = (attributes >> 16U) & S_IFMT;
    return type == 0 || type == S_IFREG;
}

class LibzipHandler final : public ZipHandler {
public:
    explicit LibzipHandler(std::int64_t largestMember) : m_largestMember(largestMember) {}

    void ZipOpenArchive(const QString& path) override { m_path = path; }
    void ZipSetFilter(const QString& patterns) override { m_patterns = patterns; }
    // Nothing is ever written.
    void ZipSetFolder(const QString&) override {}

    void ZipRun(std::int32_t& result) override
    {
        Archive archive;
        result = OpenForReading(m_path, archive);
        if (!archive) {
            Skip(QString(), result == ZIP_ER_OPEN ? QStringLiteral("not a readable file")
                                                  : ZipErrorText(result));
            return;
        }
        const zip_int64_t count = zip_get_num_entries(archive.get(), 0);
        for (zip_int64_t i = 0; i < count; ++i)
            Offer(*archive, static_cast<zip_uint64_t>(i));
    }

private:
    void Offer(zip_t& archive, zip_uint64_t index)
    {
        const QString name = TextFromNative(zip_get_name(&archive, index, ZIP_FL_ENC_RAW));
        const bool isFile = IsPlainFile(archive, index, name);
        if (!MatchesPatterns(name.endsWith(u'/') ? name.chopped(1) : name, m_patterns)) {
            if (isFile)
                Skip(name, QStringLiteral("not of the types asked for"));
        } else if (isFile) {
            Unpack(archive, index, name);
        } else {
            Skip(name, QStringLiteral("a folder or a link"));
        }
    }

    void Unpack(zip_t& archive, zip_uint64_t index, const QString& name)
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
        ZipMember member = ReadZipMember(archive, index, m_largestMember);
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
    return std::make_unique<LibzipHandler>(largestMember);
}

} // namespace lantern
