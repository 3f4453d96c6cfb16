"""Cuts the power of a guest that saves, again and again, and judges what it finds afterwards.

Each cut goes on from the guest's kept memory: the guest mounts the store, tells what is in it, and
changes it until its process is killed. What it had not written to its disk or flash is gone with it.

    cuts.py GUEST WORK SYSTEM WRITER CUTS SEED
"""

import random
import sys
import time

from emulator import Guest, PATIENCE, keep_booted, make_storage


class Series:
    """The cuts of one file system under one writer, and what was found after each."""

    def __init__(self, folder, work, system, writer, seed):
        self.folder, self.work, self.system, self.writer = folder, work, system, writer
        self.random = random.Random(seed)
        self.acknowledged = 0  # number of the last change that was; the next numbers are above
        self.in_flight = 0  # number of the change that was under way; the same if none was
        self.changes = 0
        self.counts = {"last": 0, "in flight": 0, "lost": 0, "broken": 0, "no start": 0}
        self.most_strays = 0
        self.problems = []

    def judge(self, guest, number):
        """Compares what the guest has found with what it had acknowledged before the cut."""
        broken = [line for line in guest.lines() if line.startswith("BROKEN")]
        found = guest.last("FOUND")
        if broken:
            verdict = "broken"
        elif found < self.acknowledged:
            verdict = "lost"
        else:
            verdict = "last" if found == self.acknowledged else "in flight"
            if found > self.in_flight:
                self.problems.append(f"cut {number}: {found} was never begun")
        self.counts[verdict] += 1
        if verdict in ("broken", "lost"):
            self.problems.append(f"cut {number}: acknowledged {self.acknowledged}, "
                                 f"{broken[0] if broken else f'found {found}'}")
        start = [line for line in guest.lines() if line.startswith("STARTS")][-1].split()
        self.most_strays = max(self.most_strays, int(start[2]))
        if self.writer == "hearth" and start[2:] not in (
                [strays, "then", "0", "logins", "count", "saves", "work"] for strays in "01"):
            self.problems.append(f"cut {number}: {' '.join(start)}")

    def round(self, number, is_last):
        """One start after a cut; then changes until the next, unless it is the last."""
        guest = Guest(self.folder, self.work, True)
        first = self.in_flight + 1000
        guest.say(f"{self.system} {self.writer} {'none' if is_last else first}")
        if not guest.listen(PATIENCE, "STARTS"):
            self.counts["no start"] += 1
            self.problems.append(f"cut {number}: {guest.text[-300:]!r}")
            guest.cut()
            return
        if number > 0:
            self.judge(guest, number)
        if is_last:
            guest.cut()
            return
        # Most cuts come among changes; some before the first has been acknowledged.
        if self.random.random() < 0.9:
            guest.listen(PATIENCE, "DONE")
        guest.listen(self.random.uniform(0, 0.7))
        guest.cut()
        done = guest.last("DONE")
        if done is not None:
            self.acknowledged = done
            self.changes += done - first
            self.in_flight = done + 1
        else:
            # The file holds what it held at this start, or the first change.
            self.acknowledged = max(guest.last("FOUND") or 0, 0)
            self.in_flight = first + 1

    def run(self, cuts):
        begun = time.time()
        make_storage(self.work, self.system)
        keep_booted(self.folder, self.work)
        for number in range(cuts + 1):
            self.round(number, number == cuts)
        minutes = (time.time() - begun) / 60
        print(f"{self.system:8} {self.writer:9} {cuts:4} cuts ({cuts / minutes:.0f} a minute), "
              f"{self.changes} acknowledged; found the last {self.counts['last']}, "
              f"the one in flight {self.counts['in flight']}, older {self.counts['lost']}, "
              f"broken {self.counts['broken']}, no start {self.counts['no start']}, "
              f"strays at most {self.most_strays}")
        for problem in self.problems[:10]:
            print(f"    {problem}")
        has_lost = self.counts["lost"] + self.counts["broken"] > 0
        return not self.problems if self.writer == "hearth" else has_lost


def main():
    folder, work, system, writer, cuts, seed = sys.argv[1:]
    sys.exit(0 if Series(folder, work, system, writer, int(seed)).run(int(cuts)) else 1)


main()
