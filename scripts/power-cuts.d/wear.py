"""What a change costs the flash: how much the emulated disk or flash is written to and erased for one
changed number, by each writer on each file system.

    wear.py GUEST WORK CHANGES
"""

import sys

from emulator import Guest, PATIENCE, keep_booted, make_storage

WRITERS = {"hearth": "hearth", "in-place": "written over", "DELETE": "SQLite, journal",
           "WAL": "SQLite, WAL"}


def measure(folder, work, system, writer, changes):
    make_storage(work, system)
    guest = Guest(folder, work, True)
    guest.say(f"{system} wear-{writer} {changes}")
    is_done = guest.listen(PATIENCE, "WORN")
    guest.cut()
    if not is_done:
        sys.exit(f"{system} {writer}: {guest.text[-300:]!r}")
    written, erased, written_before, erased_before = map(int, guest.lines()[-1].split()[1:])
    return (written - written_before) / changes, (erased - erased_before) / changes


def main():
    folder, work, changes = sys.argv[1:]
    make_storage(work, "ext4")
    keep_booted(folder, work)
    print("| file system | writer | KiB written a change | blocks of 64 KiB erased a change |")
    print("|---|---|---|---|")
    for system in ("ext4", "f2fs", "ubifs", "jffs2"):
        for writer, name in WRITERS.items():
            if (system, writer) == ("jffs2", "WAL"):
                continue  # needs memory shared through a file, which JFFS2 does not have
            written, erased = measure(folder, work, system, writer, int(changes))
            # JFFS2 erases every block of a new flash while the changes are made.
            blocks = f"{erased:.2f}" if system == "ubifs" else "-"
            print(f"| {system} | {name} | {written / 1024:.1f} | {blocks} |", flush=True)


main()
