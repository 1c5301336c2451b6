#!/usr/bin/env python3
"""kills.py LUMORA-KEEP COUNT: kills the program COUNT times at random moments while it writes over an existing file,
for each type of photo and for the settings. The file is the old or the new one, whole, and nothing is left beside it,
or the next write removes it."""
import collections
import random
import sys
import tempfile

from common import fail, photo_targets, settings_target

keep, count = sys.argv[1], int(sys.argv[2])
moments = random.Random(4711)
with tempfile.TemporaryDirectory() as folder:
    total = 0
    for target in [*photo_targets(keep, folder), settings_target(keep, folder)]:
        code, said = target.run()
        if code != 0 or target.state() != "new":
            fail(f"{target.name}: {said} {target.state()} without any kill")
        duration = int(said.split()[1])
        seen = collections.Counter()
        for _ in range(count):
            moment = moments.randrange(duration + duration // 5)
            code, said = target.run("--kill", str(moment))
            state = target.state()
            if state.startswith("left over"):  # killed between the two steps that give the file its name
                state = target.after_next_write()
            if state not in ("old", "new") or (said.startswith("kept") and state != "new"):
                fail(f"{target.name}: killed after {moment} of {duration} microseconds: {state}; {said}")
            seen[state] += 1
            total += code < 0
        print(f"{target.name}: {seen['old']} times the old file, {seen['new']} times the new one")
    print(f"{total} kills, always the old or the new file")
