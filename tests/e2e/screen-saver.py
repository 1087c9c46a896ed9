# SPDX-License-Identifier: GPL-3.0-or-later
"""A session's screen saver for python-dbusmock, which keeps count as real ones do: who inhibits it has
a number for it, and is released from that by giving it back or by leaving the bus in any way."""
import dbus

BUS_NAME = "org.freedesktop.ScreenSaver"
MAIN_OBJ = "/org/freedesktop/ScreenSaver"
MAIN_IFACE = "org.freedesktop.ScreenSaver"
SYSTEM_BUS = False


def load(mock, _parameters):
    mock.owners = {}
    mock.lookouts = {}
    mock.last_cookie = 70


def tell(mock, what):
    mock.log(f"{what}, kept on by {len(mock.owners)}")


@dbus.service.method(MAIN_IFACE, in_signature="ss", out_signature="u", sender_keyword="sender",
                     connection_keyword="connection")
def Inhibit(self, _program, _reason, sender, connection):
    self.last_cookie += 1
    cookie = self.last_cookie
    self.owners[cookie] = sender

    def follow(owner):
        if owner == "" and self.owners.pop(cookie, None):
            tell(self, "left")

    self.lookouts[cookie] = connection.watch_name_owner(sender, follow)
    tell(self, "asked")
    return dbus.UInt32(cookie)


@dbus.service.method(MAIN_IFACE, in_signature="u", out_signature="", sender_keyword="sender")
def UnInhibit(self, cookie, sender):
    if self.owners.get(cookie) != sender:
        tell(self, "lied to")
        raise dbus.exceptions.DBusException("no such number",
                                            name="org.freedesktop.DBus.Error.InvalidArgs")
    self.lookouts.pop(cookie).cancel()
    del self.owners[cookie]
    tell(self, "given back")
