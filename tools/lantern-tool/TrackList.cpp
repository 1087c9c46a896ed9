// SPDX-License-Identifier: GPL-3.0-or-later
#include "TrackList.h"

#include "MediaTypes.h"
#include "NeighbourTracks.h"
#include "PathHelpers.h"
#include "PathText.h"

#include <QSet>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <memory>
#include <set>
#include <sys/stat.h>
#include <tuple>
#include <utility>

namespace lantern::tool {
namespace {

struct FolderEntry {
    QString key;
    QString name;

    bool operator<(const FolderEntry& other) const
    {
        return std::tie(key, name) < std::tie(other.key, other.name);
    }
};

struct FolderContent {
    std::vector<FolderEntry> files;
    std::vector<FolderEntry> folders;
};

void Note(const QByteArray& folder, const char* name, FolderContent& content)
{
    struct stat status = {};
    if (name[0] == '.' || stat((folder + '/' + name).constData(), &status) != 0)
        return;
    const QString text = TextFromNative(name);
    if (S_ISDIR(status.st_mode))
        content.folders.push_back({NaturalKey(text), text});
    else if (IsMediaExtension(text) || IsAudioExtension(text))
        content.files.push_back({NaturalKey(StripExtension(text)), text});
}

// The packets stand for the audio beside them.
void DropAudioBesidePackets(std::vector<FolderEntry>& files)
{
    QSet<QString> stems;
    for (const FolderEntry& file : files) {
        if (FileExtension(file.name) == QStringLiteral("cdg"))
            stems.insert(FoldedName(StripExtension(file.name)));
    }
    std::erase_if(files, [&](const FolderEntry& file) {
        return IsAudioExtension(file.name) && stems.contains(FoldedName(StripExtension(file.name)));
    });
}

bool IsFolder(const QString& word)
{
    return FileCheck(word) == QStringLiteral("DIR");
}

// Walks through folders. A folder that a link leads back to is entered once.
class Walk {
public:
    Walk(TrackList& list, bool recursive) : m_list(list), m_recursive(recursive) {}

    void Into(const QString& path, const QString& below)
    {
        const QByteArray native = NativeFromText(path);
        struct stat status = {};
        const std::unique_ptr<DIR, int (*)(DIR*)> directory(opendir(native.constData()), closedir);
        if (!directory || stat(native.constData(), &status) != 0) {
            m_list.errors += QStringLiteral("Cannot read %1: %2")
                                 .arg(path, QString::fromLocal8Bit(std::strerror(errno)));
            return;
        }
        if (!m_entered.emplace(status.st_dev, status.st_ino).second)
            return;
        FolderContent content;
        while (const dirent* entry = readdir(directory.get()))
            Note(native, entry->d_name, content);
        DropAudioBesidePackets(content.files);
        std::ranges::sort(content.files, std::less());
        std::ranges::sort(content.folders, std::less());
        const QString start = path.endsWith(u'/') ? path : path + u'/';
        for (const FolderEntry& file : content.files)
            m_list.tracks.push_back({start + file.name, below, true});
        if (!m_recursive)
            return;
        for (const FolderEntry& folder : content.folders)
            Into(start + folder.name, below + folder.name + u'/');
    }

private:
    TrackList& m_list;
    bool m_recursive;
    std::set<std::pair<dev_t, ino_t>> m_entered;
};

} // namespace

bool NamesSeveral(const QStringList& words)
{
    return words.size() > 1 || (words.size() == 1 && IsFolder(words.constFirst()));
}

TrackList ListTracks(const QStringList& words, bool recursive)
{
    TrackList list;
    for (const QString& word : words) {
        if (!IsFolder(word)) {
            list.tracks.push_back({word, {}, NamesSeveral(words)});
            continue;
        }
        const std::size_t before = list.tracks.size();
        const qsizetype errorsBefore = list.errors.size();
        Walk(list, recursive).Into(ResolveName(word), {});
        if (list.tracks.size() == before && list.errors.size() == errorsBefore)
            list.errors += QStringLiteral("No tracks in ") + word;
    }
    return list;
}

} // namespace lantern::tool
