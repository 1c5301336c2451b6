#!/usr/bin/env python3
"""walks.py LUMORA-PLAY SOURCE COUNT SEED MODE [SEED MODE...]: random walks of COUNT actions over everything that does
not leave the program, in "simple" or "advanced" mode: with a print system, a mail server and a scanner of their own, and
photos, broken pictures and other files to drop, to paste and to choose. Every 250 actions undo leads back to the photo
that was opened first, and redo to what was there; memory and open files do not grow. A walk that fails prints its seed
and its last 30 actions, and the same seed walks the same way."""
import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
import time

from common import fail
from systems import MailSystem, PrintSystem

PORTION = 250
SETTINGS = ("Welcome/Show=0", "E-mail/Value=1", "Sender/Address=anna@school.example", "Mail Server/Server=localhost",
            "Mail Server/Security=0", "Scanner/Device=0", "Slideshow/Delay=1")
MEGABYTE = 1 << 20
FIRST_TIME = 4  # handles of what may be needed late, as the folder of the undo steps; what is lost each time is more


def give_files(photos, folder):
    """What the walk drops, pastes and chooses: photos, some of them broken, and what is none."""
    os.makedirs(folder)
    found = sorted(os.path.join(place, name) for place, _, names in os.walk(photos) for name in names
                   if name.endswith(".jpg"))
    for number, photo in enumerate(found[:: max(1, len(found) // 4)]):
        shutil.copy(photo, os.path.join(folder, f"photo {number}.jpg"))
    with open(found[0], "rb") as file:
        whole = file.read()
    for name, content in (("half.jpg", whole[: len(whole) // 2]), ("head.jpg", whole[:400]), ("empty.png", b""),
                          ("noise.tif", bytes(reversed(whole[:5000]))), ("story.txt", b"Once upon a time")):
        with open(os.path.join(folder, name), "wb") as file:
            file.write(content)
    return os.path.join(folder, "photo 0.jpg")


def script(mode, photo, folder, seed, count, port):
    lines = [f"setting {each}" for each in (*SETTINGS, f"Mail Server/Port={port}", f"SFX/Advanced={seed % 2}")]
    if mode == "simple":
        lines += ["start simple", "drop " + photo]
    else:
        lines += ["start advanced " + photo]
    lines += ["expect state.PhotoLoaded 1", "undo all", "hash opened"]
    for portion in range(0, count, PORTION):
        lines += [f"monkey {seed * 1000 + portion // PORTION} {min(PORTION, count - portion)} {folder}",
                  "redo all", "hash now", "undo all", "expect hash $opened", "redo all", "expect hash $now"]
    return "\n".join([*lines, "quit", ""])


def handles(process):
    """What its open files are."""
    links = []
    for number in os.listdir(f"/proc/{process}/fd"):
        try:
            links.append(re.sub(r"\d{3,}", "N", os.readlink(f"/proc/{process}/fd/{number}")))
        except FileNotFoundError:
            pass  # closed meanwhile
    return sorted(links)


def measure(process, log, sizes):
    """Bytes without the shared files after each portion, and what is open when that is least: a file that is just written
    does not count."""
    fewest = None
    while process.poll() is None:
        try:
            now = handles(process.pid)
        except OSError:
            return  # it has just ended
        fewest = now if fewest is None or len(now) < len(fewest) else fewest
        with open(log, encoding="utf-8", errors="replace") as file:
            done = sum(re.match(r"\d+: undo all", line) is not None for line in file)
        if done > len(sizes):
            try:
                with open(f"/proc/{process.pid}/status", encoding="ascii") as file:
                    memory = int(re.search(r"RssAnon:\s*(\d+)", file.read())[1]) * 1024
                sizes.append((memory, fewest))
                fewest = None
            except (OSError, TypeError):
                return  # it has just ended
        time.sleep(0.5)


def walk(play, source, count, seed, mode):
    with tempfile.TemporaryDirectory() as folder:
        os.chmod(folder, 0o755)
        printing = PrintSystem(os.path.join(folder, "print"))
        mail = MailSystem(source, os.path.join(folder, "mail"))
        files = os.path.join(folder, "files")
        photo = give_files(os.path.join(os.path.dirname(play), "My Photos"), files)
        log = os.path.join(folder, "log")
        plan = os.path.join(folder, "walk.play")
        with open(plan, "w", encoding="utf-8") as file:
            file.write(script(mode, photo, files, seed, count, mail.port))
        environment = {**printing.environment, "QT_QPA_PLATFORM": "offscreen",
                       "SANE_CONFIG_DIR": os.path.join(source, "tests/support/sane")}
        sizes = []
        try:
            with open(log, "w", encoding="utf-8") as output:
                process = subprocess.Popen([play, "--keep-photos", "--patience", "60000", "--timeout", "600", "--verbose", plan],
                                           env=environment, stdout=output, stderr=subprocess.STDOUT)
            watch = threading.Thread(target=measure, args=(process, log, sizes))
            watch.start()
            code = process.wait()
            watch.join()
            jobs, mails = printing.jobs(), mail.mails()
        finally:
            if process.poll() is None:
                process.send_signal(signal.SIGTERM)
            printing.stop()
            mail.stop()
        with open(log, encoding="utf-8", errors="replace") as file:
            said = [line for line in file.read().split("\n") if not re.search("This plugin|longest turn", line)]
        if "LUMORA_WALK_LOG" in os.environ:
            shutil.copy(log, f"{os.environ['LUMORA_WALK_LOG']}/{mode}-{seed}.log")
        if code != 0:
            fail("\n".join(said[-32:]) + f"\nthe walk {seed} in {mode} mode ended with {code}")
        # The most of each half: what is opened when it is first needed comes late, but only once.
        half = (len(sizes) + 1) // 2
        early, late = ((max(size for size, _ in part), max((files for _, files in part), key=len))
                       for part in (sizes[:half], sizes[half:] or sizes))
        words = f"walk {seed} in {mode} mode: {count} actions, {jobs} prints, {mails} mails, " + \
            f"{early[0] // MEGABYTE} MB and {len(early[1])} handles in the first half, " + \
            f"{late[0] // MEGABYTE} MB and {len(late[1])} in the second"
        print(words, flush=True)
        # The undo history keeps 640 MB of pixels in memory at most; files may be open while it spills.
        if late[0] > max(early[0], 900 * MEGABYTE) * 1.1 or len(late[1]) > len(early[1]) + FIRST_TIME:
            fail("that grows:\n" + "\n".join(late[1]))


def main():
    play, source, count = os.path.realpath(sys.argv[1]), os.path.realpath(sys.argv[2]), int(sys.argv[3])
    for seed, mode in zip(sys.argv[4::2], sys.argv[5::2]):
        walk(play, source, count, int(seed), mode)


main()
