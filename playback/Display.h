// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "DisplayHost.h"
#include "Painter.h"
#include "PictureMemory.h"

#include <QString>

namespace lantern {

// Brings the picture to the screen: the visible part scaled over the surface that the window
// keeps for it, and everything around in the border's colour, so that the border is the window
// itself. Holds the zoom steps, the copy to the clipboard and the short messages, too.
//
// Life cycle: construct when all it works on exists; painting begins with the picture's
// SetupGraphics. Everything runs on the user-interface thread.
class Display : public Painter {
public:
    Display(PictureMemory& picture, DisplayHost& host, ClipSink& clipboard);

    // Colours the surroundings, and has the picture shown with the window's next painting. Of
    // several in a row only the last can be seen, and only that one is scaled.
    void PaintDisplay() override;
    // Scales the picture if PaintDisplay asked for it, and tells whether. For the host, as it begins
    // to paint.
    bool ShowPicture();

    // The step that comes nearest to the current size; 0 in full screen.
    int NearestZoom();
    // Sizes the window for a step, times the factor. Step 0 goes to full screen and back.
    void SetZoom(int zoom, float factor);
    // One step along the ring, from the current size.
    void ZoomIn();
    void ZoomOut();

    // The visible picture in its own size, without border.
    void CopyToClipboard();

    // Shows a message, which HideExpiredStatus, called every tick, takes away after 3 seconds.
    void ShowStatus(const QString& text);
    void HideExpiredStatus();

    int ZoomStep = kDefaultZoomStep; // 1 to 5: the size last set; 0: full screen
    double MessageTime = 0;          // when a message was shown; 0 while none stands

private:
    void ColourSurroundings();
    void SizeWindow(float factor);
    void ToggleFullScreen();

    PictureMemory& m_picture;
    DisplayHost& m_host;
    ClipSink& m_clipboard;
    bool m_isPictureDue = false;
};

} // namespace lantern
