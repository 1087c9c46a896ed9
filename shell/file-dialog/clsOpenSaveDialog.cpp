// SPDX-License-Identifier: GPL-3.0-or-later
#include "clsOpenSaveDialog.h"

#include "PathHelpers.h"

#include <QStringList>

#include <algorithm>
#include <limits>
#include <utility>

namespace lantern {
namespace {

constexpr QChar kBar = u'|';
constexpr QChar kSeparator = u'/';
// A buffer that is too small reports how large it should be, if it is longer than this.
constexpr std::int32_t kLongestWithoutReport = 4;

std::int32_t LengthOf(const QString& text)
{
    return static_cast<std::int32_t>(
        std::min<qsizetype>(text.size(), std::numeric_limits<std::int32_t>::max()));
}

bool Holds(std::int32_t flags, DialogFlag flag)
{
    return (flags & flag) != 0;
}

void PutText(ZeroedText& buffer, std::int32_t& size, std::int32_t defaultSize, const QString& text)
{
    const std::int32_t length = LengthOf(text);
    if (size == 0 || length > buffer.Length()) {
        size = std::max(length, size == 0 ? defaultSize : 0);
        buffer = ZeroedText(size);
    }
    buffer.Write(text);
    if (length < buffer.Length())
        buffer.Write(QString(text + kNull));
}

void PutSize(ZeroedText& buffer, std::int32_t& size, std::int32_t wanted)
{
    size = std::max(wanted, 0);
    if (size > 0)
        buffer = ZeroedText(size);
}

void EnsureBuffer(ZeroedText& buffer, std::int32_t& size, std::int32_t defaultSize)
{
    if (size == 0)
        PutSize(buffer, size, defaultSize);
}

std::int32_t ExtensionOffsetOf(const QString& path, std::int32_t fileOffset)
{
    const qsizetype dot = path.lastIndexOf(u'.');
    return dot < fileOffset ? 0 : static_cast<std::int32_t>(dot + 1);
}

} // namespace

std::int32_t EffectiveFlags(std::int32_t asked, DialogKind kind)
{
    if (kind == DialogKind::Save)
        return asked & ~kFileMustExistFlag;
    const std::int32_t flags = asked & ~kOverwritePromptFlag;
    return Holds(flags, kFileMustExistFlag) ? flags | kPathMustExistFlag : flags;
}

QString EncodeFilter(const QString& filter)
{
    return QString(filter).replace(kBar, kNull) + kNull;
}

QString DecodeFilter(const QString& stored)
{
    const qsizetype end = stored.indexOf(QString(2, kNull));
    return QString(end < 0 ? stored : stored.left(end)).replace(kNull, kBar);
}

std::vector<FileFilter> FilterPairs(const QString& stored)
{
    const QStringList texts = sLeftOfDoubleNull(stored + QString(2, kNull)).split(kNull);
    std::vector<FileFilter> pairs;
    for (qsizetype i = 0; i + 1 < texts.size() && !texts[i].isEmpty(); i += 2)
        pairs.push_back({texts[i], texts[i + 1]});
    return pairs;
}

ChosenText TextOfChosen(const std::vector<QString>& paths)
{
    const QString& first = paths.front();
    const qsizetype nameStart = first.lastIndexOf(kSeparator) + 1;
    const auto offset = static_cast<std::int32_t>(nameStart);
    if (paths.size() == 1)
        return {first, offset, ExtensionOffsetOf(first, offset)};

    // The folder is without a separator at its end, but for the root.
    ChosenText chosen = {first.left(std::max<qsizetype>(nameStart - 1, 1)) + kNull};
    chosen.fileOffset = LengthOf(chosen.text);
    for (const QString& path : paths)
        chosen.text += path.mid(path.lastIndexOf(kSeparator) + 1) + kNull;
    return chosen;
}

clsOpenSaveDialog::clsOpenSaveDialog(FileDialogService service) : m_service(std::move(service))
{
}

bool clsOpenSaveDialog::ShowOpen(QWidget* owner)
{
    return Show(DialogKind::Open, owner);
}

bool clsOpenSaveDialog::ShowSave(QWidget* owner)
{
    return Show(DialogKind::Save, owner);
}

bool clsOpenSaveDialog::Show(DialogKind kind, QWidget* owner)
{
    PrepareRequest(kind, owner);
    const FileDialogAnswer answer = m_service(ServiceRequest(kind));
    if (answer.errorCode != 0)
        RaiseDialogError(answer.errorCode, kind);
    if (answer.paths.empty()) {
        if (m_cancelError)
            RaiseDialogError(kCancelled, kind);
        return false;
    }
    if (!TakeAnswer(answer))
        RaiseDialogError(kBufferTooSmall, kind);
    return true;
}

void clsOpenSaveDialog::PrepareRequest(DialogKind kind, QWidget* owner)
{
    m_minimumBufferSizeRequired = 0;
    m_request.owner = owner;
    EnsureBuffer(m_request.file, m_request.fileSize, kDefaultFileSize);
    EnsureBuffer(m_request.fileTitle, m_request.fileTitleSize, kDefaultFileTitleSize);
    m_request.flags = EffectiveFlags(m_askedFlags, kind);
}

FileDialogRequest clsOpenSaveDialog::ServiceRequest(DialogKind kind) const
{
    return {.owner = m_request.owner,
            .isSave = kind == DialogKind::Save,
            .title = sLeftOfNull(m_request.title),
            .filters = FilterPairs(m_request.filter),
            .filterIndex = m_request.filterIndex,
            .initialFolder = sLeftOfNull(m_request.initialDir),
            .initialPath = m_request.file.LeftOfNull(),
            .defaultExtension = sLeftOfNull(m_request.defaultExt),
            .fileMustExist = Holds(m_request.flags, kFileMustExistFlag),
            .pathMustExist = Holds(m_request.flags, kPathMustExistFlag),
            .overwritePrompt = Holds(m_request.flags, kOverwritePromptFlag),
            .multipleSelection = Holds(m_request.flags, kMultipleSelectionFlag)};
}

// False if the buffer is too small for the text and what ends it: one zero, or two where several
// files may come. Its first character then tells the size that it needs.
bool clsOpenSaveDialog::TakeAnswer(const FileDialogAnswer& answer)
{
    const ChosenText chosen = TextOfChosen(answer.paths);
    const bool mayBeSeveral = Holds(m_request.flags, kMultipleSelectionFlag);
    const QString ended =
        chosen.text + QString(mayBeSeveral && answer.paths.size() == 1 ? 2 : 1, kNull);
    if (ended.size() > m_request.file.Length()) {
        const auto needed = std::min<qsizetype>(ended.size(), 0xFFFF);
        m_request.file.Write(QString(QChar(static_cast<char16_t>(needed))));
        return false;
    }
    m_request.file.Write(ended);
    m_request.fileOffset = chosen.fileOffset;
    m_request.extensionOffset = chosen.extensionOffset;
    m_request.filterIndex = answer.filterIndex;
    const QString name = answer.paths.front().mid(answer.paths.front().lastIndexOf(kSeparator) + 1);
    m_request.fileTitle.Write(QString(name.left(m_request.fileTitle.Length() - 1) + kNull));
    return true;
}

void clsOpenSaveDialog::RaiseDialogError(std::int32_t code, DialogKind kind)
{
    if (code == kBufferTooSmall) {
        m_minimumBufferSizeRequired =
            m_request.file.Length() > kLongestWithoutReport ? m_request.file.At(0) : -1;
    }
    throw DialogError(code, kind);
}

void clsOpenSaveDialog::Clear()
{
    m_request = {};
}

QString clsOpenSaveDialog::FileName() const
{
    return Holds(m_askedFlags, kMultipleSelectionFlag) ? m_request.file.LeftOfDoubleNull()
                                                       : m_request.file.LeftOfNull();
}

void clsOpenSaveDialog::SetFileName(const QString& text)
{
    PutText(m_request.file, m_request.fileSize, kDefaultFileSize, text);
}

void clsOpenSaveDialog::SetFileTitle(const QString& text)
{
    PutText(m_request.fileTitle, m_request.fileTitleSize, kDefaultFileTitleSize, text);
}

void clsOpenSaveDialog::SetInitDir(const QString& folder)
{
    const QChar separator = SeparatorOf(folder);
    m_request.initialDir =
        folder.isEmpty() || folder.endsWith(separator) ? folder : folder + separator;
}

QString clsOpenSaveDialog::FilePath() const
{
    return m_request.fileOffset == 0 ? QString() : m_request.file.Left(m_request.fileOffset - 1);
}

QString clsOpenSaveDialog::FileExtension() const
{
    return m_request.extensionOffset == 0 ? QString()
                                          : m_request.file.MidToNull(m_request.extensionOffset);
}

void clsOpenSaveDialog::SetFilter(const QString& filter)
{
    m_request.filter = filter.isEmpty() ? QString() : EncodeFilter(filter);
}

void clsOpenSaveDialog::SetFlags(std::int32_t flags)
{
    if (flags >= 0)
        m_askedFlags = flags & ~kOtherExtensionFlag;
}

std::int32_t clsOpenSaveDialog::MaxFileSize() const
{
    return m_request.fileSize == 0 ? kDefaultFileSize : m_request.fileSize;
}

void clsOpenSaveDialog::SetMaxFileSize(std::int32_t size)
{
    PutSize(m_request.file, m_request.fileSize, size);
}

std::int32_t clsOpenSaveDialog::MaxFileTitleSize() const
{
    return m_request.fileTitleSize == 0 ? kDefaultFileTitleSize : m_request.fileTitleSize;
}

void clsOpenSaveDialog::SetMaxFileTitleSize(std::int32_t size)
{
    PutSize(m_request.fileTitle, m_request.fileTitleSize, size);
}

void clsOpenSaveDialog::SetFilterIndex(std::int32_t index)
{
    m_request.filterIndex = std::max(index, 0);
}

void clsOpenSaveDialog::SetCustomFilterSize(std::int32_t size)
{
    m_request.customFilterSize = std::max(size, 0);
}

} // namespace lantern
