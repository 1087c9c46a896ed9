// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "InteractiveMove.h"
#include "RetainedSurface.h"

#include <QRgb>

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace lantern {

// The skin's picture elements stand in a grid of three by three, counted in reading order.
inline constexpr std::size_t kSkinElements = 9;
inline constexpr std::size_t kSkinCentre = 4;
inline constexpr int kSkinBitmapSize = 5;

struct SkinElement {
    // The bitmap, top row first, one letter a pixel: see SkinColour. The centre has none.
    std::array<std::string_view, kSkinBitmapSize> bitmap;
    bool isStretched; // the bitmap, to the element; else it keeps its size
    int pointer;      // the shape's number, where the element may be dragged
    HitCode hitCode;
};

inline constexpr std::array<SkinElement, kSkinElements> kSkin = {{
    {{"OOOOO", "OOOOO", "OOMDD", "OODKK", "OODKK"}, false, 8, HitCode::TopLeft},
    {{"OOOOO", "OOOOO", "DDDDD", "KKKKK", "KKKKK"}, true, 7, HitCode::Top},
    {{"OOOOO", "OOOOO", "DDMOO", "KKDOO", "KKDOO"}, false, 6, HitCode::TopRight},
    {{"OODKK", "OODKK", "OODKK", "OODKK", "OODKK"}, true, 9, HitCode::Left},
    {{}, false, 0, HitCode::Caption},
    {{"KKDOO", "KKDOO", "KKDOO", "KKDOO", "KKDOO"}, true, 9, HitCode::Right},
    {{"OODKK", "OODKK", "OOMDD", "OOOOO", "OOOOO"}, false, 6, HitCode::BottomLeft},
    {{"KKKKK", "KKKKK", "DDDDD", "OOOOO", "OOOOO"}, true, 7, HitCode::Bottom},
    {{"KKDOO", "KKDOO", "DDMOO", "OOOOO", "OOOOO"}, false, 8, HitCode::BottomRight},
}};

// How the elements lie upon each other. The caption lies in front of them all.
inline constexpr std::array<std::size_t, kSkinElements> kSkinFrontToBack = {8, 0, 1, 2, 3,
                                                                            5, 6, 7, 4};

// O the skin's orange, M the inner corner pixel, D the dark line, K black.
QRgb SkinColour(char letter);

// Where everything lies in a control, in pixels. A control narrower than two corners gives the
// edges between them a negative length: nothing is clamped.
struct SkinLayout {
    std::array<Box, kSkinElements> elements;
    Box caption;
};
SkinLayout LayOutSkin(int width, int height, int captionHeight);

// What lies in front at a point. Nothing lies outside of the centre, which fills the control.
struct SkinPlace {
    bool isCaption = false;
    std::size_t element = kSkinCentre;
    Box box;
};
std::optional<SkinPlace> PlaceAt(const SkinLayout& layout, bool captionIsVisible, int x, int y);

} // namespace lantern
