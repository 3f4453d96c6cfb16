"""A guest in the emulator: booted once up to the moment before it touches its store, then resumed from
its kept memory as often as wanted, and killed."""

import json
import os
import select
import signal
import socket
import subprocess
import sys
import time

DISK = 64  # MiB
FILE_SYSTEM = 60  # MiB of the disk; what is behind it is free for marks
PATIENCE = 180  # seconds; a guest that says nothing for so long has failed


def drives(disk, log):
    """The emulator's names for the disk, with the log of its writes in between where there is one."""
    file = f"driver=file,filename={disk},node-name="
    if log is None:
        return [file + "disk"]
    return [file + "below", f"driver=file,filename={log},node-name=log",
            "driver=blklogwrites,node-name=disk,file=below,log=log"]


def pc(work):
    """A PC whose memory has a hole from 160 MiB on: 16 MiB that a file of the host keeps, the flash."""
    nodes = [("memory-backend-ram,id=low,size=160M", "node,memdev=low,cpus=0"),
             (f"memory-backend-file,id=flash,size=16M,mem-path={work}/flash,share=on",
              "node,memdev=flash"),
             ("memory-backend-ram,id=high,size=32M", "node,memdev=high")]
    command = ["qemu-system-x86_64", "-M", "pc", "-m", "208", "-device", "virtio-blk-pci,drive=disk",
               "-append", "console=ttyS0 quiet panic=-1 mitigations=off no_timer_check tsc=unstable "
               "numa=off memmap=16M$0xa000000"]
    for backend, node in nodes:
        command += ["-object", backend, "-numa", node]
    return command


def arm(_):
    """A 32-bit ARM machine with a disk and no flash."""
    return ["qemu-system-arm", "-M", "virt,highmem=off", "-cpu", "cortex-a15", "-m", "192",
            "-device", "virtio-blk-device,drive=disk", "-append", "console=ttyAMA0 quiet panic=-1"]


MACHINES = {"amd64": pc, "armhf": arm}


def architecture_of(folder):
    with open(f"{folder}/architecture", encoding="utf-8") as file:
        return file.read().strip()


class Guest:
    """One run of the emulator, from a start or from the kept memory to its end."""

    def __init__(self, folder, work, is_resumed=False, log=None):
        """log: a file that takes every write to the disk, in its order, and every flush."""
        self.work = work
        self.text = ""
        control = f"{work}/control"
        if os.path.exists(control):
            os.unlink(control)
        command = ["nice", "-n", "10"] + MACHINES[architecture_of(folder)](work) + [
            "-nodefaults", "-display", "none", "-no-reboot", "-serial", "stdio",
            "-qmp", f"unix:{control},server=on,wait=off",
            "-kernel", f"{folder}/kernel", "-initrd", f"{folder}/root.cpio"]
        for drive in drives(f"{work}/disk", log):
            command += ["-blockdev", drive]
        if is_resumed:
            command += ["-incoming", "defer"]
        with open(f"{work}/emulator.log", "w", encoding="utf-8") as errors:
            self.process = subprocess.Popen(command, stdin=subprocess.PIPE,
                                            stdout=subprocess.PIPE, stderr=errors)
        self._connect(control)
        if is_resumed:
            self._ask("migrate-incoming", uri=f"exec:cat {work}/memory")
            while self._ask("query-status")["status"] == "inmigrate":
                time.sleep(0.02)
            self._ask("cont")

    def _connect(self, path):
        self.socket = socket.socket(socket.AF_UNIX)
        deadline = time.time() + 30
        while True:
            try:
                self.socket.connect(path)
                break
            except OSError:
                if time.time() > deadline:
                    raise
                time.sleep(0.05)
        self.control = self.socket.makefile("rw")
        self.control.readline()
        self._ask("qmp_capabilities")
        # The flash is a file already; it must not be part of the kept memory.
        self._ask("migrate-set-capabilities",
                  capabilities=[{"capability": "x-ignore-shared", "state": True}])

    def _ask(self, name, **arguments):
        self.control.write(json.dumps({"execute": name, "arguments": arguments}) + "\n")
        self.control.flush()
        while True:
            answer = json.loads(self.control.readline())
            if "error" in answer:
                raise RuntimeError(f"{name}: {answer['error']}")
            if "return" in answer:
                return answer["return"]

    def keep_memory(self):
        self._ask("stop")
        self._ask("migrate", uri=f"exec:cat >{self.work}/memory")
        while self._ask("query-migrate").get("status") != "completed":
            time.sleep(0.1)

    def say(self, line):
        self.process.stdin.write(line.encode() + b"\n")
        self.process.stdin.flush()

    def listen(self, seconds, until=None):
        """Takes what the guest says, for so long or until a whole line begins with the word."""
        deadline = time.time() + seconds
        while until is None or not any(line.startswith((until, "FAILED")) for line in self.lines()):
            left = deadline - time.time()
            if left <= 0 or not select.select([self.process.stdout], [], [], left)[0]:
                return until is None
            got = os.read(self.process.stdout.fileno(), 65536)
            if not got:
                return False
            self.text += got.decode(errors="replace")
        return "FAILED" not in self.text

    def lines(self):
        """The whole lines so far: what comes after the last line end was cut."""
        return [line.strip("\r") for line in self.text.split("\n")[:-1]]

    def last(self, word):
        """The number on the last line that begins with the word; None without such a line."""
        found = [line for line in self.lines() if line.startswith(word + " ")]
        return int(found[-1].split()[1]) if found else None

    def stop(self):
        """Ends the emulator in order, which completes the log of writes."""
        self._ask("stop")
        self._ask("quit")
        self.process.wait()
        self.socket.close()

    def cut(self):
        self.process.send_signal(signal.SIGKILL)
        self.text += self.process.stdout.read().decode(errors="replace")
        self.process.wait()
        self.socket.close()


def make_storage(work, system):
    """A new disk with an empty file system, and an erased flash."""
    os.makedirs(work, exist_ok=True)
    with open(f"{work}/flash", "wb") as flash:
        flash.write(b"\xff" * (16 << 20))
    disk = f"{work}/disk"
    with open(disk, "wb") as file:
        file.truncate(DISK << 20)
    if system == "f2fs":
        make = ["mkfs.f2fs", "-q", "-f", disk, str(FILE_SYSTEM << 11)]
    else:
        make = ["mkfs.ext4", "-q", "-F", disk, f"{FILE_SYSTEM}M"]
    subprocess.run(make, check=True, stdout=subprocess.DEVNULL)


def keep_booted(folder, work):
    """Boots a guest and keeps its memory in the work folder."""
    guest = Guest(folder, work)
    if not guest.listen(PATIENCE, "READY"):
        guest.cut()
        sys.exit(f"the guest did not start: {guest.text[-500:]}")
    guest.keep_memory()
    guest.cut()
