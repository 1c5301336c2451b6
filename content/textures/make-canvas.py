#!/usr/bin/env python3
"""Draws canvas.png, the texture of the effect "Texture": painter's canvas on which the ground has dried unevenly.

It repeats without a seam. Levels are around 128, which leaves a photo unchanged; darker ones darken it, lighter ones
light it. Threads show on a photo at full size, the unevenness on one that is made small.
"""
import math
import pathlib
import random
import struct
import zlib

SIDE = 512     # pixels, and so the period of everything below
THREAD = 8     # pixels
MIDDLE = 128   # the level that changes nothing
STRENGTH = 44  # levels to either side of it


def noise(seed, cells):
    """Smooth noise of `cells` hills across, as a function of pixels; it repeats with the picture."""
    heights = [[value.uniform(-1, 1) for _ in range(cells)] for value in [random.Random(seed)] for _ in range(cells)]

    def at(x, y):
        x, y = x * cells / SIDE, y * cells / SIDE
        column, row = math.floor(x), math.floor(y)
        u, v = x - column, y - row
        u, v = u * u * (3 - 2 * u), v * v * (3 - 2 * v)
        left, right, above, below = column % cells, (column + 1) % cells, row % cells, (row + 1) % cells
        upper = heights[above][left] * (1 - u) + heights[above][right] * u
        lower = heights[below][left] * (1 - u) + heights[below][right] * u
        return upper * (1 - v) + lower * v

    return at


def weave():
    """Plain weave as a height: threads pass over and under each other by turns, and none is straight or even."""
    bend_x, bend_y, thick_x, thick_y = noise(1, 13), noise(2, 13), noise(3, 64), noise(4, 64)
    turn = math.pi / THREAD

    def at(x, y):
        across = x + 2.2 * bend_x(x, y)
        down = y + 2.2 * bend_y(x, y)
        upright = math.sqrt(abs(math.sin(turn * across))) * (0.85 + 0.3 * thick_x(4 * x, y))
        level = math.sqrt(abs(math.sin(turn * down))) * (0.85 + 0.3 * thick_y(x, 4 * y))
        return upright if math.sin(turn * across) * math.sin(turn * down) > 0 else level

    return at


def lit(height, reach):
    """The slope towards the light, which comes from the upper left."""
    return [[height[y][x] - height[(y - reach) % SIDE][(x - reach) % SIDE] for x in range(SIDE)] for y in range(SIDE)]


def drawn(function):
    return [[function(x, y) for x in range(SIDE)] for y in range(SIDE)]


def even(picture):
    """With the mean 0 and the deviation 1."""
    levels = [level for row in picture for level in row]
    mean = sum(levels) / len(levels)
    deviation = math.sqrt(sum((level - mean) ** 2 for level in levels) / len(levels))
    return [[(level - mean) / deviation for level in row] for row in picture]


def png(rows):
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    header = struct.pack(">IIBBBBB", SIDE, SIDE, 8, 0, 0, 0, 0)
    pixels = b"".join(b"\0" + bytes(row) for row in rows)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(pixels, 9)) + chunk(b"IEND", b"")


def main():
    hills, ripples = noise(5, 6), noise(6, 17)
    height = drawn(weave())
    threads, light = even(height), even(lit(height, 1))
    ground = even(lit(drawn(lambda x, y: hills(x, y) + 0.45 * ripples(x, y)), 6))
    rows = []
    for y in range(SIDE):
        shares = (0.6 * threads[y][x] + 0.6 * light[y][x] + 0.55 * ground[y][x] for x in range(SIDE))
        rows.append([round(MIDDLE + STRENGTH * math.tanh(0.8 * share)) for share in shares])
    (pathlib.Path(__file__).resolve().parents[2] / "resources/textures/canvas.png").write_bytes(png(rows))


if __name__ == "__main__":
    main()
