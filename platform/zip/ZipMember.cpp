// SPDX-License-Identifier: GPL-3.0-or-later
#include "ZipMember.h"

#include <algorithm>
#include <cstddef>
#include <memory>

namespace lantern {
namespace {

constexpr std::size_t kPieceBytes = std::size_t{4} << 20;

struct FileCloser {
    void operator()(zip_file_t* file) const { zip_fclose(file); }
};
using File = std::unique_ptr<zip_file_t, FileCloser>;

// Bytes whose number is not known beforehand. They come in pieces, so that growing never copies;
// joining them frees each piece as soon as it is copied.
class ByteCollector {
public:
    // False on a failure of the file.
    bool ReadPiece(zip_file_t& file)
    {
        std::vector<std::uint8_t> piece(kPieceBytes);
        const zip_int64_t came = zip_fread(&file, piece.data(), piece.size());
        if (came < 0)
            return false;
        m_atEnd = came == 0;
        piece.resize(static_cast<std::size_t>(came));
        m_size += piece.size();
        m_pieces.push_back(std::move(piece));
        return true;
    }
    bool AtEnd() const { return m_atEnd; }
    std::size_t Size() const { return m_size; }

    std::vector<std::uint8_t> Joined()
    {
        std::vector<std::uint8_t> bytes;
        bytes.reserve(m_size);
        for (std::vector<std::uint8_t>& piece : m_pieces) {
            bytes.insert(bytes.end(), piece.begin(), piece.end());
            std::vector<std::uint8_t>().swap(piece);
        }
        return bytes;
    }

private:
    std::vector<std::vector<std::uint8_t>> m_pieces;
    std::size_t m_size = 0;
    bool m_atEnd = false;
};

ZipMember Failure(const QString& reason)
{
    return {.bytes = {}, .failure = reason};
}

ZipMember Failure(const zip_error_t& error)
{
    const int code = zip_error_code_zip(&error);
    switch (code) {
    case ZIP_ER_NOPASSWD:
    case ZIP_ER_ENCRNOTSUPP:
        return Failure(QStringLiteral("encrypted"));
    case ZIP_ER_COMPNOTSUPP:
        return Failure(QStringLiteral("compressed by an unknown method"));
    case ZIP_ER_CRC:
        return Failure(QStringLiteral("wrong checksum"));
    case ZIP_ER_INCONS: // of a member that isn't compressed
        return Failure(QStringLiteral("wrong size"));
    default:
        return Failure(QStringLiteral("damaged: ") + ZipErrorText(code));
    }
}

} // namespace

ZipMember ReadZipMember(zip_t& archive, zip_uint64_t index, std::int64_t largestSize)
{
    zip_stat_t status = {};
    if (zip_stat_index(&archive, index, 0, &status) != 0)
        return Failure(*zip_get_error(&archive));
    if (status.size > static_cast<zip_uint64_t>(largestSize))
        return Failure(QStringLiteral("larger than %1 bytes").arg(largestSize));
    const File file(zip_fopen_index(&archive, index, 0));
    if (!file)
        return Failure(*zip_get_error(&archive));

    ByteCollector collector;
    while (!collector.AtEnd() && collector.Size() <= status.size) {
        if (!collector.ReadPiece(*file))
            return Failure(*zip_file_get_error(file.get()));
    }
    if (collector.Size() != status.size)
        return Failure(QStringLiteral("wrong size"));
    return {.bytes = collector.Joined(), .failure = {}};
}

QString ZipErrorText(int code)
{
    zip_error_t error = {};
    zip_error_init_with_code(&error, code);
    QString text = QString::fromUtf8(zip_error_strerror(&error));
    zip_error_fini(&error);
    return text;
}

} // namespace lantern
