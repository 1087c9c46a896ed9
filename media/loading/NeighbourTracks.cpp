// SPDX-License-Identifier: GPL-3.0-or-later
#include "NeighbourTracks.h"

#include "MediaTypes.h"
#include "NameSearch.h"
#include "PathHelpers.h"
#include "PathText.h"

#include <QSet>

#include <algorithm>
#include <dirent.h>
#include <memory>
#include <vector>

namespace lantern {
namespace {

const QString kPacketExtension = QStringLiteral("cdg");

bool IsDigit(QChar letter)
{
    return letter >= u'0' && letter <= u'9';
}

struct Entry {
    explicit Entry(const QString& itsName) : key(NaturalKey(StripExtension(itsName))), name(itsName)
    {
    }

    bool operator<(const Entry& other) const
    {
        return key != other.key ? key < other.key : name < other.name;
    }

    QString key;
    QString name;
};

// The files of the folder that could be tracks by their names.
std::vector<Entry> EntriesOf(const QString& folder)
{
    std::vector<Entry> entries;
    const QByteArray native = folder.isEmpty() ? QByteArray(".") : NativeFromText(folder);
    const std::unique_ptr<DIR, int (*)(DIR*)> directory(opendir(native.constData()), closedir);
    if (!directory)
        return entries;
    while (const dirent* found = readdir(directory.get())) {
        if (found->d_name[0] == '.' || found->d_type == DT_DIR)
            continue;
        const QString name = TextFromNative(found->d_name);
        if (IsMediaExtension(name) || IsAudioExtension(name))
            entries.emplace_back(name);
    }
    return entries;
}

// The packet file stands for the audio beside it.
void DropAudioOfPackets(std::vector<Entry>& entries, QString& current)
{
    QSet<QString> stems;
    for (const Entry& entry : entries) {
        if (FileExtension(entry.name) == kPacketExtension)
            stems.insert(FoldedName(StripExtension(entry.name)));
    }
    const auto belongsToPackets = [&](const Entry& entry) {
        return IsAudioExtension(entry.name) &&
               stems.contains(FoldedName(StripExtension(entry.name)));
    };
    if (belongsToPackets(Entry(current)))
        current = StripExtension(current) + u'.' + kPacketExtension;
    std::erase_if(entries, belongsToPackets);
}

} // namespace

// A number is written as how long it is, and then itself: so a longer one comes later. The zero
// before it puts it where digits stand among the letters.
QString NaturalKey(const QString& name)
{
    const QString plain = FoldedName(name).normalized(QString::NormalizationForm_KD);
    QString key;
    key.reserve(plain.size() + 8);
    for (qsizetype i = 0; i < plain.size();) {
        if (!IsDigit(plain[i])) {
            if (plain[i].category() != QChar::Mark_NonSpacing)
                key += plain[i];
            ++i;
            continue;
        }
        while (i + 1 < plain.size() && plain[i] == u'0' && IsDigit(plain[i + 1]))
            ++i;
        const qsizetype start = i;
        while (i < plain.size() && IsDigit(plain[i]))
            ++i;
        key += u'0';
        key += QChar(static_cast<char16_t>(i - start));
        key += QStringView(plain).sliced(start, i - start);
    }
    return key;
}

QString NeighbourTrack(const QString& path, int places)
{
    const QString resolved = ResolveName(path);
    const QString real = resolved.isEmpty() ? path : resolved;
    const QString folder = FolderOf(real, u'/');
    QString name = real.mid(folder.size());
    std::vector<Entry> entries = EntriesOf(folder);
    DropAudioOfPackets(entries, name);
    const Entry current(name);
    if (places < 0)
        std::ranges::sort(entries, [](const Entry& a, const Entry& b) { return b < a; });
    else
        std::ranges::sort(entries, [](const Entry& a, const Entry& b) { return a < b; });

    QString found;
    int left = std::abs(places);
    for (const Entry& entry : entries) {
        const bool isBeyond = places < 0 ? entry < current : current < entry;
        if (!isBeyond || FoldedName(entry.name) == FoldedName(name) ||
            !NamesFile(folder + entry.name))
            continue;
        if (left-- == 0)
            break;
        found = folder + entry.name;
    }
    return found;
}

} // namespace lantern
