"""reader.py FOLDER: opens every window of the program in that folder by what a screen reader is told of it (AT-SPI), and
looks whether everything that can have the keyboard has a name and a fitting kind."""

import subprocess
import sys
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

FOLDER = sys.argv[1]
PATIENCE = 60  # seconds, for a busy machine
WINDOWS = {"frame", "dialog", "alert", "window"}
CONTROLS = {
    "button", "radio button", "check box", "page tab", "canvas", "slider", "spin button", "combo box", "text",
    "entry", "password text", "list", "list item", "table", "table cell", "document frame", "menu item", "scroll bar",
}
NAMED = {"tool bar", "page tab list", "status bar", "canvas"} | WINDOWS

Atspi.set_timeout(1000 * PATIENCE, 1000 * PATIENCE)

faults = []


class Thing:
    """What a screen reader knows of one object."""

    def __init__(self, source, parent):
        source.clear_cache()
        states = source.get_state_set()
        self.source, self.parent = source, parent
        kind = source.get_role_name()
        self.kind = "button" if kind == "push button" else kind  # what older versions of the library call it
        self.name, self.description = source.get_name(), source.get_description()
        self.showing = states.contains(Atspi.StateType.SHOWING)
        self.enabled = states.contains(Atspi.StateType.ENABLED)
        self.focusable = states.contains(Atspi.StateType.FOCUSABLE)
        self.focused = states.contains(Atspi.StateType.FOCUSED)
        self.chosen = states.contains(Atspi.StateType.SELECTED) or states.contains(Atspi.StateType.CHECKED)

    def __str__(self):
        return f"{self.kind} \"{self.name}\""

    def parents(self):
        return [self.parent] + self.parent.parents() if self.parent else []


def look(source, parent=None):
    """Everything that is shown, from the outside to the inside. What goes away meanwhile is left out."""
    found = []
    try:
        thing = Thing(source, parent)
        if parent is not None and not thing.showing:
            return found
        if parent is not None:
            found.append(thing)
        if thing.kind not in {"list", "combo box", "table"}:  # their entries are many
            for index in range(source.get_child_count()):
                child = source.get_child_at_index(index)
                if child is not None:
                    found += look(child, thing)
    except GLib.Error:
        pass
    return found


def wait(question, what):
    """The answer, once it is not empty."""
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        try:
            if answer := question():
                return answer
        except (AttributeError, GLib.Error):  # not there, or not any more
            pass
        time.sleep(0.05)
    sys.exit(f"no {what}; there is:\n" + "\n".join(f"  {each}" for each in see()))


class Program:
    def __init__(self, *arguments):
        self.process = subprocess.Popen([f"{FOLDER}/lumora", *arguments])

    def source(self):
        desktop = Atspi.get_desktop(0)
        for index in range(desktop.get_child_count()):
            each = desktop.get_child_at_index(index)
            if each is not None and each.get_process_id() == self.process.pid:
                return each
        return None

    def end(self):
        self.process.terminate()
        if self.process.wait(PATIENCE) != 0:
            sys.exit(f"the program ends with {self.process.returncode}")


program = None


def see():
    if program.process.poll() is not None:
        sys.exit(f"the program has ended with {program.process.returncode}")
    source = program.source()
    return look(source) if source is not None else []


def find(name, kind=None):
    """The last one, which is in the window that opened last."""
    found = [each for each in see() if each.name == name and kind in (None, each.kind) and each.kind not in {"filler"}]
    return found[-1] if found else None


def check(where):
    """What is wrong with what is shown."""
    for each in see():
        inside = f"{where}: {each} in " + ", ".join(str(one) for one in each.parents()[:-1] if one.name)
        if each.parent.parent is None and each.kind not in WINDOWS:
            faults.append(f"{inside} is no window")
        if each.kind in NAMED and not each.name.strip():
            faults.append(f"{inside} has no name")
        if each.description and each.description == each.name:
            faults.append(f"{inside} is read twice")
        if each.kind == "label" and each.parent.focusable and each.parent.name == each.name:
            faults.append(f"{inside} repeats its control")
        if not each.focusable:
            continue
        if not each.name.strip():
            faults.append(f"{inside} has no name")
        if each.kind not in CONTROLS:
            faults.append(f"{inside} is no control")


def press(name, then=None, kind=None):
    """Presses it as a screen reader does, waits for the other one, and looks at everything."""
    thing = wait(lambda: (found := find(name, kind)) and found.enabled and found, f"\"{name}\" to press")
    Atspi.Action.do_action(thing.source, 0)
    if then is not None:
        wait(lambda: find(then), f"\"{then}\" after \"{name}\"")
        check(then)


def key(keys):
    subprocess.run(["xdotool", "key", "--clearmodifiers", *keys.split()], check=True)


def close(name):
    """With Esc, until it is gone."""
    key("Escape")
    wait(lambda: not find(name), f"end of \"{name}\"")


def focused():
    found = [each for each in see() if each.focused]
    return found[-1] if found else None


def focus_window(name):
    number = wait(
        lambda: subprocess.run(["xdotool", "search", "--onlyvisible", "--name", f"^{name}$"], capture_output=True,
                               text=True).stdout.split(), f"window \"{name}\"")[-1]
    subprocess.run(["xdotool", "windowfocus", "--sync", number], check=True)


def photo():
    found = [each for each in see() if each.kind == "canvas"]
    return found[-1] if found else None


TOOLS = {  # and the items of their bars that open a panel
    "Crop": [None],
    "Resize": [None],
    "Rotate": ["Free Rotation"],
    "Remove Red Eye": [None],
    "Adjust Brightness/Contrast": ["Brightness", "Make Better"],
    "Special Effects": ["Solarise", "Colourise", "Sharpen", "Mosaic", "Texture", "Tile", "Colour Emboss", "Perspective",
                        "Reflection"],
    "Colour Focus": [None],
    "Cut out": [None],
}


def panel():
    """The open one."""
    found = [each for each in see() if each.kind == "panel" and each.name]
    return found[-1] if found else None


def visit_tool(tool, item):
    """From the tool column, and from its bar where it has one; then away."""
    press(tool, kind="radio button")
    if item is not None:
        wait(lambda: find(tool, "tool bar"), f"bar of \"{tool}\"")
        check(tool)
        press(item)
    opened = wait(lambda: panel() or find("Back"), f"panel of \"{tool}\"")
    check(item or tool)
    if opened.kind == "panel":
        tab_into(opened.name)
    if find("Back"):
        press("Back")
    else:
        key("Escape")
    wait(lambda: not panel() and not find("Back"), f"end of \"{tool}\"")


def without_photo():
    """The launcher, help and guide, the options, ideas and the open window."""
    wait(lambda: find("Advanced Mode"), "launcher")
    check("launcher")
    press("Help", "View User Guide")
    press("View User Guide")
    press("OK", "Lumora - Help")
    press("Keys")
    press("Close")
    press("Advanced Mode", "Options")
    focus_window("Lumora")
    press("Options", "Devices")
    for tab in ("Devices", "Dialog Boxes", "Miscellaneous"):
        press(tab, kind="page tab")
        wait(lambda: find(tab, "page tab").chosen, f"page \"{tab}\"")
        check(tab)
    press("Mail server...", "Find it")
    close("Find it")
    press("Cancel")
    press("Ideas", "Lumora Ideas")
    close("Lumora Ideas")
    press("Scan a Photo", "Use the scanner's own settings")
    press("Close")
    press("Open", "Animals")
    press("Cancel")
    press("Exit", "Yes")


def tab_into(title):
    """From the photo the Tab key goes into the panel that is open, and back."""
    focus_window("Lumora")  # which a dialog that has closed left without it: there is no window manager
    photo().source.grab_focus()
    wait(lambda: photo().focused, "focus on the photo")
    key("Tab")
    wait(lambda: (now := focused()) and title in [one.name for one in now.parents()], f"focus in \"{title}\" after Tab")
    key("shift+Tab")
    wait(lambda: photo().focused, f"photo after Shift+Tab from \"{title}\"")


def with_photo():
    """What the photo says; every tool, bar and panel; what saves, sends and prints."""
    wait(lambda: photo() and "ladybird.jpg, 1600 x 1200 pixels, 55 %" == photo().name, "photo with its name")
    check("photo")
    focus_window("Lumora")
    key("plus")
    wait(lambda: photo().name.endswith(", 65 %"), "zoom in the photo's name")
    for tool, items in TOOLS.items():
        for item in items:
            visit_tool(tool, item)
    press("Selection", "Rectangular Selection")
    press("Rectangular Selection")
    wait(lambda: photo().focused, "focus on the photo")
    key("Right Return shift+Right shift+Down Return")
    wait(lambda: "Rectangular Selection, " in photo().name, "what is marked in the photo's name")
    key("Escape Escape ctrl+h")
    wait(lambda: find("What you did"), "steps")
    check("What you did")
    close("What you did")
    press("Print")
    wait(lambda: find("No", "button"), "print window")
    check("print")
    press("No")
    press("E-mail Photo to a Friend", "E-mail Photo")
    close("E-mail Photo")
    press("Save", "Save As")
    close("Save As")
    press("Exit", "Yes")
    check("exit")


def simple_mode():
    """The large buttons and what they open; pop-art and stickers besides."""
    wait(lambda: find("Open"), "Simple mode")
    focus_window("Lumora")
    press("Open", "Animals")
    press("Animals")
    wait(lambda: find("Files", "list"), "list of photos")
    Atspi.EditableText.set_text_contents(find("Selected File", "text").source, "owl.jpg")
    press("Open")
    wait(photo, "photo")
    check("simple")
    for tool in ("Special Effects", "Basic Effects", "Rotate"):
        press(tool, kind="radio button")
        wait(lambda: find(tool, "tool bar"), f"bar of \"{tool}\"")
        check(tool)
        key("Escape")
    press("Print")
    wait(lambda: find("No", "button"), "print window")
    check("simple print")
    press("No")
    for idea, start in (("Pop-art row", "Make it with my photo"), ("Comic page", "Words and stickers")):
        press("Ideas", "Lumora Ideas")
        press(idea, start)
        press(start)
        opened = wait(panel, f"panel of \"{idea}\"").name
        check(idea)
        tab_into(opened)
        key("Escape")
        wait(lambda: not panel(), f"end of \"{idea}\"")
    press("Exit", "Yes")
    check("exit simple")
    press("Yes")


def main():
    global program
    for arguments, visit in (([], without_photo), ([f"{FOLDER}/My Photos/animals/ladybird.jpg"], with_photo),
                             (["/s"], simple_mode)):
        program = Program(*arguments)
        visit()
        program.end()
    for each in faults:
        print(each)
    sys.exit(1 if faults else 0)


main()
