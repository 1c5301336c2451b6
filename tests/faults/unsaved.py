#!/usr/bin/env python3
"""unsaved.py LUMORA-KEEP [--all]: lets each system call fail in turn, in the window's thread and in those beside it, by
strace, once and from then on, while Lumora keeps a recovery copy, looks for one, puts a photo that was thrown away aside
and takes undo steps to the disk. The program goes on, the photo and its history stay, the next start is offered a whole
copy or none, and what was there before is not lost. Without --all: a full disk, and each call's first times.
First all of that, thumbnails and slides with no thread at all: nothing is missing."""
import collections
import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile

from common import CALLS, ENVIRONMENT, content, errors_of, fail, make_pictures

TRACED = (*CALLS, "clone3", "fcntl", "utimensat", "getdents64", "mprotect", "readlink")


class Place:
    """The photo, the folder with what is not saved, and what lies there before."""

    def __init__(self, keep, top):
        self.keep, self.top = keep, top
        self.photo, self.other = make_pictures(top)
        self.file_content = content(self.photo)
        self.folder = os.path.join(top, "unsaved")
        self.trace = os.path.join(top, "trace")

    def clear(self, like=None):
        shutil.rmtree(self.folder, ignore_errors=True)
        if like is None:
            os.mkdir(self.folder, 0o700)
        else:
            shutil.copytree(like, self.folder)

    def said(self, *words):
        """What the program says with nothing refused."""
        return subprocess.run([self.keep, *words], env=ENVIRONMENT, capture_output=True, text=True, check=False,
                              timeout=60).stdout

    def refuse(self, words, *options):
        """Runs it under strace with these options from the beginning of its work; how it ended and what it said."""
        run = subprocess.Popen([self.keep, "--hold", *words], env=ENVIRONMENT, stdout=subprocess.PIPE,
                               stderr=subprocess.DEVNULL, text=True)
        os.waitpid(run.pid, os.WUNTRACED)
        strace = subprocess.Popen(["strace", "-f", "-o", self.trace, *options, "-p", str(run.pid)],
                                  stderr=subprocess.PIPE, text=True)
        while "attached" not in (line := strace.stderr.readline()):
            if not line:
                run.kill()
                fail("strace cannot trace another program here")
        os.kill(run.pid, signal.SIGCONT)
        try:
            out, _ = run.communicate(timeout=300)  # a busy machine takes its time
        except subprocess.TimeoutExpired:
            run.kill()
            out, _ = run.communicate()
            out += "it hangs\n"
        strace.stderr.read()
        strace.wait()
        return run.returncode, out

    def calls(self, words):
        """(name, the most that one thread calls it)"""
        self.refuse(words, "-e", "trace=" + ",".join("?" + call for call in TRACED))
        counts = collections.Counter(re.findall(r"^(\d+) +(\w+)\(", content(self.trace).decode(errors="replace"), re.M))
        most = collections.Counter()
        for (_, name), count in counts.items():
            most[name] = max(most[name], count)
        return most

    def offered(self, folder=None):
        return self.said("recovered", folder or self.folder).split("\n")[0]


def recovery(place):
    """(words, what puts the folder in order before, what is wrong after)"""
    place.clear()
    words = ["recovery", place.photo, place.other, place.folder]
    sums = dict(line.split(" ", 1) for line in place.said(*words).splitlines())
    if place.offered() != "offered " + sums["after"]:
        fail("the last change is not offered when nothing is refused")

    def wrong(_):
        offer = place.offered()
        return "" if offer in ("offered " + sums["before"], "offered " + sums["after"]) else offer

    return words, place.clear, wrong


def recovered(place):
    place.clear()
    good = place.top + "/good"
    place.said("recovery", place.photo, place.other, place.folder)
    shutil.copytree(place.folder, good)
    expected = place.offered()

    def wrong(out):
        offer = place.offered()
        return f"then {offer}" if offer != expected else "" if out.split("\n")[0] in (expected, "nothing") else out

    return ["recovered", place.folder], lambda: place.clear(good), wrong


def discard(place):
    place.clear()
    words = ["discard", place.photo, place.folder]
    before = "offered " + place.said(*words).split()[1]

    def wrong(_):
        offer = place.offered()
        thrown = place.folder + "/thrown-away"
        for name in os.listdir(thrown) if os.path.isdir(thrown) else ():
            again = place.top + "/again/photo-1"
            shutil.rmtree(place.top + "/again", ignore_errors=True)
            os.makedirs(again, 0o700)
            shutil.copy(os.path.join(thrown, name), again + "/copy")
            if place.offered(place.top + "/again") != before:
                return name + " is not whole"
        return "" if offer in (before, "nothing") else offer

    return words, place.clear, wrong


def history(place):
    return ["history", place.photo, place.folder], place.clear, lambda out: ""


def without_threads(place):
    """Everything with no thread from the beginning: it takes its time, but is done."""
    place.clear()
    pictures = os.path.join(place.top, "pictures")
    os.mkdir(pictures)
    for picture in (place.photo, place.other):
        shutil.copy(picture, pictures)
    for words in (["recovery", place.photo, place.other, place.folder], ["discard", place.photo, place.folder],
                  ["history", place.photo, place.folder], ["pictures", pictures]):
        plain = place.said(*words)
        place.clear()
        command = ["strace", "-f", "-o", place.trace, "-e", "trace=clone3", "-e", "inject=clone3:error=EAGAIN",
                   place.keep, *words]
        run = subprocess.run(command, env=ENVIRONMENT, capture_output=True, text=True, check=False, timeout=300)
        said, expected = (re.sub(r"^kept \d+", "kept", out, flags=re.M) for out in (run.stdout, plain))
        if run.returncode != 0 or said != expected or "INJECTED" not in content(place.trace).decode():
            fail(f"{words[0]} without threads: ended with {run.returncode}, said '{run.stdout}{run.stderr}'")


def main():
    keep, everything = sys.argv[1], "--all" in sys.argv
    total = 0
    with tempfile.TemporaryDirectory() as top:
        without_threads(Place(keep, tempfile.mkdtemp(dir=top)))
        for work in (recovery, recovered, discard, history):
            seen = 0
            place = Place(keep, tempfile.mkdtemp(dir=top))
            words, prepare, wrong = work(place)
            prepare()
            for name, most in sorted(place.calls(words).items()):
                for number in range(1, (most if everything else min(most, 2)) + 1):
                    for error, on in errors_of(name, everything):
                        prepare()
                        inject = f"inject={name}:error={error}:when={number}{on}"
                        code, out = place.refuse(words, "-e", inject)
                        # Without memory a change or a step may be refused, which is said.
                        problem = wrong(out) if code == 0 or (code == 1 and error == "ENOMEM") else f"ended with {code}"
                        # (It says nothing where the refused call was what it wanted to say.)
                        if (work is history and on == "" and error != "ENOMEM" and out
                                and "undone to 0\n0 steps" not in out):
                            problem = "a step is lost"
                        if problem or content(place.photo) != place.file_content:
                            fail(f"{work.__name__}: {inject}: {problem}; it said '{out}'")
                        seen += 1
            print(f"{work.__name__}: {seen} refusals", flush=True)
            total += seen
    print(f"{total} refusals: the photo, its history and what was kept are still there")


main()
