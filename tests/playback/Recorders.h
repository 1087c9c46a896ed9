// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Display.h"

#include <string>
#include <vector>

// What stands around the display, in memory.
namespace lantern {

// A window that stands in memory and writes down what is done to it.
class RecorderHost : public DisplayHost {
public:
    std::vector<std::string> Log;
    ColourValue BackColor = 0x0040C0;
    ColourValue TextBackColor = 0;
    ColourValue TextForeColor = 0xFFFFFF;
    ColourValue PicBackColor = 0;
    ColourValue SkinnerBackColor = 0;
    QString Caption;
    bool TextVisible = false;
    TwipSize Pic = {288 * 15, 192 * 15};
    TwipSize PicInFullScreen = {1200 * 15, 800 * 15};
    bool Maximised = false;
    TwipRect Window;
    double Seconds = 1;
    std::int32_t MarginX = 0;
    int PaintsAsked = 0;

    ColourValue WindowBackColor() override { return BackColor; }
    void SetWindowBackColor(ColourValue colour) override { Set(BackColor, colour, "window"); }
    void SetPicBackColor(ColourValue colour) override { Set(PicBackColor, colour, "pic"); }
    void SetSkinnerBackColor(ColourValue colour) override
    {
        Set(SkinnerBackColor, colour, "skinner");
    }
    void SetSystemTextBackColor(ColourValue colour) override
    {
        Set(TextBackColor, colour, "text back");
    }
    ColourValue SystemTextForeColor() override { return TextForeColor; }
    void SetSystemTextForeColor(ColourValue colour) override
    {
        Set(TextForeColor, colour, "text fore");
    }
    void SetSystemTextCaption(const QString& caption) override { Caption = caption; }
    void ShowSystemText(bool visible) override { TextVisible = visible; }
    TwipSize PicSize() override { return Maximised ? PicInFullScreen : Pic; }
    WindowFrame Frame() override { return {15, 15, MarginX, 720}; }
    TwipSize DesktopSize() override { return {1280 * 15, 800 * 15}; }
    bool IsMaximised() override { return Maximised; }
    void SetMaximised(bool maximised) override
    {
        Log.emplace_back(maximised ? "maximise" : "normal");
        Maximised = maximised;
    }
    void CalcMargins() override
    {
        Log.emplace_back("margins");
        MarginX = Maximised ? 300 : 375;
    }
    void MoveWindow(const TwipRect& rect) override
    {
        Log.emplace_back("move");
        Window = rect;
    }
    void LockWindowUpdate(bool locked) override { Log.emplace_back(locked ? "lock" : "unlock"); }
    void ShowToolbar(bool visible) override
    {
        Log.emplace_back(visible ? "toolbar" : "no toolbar");
    }
    void ShowSkinner(bool visible) override { Log.emplace_back(visible ? "skin" : "no skin"); }
    void PaintSoon() override { ++PaintsAsked; }
    double SystemTimer() override { return Seconds; }

private:
    void Set(ColourValue& field, ColourValue colour, const char* name)
    {
        field = colour;
        Log.emplace_back(name);
    }
};

class RecorderClipboard : public ClipSink {
public:
    int Width = 0;
    int Height = 0;
    std::vector<std::uint32_t> Pixels;

    void SetImage(const ClipImage& image) override
    {
        Width = image.width;
        Height = image.height;
        Pixels.assign(image.pixels.begin(), image.pixels.end());
    }
};

// A surface in memory, one device pixel a unit.
class RecorderSurface : public ScaleSurface {
public:
    int Width = 288;
    int Height = 192;
    std::vector<std::uint32_t> Pixels = std::vector<std::uint32_t>(288 * 192);
    int Changes = 0;
    int Scales = 0; // times that anything was to be shown

    SurfaceImage Image() override
    {
        ++Scales;
        return {Pixels.data(), Width, Height, Width, 1.0, 1};
    }
    void Changed(const DeviceRect&) override { ++Changes; }
    std::uint32_t At(int x, int y) const { return Pixels[static_cast<std::size_t>(y * 288 + x)]; }
};

} // namespace lantern
