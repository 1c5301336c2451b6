# startup.py PHOTO ROUNDS WARM|COLD PROGRAM...: starts each program with the photo in turn and prints medians. See
# startup.sh.
import ctypes
import os
import signal
import statistics
import subprocess
import sys
import time
from pathlib import Path

AFTER = 3.0  # seconds from the photo to the last look
PATIENCE = 20.0  # seconds until the photo has to be there
LOOK = 0.002  # seconds between two looks at the screen


class Screen:
    """Tells whether a row of the screen shows the field of one colour that the photo has in its middle."""

    def __init__(self):
        self.x11 = ctypes.CDLL("libX11.so.6")
        self.x11.XOpenDisplay.restype = ctypes.c_void_p
        self.x11.XGetImage.restype = ctypes.c_void_p
        self.x11.XDefaultRootWindow.restype = ctypes.c_ulong
        self.display = ctypes.c_void_p(self.x11.XOpenDisplay(None))
        self.root = ctypes.c_ulong(self.x11.XDefaultRootWindow(self.display))
        self.width = self.x11.XDisplayWidth(self.display, 0)
        height = self.x11.XDisplayHeight(self.display, 0)
        self.rows = [height * part // 20 for part in (5, 8, 10)]

    def row(self, y):
        z_pixmap = 2
        image = ctypes.c_void_p(
            self.x11.XGetImage(self.display, self.root, 0, y, self.width, 1, ctypes.c_ulong(0xFFFFFFFF), z_pixmap)
        )
        # struct XImage: width, height, xoffset, format, data
        data = ctypes.cast(image, ctypes.POINTER(ctypes.c_void_p))[2]
        pixels = ctypes.string_at(data, self.width * 4)
        self.x11.XDestroyImage(image)
        return pixels

    def shows_photo(self):
        for y in self.rows:
            pixels = self.row(y)
            blue, green, red = pixels[0::64], pixels[1::64], pixels[2::64]
            like = sum(b > 240 and g < 15 and r > 240 for b, g, r in zip(blue, green, red))
            if like >= 4:
                return True
        return False


def group(leader):
    """The processes of the group, each with the fields of its stat."""
    for folder in Path("/proc").iterdir():
        if folder.name.isdigit():
            try:
                fields = (folder / "stat").read_text().rpartition(")")[2].split()
            except OSError:
                continue
            if int(fields[2]) == leader:
                yield int(folder.name), fields


def processor_time(leader):
    """Milliseconds that the group has computed, with its ended children."""
    total = 0.0
    for pid, fields in group(leader):
        try:
            total += time.clock_gettime((~pid << 3) | 2)
        except OSError:
            continue
        total += (int(fields[13]) + int(fields[14])) / os.sysconf("SC_CLK_TCK")
    return total * 1000


def kilobytes(file, name):
    for line in Path(file).read_text().splitlines():
        if line.startswith(name + ":"):
            return int(line.split()[1])
    return 0


def start(program, photo, screen):
    while screen.shows_photo():
        time.sleep(0.05)
    began = time.monotonic()
    process = subprocess.Popen(
        [program, photo], start_new_session=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL
    )
    while not screen.shows_photo():
        time.sleep(LOOK)
        if time.monotonic() - began > PATIENCE or process.poll() is not None:
            sys.exit(f"{program} does not show the photo")
    shown = (time.monotonic() - began) * 1000
    until = processor_time(process.pid)
    time.sleep(AFTER)
    whole = processor_time(process.pid)
    most = kilobytes(f"/proc/{process.pid}/status", "VmHWM") / 1000 * 1.024
    share = sum(kilobytes(f"/proc/{pid}/smaps_rollup", "Pss") for pid, _ in group(process.pid)) / 1000 * 1.024
    os.killpg(process.pid, signal.SIGKILL)
    process.wait()
    return shown, until, whole, most, share


def main():
    photo, rounds, files, *programs = sys.argv[1:]
    screen = Screen()
    for program in programs:
        start(program, photo, screen)  # a first start writes settings and caches
    measured = {program: [] for program in programs}
    for _ in range(int(rounds)):
        for program in programs:
            if files == "COLD":
                os.sync()
                Path("/proc/sys/vm/drop_caches").write_text("3")
            measured[program].append(start(program, photo, screen))
    print("| program | photo shown: least | median | processor time until then | 3 s later | most memory (VmHWM) | share (Pss) |")
    print("|---|---|---|---|---|---|---|")
    for program, rows in measured.items():
        shown, until, whole, most, share = zip(*rows)
        middle = [statistics.median(each) for each in (shown, until, whole, most, share)]
        print(
            f"| {Path(program).name} | {min(shown):.0f} ms | {middle[0]:.0f} ms | {middle[1]:.0f} ms | {middle[2]:.0f} ms"
            f" | {middle[3]:.0f} MB | {middle[4]:.0f} MB |"
        )


if __name__ == "__main__":
    main()
