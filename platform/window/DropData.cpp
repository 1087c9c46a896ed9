// SPDX-License-Identifier: GPL-3.0-or-later
#include "DropData.h"

#include "UriList.h"

#include <QMimeData>
#include <QSysInfo>

namespace lantern {
namespace {

const QString kFileListFormat = QStringLiteral("text/uri-list");

} // namespace

Qt::DropAction HarmlessAction(DropEffect effect, Qt::DropActions offered)
{
    if (effect == DropEffect::None)
        return Qt::IgnoreAction;
    if (offered & Qt::CopyAction)
        return Qt::CopyAction;
    return offered & Qt::LinkAction ? Qt::LinkAction : Qt::IgnoreAction;
}

bool DropData::HasFileList() const
{
    return m_offer && m_offer->hasFormat(kFileListFormat);
}

std::optional<QList<QByteArray>> DropData::FetchFileNames() const
{
    if (!HasFileList())
        return std::nullopt;
    const QByteArray list = m_offer->data(kFileListFormat);
    if (list.isEmpty())
        return std::nullopt;
    return FileNamesOfUriList(list, QSysInfo::machineHostName().toUtf8());
}

} // namespace lantern
