# SPDX-License-Identifier: GPL-3.0-or-later
"""Sends a media player messages by chance, most of which make no sense, some without waiting for an
answer. Ends after so many seconds, and says how many were answered, how many with an error, and how
many with nothing."""
import random
import sys
import time

from gi.repository import Gio, GLib

NAME, SECONDS, SEED = sys.argv[1], float(sys.argv[2]), int(sys.argv[3])
PATH = "/org/mpris/MediaPlayer2"
ROOT, PLAYER = "org.mpris.MediaPlayer2", "org.mpris.MediaPlayer2.Player"
PROPERTIES = "org.freedesktop.DBus.Properties"

chance = random.Random(SEED)


def number():
    return chance.choice([0.0, -0.0, 1.0, 0.5, -1.0, 1e308, -1e308, float("nan"), float("inf"),
                          float("-inf"), chance.uniform(-2, 3)])


def whole():
    return chance.choice([0, 1, -1, 2**63 - 1, -2**63, chance.randrange(-10**8, 10**8)])


def text():
    return chance.choice(["", "/", "file:///", "file:///etc/passwd", "file:///dev/zero.mp3",
                          "file:///tmp/%00.cdg", "http://[::1]/a.cdg", "x" * 200000, "\u202e\U0001f3a4",
                          "file://" + "/a" * 5000 + ".cdg", "Volume", "Rate", "Fullscreen", PLAYER])


def path():
    return chance.choice(["/", "/a", "/io/github/lyric_lantern/player/track/1",
                          "/org/mpris/MediaPlayer2/TrackList/NoTrack"])


def value():
    make = {"d": number, "x": whole, "s": text, "o": path, "b": lambda: chance.random() < 0.5,
            "u": lambda: chance.randrange(2**32), "as": lambda: [text()],
            "a{sv}": lambda: {"a": GLib.Variant("s", text())}}
    kind = chance.choice(list(make))
    return GLib.Variant(kind, make[kind]())


def sensible():
    return chance.choice([
        (PLAYER, "Seek", GLib.Variant("(x)", (whole(),))),
        (PLAYER, "SetPosition", GLib.Variant("(ox)", (path(), whole()))),
        (PLAYER, "OpenUri", GLib.Variant("(s)", (text(),))),
        (PLAYER, chance.choice(["Play", "Pause", "PlayPause", "Stop", "Next", "Previous"]), None),
        (PROPERTIES, "Set", GLib.Variant("(ssv)", (PLAYER, "Volume", GLib.Variant("d", number())))),
        (PROPERTIES, "Set", GLib.Variant("(ssv)", (PLAYER, "Rate", GLib.Variant("d", number())))),
        (PROPERTIES, "GetAll", GLib.Variant("(s)", (PLAYER,)))])


def senseless():
    count = chance.randrange(4)
    return (chance.choice([ROOT, PLAYER, PROPERTIES, "org.example.Other"]),
            chance.choice(["Next", "Seek", "SetPosition", "OpenUri", "Get", "Set", "GetAll", "Raise",
                           "Dance", "deleteLater"]),
            GLib.Variant.new_tuple(*[value() for _ in range(count)]))


bus = Gio.bus_get_sync(Gio.BusType.SESSION)
outcome = {"answers": 0, "errors": 0, "silences": 0}
end = time.monotonic() + SECONDS
while time.monotonic() < end:
    interface, member, arguments = sensible() if chance.random() < 0.5 else senseless()
    if chance.random() < 0.5:
        bus.call(NAME, PATH, interface, member, arguments, None, Gio.DBusCallFlags.NONE, 1, None)
        continue
    try:
        bus.call_sync(NAME, PATH, interface, member, arguments, None, Gio.DBusCallFlags.NONE, 10000)
        outcome["answers"] += 1
    except GLib.Error as error:
        known = Gio.dbus_error_get_remote_error(error) not in (None,
                                                               "org.freedesktop.DBus.Error.NoReply")
        outcome["errors" if known else "silences"] += 1
print(" ".join(f"{count} {name}" for name, count in outcome.items()), flush=True)
