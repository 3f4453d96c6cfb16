"""A gatewayd of its own on a fresh copy of the sample data, for the tests that talk to it; or one that
runs elsewhere, on a machine of its own."""

import json
import os
import re
import shlex
import shutil
import socket
import subprocess
import tempfile
import threading
import time
import urllib.error
import urllib.request
import warnings

warnings.simplefilter("ignore", DeprecationWarning)
import crypt  # noqa: E402  (libcrypt's own; Python's last version of it is 3.12)

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
PASSWORD = os.environ.get("GATEWAYD_PASSWORD", "only for this test")
COUNTERS = "/api/v1/misc/counters/"


def cheap_hash(password):
    """A hash that takes 4 ms and 1 MiB to check: a password's hash says itself what it costs."""
    return crypt.crypt(password, "$y$j75$" + os.urandom(6).hex())


def gateway_of(program):
    """`program`: the path of gatewayd, or the URL at which one answers."""
    return Elsewhere(program) if program.startswith("http://") else Gateway(program)


class Gateway:
    def __init__(self, program, users=()):
        """`users`: names and roles, all with PASSWORD, in the place of the sample's."""
        self.program = program
        self.folder = tempfile.mkdtemp(prefix="gatewayd-")
        shutil.copytree(os.path.join(ROOT, "examples", "data"), os.path.join(self.folder, "data"))
        if users:
            gateway = self.database("gateway")
            gateway["users"] = [{"name": name, "role": role, "passwordHash": cheap_hash(PASSWORD)}
                                for name, role in users]
            self.write("gateway", json.dumps(gateway))
        self.cookie = ""
        self.start()

    def start(self, port="0"):
        self.process = subprocess.Popen(
            [self.program, "--data", self.folder, "--port", port],
            env=dict(os.environ, GATEWAYD_PASSWORD=PASSWORD),
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
        found = re.search(r"http://127\.0\.0\.1:(\d+)", self.process.stderr.readline())
        if not found:
            raise RuntimeError("gatewayd did not start")
        self.url = found.group()
        self.port = int(found.group(1))
        self.said = ""  # on standard error, by a sanitizer for one
        self.listener = threading.Thread(target=self._listen, args=[self.process.stderr])
        self.listener.start()

    def _listen(self, stream):
        for line in stream:
            self.said += line
        stream.close()

    def end(self, how="terminate"):
        """Ends the process; the seconds that took."""
        before = time.monotonic()
        getattr(self.process, how)()
        self.status = self.process.wait(timeout=30)
        self.listener.join()
        return time.monotonic() - before

    def __enter__(self):
        return self

    def __exit__(self, *unused):
        if self.process.poll() is None:
            self.end()
        shutil.rmtree(self.folder)
        if self.said:
            raise RuntimeError("gatewayd said:\n" + self.said)

    def file(self, area):
        return os.path.join(self.folder, "data", area, area + ".ldb")

    def database(self, area):
        """The area's document as it is in its file."""
        with open(self.file(area), encoding="utf-8") as file:
            return json.load(file)

    def write(self, area, text):
        with open(self.file(area), "w", encoding="utf-8") as file:
            file.write(text)

    def log(self):
        with open(os.path.join(self.folder, "gateway.log"), encoding="utf-8") as file:
            return file.read()

    def cpu_seconds(self):
        """The processor's time that the process has had, which other work on the machine does not stretch."""
        with open(f"/proc/{self.process.pid}/stat", encoding="utf-8") as file:
            fields = file.read().rsplit(")", 1)[1].split()
        return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")

    def memory(self):
        """MiB that the process holds and no file backs; 0 where a sanitizer holds more of it."""
        if os.environ.get("GATEWAYD_SANITIZED"):
            return 0
        with open(f"/proc/{self.process.pid}/status", encoding="utf-8") as file:
            return int(re.search(r"RssAnon:\s+(\d+) kB", file.read()).group(1)) / 1024

    def ask(self, method, path, value=None, **headers):
        """The status and the JSON value of the answer."""
        request = urllib.request.Request(self.url + path, method=method)
        if value is not None:
            request.data = value if isinstance(value, bytes) else json.dumps(value).encode()
        for name, text in {"Content-Type": "application/json", "Cookie": self.cookie,
                           **headers}.items():
            request.add_header(name.replace("_", "-"), text)
        try:
            answer = urllib.request.urlopen(request, timeout=30)
        except urllib.error.HTTPError as error:
            answer = error
        body = answer.read()
        self.headers = answer.headers
        is_json = answer.headers.get_content_type() == "application/json"
        return answer.status, json.loads(body) if is_json else body.decode()

    def patch(self, area, *steps):
        return self.ask("PATCH", "/api/v1/" + area, list(steps),
                        Content_Type="application/json-patch+json")

    def log_in(self, password=PASSWORD, user="admin", **headers):
        status, answer = self.ask("POST", "/api/v1/login", {"user": user, "password": password},
                                  **headers)
        if status == 200:
            self.cookie = self.headers["Set-Cookie"].split(";")[0]
        return status, answer

    def connect(self, source="127.0.0.1"):
        return socket.create_connection(("127.0.0.1", self.port), 10, (source, 0))

    def raw(self, data):
        """What the gateway sends back for these bytes, up to its end of the connection; with
        "(open)" behind it when it keeps the connection."""
        got = b""
        with self.connect() as connection:
            connection.settimeout(2)
            try:
                connection.sendall(data)
                while part := connection.recv(65536):
                    got += part
            except socket.timeout:
                got += b"(open)"
            except OSError:
                pass  # it was closed while we sent
        return got.decode("latin-1")


class Elsewhere(Gateway):
    """One that is there already, with GATEWAYD_PASSWORD. It is neither started nor ended here, but set
    back to the sample data, by `gateway reset` on its machine. GATEWAYD_SHELL is a command that runs a
    line of shell there, in the folder of its data."""

    def __init__(self, url):
        self.url = url
        self.port = int(url.rsplit(":", 1)[1])
        self.cookie = ""
        self.run("gateway reset")

    def __exit__(self, *unused):
        pass

    def run(self, line):
        shell = shlex.split(os.environ["GATEWAYD_SHELL"])
        return subprocess.run([*shell, line], check=True, stdout=subprocess.PIPE, text=True).stdout

    def database(self, area):
        return json.loads(self.run(f"cat data/{area}/{area}.ldb"))
