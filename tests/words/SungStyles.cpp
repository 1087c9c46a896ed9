// SPDX-License-Identifier: GPL-3.0-or-later
#include "SungTrack.h"

#include <array>

namespace lantern::test {
namespace {

const QString kSans = QStringLiteral("Liberation Sans");
const QString kSerif = QStringLiteral("Liberation Serif");
const QString kDejaVu = QStringLiteral("DejaVu Sans");
const QString kDejaVuSerif = QStringLiteral("DejaVu Serif");
const QString kNarrow = QStringLiteral("Nimbus Sans Narrow");
const QString kBookman = QStringLiteral("URW Bookman");
const QString kGothic = QStringLiteral("URW Gothic");
const QString kPalladio = QStringLiteral("P052");
const QString kSchoolbook = QStringLiteral("C059");

} // namespace

std::span<const SungStyle> SungStyles()
{
    static const std::array styles = {
        SungStyle{.name = "plain", .family = kSans},
        SungStyle{.name = "outlined", .family = kSans, .pixelSize = 26, .outlined = true},
        SungStyle{.name = "shadowed", .family = kDejaVu, .pixelSize = 22, .shadowed = true},
        SungStyle{.name = "italic", .family = kSerif, .pixelSize = 27, .italic = true},
        SungStyle{.name = "capitals", .family = kDejaVu, .pixelSize = 17, .capitals = true},
        SungStyle{.name = "condensed", .family = kNarrow, .pixelSize = 28},
        SungStyle{.name = "doubled", .family = kSans, .pixelSize = 12, .lines = 3, .doubled = true},
        SungStyle{.name = "textured",
                  .family = kBookman,
                  .pixelSize = 21,
                  .outlined = true,
                  .textured = true},
        SungStyle{
            .name = "two-lines", .family = kSchoolbook, .pixelSize = 25, .lines = 2, .faded = true},
        SungStyle{.name = "five-lines",
                  .family = kDejaVuSerif,
                  .pixelSize = 20,
                  .lines = 5,
                  .bold = false},
        SungStyle{.name = "scrolling", .family = kPalladio, .paging = Paging::Scroll},
        SungStyle{.name = "duet", .family = kSans, .pixelSize = 25, .duet = true},
        SungStyle{.name = "recoloured", .family = kDejaVu, .pixelSize = 19, .wipe = Wipe::Recolour},
        SungStyle{.name = "line-by-line",
                  .family = kSchoolbook,
                  .pixelSize = 22,
                  .paging = Paging::LineByLine},
        SungStyle{.name = "palette",
                  .family = kGothic,
                  .pixelSize = 21,
                  .lines = 2,
                  .wipe = Wipe::Palette},
        SungStyle{.name = "vanishing", .family = kSans, .pixelSize = 26, .wipe = Wipe::Vanish},
        SungStyle{.name = "antialiased", .family = kSans, .antialiased = true},
        SungStyle{.name = "accents", .family = kDejaVu, .pixelSize = 20, .language = "deu"},
        SungStyle{.name = "damaged", .family = kSans, .pixelSize = 25, .damagedOneIn = 400},
        SungStyle{.name = "at-once", .family = kBookman, .pixelSize = 20, .wipe = Wipe::LineAtOnce},
    };
    return styles;
}

} // namespace lantern::test
