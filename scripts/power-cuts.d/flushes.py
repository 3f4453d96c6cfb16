"""Takes away what a disk with a cache of its own may forget: everything since the last flush.

The emulator logs a guest's writes and flushes while it changes its store. The guest writes a mark
behind its file system for each change that was acknowledged, so that the log tells which changes a
cut at any entry must have kept. Here such cuts are made from the log: the disk gets the writes up to
the last flush before the entry, and nothing of the later ones, or a random part of them, as a cache
that writes back in its own order would leave it. A guest then starts on it and tells what it finds.

    flushes.py GUEST WORK SYSTEM WRITER CUTS SEED
"""

import random
import shutil
import struct
import sys

from emulator import FILE_SYSTEM, Guest, PATIENCE, keep_booted, make_storage

SECTOR = 512
MAGIC = 0x6A736677736872
FLUSH, FUA, DISCARD = 1, 2, 4
MARKS = FILE_SYSTEM << 11  # the sector where marks begin


def read_log(path):
    """The entries of the log: place in bytes, data, flags."""
    entries = []
    with open(path, "rb") as log:
        magic, _, count, size = struct.unpack("<QQQI", log.read(28))
        if magic != MAGIC:
            sys.exit("the log of writes has another format")
        at = size
        for _ in range(count):
            log.seek(at)
            sector, sectors, flags, _ = struct.unpack("<QQQQ", log.read(32))
            at += size
            data = b""
            if not flags & DISCARD:
                log.seek(at)
                data = log.read(sectors * size)
                at += len(data)
            entries.append((sector * size, data, flags))
    return entries


def record(folder, work, system, writer):
    """Lets a guest change its store for a while; gives the log."""
    shutil.copyfile(f"{work}/disk", f"{work}/before")
    log = f"{work}/writes"
    with open(log, "wb"):
        pass
    guest = Guest(folder, work, True, log)
    guest.say(f"{system} {writer} 0 marked")
    if not guest.listen(PATIENCE, "DONE"):
        sys.exit(f"nothing was acknowledged: {guest.text[-300:]}")
    guest.listen(8)
    guest.stop()
    return read_log(log)


def lay_out(work, entries, end, keep):
    """Makes the disk as a cut at the entry would leave it; keep says which late writes it has."""
    flushed = max((i for i in range(end) if entries[i][2] & FLUSH), default=0)
    shutil.copyfile(f"{work}/before", f"{work}/disk")
    acknowledged = 0
    with open(f"{work}/disk", "r+b") as disk:
        for i, (place, data, flags) in enumerate(entries[:end]):
            if place == MARKS * SECTOR and data:
                acknowledged = int(data.split(b"\0", 1)[0])
            elif i < flushed or flags & FUA or keep():
                disk.seek(place)
                disk.write(data)
    return acknowledged


def main():
    folder, work, system, writer, cuts, seed = sys.argv[1:]
    choose = random.Random(int(seed))
    make_storage(work, system)
    keep_booted(folder, work)
    entries = record(folder, work, system, writer)
    first = next(i for i, entry in enumerate(entries) if entry[0] == MARKS * SECTOR)
    problems, kept = [], 0
    for number in range(int(cuts)):
        end = choose.randrange(first, len(entries)) + 1
        share = 0 if number % 2 == 0 else choose.random()
        acknowledged = lay_out(work, entries, end, lambda share=share: choose.random() < share)
        guest = Guest(folder, work, True)
        guest.say(f"{system} {writer} none")
        has_started = guest.listen(PATIENCE, "STARTS")
        found = guest.last("FOUND")
        guest.cut()
        if has_started and found in (acknowledged, acknowledged + 1):
            kept += 1
        else:
            problems.append(f"entry {end}: acknowledged {acknowledged}, {guest.text[-300:]!r}")
    flushes = sum(1 for entry in entries if entry[2] & FLUSH)
    print(f"{system:8} {writer:9} forgetful disk, {len(entries)} writes, {flushes} flushes: {cuts} "
          f"cuts, {kept} found the last acknowledged or the one in flight")
    for problem in problems[:10]:
        print(f"    {problem}")
    sys.exit(0 if bool(problems) != (writer == "hearth") else 1)


main()
