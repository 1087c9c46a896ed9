#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""screen-reader.py QUESTIONS TITLE: what a screen reader sees and hears of the program of that title.

It reads questions from the named pipe, one a line, its words parted by tabs, and prints the answers:

    tree               one line "object" for each object of the program, parents first: depth, role,
                       name, description, states, value, minimum, maximum, step,
                       actions
    do ACTION PATH     runs the action of the object; PATH is roles and names from the program down
    set VALUE PATH     gives the object a value

Each answer ends in a line "done", or "failed" with the reason. Between the answers there is a line
"event" for each event of the program: type, detail, role and name of its object.
"""
import os
import sys
import time

# The real client library of the desktop's screen readers, with nothing kept from one question to
# the next.
import pyatspi
from gi.repository import Atspi, GLib

PATIENCE = 20.0  # seconds


def say(*words):
    print("\t".join(str(word).replace("\t", " ").replace("\n", "\\n").replace("\r", "")
                    for word in words), flush=True)


class NotThere(Exception):
    pass


class ScreenReader:
    def __init__(self, pipe, title):
        self.title = title
        self.rest = b""
        # Open for writing, too, so that it never comes to an end.
        self.pipe = os.open(pipe, os.O_RDWR | os.O_NONBLOCK)
        GLib.io_add_watch(self.pipe, GLib.IO_IN, self.read)
        for kind in ("object:state-changed", "object:property-change",
                     "object:property-change:accessible-value", "object:children-changed",
                     "window", "focus"):
            pyatspi.Registry.registerEventListener(self.hear, kind)

    def program(self):
        desktop = pyatspi.Registry.getDesktop(0)
        forget(desktop)
        for candidate in desktop:
            if candidate is None:
                continue
            forget(candidate)
            if candidate.name == self.title:
                return candidate
        raise NotThere("the program is not there")

    def read(self, *_):
        self.rest += os.read(self.pipe, 65536)
        *lines, self.rest = self.rest.split(b"\n")
        for line in lines:
            self.answer(*line.decode().split("\t"))
        return True

    def answer(self, question, *words):
        self.attempt(time.monotonic() + PATIENCE, question, words)

    def attempt(self, end, question, words):
        try:
            getattr(self, question)(*words)
            say("done")
        except NotThere as reason:
            # A busy program comes to the bus some time after its window.
            if time.monotonic() < end:
                GLib.timeout_add(50, self.attempt, end, question, words)
            else:
                say("failed", reason)
        except Exception as reason:
            say("failed", type(reason).__name__, reason)
        return False  # to the timer: not again

    def hear(self, event):
        try:
            if event.host_application.name == self.title:
                say("event", event.type, event.detail1, event.source.getRoleName(),
                    event.source.name)
        except Exception:
            pass  # of an object that is gone already

    def tree(self):
        self.tell(self.program(), 0)

    def tell(self, one, depth):
        states = sorted(pyatspi.stateToString(state) for state in one.getState().getStates())
        value = minimum = maximum = step = ""
        if "Value" in pyatspi.listInterfaces(one):
            having = one.queryValue()
            value, minimum, maximum = having.currentValue, having.minimumValue, having.maximumValue
            step = having.minimumIncrement
        say("object", depth, one.getRoleName(), one.name, one.description, " ".join(states), value,
            minimum, maximum, step, ",".join(actions(one)))
        for child in one:
            if child is not None:
                self.tell(child, depth + 1)

    def find(self, path):
        found = self.program()
        for step in path:
            role, name = step.split(":", 1)
            found = pyatspi.findDescendant(
                found, lambda one: one.getRoleName() == role and one.name == name)
            if found is None:
                raise LookupError("there is no " + step)
        return found

    def do(self, action, *path):
        one = self.find(path)
        one.queryAction().doAction(actions(one).index(action))

    def set(self, value, *path):
        self.find(path).queryValue().currentValue = float(value)


# What was asked too early, before the program had an answer, is asked anew.
def forget(one):
    one.setCacheMask(Atspi.Cache.NONE)
    one.clearCache()


def actions(one):
    if "Action" not in pyatspi.listInterfaces(one):
        return []
    having = one.queryAction()
    return [having.getName(i) for i in range(having.nActions)]


ScreenReader(sys.argv[1], sys.argv[2])
say("ready")
pyatspi.Registry.start()
