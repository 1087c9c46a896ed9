# SPDX-License-Identifier: GPL-3.0-or-later
"""Asks a media player a thousand things a second for so many seconds, and changes nothing. Says how
many were answered and refused, and after how long, in milliseconds, in the middle and at worst."""
import statistics
import sys
import time

from gi.repository import Gio, GLib

NAME, SECONDS = sys.argv[1], float(sys.argv[2])
PATH = "/org/mpris/MediaPlayer2"
ROOT, PLAYER = "org.mpris.MediaPlayer2", "org.mpris.MediaPlayer2.Player"
PROPERTIES = "org.freedesktop.DBus.Properties"
A_SECOND = 1000
PERIOD = 0.005


def get(interface, name):
    return PROPERTIES, "Get", GLib.Variant("(ss)", (interface, name))


def put(name, value):
    return PROPERTIES, "Set", GLib.Variant("(ssv)", (PLAYER, name, GLib.Variant("d", value)))


WISHES = [get(PLAYER, "Position"), get(PLAYER, "Metadata"), get(PLAYER, "Volume"),
          get(ROOT, "Fullscreen"), (PROPERTIES, "GetAll", GLib.Variant("(s)", (PLAYER,))),
          put("Volume", 1.0), put("Rate", 1.0), (PLAYER, "Play", None)]

bus = Gio.bus_get_sync(Gio.BusType.SESSION)
loop = GLib.MainLoop()
started = time.monotonic()
sent = 0
refused = 0
times = []


def ask(wish):
    interface, member, arguments = wish
    asked = time.monotonic()

    def answered(_bus, result):
        global refused
        times.append((time.monotonic() - asked) * 1000)
        try:
            bus.call_finish(result)
        except GLib.Error:
            refused += 1
        if len(times) == SECONDS * A_SECOND:
            loop.quit()

    bus.call(NAME, PATH, interface, member, arguments, None, Gio.DBusCallFlags.NONE, 10000, None,
             answered)


# As many as are due by now, however late the machine wakes it.
def go_on():
    global sent
    due = min(time.monotonic() - started, SECONDS) * A_SECOND
    while sent < due:
        ask(WISHES[sent % len(WISHES)])
        sent += 1
    return sent < SECONDS * A_SECOND


GLib.timeout_add(round(PERIOD * 1000), go_on)
loop.run()
print(f"{len(times)} answers {refused} refused {statistics.median(times):.2f} median "
      f"{max(times):.1f} worst {time.monotonic() - started:.1f} seconds", flush=True)
