// SPDX-License-Identifier: GPL-3.0-or-later

// A program that a picture is pasted to: a small window.
//   paste_target FILE   at the first key that it is sent, what the clipboard shows is written to
//                       FILE, and it ends: with 0 if that was a picture
#include <QApplication>
#include <QClipboard>
#include <QImage>
#include <QKeyEvent>
#include <QPainter>
#include <QWidget>

namespace lantern::test {
namespace {

class TargetWindow : public QWidget {
public:
    explicit TargetWindow(QString file) : m_file(std::move(file))
    {
        setWindowFlags(Qt::FramelessWindowHint);
        resize(80, 60);
    }

protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), Qt::darkCyan); }

    void keyPressEvent(QKeyEvent*) override
    {
        const QImage image = QApplication::clipboard()->image();
        QApplication::exit(!image.isNull() && image.save(m_file, "PNG") ? 0 : 1);
    }

private:
    QString m_file;
};

} // namespace
} // namespace lantern::test

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    if (argc != 2)
        return 2;
    lantern::test::TargetWindow window(QString::fromLocal8Bit(argv[1]));
    window.show();
    return QApplication::exec();
}
