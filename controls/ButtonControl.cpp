// SPDX-License-Identifier: GPL-3.0-or-later
// What a button is and shows. What the user does to it is in ButtonControlInput.cpp.
#include "ButtonControl.h"

#include "ControlAccessibility.h"

#include <QCursor>
#include <QKeySequence>
#include <QPixmap>

#include <algorithm>
#include <cmath>

namespace lantern {
namespace {

constexpr QSize kBuiltInSize(320, 240);
constexpr std::int16_t kOwnPointer = 99;
constexpr double kPointsPerPixel = 72.0 / 96.0;

} // namespace

ButtonLook LookOf(ButtonState state, bool isEnabled, bool isHot)
{
    if (!isEnabled)
        return ButtonLook::Disabled;
    if (state == ButtonState::Down)
        return ButtonLook::Down;
    return isHot ? ButtonLook::Hot : ButtonLook::Normal;
}

ButtonControl::ButtonControl(QWidget* parent, Ambient ambient)
    : OwnerDrawn(parent, std::move(ambient)), m_caption(HostAmbient().displayName),
      m_font(HostAmbient().font)
{
    resize(kBuiltInSize);
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    UpdateAccessKey();
}

void ButtonControl::FirstCreated()
{
    ResolveColors();
    Relayout();
}

void ButtonControl::Loaded()
{
    UpdateAccessKey();
    UpdatePointer();
    MeasurePicture();
    Invalidate();
    Relayout();
}

void ButtonControl::SetCaption(const QString& caption)
{
    if (m_caption != caption) {
        Store(m_caption, caption);
        UpdateAccessKey();
        TellNameChanged(*this);
    }
    Relayout();
    DrawButton(ButtonState::Normal, true);
    Report(QStringLiteral("Caption"));
}

void ButtonControl::SetEnabled(bool enabled)
{
    if (m_enabled != enabled) {
        Store(m_enabled, enabled);
        TellEnabledChanged(*this);
    }
    DrawButton(ButtonState::Normal, true);
    Report(QStringLiteral("Enabled"));
}

void ButtonControl::SetFont(const QFont& font)
{
    Store(m_font, font);
    Relayout();
    DrawButton(ButtonState::Normal, true);
    Report(QStringLiteral("Font"));
}

// The attributes of the font are no properties of their own, so their changes aren't reported.
template <typename Change>
void ButtonControl::ChangeFont(Change change)
{
    QFont font = m_font;
    change(font);
    Store(m_font, font);
    Relayout();
    DrawButton(ButtonState::Normal, true);
}

void ButtonControl::SetFontBold(bool bold)
{
    ChangeFont([bold](QFont& font) { font.setBold(bold); });
}

void ButtonControl::SetFontItalic(bool italic)
{
    ChangeFont([italic](QFont& font) { font.setItalic(italic); });
}

void ButtonControl::SetFontUnderline(bool underline)
{
    ChangeFont([underline](QFont& font) { font.setUnderline(underline); });
}

double ButtonControl::FontSize() const
{
    return m_font.pixelSize() > 0 ? m_font.pixelSize() * kPointsPerPixel : m_font.pointSizeF();
}

// In whole pixels, as the screen shows it: 8 points are 11 pixels, which read back as 8.25.
void ButtonControl::SetFontSize(std::int16_t points)
{
    const int pixels = std::max(1, static_cast<int>(std::lround(points / kPointsPerPixel)));
    ChangeFont([pixels](QFont& font) { font.setPixelSize(pixels); });
}

void ButtonControl::SetFontName(const QString& name)
{
    ChangeFont([&name](QFont& font) { font.setFamily(name); });
}

void ButtonControl::SetMousePointer(std::int16_t number)
{
    if (m_mousePointer != number) {
        m_mousePointer = number;
        UpdatePointer();
    }
    Report(QStringLiteral("MousePointer"));
}

void ButtonControl::SetMouseIcon(const PictureReference& icon)
{
    if (m_mouseIcon != icon) {
        m_mouseIcon = icon;
        UpdatePointer();
    }
    Report(QStringLiteral("MouseIcon"));
}

void ButtonControl::SetPicture(const PictureReference& picture)
{
    StoreAndMeasure(m_picture, picture);
    Report(QStringLiteral("Picture"));
}

void ButtonControl::SetIsCheckBox(bool isCheckBox)
{
    Store(m_isCheckBox, isCheckBox);
    DrawLastState();
    Report(QStringLiteral("IsCheckBox"));
}

void ButtonControl::SetValue(bool value)
{
    StoreValue(value);
    if (m_isCheckBox)
        DrawButton(ButtonState::Normal, true);
    Report(QStringLiteral("Value"));
}

void ButtonControl::StoreValue(bool value)
{
    const bool changes = m_value != value;
    m_value = value;
    if (changes && m_isCheckBox)
        TellCheckedChanged(*this);
}

void ButtonControl::Refresh()
{
    ResolveColors();
    Relayout();
    m_paintingAllowed = true;
    m_shownLook.reset();
    DrawLastState();
}

void ButtonControl::StoreAndMeasure(PictureReference& field, const PictureReference& picture)
{
    Store(field, picture);
    MeasurePicture();
    Relayout();
    DrawLastState();
}

// Only the picture of the normal state counts, whichever was set.
void ButtonControl::MeasurePicture()
{
    m_pictureSize = m_picture ? m_picture->Size() : QSize(0, 0);
}

MeasureCaption ButtonControl::CaptionMeasure() const
{
    return [this](const Box& box, TextFlags flags) {
        return RetainedSurface::MeasureText(m_caption, box, flags, m_font);
    };
}

void ButtonControl::Invalidate()
{
    m_shownLook.reset();
    m_layoutIsStale = true;
}

void ButtonControl::Relayout()
{
    if (!m_layoutIsStale)
        return;
    LayoutRects();
    m_layoutIsStale = false;
}

void ButtonControl::DrawButton(ButtonState state, bool force)
{
    if (m_isCheckBox && m_value)
        state = ButtonState::Down;
    if (!force && m_caption == m_lastCaption && state == m_lastState)
        return;
    if (m_height == 0 || !m_paintingAllowed)
        return;
    m_lastState = state;
    m_lastCaption = m_caption;
    const ButtonLook look = LookOf(state, m_enabled, m_mouseOver);
    if (m_shownLook == look)
        return; // drawn again, it would be the same to the pixel
    m_shownLook = look;
    Surface().Clear(BackOf(look));
    DrawLook(look);
    ShowSurface();
}

void ButtonControl::Resize()
{
    m_width = Surface().Size().width();
    m_height = Surface().Size().height();
    Relayout();
    DrawButton(ButtonState::Normal, true);
}

void ButtonControl::SurfaceResized()
{
    Invalidate();
    // For the time in which nothing may be drawn.
    Surface().Clear(BackOf(LookOf(m_lastState, m_enabled, m_mouseOver)));
    if (Surface().Size() != QSize(m_width, m_height))
        Resize();
    else
        DrawLastState(); // only the screen's ratio is another
}

void ButtonControl::AmbientChanged()
{
    ResolveColors();
    DrawLastState();
}

void ButtonControl::showEvent(QShowEvent* event)
{
    OwnerDrawn::showEvent(event);
    m_paintingAllowed = true;
    ResolveColors();
    DrawButton(ButtonState::Normal, true);
}

void ButtonControl::hideEvent(QHideEvent*)
{
    m_paintingAllowed = false;
}

void ButtonControl::UpdateAccessKey()
{
    releaseShortcut(m_accessKey);
    m_accessKey = 0;
    const QKeySequence key = QKeySequence::mnemonic(m_caption);
    if (!key.isEmpty())
        m_accessKey = grabShortcut(key);
}

void ButtonControl::UpdatePointer()
{
    if (m_mousePointer == kOwnPointer && m_mouseIcon && !m_mouseIcon->Size().isEmpty())
        setCursor(QCursor(QPixmap::fromImage(m_mouseIcon->ImageAt(devicePixelRatioF()))));
    else
        setCursor(PointerShape(m_mousePointer));
}

Spoken ButtonControl::Speak() const
{
    Spoken spoken;
    spoken.role = m_isCheckBox ? QAccessible::CheckBox : QAccessible::Button;
    spoken.name = SpokenName(m_caption, toolTip());
    spoken.isDisabled = !m_enabled;
    spoken.isCheckBox = m_isCheckBox;
    spoken.isChecked = m_isCheckBox && m_value;
    spoken.isPressed = IsDown() && !spoken.isChecked;
    if (m_enabled) {
        spoken.action = m_isCheckBox ? QAccessibleActionInterface::toggleAction()
                                     : QAccessibleActionInterface::pressAction();
    }
    spoken.accessKey = QKeySequence::mnemonic(m_caption).toString(QKeySequence::NativeText);
    return spoken;
}

} // namespace lantern
