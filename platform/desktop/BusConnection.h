// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDBusConnection>
#include <QObject>

#include <functional>
#include <thread>

namespace lantern {

// A connection to a bus that is made in the background, as there is no way to make one without
// waiting for the bus. It ends with this object, and so does all that a service keeps for as long
// as its client lives.
class BusConnection {
public:
    BusConnection();
    ~BusConnection();
    BusConnection(const BusConnection&) = delete;
    BusConnection& operator=(const BusConnection&) = delete;

    // The bus of the session, or that of the address. The function is called from the event loop,
    // once, with a connection that is none if there is no bus. To be called once.
    void Connect(const QString& address, std::function<void(const QDBusConnection&)> connected);

private:
    const QString m_name; // among the connections of the process
    QObject m_receiver;   // lives on the user-interface thread
    std::thread m_maker;
};

} // namespace lantern
