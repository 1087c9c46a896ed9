// SPDX-License-Identifier: GPL-3.0-or-later
// A window with a skin, a green button and a menu, for a hand to try. The key M, or the right
// button on the skin, opens the menu at the pointer. It writes what happens, one line each.
#include "ProgramFont.h"
#include "ProgramFonts.h"
#include "ctlMenus.h"
#include "ctlPicBtn.h"
#include "ctlSkinner.h"

#include <QApplication>
#include <QKeyEvent>
#include <QTimer>

#include <iostream>

namespace lantern {
namespace {

class ControlHost : public QWidget {
public:
    ControlHost()
    {
        setWindowFlag(Qt::FramelessWindowHint);
        setMinimumSize(200, 150);
        setGeometry(400, 250, 320, 240);
        m_skinner.SetBackColor(0);
        m_skinner.Initialize(this, true, true);
        m_skinner.MouseUp = [this](const MouseReport& report) {
            std::cout << "up " << report.button << std::endl;
            if (report.button == RightButton)
                ShowMenu();
        };
        m_button.setGeometry(21, 191, 40, 24); // so that edges lie within pixels at 1.5
        m_button.SetBackColor(DirectColour(0, 255, 0));
        m_button.MouseOver = [] { std::cout << "over" << std::endl; };
        m_button.MouseOut = [] { std::cout << "out" << std::endl; };
        m_button.Click = [] { std::cout << "click" << std::endl; };
        m_menus.SetFont(ProgramFont(QStringLiteral("Arial"), 11));
        m_menus.SetBackColor(0);
        m_menus.SetItemForeColor(DirectColour(255, 255, 255));
        m_menus.ItemClicked = [this](std::int16_t& index, const QString&, const QString& key) {
            std::cout << "chosen " << index << ' ' << key.toStdString() << std::endl;
            if (key == QLatin1String("AGAIN"))
                ShowMenu();
        };
    }

protected:
    void resizeEvent(QResizeEvent*) override { m_skinner.resize(size()); }
    void keyPressEvent(QKeyEvent* event) override
    {
        if (event->key() == Qt::Key_M)
            ShowMenu();
    }

private:
    void ShowMenu()
    {
        m_menus.ResetMenu();
        m_menus.AddItem(QStringLiteral("Play the track"), QStringLiteral("PLAY"));
        m_menus.AddItem(QStringLiteral("Show this again"), QStringLiteral("AGAIN"));
        m_menus.AddItem(QStringLiteral("-"), {});
        m_menus.AddItem(QStringLiteral("Not now"), QStringLiteral("OFF"), false);
        QTimer::singleShot(0, this, [] {
            const QRect menu = QApplication::activePopupWidget()->geometry();
            std::cout << "open " << menu.x() << ' ' << menu.y() << ' ' << menu.width() << ' '
                      << menu.height() << std::endl;
        });
        m_menus.ShowMenu();
        std::cout << "closed" << std::endl;
    }

    ctlSkinner m_skinner{this};
    ctlPicBtn m_button{&m_skinner};
    ctlMenus m_menus{this};
};

} // namespace
} // namespace lantern

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    lantern::LoadProgramFonts();
    lantern::ControlHost host;
    host.show();
    return QApplication::exec();
}
