"""What gatewayd withstands for long: run with the path of gatewayd, the seconds of hostile load, the
number of kills, and the number of log-ins."""

import http.client
import json
import os
import random
import sys
import threading
import time
import unittest

from attack_test import DESYNC, HOST, JSON, counts, other
from gateway import COUNTERS, Gateway, PASSWORD

PROGRAM = sys.argv[1]
SECONDS, KILLS, LOGINS = (int(text) for text in sys.argv[2:5])


def flood(gateway, ended, kind):
    """Attacks with requests of one kind until told to end."""
    body = json.dumps({"user": "admin", "password": "not the password"})
    long_head = "".join(f"X{i}: {'a' * 100}\r\n" for i in range(1000))
    requests = {
        "refused": lambda: random.choice([f"{line} HTTP/1.1\r\n{rest}\r\n\r\n" for line, rest, _ in DESYNC])
                                 .format(cookie="", length=5) + "12345",
        "heads": lambda: f"GET / HTTP/1.1\r\n{HOST}{long_head}\r\n",
        "guesses": lambda: f"POST /api/v1/login HTTP/1.0\r\n{HOST}{JSON}Content-Length: {len(body)}\r\n\r\n{body}",
        "halves": lambda: f"PUT {COUNTERS}x HTTP/1.1\r\n{HOST}Cookie: {gateway.cookie}\r\n{JSON}Content-Length: 60000\r\n\r\n" + "1" * random.randrange(50000),
        "values": lambda: f"PATCH /api/v1/wifi/radios/0 HTTP/1.0\r\n{HOST}Cookie: {gateway.cookie}\r\n{JSON}Content-Length: 15\r\n\r\n" + random.choice(['{"channel": 999}', "[[[[[[[[[[[[[[["]),
        "noise": lambda: "".join(chr(random.randrange(256)) for _ in range(200)),
    }
    while not ended.is_set():
        try:
            with gateway.connect(f"127.0.0.{random.randrange(1, 250)}") as connection:
                connection.sendall(requests[kind]().encode("latin-1"))
                if kind != "halves":
                    connection.settimeout(1)
                    connection.recv(4096)
        except OSError:
            pass  # it cut us off, which is what it is for
        time.sleep(0.002)


def check_files(test, gateway):
    for area in os.listdir(os.path.join(gateway.folder, "data")):
        if os.path.isdir(os.path.join(gateway.folder, "data", area)):
            test.assertTrue(gateway.database(area))
            test.assertEqual([], [name for name in os.listdir(os.path.dirname(gateway.file(area)))
                                  if not name.endswith(".ldb")])


class EnduranceTest(unittest.TestCase):
    def test_hostile_load(self):
        with Gateway(PROGRAM, [("admin", "administer")]) as gateway:
            gateway.log_in()
            ended = threading.Event()
            threads = [threading.Thread(target=flood, args=(gateway, ended, kind))
                       for kind in ("refused", "heads", "guesses", "halves", "values", "noise")]
            held = [gateway.connect("127.0.0.250") for _ in range(200)]
            honest = other(gateway)
            honest.cookie = gateway.cookie
            stop = counts(honest, "honest")
            for thread in threads:
                thread.start()
            memory = []
            for _ in range(SECONDS * 2):
                time.sleep(0.5)
                memory.append(gateway.memory())
            ended.set()
            for thread in threads:
                thread.join()
            acknowledged, statuses = stop()
            for connection in held:
                connection.close()
            warm = memory[len(memory) // 4:]
            print(f"hostile load: {acknowledged} honest changes, {warm[0]:.1f} MiB, then {min(warm):.1f} to {max(warm):.1f}")
            self.assertEqual({200, 201}, statuses | {200, 201})
            self.assertEqual(acknowledged, gateway.database("misc")["counters"]["honest"])
            self.assertGreater(acknowledged, SECONDS)
            check_files(self, gateway)
            self.assertLess(max(warm) - warm[0], 5)

    def test_kills_lose_nothing(self):
        with Gateway(PROGRAM, [("admin", "administer")]) as gateway:
            for turn in range(KILLS):
                clients = [other(gateway) for _ in range(3)]
                for client in clients:
                    client.log_in()
                before = gateway.database("misc")["counters"]
                acknowledged = [0] * len(clients)

                def change(number, client):
                    try:
                        while client.ask("PUT", f"{COUNTERS}k{turn % 5}{'abc'[number]}", acknowledged[number] + 1)[0] < 300:
                            acknowledged[number] += 1
                    except (OSError, http.client.HTTPException):
                        pass  # killed

                threads = [threading.Thread(target=change, args=pair) for pair in enumerate(clients)]
                for thread in threads:
                    thread.start()
                time.sleep(random.uniform(0.02, 0.15))
                gateway.end("kill")
                for thread in threads:
                    thread.join()
                stored = gateway.database("misc")["counters"]
                for number, count in enumerate(acknowledged):
                    name = f"k{turn % 5}{'abc'[number]}"
                    self.assertIn(stored.get(name, 0), (count, count + 1) if count else (before.get(name, 0), 1))
                gateway.start()
            check_files(self, gateway)

    def test_log_ins_leave_nothing(self):
        with Gateway(PROGRAM, [("admin", "administer")]) as gateway:
            connection = http.client.HTTPConnection("127.0.0.1", gateway.port)
            body = json.dumps({"user": "admin", "password": PASSWORD})
            memory = []
            for turn in range(LOGINS):
                connection.request("POST", "/api/v1/login", body, {"Content-Type": "application/json"})
                answer = connection.getresponse()
                answer.read()
                self.assertEqual(200, answer.status)
                cookie = answer.headers["Set-Cookie"].split(";")[0]
                connection.request("POST", "/api/v1/logout", "{}", {"Content-Type": "application/json", "Cookie": cookie})
                answer = connection.getresponse()
                answer.read()
                self.assertEqual(204, answer.status)
                if turn % (LOGINS // 10) == 0:
                    memory.append(gateway.memory())
            connection.close()
            print(f"{LOGINS} log-ins: {memory[2]:.1f} MiB after a fifth, {memory[-1]:.1f} MiB at the end")
            self.assertLess(memory[-1] - memory[2], 1)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[5:])
