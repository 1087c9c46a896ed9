// SPDX-License-Identifier: GPL-3.0-or-later
#include "UriList.h"

#include "HexDigit.h"

#include <algorithm>
#include <climits>

namespace lantern {
namespace {

constexpr QByteArrayView kFileScheme = "file:";

bool IsSameWord(QByteArrayView a, QByteArrayView b)
{
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

// The byte of an escape that the text begins with.
std::optional<char> EscapedByte(QByteArrayView text)
{
    if (text.size() < 3 || text[0] != '%')
        return std::nullopt;
    const int high = HexDigitValue(text[1]);
    const int low = HexDigitValue(text[2]);
    if (high < 0 || low < 0)
        return std::nullopt;
    return static_cast<char>(high * 16 + low);
}

QByteArray PercentDecoded(QByteArrayView text)
{
    QByteArray bytes;
    bytes.reserve(text.size());
    while (!text.isEmpty()) {
        const std::optional<char> escaped = EscapedByte(text);
        bytes += escaped.value_or(text.front());
        text = text.sliced(escaped ? 3 : 1);
    }
    return bytes;
}

// What stands behind the scheme, without the host. Empty if the host is another machine.
QByteArrayView LocalPath(QByteArrayView hostAndPath, QByteArrayView ownHost)
{
    if (!hostAndPath.startsWith("//"))
        return hostAndPath;
    const QByteArrayView rest = hostAndPath.sliced(2);
    const qsizetype hostEnd = rest.indexOf('/');
    if (hostEnd < 0)
        return {};
    const QByteArrayView host = rest.first(hostEnd);
    const bool isHere =
        host.isEmpty() || IsSameWord(host, "localhost") || IsSameWord(host, ownHost);
    return isHere ? rest.sliced(hostEnd) : QByteArrayView();
}

bool EndsLine(char byte)
{
    return byte == '\r' || byte == '\n' || byte == '\0';
}

// The list up to its last whole line within the limit.
QByteArrayView WithinLimit(QByteArrayView list)
{
    if (list.size() <= kLongestUriList)
        return list;
    list = list.first(kLongestUriList);
    while (!list.isEmpty() && !EndsLine(list.back()))
        list.chop(1);
    return list;
}

// Takes the first line off the list, and what ends it.
QByteArrayView TakeLine(QByteArrayView& list)
{
    const qsizetype size = std::find_if(list.begin(), list.end(), EndsLine) - list.begin();
    const QByteArrayView line = list.first(size);
    list = list.sliced(std::min(size + 1, list.size()));
    return line;
}

} // namespace

std::optional<QByteArray> FileNameOfUri(QByteArrayView uri, QByteArrayView ownHost)
{
    if (!IsSameWord(uri.first(std::min(uri.size(), kFileScheme.size())), kFileScheme))
        return std::nullopt;
    const QByteArrayView path = LocalPath(uri.sliced(kFileScheme.size()), ownHost);
    if (!path.startsWith('/'))
        return std::nullopt;
    QByteArray name = PercentDecoded(path);
    if (name.size() >= PATH_MAX || name.contains('\0'))
        return std::nullopt;
    return name;
}

QList<QByteArray> FileNamesOfUriList(QByteArrayView list, QByteArrayView ownHost)
{
    QList<QByteArray> names;
    list = WithinLimit(list);
    while (!list.isEmpty() && names.size() < kMostUriListNames) {
        if (std::optional<QByteArray> name = FileNameOfUri(TakeLine(list), ownHost))
            names.append(*std::move(name));
    }
    return names;
}

} // namespace lantern
