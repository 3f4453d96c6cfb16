"""Looks at the board from outside: whether all of it works, and what it costs.

  machine.py look IMAGE WORK           a table of figures; fails when something is not as it should be
  machine.py serve IMAGE WORK PORT     the page on that port of this machine, until Ctrl-C
"""

import http.client
import json
import os
import re
import secrets
import signal
import subprocess
import sys
import time

from board import Board, CONSOLE, HERE, MEMORY

ROOT = os.path.dirname(os.path.dirname(HERE))
DATA_START = 12 << 20  # in the flash, as board.dts has it; what is before is read-only
COUNTER = "/api/v1/misc/counters/machine"


def tell(what, figure):
    print(f"{what:48} {figure}", flush=True)


class Client:
    """One connection to the gateway, kept as a browser keeps it."""

    def __init__(self, board):
        self.board, self.cookie = board, ""
        self.connection = http.client.HTTPConnection("127.0.0.1", board.port, timeout=60)

    def ask(self, method, path, value=None):
        self.connection.request(method, path, None if value is None else json.dumps(value),
                                {"Content-Type": "application/json", "Cookie": self.cookie})
        answer = self.connection.getresponse()
        body = answer.read()
        if answer.status not in (200, 201):
            sys.exit(f"machine: {method} {path}: {answer.status} {body[:200]}")
        return answer, body

    def log_in(self):
        answer, _ = self.ask("POST", "/api/v1/login", {"user": "admin", "password": self.board.password})
        self.cookie = answer.headers["Set-Cookie"].split(";")[0]

    def save(self, number):
        self.ask("PUT", COUNTER, number)


def instructions_of(board, turns, request):
    """Of one request, for programs and for the kernel: twice as many requests less so many, and less
    what the board executes in that time when it has nothing to do."""
    def executed(action):
        before, begun = board.instructions(), time.monotonic()
        action()
        after = board.instructions()
        return [now - then for now, then in zip(after, before)] + [time.monotonic() - begun]

    def ask(count):
        return executed(lambda: [request(i) for i in range(count)])

    ask(2)
    idle = executed(lambda: time.sleep(2))
    once, twice = ask(turns), ask(2 * turns)
    seconds = twice[2] - once[2]
    return [(twice[i] - once[i] - seconds * idle[i] / idle[2]) / turns for i in range(2)]


def tell_requests(board):
    client = Client(board)
    client.log_in()
    rows = [("read one value", 50, lambda i: client.ask("GET", "/api/v1/wifi/radios/0/channel")),
            ("read an area of 16 KB", 25, lambda i: client.ask("GET", "/api/v1/wifi")),
            ("change, check and save a value", 25, client.save),
            ("log in", 2, lambda i: client.log_in())]
    for what, turns, request in rows:
        programs, kernel = instructions_of(board, turns, request)
        tell("instructions, " + what,
             f"{programs / 1e6:.2f} million, and {kernel / 1e6:.2f} million of the kernel")


def tell_memory(board, when):
    memory = board.run("cat /proc/$(pidof gatewayd)/smaps_rollup /proc/meminfo")
    size = {name: int(re.search(rf"^{name}: +(\d+) kB", memory, re.M).group(1))
            for name in ("Rss", "Pss", "Anonymous", "MemTotal", "MemAvailable")}
    tell(f"memory of gatewayd, {when}", f"{size['Rss']} KiB, of that {size['Pss']} KiB "
         f"its share and {size['Anonymous']} KiB its own")
    tell(f"memory of the board available, {when}",
         f"{size['MemAvailable']} of {size['MemTotal']} KiB (kernel and board: {MEMORY} MiB)")


def tell_flash(board, image):
    for name in ("kernel", "initramfs", "system"):
        tell("flash, " + name, f"{os.path.getsize(f'{image}/{name}'):,} bytes")
    for name in ("lib/libhearth.so.1", "bin/hearth", "bin/gatewayd"):
        tell(f"  in the system, uncompressed: {name}", f"{os.path.getsize(f'{image}/system.root/{name}'):,} bytes")
    used = board.run("df -k /data").split("\n")[1].split()
    tell("flash, changes", f"{used[2]} of {used[1]} KiB")


def browse(board):
    """The test of the page in a browser, against the board."""
    pictures = f"{board.work}/pages"
    os.makedirs(pictures)
    begun = time.monotonic()
    with open(f"{board.work}/browser.log", "w+", encoding="utf-8") as log:
        status = subprocess.run(
            ["/usr/bin/python3", "-B", "browser_test.py", board.url, pictures, "-v"],
            cwd=f"{ROOT}/tests/e2e", stdout=log, stderr=log, check=False,
            env=dict(os.environ, GATEWAYD_SHELL=f"{CONSOLE} {board.work}/console",
                     GATEWAYD_PASSWORD=board.password, GATEWAYD_PATIENCE="60")).returncode
        log.seek(0)
        said = log.read()
    if status:
        sys.exit(f"machine: the browser test failed:\n{said}")
    tell("the page in a browser", f"{said.count('... ok')} walks, {time.monotonic() - begun:.0f} s")


def outlive_a_cut(board, image):
    """Saves, cuts the power as soon as that is acknowledged, and looks after the next start."""
    client = Client(board)
    client.log_in()
    number = secrets.randbelow(1 << 30)
    client.save(number)
    board.cut()
    with open(f"{board.work}/flash", "rb") as now, open(f"{image}/flash", "rb") as made:
        if now.read(DATA_START) != made.read(DATA_START):
            sys.exit("machine: the read-only part of the flash has changed")
    board.start()
    client = Client(board)
    client.log_in()
    _, body = client.ask("GET", COUNTER)
    if json.loads(body) != number:
        sys.exit(f"machine: {number} was acknowledged, {body} is there after a power cut")
    tell("after a power cut", "the last acknowledged change is there")


def look(image, work):
    board = Board(image, work, secrets.token_hex(8))
    try:
        board.start()
        tell("from the kernel's start to gatewayd's answer", f"{board.boot_seconds:.1f} s of the board's clock")
        tell("instructions until then, kernel's unpacking too", f"{sum(board.instructions()) / 1e9:.2f} billion")
        tell_memory(board, "idle")
        checks = board.run("self-check").split("\n")
        tell("request road and the command's own checks", f"{sum(line.startswith('ok') for line in checks)} passed")
        tell_requests(board)
        browse(board)
        tell_memory(board, "after all that")
        tell_flash(board, image)
        outlive_a_cut(board, image)
    finally:
        board.cut()


def serve(image, work, port):
    board = Board(image, work, secrets.token_hex(8), int(port))
    try:
        board.start(is_counted=False)
        print(f"machine: {board.url}/, user admin, password {board.password}; Ctrl-C ends it\n"
              f"machine: its console: {os.path.relpath(CONSOLE)} {os.path.relpath(work)}/console 'hearth areas'",
              flush=True)
        signal.pthread_sigmask(signal.SIG_BLOCK, {signal.SIGINT, signal.SIGTERM})
        signal.sigwait({signal.SIGINT, signal.SIGTERM})
    finally:
        board.cut()


if __name__ == "__main__":
    {"look": look, "serve": serve}[sys.argv[1]](*sys.argv[2:])
