#!/usr/bin/env python3
"""disks.py LUMORA-KEEP LUMORA-PLAY [--all]: writes photos, settings, recovery copies and undo steps on real disks of 1
to 3 MB: in memory, of Linux (ext4) and of Windows (NTFS); with just enough room, one block less, and none; then a disk
that refuses some names, as those of Windows do; then with a temporary folder that is full. What is on the disk is the old or the new file, whole, with nothing
beside it. Without --all two types of photos.

Mounts these disks where nobody else sees them; ends with 77, which stands for "skipped", where it may not mount."""
import os
import subprocess
import sys
import tempfile

from common import ENVIRONMENT, FORMATS, content, fail, make_pictures
from systems import MailSystem, PrintSystem

SKIPPED = 77
SIZES = ((160, 120), (260, 200))  # pixels; a TGA file of the second has 156 kB
HIDDEN = "LUMORA_DISKS_HIDDEN"


def run(*command):
    return subprocess.run(command, env=ENVIRONMENT, capture_output=True, text=True, check=False, timeout=120)


class Disk:
    def __init__(self, kind, megabytes, top):
        self.name = f"{kind} of {megabytes} MB"
        self.path = os.path.join(top, "disk")
        self.filler = os.path.join(self.path, "filler.bin")
        os.makedirs(self.path, exist_ok=True)
        image = os.path.join(top, "image")
        with open(image, "wb") as file:
            file.truncate(megabytes << 20)
        commands = {
            "tmpfs": [["mount", "-t", "tmpfs", "-o", f"size={megabytes}M", "none", self.path]],
            "ext4": [["mkfs.ext4", "-q", "-F", "-m", "0", "-O", "^has_journal", image], ["mount", "-o", "loop", image, self.path]],
            "NTFS": [["mkntfs", "-F", "-q", "-Q", image], ["ntfs-3g", "-o", "windows_names", image, self.path]],
        }[kind]
        self.is_there = True
        for command in commands:
            try:
                self.is_there = self.is_there and run(*command).returncode == 0
            except FileNotFoundError:
                self.is_there = False
        self.is_there = self.is_there and os.path.ismount(self.path)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if os.path.ismount(self.path):
            run("umount", self.path)

    def block(self):
        return os.statvfs(self.path).f_bsize

    def free(self):
        return os.statvfs(self.path).f_bfree

    def leave_free(self, blocks):
        """Fills the disk but for so many blocks; how many are left."""
        if os.path.exists(self.filler):
            os.remove(self.filler)
        size = max(0, self.free() - blocks) * self.block()
        for _ in range(20):
            with open(self.filler, "wb") as file:
                try:
                    file.write(b"\xff" * size)
                    file.flush()
                except OSError:
                    pass  # it is full
            if self.free() >= blocks or size == 0:
                break
            size -= (blocks - self.free()) * self.block()  # what the filler takes beside its bytes
        return self.free()


class Kept:
    """A file that is to be written on the disk: over an old one, or as a new one."""

    def __init__(self, keep, disk, name, arguments, before, after):
        self.path = os.path.join(disk.path, name)
        self.disk, self.before, self.after = disk, before, after
        self.command = [keep, *(self.path if word is None else word for word in arguments)]

    def write(self, blocks):
        """With so many blocks free: whether it was written."""
        for name in os.listdir(self.disk.path):
            if name != "lost+found":
                os.remove(os.path.join(self.disk.path, name))
        if self.before is not None:
            with open(self.path, "wb") as file:
                file.write(self.before)
        left = self.disk.leave_free(blocks)
        ended = run(*self.command)
        others = set(os.listdir(self.disk.path)) - {os.path.basename(self.path), "filler.bin", "lost+found"}
        now = content(self.path) if os.path.exists(self.path) else None
        expected = self.after if ended.returncode == 0 else self.before
        if now != expected or others or ended.returncode not in (0, 1):
            state = "old" if now == self.before else "new" if now == self.after else "gone" if now is None else "neither"
            fail(f"{self.disk.name}: {self.path} with {left} free blocks: ended with {ended.returncode}, said "
                 f"'{ended.stdout}{ended.stderr}', the file: {state}, left over: {others}")
        return ended.returncode == 0

    def boundary(self):
        """Writes it with all of the disk, with as few blocks as it can be, with one less, and with none."""
        most = self.disk.leave_free(1 << 30)
        if not self.write(most):
            fail(f"{self.disk.name}: {self.path} does not go on the empty disk")
        if self.write(0):
            return 2  # it took the place of what is inside the directory
        few, enough, runs = 0, most, 2
        while enough - few > 1:
            middle = (few + enough) // 2
            runs += 1
            if self.write(middle):
                enough = middle
            else:
                few = middle
        return runs


def photos_and_settings(keep, disk, top):
    sources = make_pictures(top, SIZES)
    runs = 0
    for kind in FORMATS if "--all" in sys.argv else ("jpg", "png"):
        files = []
        for source in sources:
            path = os.path.join(top, "photo." + kind)
            run(keep, "photo", source, path)
            files.append(content(path))
        for before in (files[0], None):
            runs += Kept(keep, disk, "photo." + kind, ["photo", sources[1], None], before, files[1]).boundary()
    lines = "".join(f"[Section {n}]\nKey=value {n}\n\n" for n in range(200))
    runs += Kept(keep, disk, "Lumora.ini", ["setting", None, "Section 100", "Key", "changed"], lines.encode(),
                 lines.replace("value 100\n", "changed\n").encode()).boundary()
    return runs


def unsaved(keep, disk, top):
    """Recovery copies and undo steps, in their folders on the disk."""
    old, new = make_pictures(top, SIZES)
    folder = os.path.join(disk.path, "unsaved")
    runs = 0
    for blocks in (0, 1, 2, 8, 40, 100, 250):
        run("rm", "-rf", folder)
        for words in (["recovery", old, new, folder], ["history", new, folder]):
            os.makedirs(folder, 0o700, exist_ok=True)
            disk.leave_free(blocks)
            ended = run(keep, *words)
            said = dict(line.split(" ", 1) for line in ended.stdout.splitlines() if " " in line)
            offer = run(keep, "recovered", folder).stdout.split("\n")[0]
            allowed = ("nothing", f"offered {said.get('before')}", f"offered {said.get('after')}")
            if ended.returncode != 0 or (words[0] == "recovery" and offer not in allowed):
                fail(f"{disk.name}: {words[0]} with {blocks} free blocks: ended with {ended.returncode}, said "
                     f"'{ended.stdout}{ended.stderr}'; {offer}")
            runs += 1
            if words[0] == "history":
                run("rm", "-rf", folder)
            os.remove(disk.filler)
    return runs


NAMES = ('what?', 'a:b', 'a*b', 'a"b', 'a<b>', 'a|b')


def names(keep, play, disk, top):
    """Names that the disk refuses; what the window says, and that the photo can be saved under another one."""
    source = make_pictures(top, SIZES)[1]
    for name in NAMES:
        path = os.path.join(disk.path, name + ".png")
        said = run(keep, "photo", source, path)
        if said.returncode != 1 or os.listdir(disk.path):
            fail(f"{disk.name}: {name}: {said.stdout}; {os.listdir(disk.path)}")
    script = os.path.join(top, "names.play")
    with open(script, "w", encoding="utf-8") as file:
        file.write(f"""setting Welcome/Show=0
setting Dialogs/Style=1
setting Resize/Advanced=0
start advanced $SAMPLES/animals/owl.jpg
click cmdTool4
click optSize4
type txtWidth 200
type txtHeight 150
click cmdApplyResize
expect state.size 200x150
click cmdResizeExit
hash small
click cmdSave
choose {disk.path}/what?.png
expect SBar This name has a character that cannot be used here*
expect state.PhotoModified 1
expect hash $small
click cmdSave
choose {disk.path}/what.png
expect SBar Saved: what.png
expect state.PhotoModified 0
expect hash $small
quit
""")
    ended = run(play, "--patience", "30000", script)
    if ended.returncode != 0 or os.listdir(disk.path) != ["what.png"]:
        fail(f"{disk.name}: {ended.stdout}{ended.stderr}; {os.listdir(disk.path)}")
    return len(NAMES) + 2


def temporary(play, source, all_full):
    """The whole way of a photo with a full temporary folder; with a full cache as well nothing can be printed or mailed."""
    with tempfile.TemporaryDirectory() as top:
        os.chmod(top, 0o755)
        for name in ("tmp", "cache") if all_full else ("tmp",):
            place = os.path.join(top, "stage", name)
            os.makedirs(place)
            if run("mount", "-t", "tmpfs", "-o", "size=16k", "none", place).returncode != 0:
                return 0
            with open(os.path.join(place, "filler.bin"), "wb") as file:
                try:
                    file.write(b"\xff" * 65536)
                except OSError:
                    pass  # it is full
        printing, mail = PrintSystem(os.path.join(top, "print")), MailSystem(source, os.path.join(top, "mail"))
        script = os.path.join(top, "script.play")
        with open(script, "w", encoding="utf-8") as file:
            file.write(f"""setting Welcome/Show=0
setting Dialogs/Style=1
setting E-mail/Value=1
setting Sender/Address=anna@school.example
setting Mail Server/Server=localhost
setting Mail Server/Port={mail.port}
setting Mail Server/Security=0
setting Scanner/Device=0
start advanced $SAMPLES/animals/ladybird.jpg
hash opened
click cmdTool8
item FT3 keySepia
hash sepia
key Ctrl+C
key Ctrl+Z
expect hash $opened
key Ctrl+Y
expect hash $sepia
click cmdPrint
expect lblDevice Printer: Pages
click frmPrint2.cmdYes
expect SBar {"The disk is full. Make some room*" if all_full else "Your photo is on its way to the printer."}
item Toolbar1 keyEmail
""")
            file.write("expect SBar The photo could not be made ready*\n" if all_full else """type txtAddress gran@home.example
click frmEmail.cmdOK
expect msgEmail@text E-mail Sent!
click msgEmail.OK
""")
            file.write("""expect hash $sepia
expect state.PhotoModified 1
click cmdSave
choose $HOME/Pictures/saved.png
expect SBar Saved: saved.png
expect state.PhotoModified 0
click cmdScan
expect state.size 2362x2362
key Ctrl+Z
expect hash $sepia
key Ctrl+V
expect hash $sepia
quit
""")
        environment = {**ENVIRONMENT, "CUPS_SERVER": printing.environment["CUPS_SERVER"],
                       "SANE_CONFIG_DIR": os.path.join(source, "tests/support/sane")}
        try:
            ended = subprocess.run([play, "--in", os.path.join(top, "stage"), "--patience", "30000", script],
                                   env=environment, capture_output=True, text=True, check=False, timeout=600)
        finally:
            jobs, mails = printing.jobs(), mail.mails()
            printing.stop()
            mail.stop()
            for name in ("tmp", "cache"):
                run("umount", os.path.join(top, "stage", name))
        if ended.returncode != 0 or (jobs, mails) != ((0, 0) if all_full else (1, 1)):
            fail(f"full temporary folder: {jobs} prints, {mails} mails; {ended.stdout}{ended.stderr}")
    return 1


def main():
    if HIDDEN not in os.environ:
        os.environ[HIDDEN] = "1"
        if run("unshare", "-m", "true").returncode != 0:
            print("It may not mount disks here.")
            sys.exit(SKIPPED)
        os.execvp("unshare", ["unshare", "-m", "--propagation", "private", sys.executable, *sys.argv])
    keep, play = os.path.realpath(sys.argv[1]), os.path.realpath(sys.argv[2])
    source = os.path.realpath(os.path.join(os.path.dirname(__file__), "../.."))
    total = sum(temporary(play, source, all_full) for all_full in (False, True))
    for kind, megabytes, work in (("tmpfs", 1, photos_and_settings), ("tmpfs", 1, unsaved), ("ext4", 1, photos_and_settings),
                                  ("ext4", 2, unsaved), ("NTFS", 3, photos_and_settings), ("NTFS", 3, unsaved),
                                  ("NTFS", 4, lambda *words: names(words[0], play, *words[1:]))):
        with tempfile.TemporaryDirectory() as top, Disk(kind, megabytes, top) as disk:
            if not disk.is_there:
                print(f"{disk.name}: cannot be made here")
                continue
            runs = work(keep, disk, top)
            print(f"{disk.name}: {runs} times", flush=True)
            total += runs
    print(f"{total} times on small disks: always the old or the new file")
    sys.exit(0 if total else SKIPPED)


main()
