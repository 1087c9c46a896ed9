// SPDX-License-Identifier: GPL-3.0-or-later

// A program that files are dragged from: a small window at the top left of the screen.
//   drag_source LIST ACTION...   LIST is a file with the bytes of the list, ACTION what it offers:
//                                copy, move, link; the first one is what it would like
// It tells what it hears: "ready"; "asked" each time that its list is fetched; "over ACTION" when
// the answer to the drag changes; "dropped ACTION" at the end. ACTION may be "none", too.
#include "Process.h"
#include "RawFileList.h"

#include <QApplication>
#include <QDrag>
#include <QMouseEvent>
#include <QPainter>
#include <QWidget>

#include <array>
#include <cstdio>
#include <string_view>

namespace lantern::test {
namespace {

constexpr QRect kPlace(20, 20, 80, 60);

struct NamedAction {
    const char* name;
    Qt::DropAction action;
};
constexpr std::array<NamedAction, 4> kActions = {{{"none", Qt::IgnoreAction},
                                                  {"copy", Qt::CopyAction},
                                                  {"move", Qt::MoveAction},
                                                  {"link", Qt::LinkAction}}};

void Tell(const char* what, const char* action = "")
{
    std::printf("%s%s%s\n", what, *action == '\0' ? "" : " ", action);
    std::fflush(stdout);
}

void TellAction(const char* what, Qt::DropAction action)
{
    for (const NamedAction& named : kActions) {
        if (named.action == action)
            Tell(what, named.name);
    }
}

Qt::DropAction ActionNamed(std::string_view name)
{
    for (const NamedAction& named : kActions) {
        if (named.name == name)
            return named.action;
    }
    return Qt::IgnoreAction;
}

class TellingFileList : public RawFileList {
public:
    using RawFileList::RawFileList;

protected:
    QVariant retrieveData(const QString& type, QMetaType metaType) const override
    {
        Tell("asked");
        return RawFileList::retrieveData(type, metaType);
    }
};

class SourceWindow : public QWidget {
public:
    SourceWindow(QByteArray list, Qt::DropActions offered, Qt::DropAction preferred)
        : m_list(std::move(list)), m_offered(offered), m_preferred(preferred)
    {
        // Where it is put, whatever window manager there is, and without taking the keyboard.
        setWindowFlags(Qt::X11BypassWindowManagerHint | Qt::FramelessWindowHint);
        setGeometry(kPlace);
    }

protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), Qt::darkYellow); }

    void mouseMoveEvent(QMouseEvent* event) override
    {
        if (!(event->buttons() & Qt::LeftButton) || m_isDragging)
            return;
        m_isDragging = true;
        auto* drag = new QDrag(this); // the toolkit deletes it
        drag->setMimeData(new TellingFileList(m_list));
        QPixmap shape(8, 8);
        shape.fill(Qt::yellow);
        drag->setPixmap(shape); // without one, the toolkit asks for the list to draw a text
        drag->setHotSpot({-12, -12});
        connect(drag, &QDrag::actionChanged, drag,
                [](Qt::DropAction action) { TellAction("over", action); });
        TellAction("dropped", drag->exec(m_offered, m_preferred));
        m_isDragging = false;
    }

private:
    QByteArray m_list;
    Qt::DropActions m_offered;
    Qt::DropAction m_preferred;
    bool m_isDragging = false;
};

int Run(int argc, char** argv)
{
    const QApplication application(argc, argv);
    if (argc < 3)
        return 2;
    Qt::DropActions offered = Qt::IgnoreAction;
    for (int i = 2; i < argc; ++i)
        offered |= ActionNamed(argv[i]);
    SourceWindow window(QByteArray::fromStdString(ReadFile(argv[1])), offered,
                        ActionNamed(argv[2]));
    window.show();
    Tell("ready");
    return QApplication::exec();
}

} // namespace
} // namespace lantern::test

int main(int argc, char** argv)
{
    return lantern::test::Run(argc, argv);
}
