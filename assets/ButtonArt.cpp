// SPDX-License-Identifier: GPL-3.0-or-later
#include "ButtonArt.h"

#include <QFile>

namespace lantern {
namespace {

// How a state looks: the four differ in brightness and in what becomes of the plate, so that they
// are told apart without colour too.
struct ButtonStyle {
    FaceState state;
    const char* glyph;
    const char* shade; // of the parts that stand back
    const char* outline;
    const char* fill;
};

constexpr std::array kButtonStyles{
    ButtonStyle{FaceState::Normal, "#ffab08", "#a36d05", "none", "none"},
    ButtonStyle{FaceState::Down, "#000000", "#5c3e03", "#ffab08", "#ffab08"},
    ButtonStyle{FaceState::Over, "#ffd584", "#d89107", "#bf8006", "#3d2902"},
    ButtonStyle{FaceState::Disabled, "#59503f", "#3d372b", "none", "none"},
};

// Both tables are looked into by number.
template <typename Table, typename Key>
constexpr bool InOrder(const Table& table, Key key)
{
    for (std::size_t i = 0; i < table.size(); ++i)
        if (static_cast<std::size_t>(table[i].*key) != i)
            return false;
    return true;
}
static_assert(InOrder(kButtonDrawings, &ButtonDrawing::face));
static_assert(InOrder(kButtonStyles, &ButtonStyle::state));

const ButtonStyle& StyleOf(FaceState state)
{
    return kButtonStyles[static_cast<std::size_t>(state)];
}

QByteArray RoundedBox(const ButtonPlate& plate, int inset, const char* colour)
{
    return QByteArrayLiteral("<rect x='") + QByteArray::number(plate.left + inset) + "' y='" +
           QByteArray::number(plate.top + inset) + "' width='" +
           QByteArray::number(plate.width - 2 * inset) + "' height='" +
           QByteArray::number(plate.height - 2 * inset) + "' rx='" +
           QByteArray::number(plate.radius - inset) + "' fill='" + colour + "'/>";
}

QByteArray Ground(const ButtonDrawing& drawing, const ButtonStyle& style)
{
    const ButtonPlate whole{0, 0, drawing.width, drawing.height, 0, false};
    const QByteArray black = RoundedBox(whole, 0, "#000000");
    if (!drawing.plate.outlined)
        return black + RoundedBox(drawing.plate, 0, style.fill);
    return black + RoundedBox(drawing.plate, 0, style.outline) +
           RoundedBox(drawing.plate, 1, style.fill);
}

QByteArray ReadDrawing(std::string_view name)
{
    QFile file(QStringLiteral(":/art/buttons/%1.svg")
                   .arg(QLatin1StringView(name.data(), static_cast<qsizetype>(name.size()))));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

PictureReference ButtonPicture(ButtonFace face, FaceState state)
{
    const ButtonDrawing& drawing = kButtonDrawings[static_cast<std::size_t>(face)];
    const ButtonStyle& style = StyleOf(state);
    const ButtonStyle& drawn = StyleOf(FaceState::Normal);
    const bool turns = state == FaceState::Down && !drawing.downName.empty();
    QByteArray svg = ReadDrawing(turns ? drawing.downName : drawing.name);
    svg.replace(drawn.glyph, style.glyph);
    svg.replace(drawn.shade, style.shade);
    svg.insert(svg.indexOf('>', svg.indexOf("<svg")) + 1, Ground(drawing, style));
    return Picture::FromKnownSvg(svg, {drawing.width, drawing.height});
}

} // namespace lantern
