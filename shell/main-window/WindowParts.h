// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "DisplayHost.h"
#include "FullScreen.h"
#include "MessageLine.h"
#include "PictureSurface.h"
#include "SystemColours.h"
#include "Toolbar.h"
#include "WindowLayout.h"
#include "ctlFrame.h"
#include "ctlSkinner.h"

#include <QCursor>
#include <QElapsedTimer>

#include <functional>

namespace lantern {

// What stands on the main window, and where: the skin behind all, the picture, the message line
// and the toolbar. It is what the display paints on and sizes.
//
// Life cycle: construct with the window, which they are children of; Layout whenever its size has
// changed. Everything runs on the user-interface thread.
class WindowParts : public DisplayHost {
public:
    // The window is borrowed and outlives its parts.
    WindowParts(QWidget& window, TwipsPerPixel twips);

    // Called at the end of each layout: the moment to paint the picture.
    std::function<void()> LaidOut;

    // Places everything for the window's size. Nothing happens while it is minimised.
    void Layout();
    void SetPointersBlank(bool blank); // over the window and its picture
    void PaintBackground(const QRegion& exposed);
    void Refresh(); // draws everything anew
    // The window system can change the state, too, and nobody else then sees to what goes with it.
    void FollowWindowState();

    PictureSurface& Pic() { return m_pic; }
    ctlSkinner& Skinner() { return m_skinner; }
    ctlFrame& SystemText() { return m_systemText; }
    Toolbar& Bar() { return m_bar; }

    ColourValue WindowBackColor() override { return m_backColor; }
    void SetWindowBackColor(ColourValue colour) override;
    void SetPicBackColor(ColourValue colour) override;
    void SetSkinnerBackColor(ColourValue colour) override { m_skinner.SetBackColor(colour); }
    void SetSystemTextBackColor(ColourValue colour) override { m_systemText.SetBackColor(colour); }
    ColourValue SystemTextForeColor() override { return m_systemText.ForeColor(); }
    void SetSystemTextForeColor(ColourValue colour) override { m_systemText.SetForeColor(colour); }
    void SetSystemTextCaption(const QString& caption) override;
    void ShowSystemText(bool visible) override { m_systemText.ShowMessage(visible); }
    TwipSize PicSize() override;
    WindowFrame Frame() override;
    TwipSize DesktopSize() override;
    bool IsMaximised() override { return m_fullScreen.IsOn(); }
    void SetMaximised(bool maximised) override;
    void CalcMargins() override;
    void MoveWindow(const TwipRect& rect) override;
    void LockWindowUpdate(bool locked) override;
    void ShowToolbar(bool visible) override;
    void ShowSkinner(bool visible) override { m_skinner.setVisible(visible); }
    void PaintSoon() override;
    double SystemTimer() override;

private:
    QWidget& m_window;
    TwipsPerPixel m_twips;
    // From the back to the front.
    ctlSkinner m_skinner;
    PictureSurface m_pic;
    MessageLine m_systemText;
    Toolbar m_bar;
    FullScreen m_fullScreen;
    QElapsedTimer m_systemTimer;
    QCursor m_blankPointer;
    // Differs from every border colour, so that the first paint colours all surroundings.
    ColourValue m_backColor = SystemReference(SystemColour::ButtonFace);
    std::int32_t m_marginX = 0;
};

} // namespace lantern
