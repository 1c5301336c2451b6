#!/usr/bin/env python3
"""refusals.py LUMORA-KEEP LUMORA-PROBE [--all]: lets each system call with which a file is written fail in turn, by
strace: once and from then on. The program says the truth, the file is the old or the new one, whole, and nothing is left
beside it. Without --all one type of photo and the settings, with a full disk."""
import os
import re
import sys
import tempfile

from common import CALLS, content, errors_of, fail, pixels, photo_targets, settings_target

MARKS = ("access", "faccessat", "faccessat2")  # of the beginning and the end


def calls_that_write(target, trace):
    """(name, how often it was called before the writing began, how often until its end)"""
    target.run(wrap=["strace", "-o", trace, "-e", "trace=" + ",".join("?" + call for call in CALLS + MARKS)])
    counts, begin = {}, None
    for line in content(trace).decode(errors="replace").splitlines():
        name = re.match(r"\w+", line)
        if name is None:
            continue
        if '"begins"' in line:
            begin = dict(counts)
        elif '"ends"' in line:
            break
        counts[name[0]] = counts.get(name[0], 0) + 1
    if begin is None:
        fail("the trace shows no beginning:\n" + content(trace).decode(errors="replace")[-500:])
    return [(name, begin.get(name, 0), last) for name, last in counts.items()
            if name in CALLS and last > begin.get(name, 0)]


def main():
    keep, probe, everything = sys.argv[1], sys.argv[2], "--all" in sys.argv
    total = said_so = 0
    with tempfile.TemporaryDirectory() as folder:
        trace = os.path.join(folder, "trace")
        targets = [target for target in photo_targets(keep, folder) if everything or target.name == "png"]
        for target in [*targets, settings_target(keep, folder)]:
            for name, before, last in calls_that_write(target, trace):
                for number in range(before + 1, last + 1):
                    if not everything and number > before + 2:
                        break
                    for error, on in errors_of(name, everything):
                        inject = f"inject={name}:error={error}:when={number}{on}"
                        code, said = target.run(wrap=["strace", "-o", trace, "-e", inject])
                        state = target.state()
                        # Other bytes of the same pixels are as good: a flag of the file may depend on an answer.
                        if state.startswith("neither") and target.name != "settings" and pixels(probe, target.path):
                            state = "new"
                        if state not in ("old", "new") or code < 0 or (code == 0 and state != "new"):
                            fail(f"{target.name}: {inject}: ended with {code}, said '{said}', the file: {state}")
                        total += 1
                        said_so += code != 0
    print(f"{total} refusals, {said_so} of them reported; always the old or the new file")


main()
