// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>

namespace lantern {

// The keyed store of a control's design values: one text key a property, a default for a missing
// key. Keys count with their case.
class PropertyBag {
public:
    template <typename Value>
    Value Read(const QString& key, const Value& missing) const
    {
        const auto found = m_values.find(key);
        return found == m_values.end() ? missing : found->template value<Value>();
    }

    template <typename Value>
    void Write(const QString& key, const Value& value)
    {
        if (!m_values.contains(key))
            m_order.append(key);
        m_values[key] = QVariant::fromValue(value);
    }

    // A value that equals its default need not be stored.
    template <typename Value>
    void Write(const QString& key, const Value& value, const Value& missing)
    {
        if (!(value == missing))
            Write(key, value);
    }

    bool Has(const QString& key) const { return m_values.contains(key); }
    QStringList KeysInOrder() const { return m_order; } // as first written

private:
    QMap<QString, QVariant> m_values;
    QStringList m_order;
};

// What a control calls with each of its keys, fields and values for a missing key: to read them
// all, to write them all, or to write those that differ.
struct ReadFrom {
    const PropertyBag& bag;

    template <typename Value>
    void operator()(const QString& key, Value& field, const Value& missing) const
    {
        field = bag.Read(key, missing);
    }
};
struct WriteTo {
    PropertyBag& bag;

    template <typename Value>
    void operator()(const QString& key, const Value& field, const Value&) const
    {
        bag.Write(key, field);
    }
};
struct WriteChangedTo {
    PropertyBag& bag;

    template <typename Value>
    void operator()(const QString& key, const Value& field, const Value& missing) const
    {
        bag.Write(key, field, missing);
    }
};

} // namespace lantern
