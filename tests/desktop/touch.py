"""touch.py FOLDER BIN: uses the program in that folder by fingers alone, with the events of a real touch screen, in Advanced
and in Simple mode, and looks at what the screen and the screen reader's interface say of it."""

import sys
import time

import gi
from accessible import PATIENCE, Atspi
from desk import Rect, SeenProgram, X
from finger import TouchScreen

gi.require_version("Gdk", "3.0")
from gi.repository import Gdk  # noqa: E402

FOLDER, BIN = sys.argv[1], sys.argv[2]
SCREEN = Rect(0, 0, 1024, 768)
PHOTO = f"{BIN}/My Photos/animals/ladybird.jpg"
TITLE = "ladybird.jpg, 1600 x 1200 pixels"
PRESSED = {"button", "radio button", "page tab", "slider", "combo box"}  # as large as a finger needs
LEAST = 44  # pixels, width and height

began = time.monotonic()
desk = hand = program = None


def step(text):
    print(f"{time.monotonic() - began:6.1f} {text}", flush=True)


def fail(text):
    sys.exit(text)


def place(name, kind=None):
    return program.standing(program.enabled(name, kind), f"\"{name}\" to touch")[1]


def tap(name, kind=None):
    hand.tap(place(name, kind).middle())


def is_gone(name):
    program.until(lambda: not program.find(name), f"end of \"{name}\"")


def fits_fingers(window):
    """Whether whatever is to press there is large enough, and the program knows where its window is."""
    shown = program.until(lambda: [each for each in program.see() if each.window().name == window], f"\"{window}\"")
    for each in shown:
        width, height = each.place()[2:]
        if each.kind in PRESSED and (width < LEAST or height < LEAST):
            fail(f"{each} in \"{window}\" is only {width} x {height} pixels")
    program.knows_place(window)


def opens(button, window):
    tap(button)
    program.until(lambda: program.find(window, "dialog") and desk.window(window), f"\"{window}\"")
    fits_fingers(window)


def zoom():
    return int(program.photo().name.split(", ")[2].split()[0])


def zooms_to(percent):
    program.until(lambda: abs(zoom() - percent) <= 0.05 * percent, f"zoom of {percent} %")


def pixels(by_x=0, by_y=0):
    """A part of the photo on the screen."""
    return Gdk.pixbuf_get_from_window(Gdk.get_default_root_window(), 450 + by_x, 300 + by_y, 200, 150).get_pixels()


def dialogs():
    step("a dialog, dragged by its strip, used and closed by taps")
    opens("Options", "Options")
    before = desk.place(desk.window("Options"))
    hand.drag((before.x + 200, before.y + 20), (before.x + 140, before.y + 60))
    program.until(lambda: desk.place(desk.window("Options"))[:2] != before[:2], "window that follows the finger")
    tap("Devices", "page tab")
    program.until(lambda: program.find("Devices", "page tab").chosen, "page")
    tap("Cancel")
    is_gone("Cancel")


def is_painted():
    was = pixels()
    time.sleep(0.2)
    return pixels() == was


def differs(one, other):
    return sum(abs(a - b) for a, b in zip(one[::7], other[::7]))


def moves(by):
    """The photo goes with two fingers, to the right and downwards."""
    program.until(is_painted, "photo that is painted")
    was = pixels()
    hand.pinch([(520, 370), (620, 370)], [(520 + by, 370 + by), (620 + by, 370 + by)])
    program.until(lambda: 4 * differs(was, pixels(by, by)) < differs(was, pixels()), "photo that goes with two fingers")


def zooms(before):
    step("two fingers zoom in and move the photo")
    hand.pinch([(550, 400), (650, 400)], [(500, 400), (700, 400)])
    zooms_to(2 * before)
    moves(40)
    zooms_to(2 * before)
    hand.pinch([(500, 400), (700, 400)], [(550, 400), (650, 400)])
    zooms_to(before)


def marks():
    step("one finger marks; two do not change what is marked")
    start = zoom()
    tap("Selection", "radio button")
    tap("Rectangular Selection")
    hand.drag((500, 350), (600, 450))
    marked = program.until(lambda: (name := program.photo().name).count("Rectangular Selection") and name, "marked part")
    width = int(marked.split(", ")[4].split()[0])
    if abs(width - 100 * 100 / start) > 6:
        fail(f"100 pixels at {start} % mark \"{marked}\"")
    hand.pinch([(550, 400), (650, 400)], [(500, 400), (700, 400)])
    zooms_to(2 * start)
    if not program.photo().name.endswith(marked.split(" %, ")[1]):
        fail(f"after \"{marked}\" two fingers leave \"{program.photo().name}\"")
    tap("Arrow Tool", "radio button")


def changes():
    step("an effect by taps; a finger that stays on Undo shows the steps")
    tap("Basic Effects", "radio button")
    tap("Invert")
    program.until(lambda: program.find("Undo").enabled, "effect")
    hand.tap(place("Undo").middle(), 0.9)
    program.until(lambda: program.find("What you did"), "steps")
    tap("Undo")
    program.until(lambda: program.find("Redo").enabled, "end of the effect")
    step("a slider")
    tap("Adjust Brightness/Contrast", "radio button")
    tap("Brightness")
    groove = place("Brightness", "slider")
    hand.drag(groove.middle(), (groove.x + groove.width * 3 // 4, groove.middle()[1]))
    program.until(lambda: Atspi.Value.get_current_value(program.find("Brightness", "slider").source) > 20,
                  "slider to the right")
    tap("Close")
    is_gone("Before")


def scrolls_tools():
    step("two taps on the title strip make the window smaller; a finger scrolls the tools and presses none")
    hand.tap((300, 24))
    hand.tap((300, 24))
    program.until(lambda: desk.place(desk.window("Lumora"))[2:] != SCREEN[2:], "smaller window")
    start = place("Crop", "radio button")
    hand.drag((start.middle()[0], start.middle()[1] + 100), start.middle(), rest=0.3)
    program.until(lambda: program.place_of(program.find("Crop", "radio button")).y < start.y - 50, "tools that scroll")
    if program.find("Crop", "radio button").chosen or program.find("Back"):
        fail("scrolling the tools has pressed one")


def advanced():
    global program
    program = SeenProgram(desk, 1, f"{FOLDER}/program/lumora", PHOTO)
    program.photo_is(TITLE)
    program.until(lambda: desk.place(desk.window("Lumora")) == SCREEN, "window that fills the screen")
    fits_fingers("Lumora")
    dialogs()
    zooms(zoom())
    marks()
    changes()
    scrolls_tools()
    program.end()


def simple():
    global program
    step("Simple mode; a photo from a list that a finger scrolls")
    program = SeenProgram(desk, 1, f"{FOLDER}/program/lumora", "/s")
    program.until(lambda: desk.place(desk.window("Lumora")) == SCREEN, "window that fills the screen")
    tap("No", "button")  # the photo of before, whose change was never saved, is offered
    is_gone("No")
    fits_fingers("Lumora")
    tap("Open")
    tap("Animals")
    photos = place("Files", "list")
    program.until(lambda: program.find("Files", "list").source.get_child_count() > 4, "photos")
    first = program.find("Files", "list").source.get_child_at_index(0)
    was = first.get_extents(Atspi.CoordType.SCREEN)
    x = photos.middle()[0]
    hand.drag((x, photos.y + photos.height - 40), (x, photos.y + 60), rest=0.3)
    chosen = program.find("Selected File", "text").source
    if Atspi.Text.get_text(chosen, 0, -1):
        fail("scrolling the list has chosen a photo")
    program.until(lambda: first.get_extents(Atspi.CoordType.SCREEN).y < was.y, "list that scrolls")
    hand.tap(photos.middle())
    program.until(lambda: Atspi.Text.get_text(chosen, 0, -1), "chosen photo")
    tap("Open")
    program.until(program.photo, "photo")
    zooms(zoom())
    program.end()


def main():
    global desk, hand
    desk = X("openbox")
    while not desk.is_up():
        if time.monotonic() - began > PATIENCE:
            sys.exit("openbox does not start")
        time.sleep(0.1)
    hand = TouchScreen(f"{FOLDER}/touch", SCREEN.width, SCREEN.height)
    try:
        advanced()
        simple()
    finally:
        if program.process.poll() is None:
            program.process.kill()
        desk.end()


main()
