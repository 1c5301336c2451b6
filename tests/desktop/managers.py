"""managers.py FOLDER BIN MANAGER SCALE SCREENS: uses the program in that folder under a window manager of X, or the Wayland
compositor weston, with real events, and looks at what X, weston and the screen reader's interface say of it."""

import os
import subprocess
import sys
import time

import gi
from accessible import PATIENCE
from desk import Rect, SeenProgram, Weston, X, run

gi.require_version("GdkPixbuf", "2.0")
from gi.repository import GdkPixbuf  # noqa: E402

FOLDER, BIN, MANAGER, SCALE, SCREENS = sys.argv[1], sys.argv[2], sys.argv[3], float(sys.argv[4]), int(sys.argv[5])
ON_WAYLAND = MANAGER == "weston"
WIDTH, HEIGHT = round(1024 * SCALE), round(768 * SCALE)  # of a screen, in its pixels
SHADOW = 18 if MANAGER in {"metacity", "weston"} else 0  # program pixels round a dialog, where windows can be translucent
PHOTO = f"{BIN}/My Photos/animals/ladybird.jpg"
OTHER = f"{BIN}/My Photos/animals/owl.jpg"
SMALL = f"{FOLDER}/small.png"
TITLE = "ladybird.jpg, 1600 x 1200 pixels"


def screen(number):
    return Rect(number * WIDTH, 0, WIDTH, HEIGHT)


def step(text):
    print(f"{time.monotonic() - began:6.1f} {text}", flush=True)


began = time.monotonic()
desk = None
program = None


# --- The hand --------------------------------------------------------------------------------------------------------


def click(name, kind=None):
    _, place = program.standing(program.enabled(name, kind), f"\"{name}\" to click")
    x, y = place.middle()
    run("xdotool", "mousemove", x, y, "sleep", 0.2, "click", 1)  # a hand rests before it presses


def key(keys):
    run("xdotool", "key", "--clearmodifiers", keys)


def drag(start, end, steps=12):
    run("xdotool", "mousemove", *start, "mousedown", 1)
    for number in range(1, steps + 1):
        time.sleep(0.02)  # a hand is not quicker
        run("xdotool", "mousemove", *(round(a + (b - a) * number / steps) for a, b in zip(start, end)))
    time.sleep(0.1)
    run("xdotool", "mouseup", 1)


def strip_of(window):
    """A place in its title strip where nothing is to press."""
    place = desk.place(window)
    return place.x + round(SCALE * (SHADOW + 200)), place.y + round(SCALE * (SHADOW + 20))


def drag_window(window, by_x, by_y):
    """By its title strip, so many program pixels. It follows from where the hand is clearly dragging; the screen's edges
    may hold it."""
    before, (x, y) = desk.place(window), strip_of(window)
    by_x, by_y = round(by_x * SCALE), round(by_y * SCALE)
    drag((x, y), (x + by_x, y + by_y))
    program.until(lambda: desk.place(window)[:2] != before[:2], f"move of the window from {before} by {by_x}, {by_y}")
    after = desk.place(window)
    if after[2:] != before[2:] or (after.x - before.x) * by_x < 0 or (after.y - before.y) * by_y < 0:
        sys.exit(f"dragged by {by_x}, {by_y} {before} is {after}")


# --- Steps -----------------------------------------------------------------------------------------------------------


def starts(place):
    step("starts, and fills the screen")
    program.photo_is(TITLE)
    window = program.until(lambda: desk.window("Lumora"), "window")
    program.until(lambda: desk.place(window) == place, f"window at {place}")
    program.until(lambda: desk.front() == window, "window in front")
    comes_to_rest(window)
    fitted = program.photo().name
    key("ctrl+0")
    time.sleep(0.5)
    if program.photo().name != fitted:
        sys.exit(f"\"{fitted}\" was not fitted into the window, as \"{program.photo().name}\" is")
    return window


def comes_to_rest(window):
    place = None
    while place != desk.place(window):
        place = desk.place(window)
        time.sleep(0.3)


def double_click(window):
    comes_to_rest(window)
    x, y = strip_of(window)
    run("xdotool", "mousemove", x, y, "click", "--repeat", 2, "--delay", 60, 1)


def is_restored(window):
    step("a double click on the title strip restores it")
    double_click(window)
    program.until(lambda: not desk.is_maximised(window) and desk.place(window)[2:] != screen(0)[2:], "window that is restored")


def fills(window, place):
    step("a double click lets it fill the screen")
    double_click(window)
    program.until(lambda: desk.is_maximised(window) and (ON_WAYLAND or desk.place(window) == place), f"window at {place}")


def goes_to_second_screen(window):
    step("dragged to the second screen")
    drag(strip_of(window), (screen(1).x + round(300 * SCALE), round(60 * SCALE)))
    program.until(lambda: desk.place(window).middle()[0] >= WIDTH, "window on the second screen")


def opens_bars(room):
    step("a floating bar beside its tool; an effect of it; undo")
    click("Basic Effects", "radio button")
    bar, place = program.standing(lambda: program.find("Basic Effects", "tool bar"), "floating bar")
    if not room.holds(place):
        sys.exit(f"the bar is at {place}, not in {room}")
    click("Invert")
    program.until(lambda: program.find("Undo").enabled and not program.find("Redo").enabled, "effect")
    key("ctrl+z")
    program.until(lambda: program.find("Redo").enabled, "end of the effect")


def opens_bubble(room):
    step("the mascot's bubble; the panel's end")
    click("Crop", "radio button")
    hint = "Drag the frame, or its dots."
    _, place = program.standing(lambda: [each for each in program.see() if each.name == hint][-1], "bubble")
    if not room.holds(place.without(SHADOW)):
        sys.exit(f"the bubble is at {place}, not in {room}")
    click("Back")
    program.until(lambda: not program.find("Back"), "end of cropping")


def opens_menu(room):
    step("a menu, and what is chosen there")
    click("Set Zoom Level")
    place = program.until(desk.popup, "menu")
    if not room.holds(place):
        sys.exit(f"the menu is at {place}, not in {room}")
    for _ in range(5):  # fit, 25, 50, 75, 100
        key("Down")
    key("Return")
    program.until(lambda: program.photo().name.endswith(", 100 %"), "zoom")
    key("ctrl+0")


def opens_dialogs(window, room):
    for button, title in (("Options", "Options"), ("Ideas", "Lumora Ideas"), ("Print", "Print"), ("Save", "Save As")):
        step(f"\"{title}\" in front of the window, within the screen; dragged by its strip; Esc")
        click(button, "button")
        dialog = program.until(lambda: desk.window(title), f"window \"{title}\"")
        program.until(lambda: desk.front() == dialog, f"\"{title}\" in front")
        if not desk.is_above(dialog, window) or not desk.belongs_to(dialog, window):
            sys.exit(f"\"{title}\" does not stay above the window")
        place = desk.place(dialog)
        if not room.holds(place.without(round(SCALE * SHADOW))):
            sys.exit(f"\"{title}\" is at {place}, not in {room}")
        if not ON_WAYLAND:  # which does not say where a window is
            program.knows_place(title, room)
        drag_window(dialog, -60, 40)
        key("Escape")
        program.until(lambda: not desk.window(title), f"end of \"{title}\"")
        program.until(lambda: desk.front() == window, f"window in front after \"{title}\"")


def minimises(window):
    step("minimised and restored")
    was = desk.place(window)
    click("Minimise")
    program.until(lambda: desk.is_minimised(window), "window that is minimised")
    desk.restore(window)
    program.until(lambda: desk.window("Lumora") and not desk.is_minimised(window), "window that is restored")
    program.until(lambda: desk.place(window) == was, f"window at {was} again")


# --- The other program -----------------------------------------------------------------------------------------------


class Client:
    def __init__(self):
        environment = dict(os.environ, GDK_BACKEND="wayland" if ON_WAYLAND else "x11", NO_AT_BRIDGE="1")
        self.process = subprocess.Popen(["/usr/bin/python3", f"{os.path.dirname(__file__)}/client.py", FOLDER],
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True, env=environment)
        self.window = program.until(lambda: desk.window("Client"), "client")

    def does(self, what):
        said = self.process.stdout.readline().strip()
        if said != what:
            sys.exit(f"the client says \"{said}\", not \"{what}\"")

    def offer(self, line):
        print(line, file=self.process.stdin, flush=True)
        self.does("ready")

    def key(self, keys, said):
        desk.switch_to(self.window)
        program.until(lambda: desk.front() == self.window, "client in front")
        key(keys)
        self.does(said)

    def end(self):
        self.process.terminate()
        self.process.wait()


def pixels(file):
    """Size and hash, as the program itself reads it."""
    return run(f"{BIN}/lumora-probe", file).split("\t")[3:5]


def to_program(window):
    desk.switch_to(window)
    program.until(lambda: desk.front() == window, "window in front")


def switches_and_shares(window):
    GdkPixbuf.Pixbuf.new_from_file_at_scale(PHOTO, 400, 300, False).savev(SMALL, "png", [], [])
    client = Client()
    step("a switch to another program and back")
    to_program(window)
    step("a file is dropped from another program")
    desk.switch_to(client.window)
    program.until(lambda: desk.front() == client.window, "client in front")
    client.offer(f"files {OTHER}")
    here = desk.place(client.window).middle()
    there = (here[0] + desk.place(client.window).width, here[1])
    drag(here, there)
    client.does("dragged")
    click("No", "button")  # the effect and its undoing are not saved
    program.photo_is("owl.jpg")
    step("a copied photo is pasted by another program")
    to_program(window)
    key("ctrl+c")
    client.key("ctrl+v", "pasted")
    if pixels(f"{FOLDER}/pasted.png") != pixels(OTHER):
        sys.exit(f"the photo arrives as {pixels(FOLDER + '/pasted.png')}, not {pixels(OTHER)}")
    step("a picture that another program copied is pasted")
    client.offer(f"picture {SMALL}")
    client.key("ctrl+c", "copied")
    os.remove(f"{FOLDER}/pasted.png")
    to_program(window)
    program.until(lambda: program.find("Paste").enabled, "picture to paste")
    key("ctrl+v")
    program.photo_is("400 x 300")
    key("ctrl+c")
    client.key("ctrl+v", "pasted")
    if pixels(f"{FOLDER}/pasted.png") != pixels(SMALL):
        sys.exit(f"the pasted photo is {pixels(FOLDER + '/pasted.png')}, not {pixels(SMALL)}")
    step("a file that another program copied is pasted")
    client.offer(f"files {OTHER}")
    client.key("ctrl+c", "copied")
    to_program(window)
    program.until(lambda: program.find("Paste").enabled, "file to paste")
    key("ctrl+v")
    program.photo_is("owl.jpg")
    client.end()


def uses_windows(window, room):
    minimises(window)
    if desk.is_maximised(window):  # otherwise the tools scroll
        opens_bars(room)
    opens_bubble(room)
    opens_menu(room)
    opens_dialogs(window, room)


def on_second_screen(window):
    is_restored(window)
    if not ON_WAYLAND:  # weston's screens keep the pointer while a button is down, so it restores the window there itself
        goes_to_second_screen(window)
        fills(window, screen(1))
    if desk.place(window).x < WIDTH:
        sys.exit(f"the window is at {desk.place(window)}")
    uses_windows(window, screen(1))


def main():
    global desk, program
    screens = [screen(number) for number in range(SCREENS)]
    desk = Weston(FOLDER, SCALE, screens) if ON_WAYLAND else X(MANAGER)
    while not desk.is_up():
        if time.monotonic() - began > PATIENCE:
            sys.exit(f"{MANAGER} does not start")
        time.sleep(0.1)
    try:
        if not ON_WAYLAND:  # the photo is there before the window is maximised
            time.sleep(0.5)
            desk.pause()
        program = SeenProgram(desk, SCALE, f"{FOLDER}/program/lumora", PHOTO)
        if not ON_WAYLAND:
            time.sleep(1)
            desk.go_on()
        window = starts(screen(0))
        uses_windows(window, screen(0))
        switches_and_shares(window)
        is_restored(window)
        drag_window(window, 60, 40)
        fills(window, screen(0))
        if SCREENS == 2:
            on_second_screen(window)
        program.end()
    except BaseException:
        print(run("xdotool", "getmouselocation"), "in front:", desk.front())
        raise
    finally:
        if program.process.poll() is None:
            program.process.kill()
        desk.end()


main()
