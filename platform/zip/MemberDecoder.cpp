// SPDX-License-Identifier: GPL-3.0-or-later
#include "MemberDecoder.h"

#include <algorithm>
#include <archive.h>
#include <array>
#include <lzma.h>
#include <string>
#include <string_view>
#include <unarr.h>
#include <utility>

namespace lantern {
namespace {

// Methods of the .ZIP file format, as PKWARE's application note numbers them.
constexpr std::uint16_t kDeflate64 = 9;
constexpr std::uint16_t kLzma = 14;
constexpr std::uint16_t kXz = 95;
constexpr std::array<std::uint16_t, 5> kMethodsOfLibarchive = {
    0,  // stored
    8,  // Deflate
    12, // BZip2
    93, // Zstandard
    98, // PPMd
};
// Of the flags, how the method was used.
constexpr std::uint16_t kFlagsOfMethod = 1 << 1 | 1 << 2;

constexpr std::string_view kName = "m";
constexpr std::uint64_t kVersion = 63; // of the format: the first that has all of the methods

void Put(std::string& bytes, std::uint64_t value, int size)
{
    for (int i = 0; i < size; ++i)
        bytes += static_cast<char>(value >> (8 * i) & 0xFF);
}

// What a member's own header and the directory have in common. A size that is too large for its
// field belongs to a member too large to be read.
std::string Description(const ZipEntry& entry)
{
    std::string bytes;
    Put(bytes, kVersion, 2);
    Put(bytes, entry.flags & kFlagsOfMethod, 2);
    Put(bytes, entry.method, 2);
    Put(bytes, 0, 4); // its time
    Put(bytes, entry.checksum, 4);
    Put(bytes, entry.storedSize, 4);
    Put(bytes, entry.size, 4);
    Put(bytes, kName.size(), 2);
    Put(bytes, 0, 2); // extra fields
    return bytes;
}

// A header as members have it. The libraries are given the member as an archive of its own, since
// each has its own view of a directory.
std::string MemberHeader(const ZipEntry& entry)
{
    return std::string("PK\3\4") + Description(entry) + std::string(kName);
}

// What is stored of a member, piece by piece.
class StoredBytes {
public:
    StoredBytes(const ArchiveBytes& archive, std::uint64_t offset, std::uint64_t size)
        : m_archive(archive), m_next(offset), m_left(size)
    {
    }

    // Empty at the end. Valid until the next call.
    std::span<const std::uint8_t> Next()
    {
        constexpr std::uint64_t kPieceBytes = std::uint64_t{64} << 10;
        m_piece = m_archive.Piece(m_next, std::min(kPieceBytes, m_left));
        m_next += m_piece.size();
        m_left -= m_piece.size();
        return m_piece;
    }

private:
    const ArchiveBytes& m_archive;
    std::uint64_t m_next;
    std::uint64_t m_left;
    std::vector<std::uint8_t> m_piece;
};

class LibarchiveDecoder final : public MemberDecoder {
public:
    LibarchiveDecoder(const ArchiveBytes& archive, const ZipEntry& entry, std::uint64_t dataOffset)
        : m_stored(archive, dataOffset, entry.storedSize), m_header(MemberHeader(entry)),
          m_reader(archive_read_new())
    {
        archive_read_support_format_zip_streamable(m_reader.get());
        archive_read_set_options(m_reader.get(), "zip:ignorecrc32"); // whoever reads checks it
        archive_entry* found = nullptr;
        m_isOpen = archive_read_open(m_reader.get(), this, nullptr, Next, nullptr) == ARCHIVE_OK &&
                   archive_read_next_header(m_reader.get(), &found) >= ARCHIVE_WARN;
    }

    std::int64_t Read(std::span<std::uint8_t> bytes) override
    {
        while (m_block.empty() && !m_atEnd) {
            if (!TakeBlock())
                return -1;
        }
        const std::size_t count = std::min(bytes.size(), m_block.size());
        std::copy_n(m_block.begin(), count, bytes.begin());
        m_block = m_block.subspan(count);
        return static_cast<std::int64_t>(count);
    }
    QString FailureText() const override
    {
        return QString::fromUtf8(archive_error_string(m_reader.get()));
    }

private:
    struct Freer {
        void operator()(archive* reader) const { archive_read_free(reader); }
    };

    bool TakeBlock()
    {
        const void* data = nullptr;
        std::size_t size = 0;
        la_int64_t offset = 0;
        const int result = m_isOpen ? archive_read_data_block(m_reader.get(), &data, &size, &offset)
                                    : ARCHIVE_FATAL;
        // A warning comes with the last bytes, and is about sizes, which whoever reads compares.
        m_atEnd = result == ARCHIVE_EOF || result == ARCHIVE_WARN;
        if (result != ARCHIVE_EOF)
            m_block = {static_cast<const std::uint8_t*>(data), size};
        return result >= ARCHIVE_WARN;
    }

    // The library's callback: the header, then the member's bytes piece by piece.
    static la_ssize_t Next(archive*, void* self, const void** piece)
    {
        return static_cast<LibarchiveDecoder*>(self)->NextPiece(*piece);
    }
    la_ssize_t NextPiece(const void*& piece)
    {
        if (!std::exchange(m_gaveHeader, true)) {
            piece = m_header.data();
            return static_cast<la_ssize_t>(m_header.size());
        }
        const std::span<const std::uint8_t> next = m_stored.Next();
        piece = next.data();
        return static_cast<la_ssize_t>(next.size());
    }

    StoredBytes m_stored;
    std::string m_header;
    bool m_gaveHeader = false;
    std::unique_ptr<archive, Freer> m_reader;
    bool m_isOpen = false;
    std::span<const std::uint8_t> m_block; // the library's
    bool m_atEnd = false;
};

// What a stream claims to need may be gigabytes, and only this library can be told to refuse that.
class LzmaDecoder final : public MemberDecoder {
public:
    LzmaDecoder(const ArchiveBytes& archive, const ZipEntry& entry, std::uint64_t dataOffset)
        : m_stored(archive, dataOffset, entry.storedSize),
          m_result(lzma_stream_decoder(&m_stream, kMostMemory, 0))
    {
        if (entry.method == kLzma)
            BeginLzma(entry);
    }
    ~LzmaDecoder() override { lzma_end(&m_stream); }
    LzmaDecoder(const LzmaDecoder&) = delete;
    LzmaDecoder& operator=(const LzmaDecoder&) = delete;

    std::int64_t Read(std::span<std::uint8_t> bytes) override
    {
        m_stream.next_out = bytes.data();
        m_stream.avail_out = bytes.size();
        while (m_result == LZMA_OK && m_stream.avail_out > 0) {
            if (m_stream.avail_in == 0)
                Take(m_stored.Next());
            // Without more bytes it says so at the second try.
            m_result = lzma_code(&m_stream, LZMA_RUN);
        }
        if (m_result != LZMA_OK && m_result != LZMA_STREAM_END)
            return -1;
        return static_cast<std::int64_t>(bytes.size() - m_stream.avail_out);
    }
    QString FailureText() const override
    {
        return m_result == LZMA_MEMLIMIT_ERROR ? QStringLiteral("it claims to need too much memory")
                                               : QStringLiteral("its stream is broken");
    }

private:
    static constexpr std::uint64_t kMostMemory = std::uint64_t{160} << 20;
    static constexpr std::size_t kHeaderSize = 9; // version, size of the properties, properties
    static constexpr std::size_t kPropertiesAt = 4;
    static constexpr std::uint16_t kHasEndMark = 1 << 1;

    // The archive's header becomes that of the library's own form: properties and size.
    void BeginLzma(const ZipEntry& entry)
    {
        const std::span<const std::uint8_t> first = m_stored.Next();
        if (first.size() < kHeaderSize || first[2] != kHeaderSize - kPropertiesAt ||
            first[3] != 0) {
            m_result = LZMA_FORMAT_ERROR;
            return;
        }
        const auto properties = first.first(kHeaderSize).subspan(kPropertiesAt);
        m_begin.assign(properties.begin(), properties.end());
        Put(m_begin, (entry.flags & kHasEndMark) != 0 ? ~std::uint64_t{0} : entry.size, 8);
        m_begin.append(first.begin() + kHeaderSize, first.end());
        m_result = lzma_alone_decoder(&m_stream, kMostMemory);
        Take({reinterpret_cast<const std::uint8_t*>(m_begin.data()), m_begin.size()});
    }
    void Take(std::span<const std::uint8_t> bytes)
    {
        m_stream.next_in = bytes.data();
        m_stream.avail_in = bytes.size();
    }

    StoredBytes m_stored;
    std::string m_begin; // of an LZMA stream
    lzma_stream m_stream = LZMA_STREAM_INIT;
    lzma_ret m_result;
};

class UnarrDecoder final : public MemberDecoder {
public:
    UnarrDecoder(const ArchiveBytes& archive, const ZipEntry& entry, std::uint64_t dataOffset)
        : m_image(Image(archive, entry, dataOffset)),
          m_stream(ar_open_memory(m_image.data(), m_image.size())),
          m_reader(m_stream ? ar_open_zip_archive(m_stream.get(), false) : nullptr)
    {
        if (m_reader && ar_parse_entry(m_reader.get()))
            m_left = ar_entry_get_size(m_reader.get());
        else
            m_hasFailed = true;
    }

    std::int64_t Read(std::span<std::uint8_t> bytes) override
    {
        const std::size_t count = std::min(bytes.size(), m_left);
        m_hasFailed =
            m_hasFailed || (count > 0 && !ar_entry_uncompress(m_reader.get(), bytes.data(), count));
        m_left -= count;
        return m_hasFailed ? -1 : static_cast<std::int64_t>(count);
    }
    // The library has none.
    QString FailureText() const override { return {}; }

private:
    struct StreamCloser {
        void operator()(ar_stream* stream) const { ar_close(stream); }
    };
    struct ReaderCloser {
        void operator()(ar_archive* reader) const { ar_close_archive(reader); }
    };

    // An archive of this member alone.
    static std::vector<std::uint8_t> Image(const ArchiveBytes& archive, const ZipEntry& entry,
                                           std::uint64_t dataOffset)
    {
        const std::string header = MemberHeader(entry);
        std::vector<std::uint8_t> image(header.begin(), header.end());
        const std::vector<std::uint8_t> data =
            archive.Piece(dataOffset, static_cast<std::size_t>(entry.storedSize));
        image.insert(image.end(), data.begin(), data.end());

        std::string directory = "PK\1\2";
        Put(directory, kVersion, 2);
        directory += Description(entry);
        Put(directory, 0, 2 + 2 + 2); // comment, disk, kind
        Put(directory, 0, 4 + 4);     // attributes, offset
        directory += kName;
        std::string end = "PK\5\6";
        Put(end, 0, 2 + 2); // disks
        Put(end, 1, 2);
        Put(end, 1, 2);
        Put(end, directory.size(), 4);
        Put(end, image.size(), 4);
        Put(end, 0, 2); // comment
        image.insert(image.end(), directory.begin(), directory.end());
        image.insert(image.end(), end.begin(), end.end());
        return image;
    }

    std::vector<std::uint8_t> m_image;
    std::unique_ptr<ar_stream, StreamCloser> m_stream;
    std::unique_ptr<ar_archive, ReaderCloser> m_reader;
    std::size_t m_left = 0;
    bool m_hasFailed = false;
};

} // namespace

std::unique_ptr<MemberDecoder> MakeMemberDecoder(const ArchiveBytes& archive, const ZipEntry& entry,
                                                 std::uint64_t dataOffset)
{
    if (entry.method == kDeflate64)
        return std::make_unique<UnarrDecoder>(archive, entry, dataOffset);
    if (entry.method == kLzma || entry.method == kXz)
        return std::make_unique<LzmaDecoder>(archive, entry, dataOffset);
    if (std::ranges::find(kMethodsOfLibarchive, entry.method) != kMethodsOfLibarchive.end())
        return std::make_unique<LibarchiveDecoder>(archive, entry, dataOffset);
    return nullptr;
}

} // namespace lantern
