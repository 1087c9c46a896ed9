// SPDX-License-Identifier: GPL-3.0-or-later
#include "modDragDrop.h"

#include "DropData.h"
#include "MediaTypes.h"
#include "PathText.h"

#include <algorithm>

namespace lantern {

bool UnicodeDropFiles(DropData& data)
{
    data.Files.clear();
    const std::optional<QList<QByteArray>> names = data.FetchFileNames();
    if (!names)
        return false;
    data.Files.reserve(names->size());
    for (const QByteArray& name : *names)
        data.Files.append(TextFromNative(name));
    return true;
}

QString FirstUsableFile(const QStringList& files)
{
    const auto isUsable = [](const QString& file) {
        return IsMediaExtension(file) || IsAudioExtension(file);
    };
    const auto found = std::ranges::find_if(files, isUsable);
    return found != files.end() ? *found : QString();
}

} // namespace lantern
