// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Colours.h"
#include "Zoom.h"

#include <QString>

namespace lantern {

// What the display asks of the window that the picture stands in. Lengths are in twips, except
// where a name says pixels. Everything runs on the user-interface thread.
class DisplayHost {
public:
    virtual ~DisplayHost() = default;

    // The parts that the border's colour runs through.
    virtual ColourValue WindowBackColor() = 0;
    virtual void SetWindowBackColor(ColourValue colour) = 0;
    virtual void SetPicBackColor(ColourValue colour) = 0;
    virtual void SetSkinnerBackColor(ColourValue colour) = 0;

    // The line of text in the border under the picture.
    virtual void SetSystemTextBackColor(ColourValue colour) = 0;
    virtual ColourValue SystemTextForeColor() = 0;
    virtual void SetSystemTextForeColor(ColourValue colour) = 0;
    virtual void SetSystemTextCaption(const QString& caption) = 0;
    virtual void ShowSystemText(bool visible) = 0;

    virtual TwipSize PicSize() = 0;     // of the surface that the picture is shown on
    virtual WindowFrame Frame() = 0;    // for the current window state
    virtual TwipSize DesktopSize() = 0; // of the screen

    virtual bool IsMaximised() = 0; // without chrome, on the whole screen
    virtual void SetMaximised(bool maximised) = 0;
    virtual void CalcMargins() = 0; // for the current window state
    virtual void MoveWindow(const TwipRect& rect) = 0;
    // Holds the window's drawing, so that several changes are seen as one.
    virtual void LockWindowUpdate(bool locked) = 0;
    // Shows or hides the toolbar, sets the pointer to go with it, and lays the window out.
    virtual void ShowToolbar(bool visible) = 0;
    virtual void ShowSkinner(bool visible) = 0;

    // Has the window painted as soon as what goes on has ended, beginning with ShowPicture. Asked
    // several times, it is painted once.
    virtual void PaintSoon() = 0;

    // Seconds on a clock that never stands at 0 and is never set.
    virtual double SystemTimer() = 0;
};

} // namespace lantern
