"""Makes changes to the copy, builds it, runs the tests, and tells what they saw."""

import argparse
import hashlib
import os
import pathlib
import random
import re
import resource
import shutil
import subprocess
import sys
import time

import changes

NOT_THE_LIBRARY = {"bench", "examples", "fuzz", "include", "packaging", "scripts", "tests", "tools"}
JOBS = os.environ.get("CMAKE_BUILD_PARALLEL_LEVEL") or str(os.cpu_count())
MEMORY = 8 << 30  # of address space for each process: a change may allocate without end

# Each run of the tests has processes and temporary files of its own, which end with it, where the
# system lets us arrange that.
APART = [
    "unshare", "--mount", "--pid", "--fork", "--mount-proc", "--kill-child", "sh", "-c",
    'for folder in "$TMPDIR" /dev/shm; do mount -t tmpfs none "$folder"; done; "$@"', "sh",
]  # fmt: skip


def arguments():
    parser = argparse.ArgumentParser(prog="scripts/mutate")
    parser.add_argument("source", type=pathlib.Path)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--count", type=int, default=20, help="changes that count")
    parser.add_argument("--minutes", type=float, default=24 * 60)
    parser.add_argument("--least", type=float, default=0, help="per cent")
    parser.add_argument("--list", action="store_true")
    parser.add_argument("where", nargs="*")
    return parser.parse_intermixed_args()


def sources(root, where):
    for path in sorted(root.rglob("*")):
        name = path.relative_to(root).as_posix()
        folder = name.split("/")[0]
        if path.suffix not in (".cc", ".h") or "/" not in name or folder == "build":
            continue
        if any(name == w or name.startswith(w.rstrip("/") + "/") for w in where):
            yield name, path.read_text()
        elif not where and folder not in NOT_THE_LIBRARY:
            yield name, path.read_text()


def sample(root, where, seed):
    """All changes in a random order: each line as likely as any other, and then each of its changes."""
    texts = dict(sources(root, where))
    by_line = {}
    for name, text in texts.items():
        for change in changes.changes_in(name, text):
            by_line.setdefault((name, change.line), []).append(change)
    chance = random.Random(seed)
    lines = sorted(by_line)
    while lines:
        at = chance.randrange(len(lines))
        of_line = by_line[lines[at]]
        change = of_line.pop(chance.randrange(len(of_line)))
        if not of_line:
            lines[at] = lines[-1]
            lines.pop()
        yield change, texts[change.file]


class Copy:
    """The copied tree: what it builds and what its tests say."""

    def __init__(self, root):
        self.root = root.resolve()
        self.build_folder = self.root / "build"
        self.temporary = self.root.parent / "tmp"
        self.environment = dict(os.environ, TMPDIR=str(self.temporary))
        shutil.rmtree(self.temporary, ignore_errors=True)
        self.temporary.mkdir()
        works = subprocess.run([*APART, "true"], env=self.environment, capture_output=True)
        self.apart = APART if works.returncode == 0 else []

    def build(self, *targets):
        """The compiler's words when it fails; None when all is built."""
        command = ["cmake", "--build", self.build_folder, "-j", JOBS, *targets]
        done = subprocess.run(command, capture_output=True, text=True, errors="replace")
        return None if done.returncode == 0 else done.stdout + done.stderr

    def library(self):
        file = next(f for f in self.build_folder.glob("libhearth.so*") if not f.is_symlink())
        return hashlib.sha256(file.read_bytes()).digest()

    def test(self, folder=None, bound=300):
        """The first test that failed, None when all passed."""
        where = self.build_folder / "tests" / (folder or "")
        if not (where / "CTestTestfile.cmake").exists():
            return None
        command = [*self.apart, "ctest", "--test-dir", where, "-j", JOBS, "--stop-on-failure",
                   "--timeout", str(bound), "--no-tests=ignore"]  # fmt: skip
        try:
            done = subprocess.run(
                command, env=self.environment, capture_output=True, text=True, errors="replace",
                timeout=20 * bound, stdin=subprocess.DEVNULL, cwd=where,
                preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY)),
            )  # fmt: skip
        except subprocess.TimeoutExpired:
            return "the tests, which did not end"
        if done.returncode == 0:
            return None
        failed = re.search(r"^\s*\d+ - (\S+)", done.stdout, re.MULTILINE)
        return failed[1] if failed else "a test"


def judge(copy, change, bound):
    """What becomes of one change: a word, and the test that caught it."""
    folder = change.file.split("/")[0]
    if copy.build("--target", "hearth") is not None:
        return "no code", ""
    if folder not in NOT_THE_LIBRARY and copy.library() == copy.original:
        return "same code", ""
    words = copy.build()
    if words is not None:
        return ("no code", "") if "error:" in words else ("caught", "the build")
    test = copy.test(folder, bound) or copy.test(None, bound)
    return ("caught", test) if test else ("survives", "")


def main():
    chosen = arguments()
    end = time.monotonic() + 60 * chosen.minutes
    places = sample(chosen.source, chosen.where, chosen.seed)
    if chosen.list:
        for _, (change, text) in zip(range(chosen.count), places):
            print(f"{change.file}:{change.line}: {change.kind}: {change.shown(text)}")
        return 0

    copy = Copy(chosen.source)
    words = copy.build()
    if words is not None:
        sys.exit(f"{words}\nmutate: the sources do not build as they are")
    copy.original = copy.library()
    start = time.monotonic()
    test = copy.test()
    if test is not None:
        sys.exit(f"mutate: {test} fails without any change")
    bound = round(30 + time.monotonic() - start)  # seconds; longer than any test takes

    counts = dict.fromkeys(["caught", "survives", "same code", "no code"], 0)
    survivors = []
    for change, text in places:
        if counts["caught"] + counts["survives"] == chosen.count or time.monotonic() > end:
            break
        file = chosen.source / change.file
        try:
            file.write_text(change.applied_to(text))
            result, test = judge(copy, change, bound)
        except KeyboardInterrupt:
            break
        finally:
            file.write_text(text)
        counts[result] += 1
        line = f"{change.file}:{change.line}: {change.shown(text)}"
        print(f"{result:9} {line}" + (f"  ({test})" if test else ""), flush=True)
        if result == "survives":
            survivors.append(line)

    counted = counts["caught"] + counts["survives"]
    share = 100 * counts["caught"] / counted if counted else 100
    print("\nsurvivors:" if survivors else "\nno survivors", *sorted(survivors), sep="\n  ")
    print(
        f"mutate: seed {chosen.seed}, {counts['caught']} of {counted} caught, {share:.0f} %; "
        f"{counts['same code']} gave the same code, {counts['no code']} none"
    )
    return 0 if share >= chosen.least else 1


if __name__ == "__main__":
    sys.exit(main())
