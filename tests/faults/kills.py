#!/usr/bin/env python3
"""kills.py LUMORA-KEEP COUNT: kills the program COUNT times at random moments while it writes over an existing file,
for each type of photo and for the settings; and between the two steps that give the file its name, whether it could do
without one before or not. The file is the old or the new one, whole, and after the next start nothing is left beside
it."""
import collections
import random
import sys
import tempfile

from common import fail, photo_targets, settings_target

BETWEEN = ((), ("-e", "inject=linkat:error=EXDEV"))
keep, count = sys.argv[1], int(sys.argv[2])
moments = random.Random(4711)
with tempfile.TemporaryDirectory() as folder:
    total = left = 0
    for target in [*photo_targets(keep, folder), settings_target(keep, folder)]:
        code, said = target.run()
        if code != 0 or target.state() != "new":
            fail(f"{target.name}: {said} {target.state()} without any kill")
        for options in BETWEEN:  # the one moment that chance hits too seldom
            target.run(wrap=["strace", "-o", "/dev/null", *options, "-e", "inject=rename:signal=KILL"])
            if not target.state().startswith("left over") or target.after_next_start() != "old":
                fail(f"{target.name}: killed before it had its name: {target.state()}")
            left += 1
        duration = int(said.split()[1])
        seen = collections.Counter()
        for _ in range(count):
            moment = moments.randrange(duration + duration // 5)
            code, said = target.run("--kill", str(moment))
            state = target.state()
            if state.startswith("left over"):  # killed between the two steps that give the file its name
                left += 1
                state = target.after_next_start()
            if state not in ("old", "new") or (said.startswith("kept") and state != "new"):
                fail(f"{target.name}: killed after {moment} of {duration} microseconds: {state}; {said}")
            seen[state] += 1
            total += code < 0
        print(f"{target.name}: {seen['old']} times the old file, {seen['new']} times the new one")
    print(f"{total} kills, always the old or the new file; {left} times the next start removed another")
