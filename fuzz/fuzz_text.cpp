// SPDX-License-Identifier: GPL-3.0-or-later

// Text files of any bytes: every reading ends, and what is taken for UTF-8 keeps its bytes.
#include "ScratchFile.h"
#include "clsFileIO.h"

using namespace lantern;

namespace {

void ReadAll(clsFileIO& file, const QString& path)
{
    const QString text = file.ReadLoad(path);
    QStringList lines;
    while (file.ReadCount() > 0)
        lines.append(file.ReadLine());
    Require(lines.join(kLineEnd) == text);
    const QString normalised = file.FileRead(path, true);
    Require(normalised.size() >= text.size());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    static const ScratchFolder folder;
    clsFileIO file;
    try {
        ReadAll(file, folder.Make(QStringLiteral("text"), bytes, size));
    } catch (const FileIOError&) {
        Require(size == 3); // nothing but a mark
    }
    if (size == 0)
        return 0;
    const QByteArray input(reinterpret_cast<const char*>(bytes), static_cast<qsizetype>(size));
    for (const std::int32_t limit : {0, 1, 7, 1 << 30})
        file.IsUTF8(input, limit);
    const QByteArray back = file.ToUTF8(file.FromUTF8(input, 0));
    Require(file.IsUTF8Ex(input) == (back == input));
    Require(file.FromUnicode(file.ToUnicode(input)) == input);
    return 0;
}
