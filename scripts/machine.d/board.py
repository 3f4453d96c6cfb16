"""The board in the emulator, from its factory's flash to the moment that its power is cut."""

import os
import shutil
import socket
import struct
import subprocess
import sys
import time

HERE = os.path.dirname(os.path.abspath(__file__))
CONSOLE = os.path.join(HERE, "console")
PATIENCE = 600  # seconds, for a start on a busy host
MEMORY = 128  # MiB


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


class Board:
    def __init__(self, image, work, password, port=None):
        """image: what make-image has left; work: a folder for this board, whose flash is new."""
        self.image, self.work, self.password = image, work, password
        self.port = port or free_port()
        self.url = f"http://127.0.0.1:{self.port}"
        shutil.rmtree(work, ignore_errors=True)
        os.makedirs(work)
        shutil.copy(f"{image}/flash", f"{work}/flash")

    def start(self, is_counted=True):
        """Switches it on and waits until its gateway answers on the board itself."""
        for old in ("console", "console.log"):
            if os.path.exists(f"{self.work}/{old}"):
                os.unlink(f"{self.work}/{old}")
        command = [
            "qemu-system-arm", "-M", "ast2600-evb,fmc-model=s25fl129p1", "-nodefaults", "-display",
            "none", "-no-reboot", "-kernel", f"{self.image}/kernel", "-dtb", f"{self.image}/board.dtb",
            "-device", f"loader,file={self.image}/initramfs,addr=0x84000000,force-raw=on",
            "-append", f"console=ttyS4 mem={MEMORY}M maxcpus=1 quiet panic=-1 password={self.password}",
            "-drive", f"file={self.work}/flash,format=raw,if=mtd", "-chardev",
            f"socket,id=console,path={self.work}/console,server=on,wait=off,logfile={self.work}/console.log",
            "-serial", "chardev:console", "-nic",
            f"user,restrict=on,hostfwd=tcp:127.0.0.1:{self.port}-127.0.0.1:8080"]
        if is_counted:
            command += ["-plugin", f"{self.image}/instructions.so,into={self.work}/instructions"]
        with open(f"{self.work}/emulator.log", "w", encoding="utf-8") as log:
            self.process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=log, stderr=log)
        ready = self._wait_for("READY")
        self.boot_seconds = float(ready.split()[1])

    def _wait_for(self, word):
        deadline = time.monotonic() + PATIENCE
        while time.monotonic() < deadline and self.process.poll() is None:
            lines = self._said().split("\n")[:-1]
            if any("FAILED" in line for line in lines):
                break
            found = [line for line in lines if line.startswith(word)]
            if found:
                return found[0]
            time.sleep(0.1)
        self.cut()
        sys.exit(f"machine: it did not start: {self._said()[-800:]}")

    def _said(self):
        try:
            with open(f"{self.work}/console.log", encoding="utf-8", errors="replace") as log:
                return log.read()
        except FileNotFoundError:
            return ""

    def run(self, line):
        """What a line of shell prints on the board; one that fails ends this program."""
        done = subprocess.run([CONSOLE, f"{self.work}/console", line], stdout=subprocess.PIPE,
                              text=True)
        if done.returncode:
            sys.exit(f"machine: {line}: {done.stdout}")
        return done.stdout

    def instructions(self):
        """How many were executed since the start, of programs and of the kernel."""
        with open(f"{self.work}/instructions", "rb") as file:
            counts = struct.unpack("=512Q", file.read())
        return sum(counts[0::2]), sum(counts[1::2])

    def cut(self):
        """Ends the emulator. The board is told nothing: for it the power fails."""
        if self.process.poll() is None:
            self.process.terminate()
            self.process.wait()
