// SPDX-License-Identifier: GPL-3.0-or-later
#include "GoldenImage.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace lantern {
namespace {

// Red where the images differ, the golden one in pale grey elsewhere.
QImage DifferenceOf(const QImage& golden, const QImage& drawn)
{
    const QSize size(std::max(golden.width(), drawn.width()),
                     std::max(golden.height(), drawn.height()));
    QImage difference(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const bool isSame =
                golden.valid(x, y) && drawn.valid(x, y) && golden.pixel(x, y) == drawn.pixel(x, y);
            const int pale = isSame ? 192 + qGray(golden.pixel(x, y)) / 4 : 0;
            difference.setPixel(x, y, isSame ? qRgb(pale, pale, pale) : qRgb(255, 0, 0));
        }
    }
    return difference;
}

QString PathOf(const QString& name)
{
    return QStringLiteral(LANTERN_GOLDEN_FOLDER "/%1.png").arg(name);
}

} // namespace

QImage GoldenImage(const QString& name)
{
    return QImage(PathOf(name)).convertToFormat(QImage::Format_RGB32);
}

bool AreGoldenImagesRenewed()
{
    return qEnvironmentVariableIntValue("LANTERN_RENEW_GOLDEN") == 1;
}

::testing::AssertionResult MatchesGolden(const QImage& image, const QString& name)
{
    QImage drawn = image.convertToFormat(QImage::Format_RGB32);
    drawn.setDevicePixelRatio(1);
    if (AreGoldenImagesRenewed()) {
        const QString path = PathOf(name);
        if (!drawn.save(path))
            return ::testing::AssertionFailure() << "cannot write " << path.toStdString();
        return ::testing::AssertionSuccess();
    }
    const QImage golden = GoldenImage(name);
    if (golden == drawn)
        return ::testing::AssertionSuccess();

    const QDir folder(QFileInfo(QStringLiteral("/proc/self/exe")).canonicalPath() +
                      QStringLiteral("/golden-failures"));
    QDir().mkpath(folder.path());
    drawn.save(folder.filePath(name + QStringLiteral(".png")));
    DifferenceOf(golden, drawn).save(folder.filePath(name + QStringLiteral("-difference.png")));
    return ::testing::AssertionFailure()
           << name.toStdString() << " is not as in the golden image; see "
           << folder.absolutePath().toStdString();
}

} // namespace lantern
