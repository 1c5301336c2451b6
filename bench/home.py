# home.py LUMORA PHOTO ROUNDS NETWORK: starts Lumora with its home on network folders of different delays, and prints a
# table. See home.sh.
import collections
import os
import signal
import statistics
import subprocess
import sys
import time
from pathlib import Path

from startup import LOOK, PATIENCE, Screen

AFTER = 1.5  # seconds from the photo until the start counts as done
FOLDERS = (".config", ".cache/fontconfig", ".local/share", ".local/state")
NEARBY = "cache on the computer"
HOMES = (("here", None), *((f"{delay} ms", ["--delay", str(delay)]) for delay in (0, 1, 5, 20, 100)),
         ("20 ms, " + NEARBY, ["--delay", "20"]), ("read-only, 5 ms", ["--delay", "5", "--read-only"]))


class Home:
    """A home folder, on the network unless `options` is None, which has been used before."""

    def __init__(self, top, network, options):
        self.source, self.path, self.log = top / "source", top / "home", top / "log"
        for folder in FOLDERS:
            (self.source / folder).mkdir(parents=True)
        self.path.mkdir()
        self.server = None
        if options is None:
            self.path = self.source
        else:
            command = [network, str(self.source), str(self.path), "--log", str(self.log), *options]
            self.server = subprocess.Popen(command)
            while not self.path.is_mount():
                time.sleep(0.05)

    def operations(self):
        if not self.log.exists():
            return []
        for line in self.log.read_text().splitlines():
            when, thread, name, _ = line.split(" ", 3)
            yield float(when), int(thread), name

    def remove(self):
        if self.server is not None:
            self.server.send_signal(signal.SIGTERM)
            self.server.wait()


def start(program, photo, screen, home, more):
    """Milliseconds until the photo is shown; operations by the window's thread and by others until then, and later."""
    while screen.shows_photo():
        time.sleep(0.05)
    time.sleep(1.1)  # what the system remembers of the home is forgotten
    began = time.monotonic()
    process = subprocess.Popen([program, photo], start_new_session=True, env={**os.environ, **more, "HOME": str(home.path)},
                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    while not screen.shows_photo():
        time.sleep(LOOK)
        if time.monotonic() - began > 3 * PATIENCE or process.poll() is not None:
            sys.exit("The photo is not shown.")
    shown = time.monotonic()
    time.sleep(AFTER)
    os.killpg(process.pid, signal.SIGKILL)
    process.wait()
    counts = collections.Counter()
    for when, thread, name in home.operations():
        if when >= began:
            window = thread == process.pid
            counts["late" if when > shown else "window" if window else "others"] += 1
            if window and when <= shown:
                counts[name] += 1
    return (shown - began) * 1000, counts


def main():
    program, photo, rounds, network, stage = sys.argv[1:]
    screen = Screen()
    print("| home | photo shown: least | median | operations of the window's thread until then | of others | in the next 1.5 s |")
    print("|---|---|---|---|---|---|")
    for name, options in HOMES:
        top = Path(stage) / name.replace(" ", "-")
        top.mkdir()
        home = Home(top, network, options)
        try:
            more = {"XDG_CACHE_HOME": str(top / "cache")} if NEARBY in name else {}
            start(program, photo, screen, home, more)  # a first start writes caches
            runs = [start(program, photo, screen, home, more) for _ in range(int(rounds))]
        finally:
            home.remove()
        times = [shown for shown, _ in runs]
        middle = {kind: round(statistics.median(counts[kind] for _, counts in runs)) for _, all_ in runs for kind in all_}
        kinds = ", ".join(f"{count} {kind}" for kind, count in sorted(middle.items())
                          if kind not in ("window", "others", "late") and count)
        of_window = f"{middle.get('window', 0)} ({kinds})" if kinds else "-"
        print(f"| {name} | {min(times):.0f} ms | {statistics.median(times):.0f} ms | {of_window}"
              f" | {middle.get('others', '-')} | {middle.get('late', '-')} |", flush=True)


main()
