// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

// A folder with files of the fuzzer's bytes, for code that reads from a path.
class ScratchFolder {
public:
    QString Path() const { return m_folder.path() + u'/'; }
    QString Make(const QString& name, const std::uint8_t* bytes, std::size_t size) const
    {
        QFile file(Path() + name);
        if (!file.open(QFile::WriteOnly))
            std::abort();
        file.write(reinterpret_cast<const char*>(bytes), static_cast<qint64>(size));
        return file.fileName();
    }
    QByteArray BytesOf(const QString& name) const
    {
        QFile file(Path() + name);
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    }

private:
    // In memory: a fuzzer writes thousands of files a second.
    QTemporaryDir m_folder{QStringLiteral("/dev/shm/lantern-fuzz-XXXXXX")};
};

// A broken promise of the code; the fuzzer keeps the bytes that led to it.
inline void Require(bool holds)
{
    if (!holds)
        std::abort();
}
