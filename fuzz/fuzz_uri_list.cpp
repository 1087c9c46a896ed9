// SPDX-License-Identifier: GPL-3.0-or-later

// Lists of dropped files, of any bytes.
#include "ScratchFile.h"
#include "UriList.h"

#include <algorithm>
#include <climits>

using namespace lantern;

namespace {

bool CanBeAName(const QByteArray& name)
{
    return name.startsWith('/') && name.size() < PATH_MAX && !name.contains('\0');
}

QByteArray UriListOf(const QList<QByteArray>& names)
{
    QByteArray list;
    for (const QByteArray& name : names)
        list += "file://" + name.toPercentEncoding("/") + "\r\n";
    return list;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const QByteArrayView input(bytes, static_cast<qsizetype>(size));
    const QList<QByteArray> names = FileNamesOfUriList(input, "karaoke-box");
    Require(names.size() <= kMostUriListNames);
    Require(std::ranges::all_of(names, CanBeAName));
    Require(FileNamesOfUriList(UriListOf(names), "karaoke-box") == names);
    if (const std::optional<QByteArray> name = FileNameOfUri(input, "karaoke-box"))
        Require(CanBeAName(*name));
    return 0;
}
