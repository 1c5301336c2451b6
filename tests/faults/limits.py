#!/usr/bin/env python3
"""limits.py LUMORA-KEEP: writes photos and settings over existing files with too little of everything: memory (ten
levels), open files, bytes of a file (none, half, one too few: as a full disk), and without a temporary folder. The
program says the truth, the file is the old or the new one, whole, and nothing is left beside it."""
import collections
import resource
import signal
import subprocess
import sys
import tempfile

from common import ENVIRONMENT, fail, photo_targets, settings_target

MEGABYTE = 1 << 20


def limits(size):
    """(what is short, what sets it in the child)"""
    def limit(what, value):
        def apply():
            # A file that grows too large is refused, as on a full disk, instead of ending the program.
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(what, (value, value))
        return apply

    for level in range(10):
        megabytes = 40 + 40 * level
        yield f"{megabytes} MB", limit(resource.RLIMIT_AS, megabytes * MEGABYTE)
    for files in (3, 4, 5, 6, 8, 12, 64):
        yield f"{files} files", limit(resource.RLIMIT_NOFILE, files)
    for length in (0, size // 2, size - 1):
        yield f"{length} bytes", limit(resource.RLIMIT_FSIZE, length)


def main():
    seen = collections.Counter()
    with tempfile.TemporaryDirectory() as folder:
        for target in [*photo_targets(sys.argv[1], folder), settings_target(sys.argv[1], folder)]:
            for name, apply in limits(len(target.after)):
                target.put_back()
                command = [*target.command, *target.arguments]
                run = subprocess.run(command, env={**ENVIRONMENT, "TMPDIR": "/dev/null/none"}, capture_output=True, text=True, check=False,
                                     preexec_fn=apply, timeout=60)
                state = target.state()
                if state not in ("old", "new") or (run.returncode == 0 and state != "new"):
                    fail(f"{target.name}: {name}: ended with {run.returncode}, said '{run.stdout}{run.stderr}', the file: "
                         f"{state}")
                seen[state] += 1
    print(f"{seen['old']} times the old file, {seen['new']} times the new one")


main()
