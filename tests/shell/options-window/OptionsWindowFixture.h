// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Application.h"
#include "OptionsFixture.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QMouseEvent>

#include <algorithm>
#include <string>
#include <vector>

namespace lantern {

// The window with the pointer and the keys of a user.
class OptionsWindowFixture : public OptionsFixture {
protected:
    ctlSkinner& PanelInFront()
    {
        return *dynamic_cast<ctlSkinner*>(options.childAt(options.width() / 2, 24));
    }
    bool IsOptionsInFront() { return PanelInFront().isAncestorOf(&options.lab(0)); }

    template <typename Widget>
    Widget& FindByText(const QString& text)
    {
        const QList<Widget*> all = options.findChildren<Widget*>();
        return **std::ranges::find_if(
            all, [&](const Widget* one) { return one->text().contains(text); });
    }
    QLabel& Url() { return FindByText<QLabel>(kWebSite); }
    QLabel& LabInfo() { return FindByText<QLabel>(QStringLiteral("without restriction")); }
    QWidget& AboutPic() { return *Url().parentWidget()->childAt(330, 100); }

    // All that the mouse moves the window by, apart from the panels.
    std::vector<QWidget*> Surfaces()
    {
        std::vector<QWidget*> surfaces;
        for (std::size_t i = 0; i < kOptionsLabels; ++i)
            surfaces.push_back(&options.lab(i));
        surfaces.insert(surfaces.end(), {&options.SpecPic(), &LabInfo(), &AboutPic(), &Url()});
        return surfaces;
    }

    static void Mouse(QWidget& target, QEvent::Type type, QPoint place, Qt::MouseButton button,
                      Qt::MouseButtons held)
    {
        QMouseEvent event(type, place, target.mapToGlobal(place), button, held, Qt::NoModifier);
        QApplication::sendEvent(&target, &event);
    }
    static void Press(QWidget& target, Qt::MouseButton button)
    {
        Mouse(target, QEvent::MouseButtonPress, target.rect().center(), button, button);
    }
    static void Release(QWidget& target, Qt::MouseButton button)
    {
        Mouse(target, QEvent::MouseButtonRelease, target.rect().center(), button, Qt::NoButton);
    }
    static void Click(QWidget& target, Qt::MouseButton button = Qt::LeftButton)
    {
        Press(target, button);
        Release(target, button);
    }
    // The pointer goes that far with the buttons held. A release ends it.
    QPoint Dragged(QWidget& target, QPoint distance, Qt::MouseButtons held)
    {
        const QPoint before = options.pos();
        Mouse(target, QEvent::MouseButtonPress, target.rect().center(), Qt::LeftButton, held);
        const QPoint start = target.mapToGlobal(target.rect().center());
        for (const QPoint& way : {QPoint(1, 0), distance + QPoint(1, 0)}) {
            QMouseEvent move(QEvent::MouseMove, target.mapFromGlobal(start + way), start + way,
                             Qt::NoButton, held, Qt::NoModifier);
            QApplication::sendEvent(&target, &move);
        }
        Release(target, Qt::LeftButton);
        return options.pos() - before;
    }

    static void Key(QWidget& target, QEvent::Type type, int key, bool isRepeat = false,
                    Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QKeyEvent event(type, key, modifiers, QString(), isRepeat);
        QApplication::sendEvent(&target, &event);
    }

    template <typename Predicate>
    static bool Await(Predicate isSo)
    {
        QElapsedTimer waited;
        waited.start();
        while (!isSo() && waited.elapsed() < 10000)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
        return isSo();
    }

    std::vector<std::string> Done()
    {
        std::vector<std::string> actions = engine.Actions();
        engine.Log.clear();
        return actions;
    }
};

} // namespace lantern
