#!/usr/bin/env python3
"""Writes the eight frames of every button loop, NAME-1.svg to NAME-8.svg, in resources/loops.

A loop takes a drawing of ../icons and moves it, or its named parts, through the poses of a table; the sun of the
throbber is drawn here. Frame 1 is the resting pose. Run it again after changing a drawing or a pose.
"""
import copy
import math
import pathlib
import xml.etree.ElementTree as ET

HERE = pathlib.Path(__file__).resolve().parents[2] / "resources" / "loops"
SVG = "{http://www.w3.org/2000/svg}"
INK, SKY, SUN, LEAF, CORAL, PLUM = "#2B2840", "#2F80ED", "#FFC53D", "#34B27B", "#FF6B57", "#8A5CF6"
FRAMES = range(8)

# Whole drawings: (x, y, turn in degrees, width, height), turned and scaled about the pivot. Widths and heights are
# factors; the drawing is first drawn in a little so that no pose leaves the 64-pixel grid.
WHOLE = {
    "ok": ((32, 56), 0.88, [
        (0, 0, 0, 1, 1), (0, 1, 0, 1.07, 0.9), (0, -3, -3, 0.96, 1.05), (0, -6, -5, 0.97, 1.03),
        (0, -7, -2, 1, 1), (0, -4, 3, 0.97, 1.03), (0, 1, 0, 1.08, 0.88), (0, -1, 0, 0.99, 1.02)]),
    "cancel": ((32, 32), 0.94, [
        (0, 0, 0, 1, 1), (0, 0, 10, 0.98, 0.98), (0, 0, 16, 0.95, 0.95), (0, 0, 10, 0.98, 0.98),
        (0, 0, 0, 1.02, 1.02), (0, 0, -10, 0.98, 0.98), (0, 0, -16, 0.95, 0.95), (0, 0, -10, 0.98, 0.98)]),
    "email": ((32, 40), 0.86, [
        (0, 0, 0, 1, 1), (0, 1, 2, 1.03, 0.95), (1, -2, -3, 0.98, 1.03), (2, -4, -7, 0.98, 1.02),
        (2, -5, -8, 1, 1), (1, -4, -5, 1, 1), (0, -1, 0, 1.02, 0.97), (0, 1, 1, 1.02, 0.97)]),
    "hand": ((34, 60), 0.84, [
        (0, 0, 0, 1, 1), (-1.5, 0, 12, 1, 1), (-3, 0, 17, 1, 1), (-1.5, 0, 12, 1, 1),
        (0, 0, 0, 1, 1), (1.5, 0, -12, 1, 1), (3, 0, -17, 1, 1), (1.5, 0, -12, 1, 1)]),
}


def slide(*steps):
    """The same shift-only transform for every step."""
    return [f"translate({x} {y})" for x, y in steps]


SWELL = [(1 - math.cos(frame * math.pi / 4)) / 2 for frame in FRAMES]  # from 0 to 1 and back, slow at both ends

# Drawings whose named parts move by themselves: a transform for every frame.
PARTS = {
    "open": {
        "picture": [f"translate(0 {-3.5 * out:.2f}) rotate({8 * out:.2f} 32 30)" for out in SWELL],
        "front": [f"translate(0 58) skewX({-out:.2f}) scale(1 {1 - 0.15 * out:.3f}) translate(0 -58)" for out in SWELL],
    },
    "save": {
        "shutter": slide((0, 0), (-2, 0), (-3, 0), (-2, 0), (0, 0), (2, 0), (3, 0), (2, 0)),
        "label": slide((0, 0), (0, -1), (0, -3), (0, -5), (0, -6), (0, -5), (0, -3), (0, -1)),
    },
    "simple-mode": {  # the crayon sways on its tip while it draws
        "crayon": [f"translate({x} {y}) rotate({turn} 24 58)" for x, y, turn in
                   ((0, 0, 0), (1, -0.5, 4), (1.5, -1, 6), (1, -0.5, 4),
                    (0, 0, 0), (-1, -0.5, -4), (-1.5, -1, -6), (-1, -0.5, -4))],
    },
    "advanced-mode": {  # the brush dips into the paint
        "brush": [f"translate({-2.6 * dip:.2f} {3.9 * dip:.2f}) rotate({-5.2 * dip:.2f} 40 32)" for dip in SWELL],
    },
}


def element(tag, parent=None, **attributes):
    """A new SVG element; an underscore in a name becomes a hyphen."""
    made = ET.Element(SVG + tag) if parent is None else ET.SubElement(parent, SVG + tag)
    for name, value in attributes.items():
        made.set(name.replace("_", "-"), f"{value:.4g}" if isinstance(value, float) else str(value))
    return made


def icon(name):
    return ET.parse(HERE.parent / "icons" / f"{name}.svg").getroot()


def write(name, frame, root):
    ET.register_namespace("", SVG[1:-1])
    text = ET.tostring(root, encoding="unicode", short_empty_elements=True)
    (HERE / f"{name}-{frame + 1}.svg").write_text(text.strip() + "\n", encoding="utf-8")


def whole_loop(name, pivot, size, poses):
    for frame, (x, y, turn, width, height) in zip(FRAMES, poses):
        root = icon(name)
        drawing = root[0]
        root.remove(drawing)
        moved = element("g", root, transform=f"translate({pivot[0] + x} {pivot[1] + y}) rotate({turn}) "
                        f"scale({size * width:.3f} {size * height:.3f}) translate({-pivot[0]} {-pivot[1]})")
        moved.append(drawing)
        if name == "hand" and abs(turn) >= 14:  # whoosh marks on the side the hand swings to
            side = 1 if turn > 0 else -1
            for radius in (25, 31):
                marks = element("path", root, fill="none", stroke=SKY, stroke_width=3, stroke_linecap="round",
                                d=f"M{32 + side * radius * 0.76:.1f} {34 - radius * 0.98:.1f}"
                                  f"Q{32 + side * radius * 0.9:.1f} {34 - radius * 0.84:.1f} "
                                  f"{32 + side * radius * 0.97:.1f} {34 - radius * 0.62:.1f}")
                marks.set("stroke-opacity", "0.8")
        write(name, frame, root)


def part_loop(name, parts):
    for frame in FRAMES:
        root = icon(name)
        for part, poses in parts.items():
            root.find(f".//{SVG}g[@id='{part}']").set("transform", poses[frame])
        write(name, frame, root)


def crayon(parent, angle, out, colour):
    """One crayon of the sun's rays, its tip away from the sun, `out` pixels from the middle."""
    ray = element("g", parent, transform=f"rotate({angle:.1f} 64 64) translate(64 {64 - out:.1f}) scale(1.08)")
    element("path", ray, fill=colour, d="M-6.5 0V-17L-2 -26.5Q0 -29 2 -26.5L6.5 -17V0Q6.5 3 3.5 3H-3.5Q-6.5 3 -6.5 0Z")
    element("path", ray, fill="none", stroke="#FFFFFF", stroke_opacity=0.6, stroke_width=2.4, d="M-2.6 -12.500V-4")
    element("path", ray, fill="none", stroke_width=3, d="M-6.500 -17H6.500M-6.500 -1H6.500")


def throbber():
    """A smiling sun whose eight crayon rays leap up one after the other; it blinks once a turn."""
    colours = [CORAL, SUN, LEAF, SKY, PLUM, CORAL, LEAF, SKY]
    leaps = [7, 4.5, 2, 0, -1, -1, 0, 3]  # by how many frames ago the ray had its turn
    for frame in FRAMES:
        root = element("svg", version="1.2", baseProfile="tiny", width=128, height=128, viewBox="0 0 128 128")
        element("circle", root, cx=64, cy=64, r=44 + 1.5 * math.sin(frame * math.pi / 4), fill=SUN, fill_opacity=0.22)
        lines = element("g", root, fill="none", stroke=INK, stroke_width=3.5, stroke_linecap="round",
                        stroke_linejoin="round")
        for ray in range(8):
            ago = (frame - ray) % 8
            crayon(lines, ray * 45, 26.5 + 0.55 * leaps[ago], colours[ray])
        face = element("g", lines, transform=f"rotate({6 * math.sin(frame * math.pi / 4):.1f} 64 64)")
        element("circle", face, cx=64, cy=64, r=22, fill="#FFD466")
        element("path", face, fill="#F7AE2C", stroke="none", d="M44.500 68A20.200 20.200 0 0 0 83.500 68 24 24 0 0 1 44.500 68Z")
        for x in (56, 72):
            if frame == 4:
                element("path", face, d=f"M{x - 3} 61Q{x} 64 {x + 3} 61")
            else:
                element("circle", face, cx=x, cy=60, r=2.9, fill=INK, stroke="none")
        for x in (50.5, 77.5):
            element("circle", face, cx=x, cy=67, r=3.2, fill="#FF9C7A", stroke="none")
        element("path", face, d="M56.500 68Q64 76.500 71.500 68")
        write("throbber", frame, root)


if __name__ == "__main__":
    for loop, (centre, scale, table) in WHOLE.items():
        whole_loop(loop, centre, scale, table)
    for loop, moving in PARTS.items():
        part_loop(loop, moving)
    throbber()
