// SPDX-License-Identifier: GPL-3.0-or-later
#include "ScreenWays.h"

#include <QGuiApplication>

// Its names would be taken for others in the toolkit's headers.
#include <X11/Xlib.h>
#include <X11/extensions/scrnsaver.h>

namespace lantern {
namespace {

// None where the toolkit is on another kind of display, or is not there.
Display* ToolkitDisplay()
{
    const auto* application = qGuiApp;
    const auto* x11 =
        application ? application->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return x11 ? x11->display() : nullptr;
}

class X11ScreenWay : public ScreenWay {
public:
    ~X11ScreenWay() override { GiveBack(); }

    void Keep(std::function<void(bool isKept)> answered) override
    {
        Display* display = ToolkitDisplay();
        int event = 0;
        int error = 0;
        m_isKept = display && XScreenSaverQueryExtension(display, &event, &error);
        if (m_isKept)
            Suspend(display, True);
        answered(m_isKept);
    }

    void GiveBack() override
    {
        Display* display = ToolkitDisplay();
        if (m_isKept && display)
            Suspend(display, False);
        m_isKept = false;
    }

private:
    static void Suspend(Display* display, Bool isOn)
    {
        XScreenSaverSuspend(display, isOn);
        XFlush(display);
    }

    bool m_isKept = false;
};

} // namespace

std::unique_ptr<ScreenWay> DisplayScreenWay()
{
    return std::make_unique<X11ScreenWay>();
}

} // namespace lantern
