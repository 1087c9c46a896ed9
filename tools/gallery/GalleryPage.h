// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ButtonControl.h"
#include "Control.h"

#include <QRect>
#include <QString>
#include <QWidget>

#include <functional>
#include <vector>

namespace lantern {

inline constexpr ColourValue kAccent = DirectColour(255, 171, 8);
inline constexpr ColourValue kDarkGrey = DirectColour(64, 64, 64);

// How a button of the gallery is shown. Hot and Pressed are what only the user makes of it.
enum class Pose { Normal, Hot, Pressed, Disabled, Checked };
inline constexpr std::array kPoses{Pose::Normal, Pose::Hot, Pose::Pressed, Pose::Disabled,
                                   Pose::Checked};
QString NameOf(Pose pose);

// What the shelves of the gallery are built on: it places controls, names them and tells what they
// report.
class GalleryPage {
public:
    explicit GalleryPage(QWidget& ground) : m_ground(ground) {}

    // Told a line for each event: the name of the control, the event and what it tells.
    std::function<void(const QString& line)> Told;

    template <typename Control>
    Control& Place(const QString& name, const QRect& place)
    {
        auto* control = new Control(&m_ground, GalleryAmbient());
        control->setObjectName(name);
        control->setGeometry(place);
        m_controls.push_back(control);
        return *control;
    }
    // A button in a pose, with its events told.
    template <typename Button>
    Button& PlaceButton(const QString& name, const QRect& place, Pose pose)
    {
        Button& button = Place<Button>(name, place);
        button.SetCaption(QString());
        button.SetIsCheckBox(pose == Pose::Checked);
        button.SetValue(pose == Pose::Checked);
        button.SetEnabled(pose != Pose::Disabled);
        Prepare(button, pose);
        return button;
    }
    void Heading(const QString& text, QPoint place);
    void Label(const QString& text, const QRect& place);

    void Tell(const QWidget& control, const QString& event) const;
    // A handler that tells the event.
    std::function<void()> Teller(const QWidget& control, const char* event) const;
    MouseHandler MouseTeller(const QWidget& control, const char* event) const;
    KeyHandler KeyTeller(const QWidget& control, const char* event) const;

    // Makes the buttons hot and pressed whose poses those are, until events are handled again.
    void StrikePoses();
    const std::vector<Control*>& Controls() const { return m_controls; }

private:
    static Ambient GalleryAmbient();
    void Prepare(ButtonControl& button, Pose pose);
    void PlaceText(const QString& text, const QRect& place, bool isHeading);

    QWidget& m_ground;
    std::vector<Control*> m_controls;
    std::vector<std::pair<ButtonControl*, Pose>> m_poses;
};

} // namespace lantern
