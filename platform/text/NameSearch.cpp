// SPDX-License-Identifier: GPL-3.0-or-later
#include "NameSearch.h"

#include "Blanks.h"

#include <QByteArray>
#include <QByteArrayView>

#include <algorithm>
#include <dirent.h>
#include <memory>
#include <optional>
#include <sys/stat.h>

namespace lantern {
namespace {

bool Exists(const QByteArray& nativePath)
{
    struct stat status = {};
    return stat(nativePath.constData(), &status) == 0;
}

bool IsFile(const QByteArray& nativePath)
{
    struct stat status = {};
    return stat(nativePath.constData(), &status) == 0 && !S_ISDIR(status.st_mode);
}

bool IsAscii(char byte)
{
    return static_cast<signed char>(byte) >= 0;
}

char16_t LowerAscii(char byte)
{
    return static_cast<char16_t>(byte >= 'A' && byte <= 'Z' ? byte - 'A' + 'a' : byte);
}

// How many letters at the start of the name are what they seem: plain ASCII, and none that an
// accent behind it could change.
qsizetype PlainStart(QByteArrayView name)
{
    const auto end = std::find_if_not(name.begin(), name.end(), IsAscii) - name.begin();
    return end == name.size() ? end : std::max<qsizetype>(end - 1, 0);
}

qsizetype PlainEnd(QByteArrayView name)
{
    return std::find_if_not(name.rbegin(), name.rend(), IsAscii) - name.rbegin();
}

// A name that is looked for among the many of a folder. To fold a name takes long; that most are
// others shows in their plain letters.
class WantedName {
public:
    explicit WantedName(const QString& name) : m_folded(FoldedName(name)) {}

    bool IsEmpty() const { return m_folded.isEmpty(); }

    bool IsMeantBy(QByteArrayView name) const
    {
        const qsizetype start = PlainStart(name);
        const bool isPlain = start == name.size();
        if (isPlain && m_folded.size() != start)
            return false;
        if (!BeginsWith(name.first(start)))
            return false;
        return isPlain || (EndsWith(name.last(PlainEnd(name))) &&
                           FoldedName(TextFromNative(name)) == m_folded);
    }

private:
    bool BeginsWith(QByteArrayView plain) const
    {
        return plain.size() <= m_folded.size() &&
               std::equal(plain.begin(), plain.end(), m_folded.begin(), IsSameLetter);
    }
    bool EndsWith(QByteArrayView plain) const
    {
        return plain.size() <= m_folded.size() &&
               std::equal(plain.rbegin(), plain.rend(), m_folded.rbegin(), IsSameLetter);
    }
    static bool IsSameLetter(char byte, QChar folded) { return LowerAscii(byte) == folded; }

    const QString m_folded;
};

struct PathParts {
    explicit PathParts(const QString& path)
        : folder(path.left(path.lastIndexOf(u'/') + 1)), name(path.mid(folder.size()))
    {
    }

    QString folder; // with the slash at its end; empty for the current one
    QString name;
};

// Calls the visitor with the name of each entry of the folder.
template <typename Visitor>
void ForEachEntry(const QString& folder, Visitor visit)
{
    const QByteArray native = folder.isEmpty() ? QByteArray(".") : NativeFromText(folder);
    const std::unique_ptr<DIR, int (*)(DIR*)> directory(opendir(native.constData()), closedir);
    if (!directory)
        return;
    while (const dirent* entry = readdir(directory.get()))
        visit(QByteArrayView(entry->d_name));
}

// The better of the names that were found: of an earlier extension, or else first in byte order.
struct Found {
    std::size_t extension;
    QByteArray name;
};

bool operator<(const Found& a, const Found& b)
{
    return a.extension != b.extension ? a.extension < b.extension : a.name < b.name;
}

void Keep(std::optional<Found>& best, Found found)
{
    if (!best || found < *best)
        best = std::move(found);
}

// Its number among the extensions; their number if it is none of them.
std::size_t ExtensionOf(QByteArrayView extension, std::span<const QStringView> extensions)
{
    const QString folded = FoldedName(TextFromNative(extension));
    return static_cast<std::size_t>(std::ranges::find(extensions, folded) - extensions.begin());
}

// An embedded zero would silently cut the name that the system sees.
bool CanBeName(const QString& path)
{
    return !path.contains(QChar(u'\0'));
}

} // namespace

QString ResolveName(const QString& path)
{
    if (path.isEmpty() || !CanBeName(path))
        return {};
    if (Exists(NativeFromText(path)))
        return path;

    const PathParts parts(path);
    const WantedName wanted(parts.name);
    if (wanted.IsEmpty())
        return {};
    std::optional<Found> best;
    ForEachEntry(parts.folder, [&](QByteArrayView name) {
        if (wanted.IsMeantBy(name))
            Keep(best, {0, name.toByteArray()});
    });
    return best ? parts.folder + TextFromNative(best->name) : QString();
}

bool NamesFile(const QString& path)
{
    return CanBeName(path) && IsFile(NativeFromText(path));
}

QString PathInText(const QString& text)
{
    return NamesFile(text) ? text : TrimBlanks(QString(text).remove(u'"'));
}

QString FindFile(const QString& stem, std::span<const QStringView> extensions)
{
    if (!CanBeName(stem))
        return {};
    const auto nameWith = [&](QStringView extension) { return stem + u'.' + extension.toString(); };
    const auto exact = std::ranges::find_if(extensions, [&](QStringView extension) {
        return IsFile(NativeFromText(nameWith(extension)));
    });
    // Only an earlier extension can still come before the name as it is.
    const auto earlier = extensions.first(static_cast<std::size_t>(exact - extensions.begin()));

    std::optional<Found> best;
    if (!earlier.empty()) {
        const PathParts parts(stem);
        const WantedName wanted(parts.name);
        const QByteArray folder = NativeFromText(parts.folder);
        ForEachEntry(parts.folder, [&](QByteArrayView name) {
            const qsizetype dot = name.lastIndexOf('.');
            if (dot < 0 || !wanted.IsMeantBy(name.first(dot)))
                return;
            const std::size_t extension = ExtensionOf(name.sliced(dot + 1), earlier);
            Found found = {extension, name.toByteArray()};
            if (extension < earlier.size() && IsFile(folder + found.name))
                Keep(best, std::move(found));
        });
        if (best)
            return parts.folder + TextFromNative(best->name);
    }
    return exact == extensions.end() ? QString() : nameWith(*exact);
}

} // namespace lantern
