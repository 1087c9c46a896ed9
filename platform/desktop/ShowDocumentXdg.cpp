// SPDX-License-Identifier: GPL-3.0-or-later
#include "ShowDocument.h"

#include "PathText.h"

#include <QDesktopServices>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>

namespace lantern {
namespace {

// Deletes itself when the program has ended. While that runs nobody owns it: deleting it would end
// what shows the document.
class Opener : public QProcess {
public:
    Opener(const QString& program, const QUrl& url, std::function<void()> onFailure)
        : m_onFailure(std::move(onFailure))
    {
        connect(this, &QProcess::finished, this, [this](int exitCode, ExitStatus status) {
            End(exitCode == 0 && status == NormalExit);
        });
        connect(this, &QProcess::errorOccurred, this, [this](ProcessError error) {
            if (error == FailedToStart)
                End(false);
        });
        setStandardInputFile(nullDevice());
        setStandardOutputFile(nullDevice());
        setStandardErrorFile(nullDevice());
        start(program, {url.toString(QUrl::FullyEncoded)});
    }

private:
    void End(bool isShown)
    {
        deleteLater();
        if (!isShown)
            m_onFailure();
    }

    std::function<void()> m_onFailure;
};

QUrl UrlOf(const QString& path)
{
    const QByteArray encoded = NativeFromText(path).toPercentEncoding("/");
    return QUrl::fromEncoded("file://" + encoded, QUrl::StrictMode);
}

} // namespace

// The toolkit starts the same command, but never hears that it failed.
void ShowDocument(const QString& path, std::function<void()> onFailure)
{
    const QUrl url = UrlOf(path);
    const QString program = QStandardPaths::findExecutable(QStringLiteral("xdg-open"));
    if (!program.isEmpty())
        new Opener(program, url, std::move(onFailure));
    else if (!QDesktopServices::openUrl(url))
        onFailure();
}

} // namespace lantern
