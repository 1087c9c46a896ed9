// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ButtonLayout.h"
#include "OwnerDrawn.h"
#include "PointerWatch.h"

#include <QBasicTimer>

#include <optional>

namespace lantern {

// What a button is asked to show; a checked one shows itself down all the same.
enum class ButtonState : std::uint8_t { Normal = 0, Down = 2 };
// What it then looks like.
enum class ButtonLook : std::uint8_t { Normal = 0, Hot = 1, Down = 2, Disabled = 3 };

ButtonLook LookOf(ButtonState state, bool isEnabled, bool isHot);

// What the push buttons have in common, which is all but their looks: a caption with its font, a
// picture, two states if wanted, and how mouse, keys, focus and the pointer's coming and going
// work on them. The keys that a button has no use for go on to the window that it lies in.
//
// A button that is not Enabled is no disabled widget: it keeps its tool tip, its place in the
// order of focus and its access key, and takes the mouse without raising events.
class ButtonControl : public OwnerDrawn {
public:
    ButtonControl(QWidget* parent, Ambient ambient);

    std::function<void()> Click;
    MouseHandler MouseDown;
    MouseHandler MouseMove;
    MouseHandler MouseUp;
    std::function<void(std::int16_t keyAscii)> KeyPress;
    KeyHandler KeyDown;
    KeyHandler KeyUp;
    std::function<void()> MouseOver;
    std::function<void()> MouseOut;

    const QString& Caption() const { return m_caption; }
    void SetCaption(const QString& caption);
    bool Enabled() const { return m_enabled; }
    void SetEnabled(bool enabled);
    std::int16_t MousePointer() const { return m_mousePointer; }
    void SetMousePointer(std::int16_t number);
    const PictureReference& MouseIcon() const { return m_mouseIcon; }
    void SetMouseIcon(const PictureReference& icon);
    const PictureReference& Picture() const { return m_picture; }
    void SetPicture(const PictureReference& picture);
    bool IsCheckBox() const { return m_isCheckBox; }
    void SetIsCheckBox(bool isCheckBox);
    bool Value() const { return m_value; }
    void SetValue(bool value);

    const QFont& Font() const { return m_font; }
    void SetFont(const QFont& font);
    bool FontBold() const { return m_font.bold(); }
    void SetFontBold(bool bold);
    bool FontItalic() const { return m_font.italic(); }
    void SetFontItalic(bool italic);
    bool FontUnderline() const { return m_font.underline(); }
    void SetFontUnderline(bool underline);
    double FontSize() const; // points
    void SetFontSize(std::int16_t points);
    QString FontName() const { return m_font.family(); }
    void SetFontName(const QString& name);

    // The window that the button is drawn in; it has none of its own.
    WId hWnd() const { return effectiveWinId(); }

    // Keeps the next changes from being drawn, until Refresh draws them all at once.
    void DisableRefresh() { m_paintingAllowed = false; }
    void Refresh();

    virtual void Load(const PropertyBag& bag) = 0;
    virtual void Save(PropertyBag& bag) const = 0;

    // A press and release by other means than mouse and keys. Nothing while not Enabled.
    void Press();
    bool IsDown() const { return m_lastState == ButtonState::Down; }

    Spoken Speak() const override;
    void Act() override { Press(); }

protected:
    virtual void ResolveColors() = 0;
    virtual void LayoutRects() = 0;
    virtual QRgb BackOf(ButtonLook look) const = 0;
    virtual void DrawLook(ButtonLook look) = 0; // on the cleared surface

    // The one entry to all painting. Without force, only a new caption or state is drawn.
    void DrawButton(ButtonState state, bool force);
    void DrawLastState() { DrawButton(m_lastState, true); }

    // Sets what the look depends on. The same value again leaves what is drawn as it is.
    template <typename Value>
    void Store(Value& field, const Value& value)
    {
        if (field == value)
            return;
        field = value;
        Invalidate();
    }
    void Invalidate();
    void Relayout(); // runs LayoutRects if something changed since
    void StoreAndMeasure(PictureReference& field, const PictureReference& picture);
    void Resize();

    int Width() const { return m_width; }
    int Height() const { return m_height; }
    QSize PictureSize() const { return m_pictureSize; } // empty without a picture
    MeasureCaption CaptionMeasure() const;

    // The life cycle, for the constructors and Load of the buttons.
    void FirstCreated();
    void Loaded();

    // The keys that all buttons have, with what is taken for a missing one. Self and each differ
    // between loading and saving; each is called with a key, a field and what a missing key means.
    template <typename Self, typename Each>
    static void VisitText(Self& self, const Each& each)
    {
        each(QStringLiteral("Caption"), self.m_caption, QString());
        each(QStringLiteral("Enabled"), self.m_enabled, true);
        each(QStringLiteral("Font"), self.m_font, self.HostAmbient().font);
    }
    template <typename Self, typename Each>
    static void VisitPictures(Self& self, const Each& each)
    {
        each(QStringLiteral("MousePointer"), self.m_mousePointer, std::int16_t{0});
        each(QStringLiteral("MouseIcon"), self.m_mouseIcon, PictureReference());
        each(QStringLiteral("Picture"), self.m_picture, PictureReference());
    }
    template <typename Self, typename Each>
    static void VisitCheckBox(Self& self, const Each& each)
    {
        each(QStringLiteral("IsCheckbox"), self.m_isCheckBox, false);
        each(QStringLiteral("Value"), self.m_value, false);
    }

    void AmbientChanged() override;
    void SurfaceResized() override;
    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    void StoreValue(bool value);
    void MeasurePicture();
    template <typename Change>
    void ChangeFont(Change change);
    void UpdateAccessKey();
    void UpdatePointer();
    void HandleMouseDown(const MouseReport& report);
    bool IsOnSurface(QPoint point) const; // a part of it may be masked
    void HandleClick();
    void ClickWithValue(bool force);
    void BecomeHot();
    bool ActsOnKey(KeyCode keyCode); // false if the button has no use for it
    bool RaiseKeyPress(const QKeyEvent& event);

    QString m_caption;
    bool m_enabled = true;
    QFont m_font;
    std::int16_t m_mousePointer = 0;
    PictureReference m_mouseIcon;
    PictureReference m_picture;
    bool m_isCheckBox = false;
    bool m_value = false;

    int m_width = 0;
    int m_height = 0;
    QSize m_pictureSize = {0, 0};
    bool m_layoutIsStale = true;
    int m_accessKey = 0;

    std::int16_t m_lastButton = 0;
    std::uint8_t m_lastKey = 0;
    ButtonState m_lastState = ButtonState::Normal;
    QString m_lastCaption;
    std::optional<ButtonLook> m_shownLook; // none if the surface doesn't show the current values
    bool m_paintingAllowed = true;

    bool m_mouseOver = false;
    PointerWatch m_pointer{*this};
    QBasicTimer m_overTimer;
    unsigned m_overTicks = 0;
};

} // namespace lantern
