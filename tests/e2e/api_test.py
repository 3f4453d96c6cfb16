"""What the API answers, row by row: run with the path of gatewayd."""

import sys
import unittest

from gateway import Gateway, PASSWORD

PROGRAM = sys.argv.pop(1)
SSID = "/api/v1/wifi/radios/0/networks/0/ssid"

# Method, path, value, further headers, expected status, a text that the answer has.
ROWS = [
    ("GET", "/api/v1/areas", None, {}, 200, "mediashare"),
    ("GET", "/api/v1/session", None, {}, 200, "administer"),
    ("GET", "/api/v1/schemas/wifi", None, {}, 200, "maxLength"),
    ("GET", "/api/v1/schemas/wifi/radios", None, {}, 404, "whole areas"),
    ("POST", "/api/v1/areas", {}, {}, 404, "nothing to post to"),
    ("GET", SSID, None, {}, 200, "Garden Path"),
    ("GET", "/api/v1/wifi/radios/7", None, {}, 404, "nothing is at this path"),
    ("GET", "/api/v1/cellar", None, {}, 404, "no such area"),
    ("GET", "/api/v1/wifi/radios/%5B0%5D", None, {}, 400, "no path"),
    ("GET", "/api/v1/wifi/a.b", None, {}, 400, "no path"),
    ("GET", "/api/v1/wifi/%00", None, {}, 400, "no path"),
    ("GET", "/api/v1/wifi/" + "a/" * 300, None, {}, 414, "too long"),
    ("GET", "/api/v1/wifi/radios/0/networks/0/security/passphrase", None, {}, 403, "not read"),
    ("GET", "/api/v1/areas", None, {"Host": "elsewhere.example"}, 403, "127.0.0.1"),
    ("GET", "/api/v1/areas", None, {"Cookie": "gatewayd=0123456789abcdef"}, 401, "log in"),
    ("GET", "/..%2f..%2f..%2fetc%2fpasswd", None, {}, 404, ""),
    ("GET", "/../http_api.cc", None, {}, 404, ""),
    ("PUT", SSID, "Kitchen", {}, 200, "Kitchen"),
    ("PUT", SSID, "x" * 33, {}, 422, "/data/ssid: must be at most 32 characters long"),
    ("PUT", SSID, b"1 2", {}, 400, "no JSON"),
    ("PUT", SSID, b"\"\xff\"", {}, 400, "no JSON"),
    ("PUT", SSID, "Kitchen", {"Content-Type": "text/plain"}, 415, "application/json"),
    ("PUT", SSID + "/x", "y", {}, 404, "nothing"),
    ("PUT", "/api/v1/wifi", {}, {}, 409, "cannot be done"),
    ("PUT", "/api/v1/misc/counters/tries", 1, {}, 201, "1"),
    ("PUT", "/api/v1/misc/ui/deep", b"[" * 40 + b"]" * 40, {}, 400, "no JSON"),
    ("PATCH", "/api/v1/misc/counters", {"tries": None, "restarts": 4}, {}, 200, "4"),
    ("PATCH", "/api/v1/misc/ui", {"them": "dark"}, {}, 422, "not allowed"),
    ("PATCH", SSID, {"a": 1}, {}, 409, "cannot be done"),
    ("PATCH", "/api/v1/wifi/radios/0", {"channel": 99}, {}, 422, "must be one of"),
    ("DELETE", "/api/v1/wifi/schedule/entries/0", None, {}, 204, ""),
    ("DELETE", "/api/v1/wifi/schedule/entries/9", None, {}, 404, "nothing"),
    ("DELETE", "/api/v1/wifi", None, {}, 409, "cannot be done"),
]

NETWORK = "/radios/0/networks/0"

# JSON patches of the wifi area: steps, status, a text that the answer has.
PATCHES = [
    ([{"op": "test", "path": NETWORK + "/ssid", "value": "Garden Path"},
      {"op": "replace", "path": NETWORK + "/ssid", "value": "Shed"},
      {"op": "replace", "path": NETWORK + "/security/passphrase", "value": "a new passphrase"},
      {"op": "move", "from": "/radios/0/networks/1", "path": NETWORK}], 204, ""),
    ([{"op": "test", "path": "/radios/0/networks/1/ssid", "value": "Shed"},
      {"op": "add", "path": "/schedule/entries/0", "value": {"days": ["mon"], "from": "01:00", "to": "02:00"}},
      {"op": "remove", "path": "/schedule/entries/0"}], 204, ""),
    ([{"op": "replace", "path": NETWORK + "/ssid", "value": "x" * 33},
      {"op": "replace", "path": NETWORK + "/security/passphrase", "value": "hush"}], 422, "passphrase"),
    ([{"op": "replace", "path": NETWORK + "/ssid", "value": "Lost"},
      {"op": "test", "path": "/revision", "value": -1}], 409, "operation 1 finds another value"),
    ([{"op": "remove", "path": "/radios/0/networks/99"}], 409, "nothing"),
    ([{"op": "add", "path": "/radios/-1", "value": 1}], 409, "nothing"),
    ([{"op": "move", "from": "/radios", "path": "/radios/0"}], 409, "into itself"),
    ([{"op": "test", "path": NETWORK + "/security/passphrase", "value": "hush"}], 403, "secret"),
    ([{"op": "test", "path": NETWORK + "/security", "value": {}}], 403, "secret"),
    ([{"op": "move", "from": NETWORK + "/security/passphrase", "path": NETWORK + "/ssid"}], 403, "secret"),
    ([{"op": "copy", "from": NETWORK + "/ssid", "path": NETWORK + "/x"}], 409, "nothing"),
    ([{"op": "copy", "from": NETWORK + "/ssid", "path": NETWORK + "/ssid"}], 400, "operation"),
    ([{"op": "replace", "path": NETWORK + "/ssid"}], 400, "value"),
    ([{"op": "replace", "path": "radios", "value": 1}], 400, "path"),
    ([1], 400, "path"),
    ([{"op": "test", "path": "/revision", "value": 0}] * 257, 413, "too many"),
]


class ApiTest(unittest.TestCase):
    def test_rows(self):
        with Gateway(PROGRAM) as gateway:
            self.assertEqual(401, gateway.ask("GET", "/api/v1/areas")[0])
            self.assertEqual(200, gateway.log_in()[0])
            for attribute in ("HttpOnly", "SameSite=Strict"):
                self.assertIn(attribute, gateway.headers["Set-Cookie"])
            for method, path, value, headers, status, text in ROWS:
                with self.subTest(method=method, path=path, value=value):
                    answer = gateway.ask(method, path, value, **headers)
                    self.assertEqual(status, answer[0], answer)
                    self.assertIn(text, str(answer[1]))
            self.assertEqual("Kitchen", gateway.database("wifi")["radios"][0]["networks"][0]["ssid"])
            self.assertEqual({"restarts": 4}, gateway.database("misc")["counters"])
            self.assertEqual(204, gateway.ask("POST", "/api/v1/logout", {})[0])
            self.assertEqual(401, gateway.ask("GET", "/api/v1/areas")[0])
            log = gateway.log()
            self.assertIn("PUT WIFI_SSID_UPDATE by session-1: 422", log)
            for secret in (PASSWORD, gateway.cookie.split("=")[1], "sample passphrase"):
                self.assertNotIn(secret, log)
        self.assertEqual(0, gateway.status)

    def test_patches_are_whole_or_not_made(self):
        with Gateway(PROGRAM) as gateway:
            gateway.log_in()
            for steps, status, text in PATCHES:
                with self.subTest(steps=steps[:2]):
                    before = gateway.database("wifi")
                    answer = gateway.patch("wifi", *steps)
                    self.assertEqual(status, answer[0], answer)
                    self.assertIn(text, str(answer[1]))
                    self.assertNotIn("hush", str(answer[1]))
                    if status != 204:
                        self.assertEqual(before, gateway.database("wifi"))
            network = gateway.database("wifi")["radios"][0]["networks"][1]
            self.assertEqual("a new passphrase", network["security"]["passphrase"])
            places = [one["path"] for one in gateway.patch("wifi", *PATCHES[2][0])[1]["violations"]]
            self.assertEqual([NETWORK + "/ssid", NETWORK + "/security/passphrase"], places)

    def test_sessions_see_each_others_saves(self):
        with Gateway(PROGRAM) as gateway:
            cookies = []
            for _ in range(2):
                gateway.log_in()
                cookies.append(gateway.cookie)
            for turn in range(6):
                gateway.cookie = cookies[turn % 2]
                self.assertIn(gateway.ask("PUT", f"/api/v1/misc/counters/n{turn}", turn)[0], (200, 201))
            counters = gateway.database("misc")["counters"]
            self.assertEqual(list(range(6)), [counters[f"n{turn}"] for turn in range(6)])

    def test_brute_force_waits(self):
        with Gateway(PROGRAM) as gateway:
            statuses = [gateway.log_in("wrong password")[0] for _ in range(6)]
            self.assertEqual([401] * 4 + [429] * 2, statuses)
            self.assertIn(gateway.headers["Retry-After"], ("4", "5"))
            self.assertEqual(429, gateway.log_in()[0])


if __name__ == "__main__":
    unittest.main()
