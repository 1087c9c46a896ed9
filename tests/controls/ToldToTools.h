// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ControlAccessibility.h"

#include <QAccessible>

#include <algorithm>
#include <utility>
#include <vector>

namespace lantern {

// Hears what the controls tell assistive tools as long as it lives.
class ToldToTools {
public:
    struct Event {
        QAccessible::Event type = QAccessible::InvalidEvent;
        const QObject* object = nullptr;
        int child = -1;
        int value = 0;              // of a new value
        QAccessible::State changed; // of a new state
    };

    ToldToTools()
    {
        SetToolListener([this](const QAccessibleEvent& event) { Hear(event); });
    }
    ~ToldToTools() { SetToolListener({}); }
    ToldToTools(const ToldToTools&) = delete;
    ToldToTools& operator=(const ToldToTools&) = delete;

    const std::vector<Event>& Events() const { return m_events; }
    std::vector<QAccessible::Event> Types() const
    {
        std::vector<QAccessible::Event> types;
        for (const Event& event : m_events)
            types.push_back(event.type);
        return types;
    }
    std::vector<int> Values() const
    {
        std::vector<int> values;
        for (const Event& event : m_events) {
            if (event.type == QAccessible::ValueChanged)
                values.push_back(event.value);
        }
        return values;
    }
    void Forget() { m_events.clear(); }

private:
    void Hear(const QAccessibleEvent& event)
    {
        Event heard{event.type(), event.object(), event.child(), 0, {}};
        if (event.type() == QAccessible::ValueChanged)
            heard.value = static_cast<const QAccessibleValueChangeEvent&>(event).value().toInt();
        if (event.type() == QAccessible::StateChanged)
            heard.changed = static_cast<const QAccessibleStateChangeEvent&>(event).changedStates();
        m_events.push_back(heard);
    }

    std::vector<Event> m_events;
};

} // namespace lantern
