// SPDX-License-Identifier: GPL-3.0-or-later
// Shows the control set, for those who work on it: to look at, to try by hand, or as a picture.
#include "Gallery.h"
#include "ProgramFonts.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QTimer>

#include <cstdio>
#include <optional>

namespace lantern {
namespace {

constexpr double kMostRatio = 4.0;

struct Wish {
    QString picture; // a file; empty: a window on the screen
    double ratio = 1.0;
    bool wantsEvents = false;
};

// Ends the program where there is nothing to do.
Wish ReadWish(const QStringList& arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Shows every control in every state."));
    const QCommandLineOption help(QStringLiteral("help"), QStringLiteral("Tells the options."));
    const QCommandLineOption picture(QStringLiteral("picture"),
                                     QStringLiteral("Writes a picture instead."),
                                     QStringLiteral("file"));
    const QCommandLineOption ratio(
        QStringLiteral("ratio"),
        QStringLiteral("Device pixels to each pixel of the picture's layout, 1 to 4."),
        QStringLiteral("number"), QStringLiteral("1"));
    const QCommandLineOption events(QStringLiteral("events"),
                                    QStringLiteral("Prints where the controls are and what they "
                                                   "tell, a line each."));
    parser.addOptions({help, picture, ratio, events});
    if (!parser.parse(arguments) || !parser.positionalArguments().isEmpty()) {
        std::fprintf(stderr, "lantern-gallery: wrong arguments; see --help\n");
        std::exit(1);
    }
    if (parser.isSet(help)) {
        std::fputs(parser.helpText().toLocal8Bit().constData(), stdout);
        std::exit(0);
    }
    Wish wish{parser.value(picture), parser.value(ratio).toDouble(), parser.isSet(events)};
    if (!(wish.ratio >= 1.0 && wish.ratio <= kMostRatio)) {
        std::fprintf(stderr, "lantern-gallery: the ratio is no number from 1 to 4\n");
        std::exit(1);
    }
    return wish;
}

void Print(const QString& line)
{
    std::puts(line.toUtf8().constData());
    std::fflush(stdout);
}

int WritePicture(Gallery& gallery, const QString& file)
{
    gallery.show();
    if (gallery.TakePicture().save(file, "PNG"))
        return 0;
    std::fprintf(stderr, "lantern-gallery: can't write %s\n", file.toLocal8Bit().constData());
    return 1;
}

// Once the window stands still.
class PlacePrinter : public QObject {
public:
    explicit PlacePrinter(Gallery& gallery) : m_gallery(gallery)
    {
        m_settled.setSingleShot(true);
        m_settled.setInterval(200);
        QObject::connect(&m_settled, &QTimer::timeout, &m_settled, [this] {
            for (const QString& place : m_gallery.Places())
                Print(QStringLiteral("place ") + place);
            Print(QStringLiteral("placed"));
        });
        gallery.installEventFilter(this);
    }

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        const QEvent::Type type = event->type();
        if (type == QEvent::Show || type == QEvent::Move || type == QEvent::Resize)
            m_settled.start();
        return false;
    }

private:
    Gallery& m_gallery;
    QTimer m_settled;
};

int Run(int argc, char** argv)
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments += QString::fromLocal8Bit(argv[i]);
    const Wish wish = ReadWish(arguments);
    if (!wish.picture.isEmpty()) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qputenv("QT_SCALE_FACTOR", QByteArray::number(wish.ratio));
        qputenv("QT_FONT_DPI", "96");
    }
    const QApplication application(argc, argv);
    LoadProgramFonts();
    Gallery gallery;
    if (!wish.picture.isEmpty())
        return WritePicture(gallery, wish.picture);
    std::optional<PlacePrinter> places;
    if (wish.wantsEvents) {
        gallery.Told = Print;
        places.emplace(gallery);
    }
    gallery.show();
    return QApplication::exec();
}

} // namespace
} // namespace lantern

int main(int argc, char** argv)
{
    return lantern::Run(argc, argv);
}
