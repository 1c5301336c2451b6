"""What a screen reader is told of the program (AT-SPI): its windows and controls, their names, kinds and places."""

import functools
import os
import subprocess
import sys
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

PATIENCE = float(os.environ.get("PATIENCE", 60))  # seconds, for a busy machine

Atspi.set_timeout(1000 * PATIENCE, 1000 * PATIENCE)


class Thing:
    """What a screen reader knows of one object."""

    def __init__(self, source, parent):
        source.clear_cache()
        states = source.get_state_set()
        self.source, self.parent = source, parent
        self.showing = states.contains(Atspi.StateType.SHOWING)
        self.enabled = states.contains(Atspi.StateType.ENABLED)
        self.focusable = states.contains(Atspi.StateType.FOCUSABLE)
        self.focused = states.contains(Atspi.StateType.FOCUSED)
        self.chosen = states.contains(Atspi.StateType.SELECTED) or states.contains(Atspi.StateType.CHECKED)

    # Each of these asks the program, so only what is looked at is asked for.
    @functools.cached_property
    def kind(self):
        kind = self.source.get_role_name()
        return "button" if kind == "push button" else kind  # what older versions of the library call it

    @functools.cached_property
    def name(self):
        return self.source.get_name()

    @functools.cached_property
    def description(self):
        return self.source.get_description()

    def __str__(self):
        return f"{self.kind} \"{self.name}\""

    def parents(self):
        return [self.parent] + self.parent.parents() if self.parent else []

    def window(self):
        return ([self] + self.parents())[-2]

    def place(self):
        """Left, top, width and height in its window, in the program's own pixels."""
        place = self.source.get_extents(Atspi.CoordType.WINDOW)  # Qt 6.4 makes it too large
        size = self.source.get_extents(Atspi.CoordType.SCREEN)
        return place.x, place.y, size.width, size.height


def look(source, parent):
    """Everything that is shown, from the outside to the inside. What goes away meanwhile is left out."""
    found = []
    try:
        thing = Thing(source, parent)
        if not thing.showing:
            return found
        found.append(thing)
        if thing.kind not in {"list", "combo box", "table"}:  # their entries are many
            for index in range(source.get_child_count()):
                child = source.get_child_at_index(index)
                if child is not None:
                    found += look(child, thing)
    except GLib.Error:
        pass
    return found


class Program:
    """The program that runs, as a screen reader sees it."""

    def __init__(self, file, *arguments):
        self.process = subprocess.Popen([file, *arguments])

    def source(self):
        desktop = Atspi.get_desktop(0)
        for index in range(desktop.get_child_count()):
            each = desktop.get_child_at_index(index)
            if each is not None and each.get_process_id() == self.process.pid:
                return each
        return None

    def windows(self):
        """A function for each that looks at what is shown in it; first the one that opened first."""
        if self.process.poll() is not None:
            sys.exit(f"the program has ended with {self.process.returncode}")
        if (source := self.source()) is None:
            return
        program = Thing(source, None)
        for index in range(source.get_child_count()):
            if (window := source.get_child_at_index(index)) is not None:
                yield functools.partial(look, window, program)

    def see(self):
        return [each for window in self.windows() for each in window()]

    def find(self, name, kind=None):
        """The last one, of the window that opened last."""
        for window in reversed(list(self.windows())):
            found = [each for each in window() if each.name == name and kind in (None, each.kind) and each.kind != "filler"]
            if found:
                return found[-1]
        return None

    def photo(self):
        found = [each for each in self.see() if each.kind == "canvas"]
        return found[-1] if found else None

    def wait(self, question, what):
        """The answer, once it is not empty."""
        end = time.monotonic() + PATIENCE
        pause, asked = 0.05, 0
        while time.monotonic() < end or asked < 50:  # the machine may have stood still
            asked += 1
            try:
                if answer := question():
                    return answer
            except (AttributeError, GLib.Error):  # not there, or not any more
                pass
            time.sleep(pause)
            pause = min(2 * pause, 0.4)
        sys.exit(f"no {what}; there is:\n" + "\n".join(f"  {each}" for each in self.see()))

    def end(self):
        self.process.terminate()
        if self.process.wait(PATIENCE) != 0:
            sys.exit(f"the program ends with {self.process.returncode}")
