"""What the fault scripts share: the files that Lumora writes, and whether one is whole."""
import hashlib
import os
import shutil
import subprocess
import sys

FORMATS = ("jpg", "png", "bmp", "gif", "tif", "tga")
# The system calls with which files are written.
CALLS = ("openat", "write", "pwrite64", "writev", "fsync", "fdatasync", "ftruncate", "fallocate", "lseek", "linkat",
         "link", "symlink", "symlinkat", "rename", "renameat", "renameat2", "unlink", "unlinkat", "fchmod", "fchown", "fstat", "newfstatat",
         "statx", "mkdir", "mkdirat", "flock", "read", "pread64", "close", "mmap",
         "statfs", "fstatfs", "getrandom")
POSSIBLE = {"close": ("EIO",), "mmap": ("ENOMEM",), "clone3": ("EAGAIN",)}  # the errors of these calls
# No home: what cannot be written may go nowhere else.
ENVIRONMENT = {**os.environ, "QT_QPA_PLATFORM": "offscreen", "LC_ALL": "C.UTF-8", "HOME": "/dev/null",
               "XDG_CONFIG_HOME": "/dev/null/config"}


def fail(message):
    print(message, file=sys.stderr)
    sys.exit(1)


def errors_of(call, everything):
    """(error, "" for once or "+" for from then on) with which that call is to fail"""
    usual = ("ENOSPC", "EIO", "EACCES", "EINTR", "EDQUOT") if everything else ("ENOSPC",)
    return [(error, on) for error in POSSIBLE.get(call, usual) for on in ("", "+")
            if error != "EINTR" or on == ""]  # for ever it is no answer


def content(path):
    with open(path, "rb") as file:
        return file.read()


def pixels(probe, path):
    """The hash of a picture file's pixels as Lumora reads it; None when it is refused or not whole."""
    said = subprocess.run([probe, path], env=ENVIRONMENT, capture_output=True, text=True, check=False).stdout
    columns = said.rstrip("\n").split("\t")
    return columns[4] if len(columns) > 4 and columns[1] == "ok" and not columns[2] else None


def make_pictures(folder, sizes=((600, 400), (1000, 750))):
    """Two photos with noise, so that no format makes them small: names of PPM-like TGA files, old and new."""
    names = []
    for name, (width, height) in zip(("old", "new"), sizes):
        seed = hashlib.sha256(name.encode()).digest()
        body = bytearray()
        while len(body) < width * height * 3:
            seed = hashlib.sha256(seed).digest()
            body += seed * 8
        header = bytes([0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0]) + width.to_bytes(2, "little") + height.to_bytes(2, "little")
        path = os.path.join(folder, name + "-source.tga")
        with open(path, "wb") as file:
            file.write(header + bytes([24, 0x20]) + bytes(body[: width * height * 3]))
        names.append(path)
    return names


class Target:
    """A file that Lumora is to replace: how, and what it holds before and after."""

    def __init__(self, name, keep, arguments, path, before, after):
        self.name, self.command, self.path = name, [keep], path
        self.arguments, self.before, self.after = arguments, before, after
        self.home = os.path.dirname(path) + "-state"
        self.environment = {**ENVIRONMENT, "XDG_STATE_HOME": self.home}

    def put_back(self):
        """The old file, nothing beside it, and no note."""
        shutil.rmtree(self.home, ignore_errors=True)
        for other in os.listdir(os.path.dirname(self.path)):
            os.remove(os.path.join(os.path.dirname(self.path), other))
        with open(self.path, "wb") as file:
            file.write(self.before)

    def run(self, *options, wrap=()):
        """Puts the old file back and writes it; how the program ended (negative: killed) and what it said."""
        self.put_back()
        command = [*wrap, *self.command, *options, *self.arguments]
        run = subprocess.run(command, env=self.environment, capture_output=True, text=True, check=False, timeout=60)
        return run.returncode, run.stdout.strip()

    def after_next_start(self):
        """What the file is when the next start has put in order what is left over."""
        subprocess.run([*self.command, "recovered", self.home + "/none"], env=self.environment, capture_output=True,
                       check=True, timeout=60)
        notes = self.home + "/lumora/unfinished"
        left = os.listdir(notes) if os.path.isdir(notes) else ()
        return "a note is left" if left else self.state()

    def state(self):
        """'old', 'new' or what is wrong."""
        others = sorted(set(os.listdir(os.path.dirname(self.path))) - {os.path.basename(self.path)})
        if others:
            return "left over: " + " ".join(others)
        if not os.path.exists(self.path):
            return "gone"
        now = content(self.path)
        return "old" if now == self.before else "new" if now == self.after else "neither old nor new"


def photo_targets(keep, folder):
    """A photo over an existing one, in each file type."""
    old, new = make_pictures(folder)
    for kind in FORMATS:
        place = os.path.join(folder, kind)
        os.mkdir(place)
        path = os.path.join(place, "photo." + kind)
        files = []
        for source in (old, new):
            said = subprocess.run([keep, "photo", source, path], env=ENVIRONMENT, capture_output=True, text=True, check=False)
            if said.returncode != 0:
                fail(f"{kind}: {said.stdout}{said.stderr}")
            files.append(content(path))
        yield Target(kind, keep, ["photo", new, path], path, *files)


def settings_target(keep, folder):
    """One value of a settings file with two hundred of them."""
    place = os.path.join(folder, "settings")
    os.mkdir(place)
    path = os.path.join(place, "Lumora.ini")
    lines = "".join(f"[Section {n}]\nKey=value {n}\n\n" for n in range(200))
    return Target("settings", keep, ["setting", path, "Section 100", "Key", "changed"], path, lines.encode(),
                  lines.replace("value 100\n", "changed\n").encode())
