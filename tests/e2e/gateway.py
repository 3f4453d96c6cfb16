"""A gatewayd of its own on a fresh copy of the sample data, for the tests that talk to it."""

import json
import os
import re
import shutil
import subprocess
import tempfile
import urllib.error
import urllib.request

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
PASSWORD = "only for this test"


class Gateway:
    def __init__(self, program):
        self.folder = tempfile.mkdtemp(prefix="gatewayd-")
        shutil.copytree(os.path.join(ROOT, "examples", "data"), os.path.join(self.folder, "data"))
        self.process = subprocess.Popen(
            [program, "--data", self.folder, "--port", "0"],
            env=dict(os.environ, GATEWAYD_PASSWORD=PASSWORD),
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
        found = re.search(r"http://127\.0\.0\.1:\d+", self.process.stderr.readline())
        if not found:
            raise RuntimeError("gatewayd did not start")
        self.url = found.group()
        self.cookie = ""

    def __enter__(self):
        return self

    def __exit__(self, *unused):
        self.process.terminate()
        self.status = self.process.wait(timeout=10)
        self.process.stderr.close()
        shutil.rmtree(self.folder)

    def database(self, area):
        """The area's document as it is in its file."""
        with open(os.path.join(self.folder, "data", area, area + ".ldb"), encoding="utf-8") as file:
            return json.load(file)

    def log(self):
        with open(os.path.join(self.folder, "gateway.log"), encoding="utf-8") as file:
            return file.read()

    def ask(self, method, path, value=None, **headers):
        """The status and the JSON value of the answer."""
        request = urllib.request.Request(self.url + path, method=method)
        if value is not None:
            request.data = value if isinstance(value, bytes) else json.dumps(value).encode()
        for name, text in {"Content-Type": "application/json", "Cookie": self.cookie,
                           **headers}.items():
            request.add_header(name.replace("_", "-"), text)
        try:
            answer = urllib.request.urlopen(request, timeout=10)
        except urllib.error.HTTPError as error:
            answer = error
        body = answer.read()
        self.headers = answer.headers
        is_json = answer.headers.get_content_type() == "application/json"
        return answer.status, json.loads(body) if is_json else body.decode()

    def log_in(self, password=PASSWORD):
        status, answer = self.ask("POST", "/api/v1/login", {"user": "admin", "password": password})
        if status == 200:
            self.cookie = self.headers["Set-Cookie"].split(";")[0]
        return status, answer
