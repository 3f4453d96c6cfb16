"""What was done to gatewayd, and what it makes of it: run with the path of gatewayd, and of the
hearth command."""

import fcntl
import json
import os
import re
import resource
import subprocess
import sys
import threading
import time
import unittest

from gateway import COUNTERS, Gateway, PASSWORD

PROGRAM = sys.argv[1]
COMMAND = next((path for path in sys.argv[2:3] if os.path.exists(path)), None)

HOST = "Host: 127.0.0.1\r\n"
JSON = "Content-Type: application/json\r\n"
SECRET = "/api/v1/wifi/radios/0/networks/0/security/passphrase"

# A request behind whose head stands one that deletes; the status that answers it. {cookie} is a
# session's, {length} the length of what follows the head.
DESYNC = [
    ("POST /api/v1/logout", HOST + "{cookie}Content-Type: text/plain\r\nContent-Length: {length}", 415),
    ("POST /api/v1/logout", HOST + "{cookie}Content-Type: application/jsonp\r\nContent-Length: {length}", 415),
    ("POST /api/v1/login", HOST + "Origin: http://a.example\r\n" + JSON + "Content-Length: {length}", 403),
    ("POST /api/v1/logout", "Host: a.example\r\n{cookie}" + JSON + "Content-Length: {length}", 403),
    ("POST /api/v1/logout", "Host: 127.0.0.1:1@a.example\r\n{cookie}" + JSON + "Content-Length: {length}", 403),
    ("PUT /api/v1/misc/counters/x", HOST + JSON + "Content-Length: {length}", 401),
    ("PUT /" + "a" * 600, HOST + "{cookie}" + JSON + "Content-Length: {length}", 414),
    ("PUT /api/v1/misc/counters/x", HOST + "{cookie}" + JSON + "Transfer-Encoding: chunked", 411),
    ("PUT /api/v1/misc/counters/x", HOST + "{cookie}" + JSON + "Content-Length: 0\r\nTransfer-Encoding: chunked", 411),
    ("PUT /api/v1/misc/counters/x", HOST + "{cookie}" + JSON + "X: y", 411),
    ("PUT /api/v1/misc/counters/x", HOST + "{cookie}" + JSON + "Content-Length: 0\r\nContent-Length: {length}", 400),
    ("PUT /api/v1/misc/counters/x", HOST + "{cookie}" + JSON + "Content-Length : 0\r\nContent-Length: {length}", 400),
    ("PUT /api/v1/misc/counters/x", HOST + "{cookie}" + JSON + "Content-Length: +{length}", 400),
    ("PUT /api/v1/misc/counters/x", HOST + "{cookie}" + JSON + "Content-Length: 99999999", 413),
    ("PUT /api/v1/misc/counters/x", HOST + "{cookie}" + JSON + "Content-Encoding: br\r\nContent-Length: {length}", 415),
    ("GET /api/v1/areas", HOST + "{cookie}Content-Length: {length}", 400),
    ("GET /", "Host: localhost.a.example\r\nContent-Length: {length}", 403),
    ("GET /a b", HOST + "Content-Length: {length}", 400),
]

# Values that no area takes, and what of them must not come back.
VALUES = [
    ("PUT", COUNTERS + "x", b"NaN", 400, "NaN"),
    ("PUT", COUNTERS + "x", b"1e999", 400, "999"),
    ("PUT", COUNTERS + "x", b'"hush\x00hush"', 400, "hush"),
    ("PUT", COUNTERS + "x", b'"hush\\u0000hush"', 400, "hush"),
    ("PATCH", "/api/v1/misc/counters", b'{"hush\xff": 1}', 400, "hush"),
    ("PUT", COUNTERS + "%ff", b"1", 400, "\ufffd"),
    ("PUT", COUNTERS + "%00", b"1", 400, "\x00"),
    ("PUT", COUNTERS + "%1b%5b31m", b"1", 400, "\x1b"),
    ("PUT", SECRET, b'"hush"', 422, "hush"),
    ("PATCH", "/api/v1/wifi/radios/0/networks/0/security", b'{"mode": "none?"}', 422, "sample passphrase"),
]


def counts(gateway, name):
    """Puts 1, 2, 3 ... to a counter of this name. The last that was acknowledged, when told to end."""
    def run():
        number = 0
        while not ended.is_set():
            status = gateway.ask("PUT", COUNTERS + name, number + 1)[0]
            number += status in (200, 201)
            statuses.add(status)
        result.append(number)
    ended, result, statuses = threading.Event(), [], set()
    thread = threading.Thread(target=run)
    thread.start()

    def stop():
        ended.set()
        thread.join()
        return result[0], statuses
    return stop


def other(gateway):
    """Another client of the same gateway, with a cookie of its own."""
    client = object.__new__(Gateway)
    client.__dict__ = dict(gateway.__dict__, cookie="")
    return client


class AttackTest(unittest.TestCase):
    def test_a_refused_request_ends_its_connection(self):
        with Gateway(PROGRAM) as gateway:
            gateway.log_in()
            cookie = f"Cookie: {gateway.cookie}\r\n"
            inside = f"DELETE /api/v1/wifi/radios/0 HTTP/1.1\r\n{HOST}{cookie}\r\n"
            for line, headers, status in DESYNC:
                with self.subTest(line=line[:40], headers=headers):
                    headers = headers.format(cookie=cookie, length=len(inside))
                    got = gateway.raw(f"{line} HTTP/1.1\r\n{headers}\r\n\r\n{inside}".encode())
                    self.assertEqual(f"HTTP/1.1 {status}", got[:12], got)
                    self.assertNotIn("(open)", got)
            self.assertEqual(2, len(gateway.database("wifi")["radios"]))

    def test_floods_are_cut_off(self):
        with Gateway(PROGRAM) as gateway:
            gateway.ask("GET", "/")
            before = gateway.memory()
            chunk = b"10000\r\n" + b"a" * 65536 + b"\r\n"
            for head, part in ((f"PUT {COUNTERS}x HTTP/1.1\r\n{HOST}{JSON}Transfer-Encoding: chunked\r\n\r\n", chunk),
                               (f"PUT {COUNTERS}x HTTP/1.0\r\n{HOST}{JSON}\r\n", chunk),
                               (f"GET / HTTP/1.1\r\n{HOST}", b"X: " + b"a" * 1000 + b"\r\n"),
                               ("GET /", b"a" * 65536)):
                with self.subTest(head=head), gateway.connect() as connection:
                    connection.sendall(head.encode())
                    with self.assertRaises(OSError):
                        for _ in range(64 * 1024 * 1024 // len(part)):
                            connection.sendall(part)
            self.assertLess(gateway.memory() - before, 3)

    def test_slow_clients_hold_nothing_up(self):
        most = resource.getrlimit(resource.RLIMIT_NOFILE)[1]
        resource.setrlimit(resource.RLIMIT_NOFILE, (min(4096, most), most))
        with Gateway(PROGRAM) as gateway:
            gateway.log_in()
            idle = [gateway.connect() for _ in range(1500)]
            slow = [gateway.connect() for _ in range(16)]
            begun = time.monotonic()
            is_open = True
            while is_open and time.monotonic() - begun < 26:
                for number, connection in enumerate(slow):
                    try:
                        connection.send(b"GET / HTTP/1.1\r\nX: aaaaaaaaaaaaaaaaaaaaaaaa"[int(time.monotonic() - begun):][:1])
                    except OSError:
                        is_open = number != len(slow) - 1
                asked = time.monotonic()
                self.assertEqual(200, gateway.ask("GET", "/api/v1/areas")[0])
                self.assertLess(time.monotonic() - asked, 1)
                time.sleep(1)
            self.assertFalse(is_open, "a byte a second keeps a connection for ever")
            slow += [gateway.connect() for _ in range(40)]
            for connection in slow[-40:]:
                connection.sendall(f"PUT {COUNTERS}x HTTP/1.1\r\n{HOST}Cookie: {gateway.cookie}\r\n{JSON}Content-Length: 2\r\n\r\n1".encode())
            self.assertLess(gateway.end(), 2)
            self.assertEqual(0, gateway.status)
            for connection in idle + slow:
                connection.close()

    def test_sessions_that_end_lose_nothing(self):
        with Gateway(PROGRAM, [("admin", "administer")]) as gateway:
            clients = [other(gateway) for _ in range(3)]
            for client in clients:
                client.log_in()
            stops = [counts(client, f"n{i}") for i, client in enumerate(clients)]
            leaver = other(gateway)
            for turn in range(30):
                leaver.log_in()
                threads = [threading.Thread(target=leaver.ask, args=("PUT", COUNTERS + f"t{turn}", 1))
                           for _ in range(3)]
                for thread in threads:
                    thread.start()
                leaver.ask("POST", "/api/v1/logout", {})
                for thread in threads:
                    thread.join()
            stored = [stop()[0] for stop in stops]
            counters = gateway.database("misc")["counters"]
            self.assertEqual(stored, [counters.get(f"n{i}") for i in range(3)])
            self.assertNotIn("default", gateway.log())

    @unittest.skipUnless(COMMAND, "no hearth command was given")
    def test_the_command_and_the_daemon_see_each_other(self):
        with Gateway(PROGRAM) as gateway:
            gateway.log_in()
            stop = counts(gateway, "daemon")
            number, ends = 0, time.monotonic() + 3
            while time.monotonic() < ends:
                done = subprocess.run([COMMAND, "--data", os.path.join(gateway.folder, "data"), "set",
                                       "misc", "counters.command", str(number + 1)],
                                      capture_output=True, text=True)
                self.assertEqual(0, done.returncode, done.stderr)
                number += 1
            acknowledged, statuses = stop()
            counters = gateway.database("misc")["counters"]
            self.assertEqual((acknowledged, number), (counters["daemon"], counters["command"]))
            self.assertGreater(min(acknowledged, number), 2)
            self.assertLessEqual(statuses, {200, 201})

    def test_nothing_is_served_without_a_configuration(self):
        with Gateway(PROGRAM) as gateway:
            gateway.end()
            for text in (None, "", '{"data_location":"./data"', "[]", '{"data_location":"./da\x00ta"}'):
                with self.subTest(text=text):
                    config = os.path.join(gateway.folder, "other.conf")
                    if text is not None:
                        with open(config, "w", encoding="utf-8") as file:
                            file.write(text)
                    done = subprocess.run([PROGRAM, "--data", gateway.folder, "--port", "0", "--config",
                                           config], capture_output=True, text=True, timeout=3)
                    self.assertEqual(78, done.returncode)
                    self.assertEqual(1, done.stderr.count("\n"), done.stderr)

    def test_ports_are_numbers_and_have_one_server(self):
        with Gateway(PROGRAM) as gateway:
            for port, status in (("80x", 64), ("", 64), ("-1", 64), ("65536", 64), (str(gateway.port), 1)):
                with self.subTest(port=port):
                    done = subprocess.run([PROGRAM, "--data", gateway.folder, "--port", port],
                                          capture_output=True, text=True, timeout=3)
                    self.assertEqual(status, done.returncode, done.stderr)

    def test_values_that_make_no_sense_are_refused_unseen(self):
        with Gateway(PROGRAM) as gateway:
            gateway.log_in()
            for method, path, value, status, hidden in VALUES:
                with self.subTest(path=path, value=value):
                    answer = gateway.ask(method, path, value)
                    self.assertEqual(status, answer[0], answer)
                    self.assertNotIn(hidden, str(answer[1]))
            gateway.raw(f"G\x1b[31mET /\x1b[31m HTTP/1.1\r\n{HOST}\r\n".encode())
            token = gateway.cookie.split("=")[1]
            for cookies in (f"xgatewayd={token}", f"x=gatewayd={token}", f"gatewayd={token}x"):
                self.assertEqual(401, gateway.ask("GET", "/api/v1/areas", Cookie=cookies)[0])
            self.assertNotRegex(gateway.log(), r"[^\n\x20-\x7e]|hush")

    def test_an_area_does_not_grow_for_ever(self):
        with Gateway(PROGRAM) as gateway:
            gateway.log_in()
            with open(gateway.file("misc").replace(".ldb", "_SCHEMA.ldb"), "w", encoding="utf-8") as file:
                file.write("{}")
            statuses = [gateway.ask("PUT", COUNTERS + str(turn), "x" * 60_000)[0] for turn in range(8)]
            self.assertEqual([201] * 4 + [413] * 4, statuses)
            self.assertLess(os.path.getsize(gateway.file("misc")), 300_000)

    def test_a_broken_store_is_said_and_mended(self):
        with Gateway(PROGRAM) as gateway:
            gateway.log_in()
            whole = json.dumps(gateway.database("misc"))
            for text, status in (("{", 503), ("", 503), (whole, 200)):
                gateway.write("misc", text)
                self.assertEqual(status, gateway.ask("GET", "/api/v1/misc/ui")[0])
            folder = os.open(os.path.dirname(gateway.file("misc")), os.O_RDONLY)
            fcntl.flock(folder, fcntl.LOCK_EX)
            self.assertEqual(423, gateway.ask("PUT", COUNTERS + "x", 1)[0])
            os.close(folder)
            os.remove(os.path.join(gateway.folder, "data", "misc", "misc_SCHEMA.ldb"))
            self.assertEqual(503, gateway.ask("PUT", COUNTERS + "x", 1)[0])


class LoginTest(unittest.TestCase):
    def guess(self, gateway, source, times, user="admin"):
        body = json.dumps({"user": user, "password": "not the password"})
        for _ in range(times):
            with gateway.connect(source) as connection:
                connection.sendall(f"POST /api/v1/login HTTP/1.0\r\n{HOST}{JSON}Content-Length: {len(body)}\r\n\r\n{body}".encode())
                status = re.match(rb"HTTP/1.. (\d+)", connection.recv(4096)).group(1)
        return int(status)

    def test_nobody_locks_the_owner_out(self):
        with Gateway(PROGRAM, [("admin", "administer")]) as gateway:
            gateway.log_in()
            browser = {"Cookie": gateway.headers.get_all("Set-Cookie")[1].split(";")[0]}
            os.remove(os.path.join(gateway.folder, ".loginrecord.cfg"))  # memory counts as well
            self.assertEqual(429, self.guess(gateway, "127.0.0.1", 30))
            self.assertEqual(401, self.guess(gateway, "127.0.0.9", 1, "family"))
            self.assertEqual(200, gateway.log_in(**browser)[0], "the owner's own browser")
            status, pauses = gateway.log_in()[0], 0
            self.assertEqual(429, status)
            while status == 429 and pauses < 3:
                time.sleep(int(gateway.headers["Retry-After"]))
                pauses += 1
                status = gateway.log_in()[0]
            self.assertEqual(200, status, "the slow path")

    def test_a_guesser_with_many_addresses_waits_too(self):
        with Gateway(PROGRAM, [("admin", "administer")]) as gateway:
            for number in range(1, 12):
                self.guess(gateway, f"127.0.1.{number}", 2)
            self.assertEqual(429, self.guess(gateway, "127.0.2.1", 2))

    def test_sessions_make_room_and_blame_nobody(self):
        with Gateway(PROGRAM, [("admin", "administer"), ("family", "change"), ("guest", "view")]) as gateway:
            for user, statuses in (("admin", [200] * 12), ("family", [200] * 12), ("guest", [503] * 6 + [401])):
                got = [gateway.log_in(user=user)[0] for _ in statuses[:-1]]
                got.append(gateway.log_in(PASSWORD if user != "guest" else "not the password", user)[0])
                self.assertEqual(statuses, got)
            self.assertEqual([], [name for name in os.listdir(gateway.folder) if name.startswith("core")])

    def test_unknown_users_cost_the_time_of_a_wrong_password(self):
        with Gateway(PROGRAM) as gateway:
            times = []
            for user in ("admin", "nobody"):
                before = gateway.cpu_seconds()
                for _ in range(3):
                    gateway.log_in("not the password", user)
                times.append(gateway.cpu_seconds() - before)
                gateway.end()
                gateway.start()
            self.assertLess(max(times), 2 * min(times))

    def test_roles_and_passwords(self):
        users = [("admin", "administer"), ("family", "change"), ("guest", "view")]
        with Gateway(PROGRAM, users) as gateway:
            clients = {}
            for user, _ in users:
                clients[user] = other(gateway)
                clients[user].log_in(user=user)
            # Method, path, value, statuses for admin, family, guest.
            for method, path, value, *statuses in (
                    ("GET", "/api/v1/gateway/users", None, 200, 200, 200),
                    ("PUT", COUNTERS + "x", 1, 201, 200, 403),
                    ("DELETE", COUNTERS + "x", None, 204, 404, 403),
                    ("PATCH", "/api/v1/gateway/system", {"hostName": "home"}, 200, 200, 403),
                    ("PUT", "/api/v1/gateway/users/2/role", "view", 200, 200, 403),
                    ("PUT", "/api/v1/gateway/users/1/role", "administer", None, 403, 403),
                    ("PUT", "/api/v1/gateway/users/1/role", "change", 200, 200, 403),
                    ("PUT", "/api/v1/gateway/users/0/passwordHash", "$y$x", 403, 403, 403),
                    ("PUT", "/api/v1/gateway/users", [{"name": "family", "role": "change"}], 403, 403, 403),
                    ("POST", "/api/v1/password", {"user": "guest", "password": "short"}, 422, 422, 422),
                    ("POST", "/api/v1/password", {"user": "guest", "password": PASSWORD + "!"}, 204, 403, 401)):
                for user, status in zip(clients, statuses):
                    with self.subTest(method=method, path=path, value=value, user=user):
                        if status:
                            self.assertEqual(status, clients[user].ask(method, path, value)[0])
            family = clients["family"]
            change = {"user": "family", "password": "a new password"}
            self.assertEqual(403, family.ask("POST", "/api/v1/password", dict(change, current="wrong one"))[0])
            self.assertEqual(204, family.ask("POST", "/api/v1/password", dict(change, current=PASSWORD))[0])
            self.assertEqual((401, 200), (family.log_in(user="family")[0], family.log_in("a new password", "family")[0]))
            self.assertEqual(204, clients["admin"].ask("DELETE", "/api/v1/gateway/users/1")[0])
            self.assertEqual(401, family.ask("GET", "/api/v1/areas")[0], "who is no user any more is out")
            stored = str(gateway.database("gateway")["users"])
            self.assertNotIn("password'", stored.replace("passwordHash'", ""))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[3:])
