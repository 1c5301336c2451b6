"""A desktop: its window manager of X, or the Wayland compositor weston, and what stands where on it."""

import os
import re
import signal
import subprocess
import sys
import time
from collections import namedtuple

from accessible import PATIENCE, Atspi, Program


class Rect(namedtuple("Rect", "x y width height")):
    """Of the display's pixels."""

    def holds(self, other):
        return (self.x <= other.x and other.x + other.width <= self.x + self.width and self.y <= other.y and
                other.y + other.height <= self.y + self.height)

    def without(self, margin):
        return Rect(self.x + margin, self.y + margin, self.width - 2 * margin, self.height - 2 * margin)

    def middle(self):
        return self.x + self.width // 2, self.y + self.height // 2


def run(*command):
    return subprocess.run([str(each) for each in command], capture_output=True, text=True, timeout=PATIENCE).stdout


class X:
    """A display whose windows a window manager moves. A window is its number."""

    def __init__(self, manager):
        self.manager = subprocess.Popen({"openbox": ["openbox"], "xfwm4": ["xfwm4", "--compositor=off"],
                                         "metacity": ["metacity"]}[manager])

    def is_up(self):
        return "window id" in run("xprop", "-root", "_NET_SUPPORTING_WM_CHECK")

    def window(self, title):
        """The last one of that name."""
        found = run("xdotool", "search", "--onlyvisible", "--name", f"^{title}$").split()
        return found[-1] if found else None

    def place(self, window):
        said = run("xwininfo", "-id", int(window))
        return Rect(*(int(re.search(f"{key}: +(-?[0-9]+)", said)[1])
                      for key in ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height")))

    def popup(self):
        """Where a menu is."""
        for window in run("xdotool", "search", "--onlyvisible", "--name", ".").split():
            if "TYPE_OVERRIDE" in run("xprop", "-id", window, "_NET_WM_WINDOW_TYPE"):
                return self.place(window)
        return None

    def front(self):
        return str(int(re.search("0x[0-9a-f]+", run("xprop", "-root", "_NET_ACTIVE_WINDOW"))[0], 16))

    def is_above(self, upper, lower):
        """Of two windows of the program. Managers put them into frames of their own, which stand in the stack."""
        order = [str(int(each, 16)) for each in
                 re.findall("0x[0-9a-f]+", run("xprop", "-root", "_NET_CLIENT_LIST_STACKING"))]
        return order.index(upper) > order.index(lower)

    def belongs_to(self, dialog, window):
        return str(int(run("xprop", "-id", dialog, "WM_TRANSIENT_FOR").split()[-1], 16)) == window

    def is_maximised(self, window):
        return "MAXIMIZED_VERT" in run("xprop", "-id", window, "_NET_WM_STATE")

    def is_minimised(self, window):
        return "Iconic" in run("xprop", "-id", window, "WM_STATE")

    def restore(self, window):
        run("xdotool", "windowactivate", window)

    switch_to = restore

    def knows(self, window):
        return int(window) in [int(each, 16) for each in
                               re.findall("0x[0-9a-f]+", run("xprop", "-root", "_NET_CLIENT_LIST"))]

    def pause(self):
        self.manager.send_signal(signal.SIGSTOP)

    def go_on(self):
        self.manager.send_signal(signal.SIGCONT)

    def end(self):
        self.manager.terminate()
        self.manager.wait()


class Weston:
    """A compositor, whose screens are windows of an X display without manager. A window is its title."""

    def __init__(self, folder, scale, screens):
        """The screens are side by side. The compositor knows whole scales; for others there is the program's own."""
        self.factor, self.screens = 2 if scale == 2 else 1, screens
        os.makedirs(f"{folder}/config", exist_ok=True)
        with open(f"{folder}/config/weston.ini", "w", encoding="utf-8") as file:
            file.write("[core]\nidle-time=0\n[shell]\npanel-position=none\nanimation=none\nstartup-animation=none\n"
                       "close-animation=none\nfocus-animation=none\nlocking=false\n")
        os.environ["WAYLAND_DISPLAY"] = "wayland-lumora"
        os.environ["QT_QPA_PLATFORM"] = "wayland"
        with open(f"{folder}/weston.log", "w", encoding="utf-8") as log:
            self.manager = subprocess.Popen(
                ["weston", "--backend=x11-backend.so", "--use-pixman", "--debug", "--socket=wayland-lumora",
                 f"--scale={self.factor}", f"--width={screens[0].width // self.factor}",
                 f"--height={screens[0].height // self.factor}", f"--output-count={len(screens)}"],
                stdout=log, stderr=log)

    def scene(self):
        try:
            return subprocess.run(["weston-debug", "scene-graph"], capture_output=True, text=True, timeout=5).stdout
        except subprocess.TimeoutExpired as late:
            return (late.stdout or b"").decode()

    def is_up(self):
        if not os.path.exists(f"{os.environ['XDG_RUNTIME_DIR']}/wayland-lumora") or "background" not in self.scene():
            return False
        outputs = run("xdotool", "search", "--class", "Weston Compositor").split()
        if len(outputs) != len(self.screens):
            return False
        for each, place in zip(sorted(outputs, key=int), self.screens):
            run("xdotool", "windowmove", each, place.x, place.y)
        run("xdotool", "windowfocus", "--sync", outputs[0])
        return True

    def views(self, kind="window '(.*?)' of"):
        """What is shown, the front one first: title and place."""
        shown = []
        for view in self.scene().split("View ")[1:]:
            title = re.search(kind, view)
            place = re.search(r"position: \((-?\d+), (-?\d+)\) -> \((-?\d+), (-?\d+)\)", view)
            if title and place:
                left, top, right, bottom = (self.factor * int(each) for each in place.groups())
                shown.append((title[1], Rect(left, top, right - left, bottom - top)))
        return shown

    def window(self, title):
        return title if title in [name for name, _ in self.views()] else None

    def place(self, window):
        return next(place for name, place in self.views() if name == window)

    def popup(self):
        return next((place for _, place in self.views("role (xdg_popup)")), None)

    def front(self):
        return self.views()[0][0]

    def is_above(self, upper, lower):
        names = [name for name, _ in self.views()]
        return names.index(upper) < names.index(lower)

    def belongs_to(self, _dialog, _window):
        return True  # weston does not say it; what it means is that it stays above

    def is_maximised(self, window):
        return self.place(window) in self.screens

    def is_minimised(self, window):
        return window not in [name for name, place in self.views()]

    def knows(self, window):
        return not self.is_minimised(window)

    def restore(self, _window):
        run("xdotool", "key", "super+Tab")

    def switch_to(self, window):
        """The manager's own key goes through the windows."""
        for _ in range(3):
            if self.front() != window:
                run("xdotool", "keydown", "super", "key", "Tab", "keyup", "super")

    def end(self):
        self.manager.terminate()
        self.manager.wait()


class SeenProgram(Program):
    """The program, and where on the display a person sees its controls. One of its pixels is `scale` of the display's."""

    def __init__(self, desk, scale, file, *arguments):
        super().__init__(file, *arguments)
        self.desk, self.scale = desk, scale

    def until(self, question, what):
        """The answer, once it is not empty. What is asked may not be there yet."""
        def answer():
            try:
                return question()
            except (IndexError, KeyError, StopIteration, TypeError, ValueError):
                return None
        return self.wait(answer, what)

    def end(self):
        """And until the desktop has noticed it: the next program's windows get the same numbers."""
        window = self.desk.window("Lumora")
        super().end()
        end = time.monotonic() + PATIENCE
        while window and self.desk.knows(window) and time.monotonic() < end:
            time.sleep(0.1)

    def place_of(self, thing):
        """Of a control, on the display."""
        window = self.desk.place(self.desk.window(thing.window().name))
        x, y, width, height = (round(self.scale * each) for each in thing.place())
        return Rect(window.x + x, window.y + y, width, height)

    def knows_place(self, title, screen=None):
        """Waits until the program, too, knows where its window stands; it counts from the corner of its screen."""
        left, top = screen[:2] if screen else (0, 0)

        def known():
            window = [each for each in self.see() if each.window().name == title][0].window()
            at = window.source.get_extents(Atspi.CoordType.SCREEN)
            place = self.desk.place(self.desk.window(title))
            return (abs(left + self.scale * (at.x - left) - place.x) <= self.scale and
                    abs(top + self.scale * (at.y - top) - place.y) <= self.scale)
        self.until(known, f"\"{title}\" that knows its place on the screen")

    def standing(self, question, what):
        """The control and its place, once that does not change any more."""
        before = None
        end = time.monotonic() + 30
        while time.monotonic() < end:
            thing = self.until(question, what)
            now = self.place_of(thing)
            if now == before:
                return thing, now
            before = now
            time.sleep(0.1)
        sys.exit(f"{what} does not come to rest")

    def enabled(self, name, kind=None):
        """A question for the two above: the control of that name, once it can be used."""
        return lambda: (found := self.find(name, kind)) and found.enabled and found

    def photo_is(self, words):
        self.until(lambda: self.photo().name.startswith(words), f"photo \"{words}\"")
