"""reader.py FOLDER: opens every window of the program in that folder by what a screen reader is told of it, and looks
whether everything that can have the keyboard has a name and a fitting kind."""

import os
import subprocess
import sys
from pathlib import Path

from accessible import Atspi, Program

FOLDER = sys.argv[1]
WINDOWS = {"frame", "dialog", "alert", "window"}
CONTROLS = {
    "button", "radio button", "check box", "page tab", "canvas", "slider", "spin button", "combo box", "text",
    "entry", "password text", "list", "list item", "table", "table cell", "tree", "document frame", "menu item",
    "scroll bar",
}
NAMED = {"tool bar", "page tab list", "status bar", "canvas"} | WINDOWS

faults = []
program = None


def check(where):
    """What is wrong with what is shown."""
    for each in program.see():
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
    thing = program.wait(lambda: (found := program.find(name, kind)) and found.enabled and found,
                         f"\"{name}\" to press")
    Atspi.Action.do_action(thing.source, 0)
    if then is not None:
        program.wait(lambda: program.find(then), f"\"{then}\" after \"{name}\"")
        check(then)


def key(keys):
    subprocess.run(["xdotool", "key", "--clearmodifiers", *keys.split()], check=True)


def close(name):
    """With Esc, until it is gone."""
    key("Escape")
    program.wait(lambda: not program.find(name), f"end of \"{name}\"")


def focused():
    found = [each for each in program.see() if each.focused]
    return found[-1] if found else None


def focus_window(name):
    number = program.wait(
        lambda: subprocess.run(["xdotool", "search", "--onlyvisible", "--name", f"^{name}$"], capture_output=True,
                               text=True).stdout.split(), f"window \"{name}\"")[-1]
    subprocess.run(["xdotool", "windowfocus", "--sync", number], check=True)


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
    found = [each for each in program.see() if each.kind == "panel" and each.name]
    return found[-1] if found else None


def visit_tool(tool, item):
    """From the tool column, and from its bar where it has one; then away."""
    press(tool, kind="radio button")
    if item is not None:
        program.wait(lambda: program.find(tool, "tool bar"), f"bar of \"{tool}\"")
        check(tool)
        press(item)
    opened = program.wait(lambda: panel() or program.find("Back"), f"panel of \"{tool}\"")
    check(item or tool)
    if opened.kind == "panel":
        tab_into(opened.name)
    if program.find("Back"):
        press("Back")
    else:
        key("Escape")
    program.wait(lambda: not panel() and not program.find("Back"), f"end of \"{tool}\"")


def without_photo():
    """What the first start asks, the launcher, help and guide, the options, ideas and the open window."""
    program.wait(lambda: program.find("Capital letters"), "page that the first start shows")
    check("For me")
    press("OK")
    program.wait(lambda: not program.find("Capital letters"), "end of that page")
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
        program.wait(lambda: program.find(tab, "page tab").chosen, f"page \"{tab}\"")
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
    program.photo().source.grab_focus()
    program.wait(lambda: program.photo().focused, "focus on the photo")
    key("Tab")
    program.wait(lambda: (now := focused()) and title in [one.name for one in now.parents()],
                 f"focus in \"{title}\" after Tab")
    key("shift+Tab")
    program.wait(lambda: program.photo().focused, f"photo after Shift+Tab from \"{title}\"")


def with_photo():
    """What the photo says; every tool, bar and panel; what saves, sends and prints."""
    program.wait(lambda: program.photo().name == "ladybird.jpg, 1600 x 1200 pixels, 55 %", "photo with its name")
    check("photo")
    focus_window("Lumora")
    key("plus")
    program.wait(lambda: program.photo().name.endswith(", 65 %"), "zoom in the photo's name")
    for tool, items in TOOLS.items():
        for item in items:
            visit_tool(tool, item)
    press("Selection", "Rectangular Selection")
    press("Rectangular Selection")
    program.wait(lambda: program.photo().focused, "focus on the photo")
    key("Right Return shift+Right shift+Down Return")
    program.wait(lambda: "Rectangular Selection, " in program.photo().name, "what is marked in the photo's name")
    key("Escape Escape ctrl+h")
    program.wait(lambda: program.find("What you did"), "steps")
    check("What you did")
    close("What you did")
    press("Print")
    program.wait(lambda: program.find("No", "button"), "print window")
    check("print")
    press("No")
    press("E-mail Photo to a Friend", "E-mail Photo")
    Atspi.EditableText.set_text_contents(program.find("Send to:", "text").source, "ben@school.example")
    press("Send", "Password")
    close("Password")
    press("Slideshow", "Choose")
    folder = [each for each in program.see() if each.kind == "text"][-1]
    Atspi.EditableText.set_text_contents(folder.source, f"{FOLDER}/My Photos/animals")
    press("Choose")
    program.wait(lambda: [each for each in program.see() if each.kind == "image" and each.name.endswith(".jpg")],
                 "picture of the slideshow with its name")
    check("slideshow")
    focus_window("Slideshow")
    key("space")
    program.wait(lambda: program.find("Paused"), "sign of the pause")
    key("Escape")
    program.wait(lambda: not program.find("Slideshow", "frame"), "end of the slideshow")
    press("Save", "Save As")
    close("Save As")
    press("Exit", "Yes")
    check("exit")
    press("No")


def crash():
    """A changed photo of which there is a copy when the program is killed."""
    program.wait(program.photo, "photo")
    press("Basic Effects", "Sepia")
    press("Sepia")
    program.wait(lambda: list(Path(os.environ["XDG_STATE_HOME"]).glob("**/recovery/*/copy*")), "copy of the photo")
    program.process.kill()


def after_crash():
    """The question at the next start."""
    program.wait(lambda: program.find("Welcome back"), "question whether the photo is wanted")
    check("recovery")
    focus_window("Welcome back")
    press("Yes")
    program.wait(program.photo, "photo")
    press("Exit", "No")
    press("No")  # or the next start asks again
    program.wait(lambda: program.find("Simple Mode"), "launcher")


def simple_mode():
    """The large buttons and what they open; pop-art and stickers besides."""
    program.wait(lambda: program.find("Open"), "Simple mode")
    focus_window("Lumora")
    press("Open", "Animals")
    press("Machines")  # it is not the one that is shown at first, and a press takes a while
    program.wait(lambda: program.find("Machines", "radio button").chosen, "group of photos")
    Atspi.EditableText.set_text_contents(program.find("Selected File", "text").source, "blue tractor.jpg")
    press("Open")
    program.wait(program.photo, "photo")
    check("simple")
    for tool in ("Special Effects", "Basic Effects", "Rotate"):
        press(tool, kind="radio button")
        program.wait(lambda: program.find(tool, "tool bar"), f"bar of \"{tool}\"")
        check(tool)
        key("Escape")
    press("Print")
    program.wait(lambda: program.find("No", "button"), "print window")
    check("simple print")
    press("No")
    for idea, start in (("Pop-art row", "Make it with my photo"), ("Comic page", "Words and stickers")):
        press("Ideas", "Lumora Ideas")
        press(idea, start)
        press(start)
        opened = program.wait(panel, f"panel of \"{idea}\"").name
        check(idea)
        tab_into(opened)
        key("Escape")
        program.wait(lambda: not panel(), f"end of \"{idea}\"")
    press("Exit", "Yes")
    check("exit simple")
    press("Yes")


def after_simple_mode():
    """What Advanced mode offers then."""
    press("Advanced Mode", "Bring them back")
    press("Bring them back")
    program.wait(lambda: not program.find("Bring them back"), "end of the offer")


def main():
    global program
    photo = f"{FOLDER}/My Photos/animals/ladybird.jpg"
    for arguments, visit in (([], without_photo), ([photo], with_photo), ([photo], crash), (["/a"], after_crash),
                             (["/s"], simple_mode), ([], after_simple_mode)):
        program = Program(f"{FOLDER}/lumora", *arguments)
        visit()
        if visit != crash:
            program.end()
    for each in faults:
        print(each)
    sys.exit(1 if faults else 0)


main()
