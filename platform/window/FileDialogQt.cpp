// SPDX-License-Identifier: GPL-3.0-or-later
#include "FileDialog.h"
#include "FileDialogFilters.h"
#include "PathHelpers.h"
#include "PathText.h"
#include "ShownNames.h"
#include "UriList.h"

#include <QDir>
#include <QFileDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QStandardPaths>
#include <QTreeView>
#include <QUrl>

#include <algorithm>
#include <array>

namespace lantern {
namespace {

constexpr QSize kDialogSize(720, 460);
constexpr QChar kSeparator = u'/';

// With the bytes that are no text, which QUrl::toLocalFile would lose. Empty for what lies on
// another machine.
QString PathOf(const QUrl& url)
{
    return TextFromNative(FileNameOfUri(url.toEncoded(), {}).value_or(QByteArray()));
}

bool IsFolder(const QString& path)
{
    return FileCheck(path) == QStringLiteral("DIR");
}

// The dialog, which knows its files by the names that it shows, with a way back to the files
// themselves. It carries no meta-object of its own: the toolkit shows a desktop's dialog for none
// but its own class.
class PathDialog : public QFileDialog {
public:
    explicit PathDialog(const FileDialogRequest& request)
        : QFileDialog(request.owner, request.title), m_request(request)
    {
    }

    const std::vector<QString>& Paths() const { return m_paths; }

protected:
    void accept() override
    {
        m_paths.clear();
        std::vector<QString> paths;
        for (const QString& path : ChosenPaths()) {
            const ShownFile file = WithExtension(FileShownAs(path));
            if (const QString reason = ReasonAgainst(file); !reason.isEmpty()) {
                Refuse(path, reason);
                return;
            }
            paths.push_back(file.path);
        }
        if (paths.size() == 1 && IsFolder(paths.front()))
            Enter(ResolveName(paths.front()));
        else
            Take(std::move(paths));
    }

private:
    // The toolkit takes a name with quotation marks for several names. What names a file as it
    // stands is that file.
    std::vector<QString> ChosenPaths() const
    {
        const auto* const name = findChild<QLineEdit*>();
        if (name && name->text().contains(u'"') && !m_request.isSave) {
            const QString path = directory().absoluteFilePath(name->text());
            if (!FileCheck(WithExtension(FileShownAs(path)).path).isEmpty())
                return {path};
        }
        std::vector<QString> paths;
        for (const QUrl& url : selectedUrls())
            paths.push_back(PathOf(url));
        return paths;
    }

    void Enter(const QString& folder)
    {
        setDirectory(ShownPath(folder));
        if (auto* name = findChild<QLineEdit*>()) // a desktop's dialog has none of ours
            name->clear();
    }

    // The toolkit would add it to the name of a folder, too.
    ShownFile WithExtension(ShownFile file) const
    {
        const bool hasOne = file.path.lastIndexOf(u'.') > file.path.lastIndexOf(kSeparator);
        if (!m_request.defaultExtension.isEmpty() && !hasOne && FileCheck(file.path).isEmpty())
            file.path += u'.' + m_request.defaultExtension;
        return file;
    }

    QString ReasonAgainst(const ShownFile& file) const
    {
        if (file.match == ShownFile::Match::Several) {
            return QStringLiteral("Several names look like this one, and can't be told apart here. "
                                  "Please rename the file.");
        }
        // The toolkit's list can't enter a folder by a name that is no text.
        if (IsFolder(file.path) && MayBeShownOnly(ShownPath(file.path)))
            return QStringLiteral("This folder can't be shown here. Please rename it.");
        if (m_request.pathMustExist && !IsFolder(FolderOf(file.path, kSeparator)))
            return QStringLiteral("There is no such folder.");
        const bool isThere = !FileCheck(file.path).isEmpty();
        if (file.match == ShownFile::Match::None || (m_request.fileMustExist && !isThere))
            return QStringLiteral("There is no such file. Please check its name.");
        return {};
    }

    void Take(std::vector<QString> paths)
    {
        // The name may have been typed in another letter case than the file's.
        if (!m_request.isSave)
            std::ranges::transform(paths, paths.begin(), NameOnDisk);
        m_paths = std::move(paths);
        // In a save, an existing file is asked about.
        if (m_request.isSave)
            QFileDialog::accept();
        else
            QDialog::accept();
    }

    static QString NameOnDisk(const QString& path)
    {
        const QString name = ResolveName(path);
        return name.isEmpty() ? path : name;
    }

    void Refuse(const QString& path, const QString& reason)
    {
        QMessageBox box(QMessageBox::Warning, windowTitle(),
                        ShownPath(path) + QStringLiteral("\n") + reason, QMessageBox::Ok, this);
        box.setTextFormat(Qt::PlainText);
        box.exec();
    }

    const FileDialogRequest& m_request;
    std::vector<QString> m_paths;
};

// Where people keep songs. The toolkit would otherwise list what other programs left there.
QList<QUrl> Places()
{
    constexpr std::array kPlaces = {QStandardPaths::HomeLocation, QStandardPaths::MusicLocation,
                                    QStandardPaths::DownloadLocation,
                                    QStandardPaths::DesktopLocation};
    QList<QUrl> places = {QUrl::fromLocalFile(QStringLiteral("/"))};
    for (const QStandardPaths::StandardLocation place : kPlaces) {
        const QUrl url = QUrl::fromLocalFile(QStandardPaths::writableLocation(place));
        if (QDir(url.toLocalFile()).exists() && !places.contains(url))
            places += url;
    }
    return places;
}

// The folder and the name to begin with. A folder that is gone gives way to the nearest one above.
void GoTo(PathDialog& dialog, const FileDialogRequest& request)
{
    const QString pathFolder = FolderOf(request.initialPath, kSeparator);
    QString folder = pathFolder.isEmpty() ? request.initialFolder : pathFolder;
    while (!folder.isEmpty() && !IsFolder(folder))
        folder = FolderOf(folder.chopped(1), kSeparator);
    if (folder.isEmpty())
        folder = QDir::homePath();
    dialog.setDirectory(ShownPath(folder));
    const QString name = request.initialPath.mid(pathFolder.size());
    if (!name.isEmpty())
        dialog.selectFile(ShownPath(name));
}

void SetUp(PathDialog& dialog, const FileDialogRequest& request)
{
    dialog.setAcceptMode(request.isSave ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    // What must exist is looked at when it has been chosen, and a typed name's letter case does not
    // count: the toolkit's stricter modes know neither.
    dialog.setFileMode(request.multipleSelection ? QFileDialog::ExistingFiles
                                                 : QFileDialog::AnyFile);
    dialog.setSupportedSchemes({QStringLiteral("file")});
    dialog.setOption(QFileDialog::DontConfirmOverwrite, !request.overwritePrompt);
    dialog.setOption(QFileDialog::HideNameFilterDetails);
    dialog.setOption(QFileDialog::ReadOnly, !request.isSave);
    if (request.isSave)
        dialog.setDefaultSuffix(request.defaultExtension); // it asks about the full name
    dialog.setSidebarUrls(Places());
    dialog.setHistory({});
    GoTo(dialog, request);
}

void SetFilters(PathDialog& dialog, const FileDialogRequest& request)
{
    const QStringList filters = ToolkitFilters(request.filters);
    if (filters.isEmpty())
        return;
    dialog.setNameFilters(filters);
    const qsizetype chosen = request.filterIndex - 1;
    dialog.selectNameFilter(filters.value(chosen, filters.front()));
}

// A desktop's dialog has no such columns.
void GiveNamesTheRoom(const PathDialog& dialog)
{
    if (const auto* table = dialog.findChild<QTreeView*>()) {
        table->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
        table->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    }
}

// The toolkit names the filter by its line without the patterns, a desktop's dialog by all of it.
std::int32_t FilterIndexOf(const QString& selected, const std::vector<FileFilter>& filters)
{
    const QStringList lines = ToolkitFilters(filters);
    for (std::size_t i = 0; i < filters.size(); ++i) {
        if (filters[i].label.trimmed() == selected || lines[static_cast<qsizetype>(i)] == selected)
            return static_cast<std::int32_t>(i + 1);
    }
    return 0;
}

} // namespace

FileDialogAnswer RunFileDialog(const FileDialogRequest& request)
{
    const QPointer<PathDialog> dialog = new PathDialog(request);
    SetUp(*dialog, request);
    SetFilters(*dialog, request);
    dialog->resize(kDialogSize);
    GiveNamesTheRoom(*dialog);
    const int result = dialog->exec();
    if (!dialog)
        return {}; // its owner went, and took it along
    FileDialogAnswer answer;
    if (result == QDialog::Accepted) {
        answer.paths = dialog->Paths();
        answer.filterIndex = FilterIndexOf(dialog->selectedNameFilter(), request.filters);
    }
    delete dialog;
    return answer;
}

} // namespace lantern
