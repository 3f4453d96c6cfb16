"""Mixed reads and writes over 8 connections: nothing acknowledged may be lost, and nothing may fail.

Run with the path of gatewayd, and the seconds (20 if not given)."""

import os
import subprocess
import sys
import unittest

from gateway import Gateway

PROGRAM = sys.argv.pop(1)
SECONDS = sys.argv.pop(1) if len(sys.argv) > 1 else "20"
CONNECTIONS = 8


class LoadTest(unittest.TestCase):
    def test_nothing_is_lost(self):
        with Gateway(PROGRAM) as gateway:
            gateway.log_in()
            for i in range(CONNECTIONS):
                gateway.ask("PUT", f"/api/v1/misc/counters/load{i}", 0)
            output = subprocess.run(
                ["wrk", f"-t{CONNECTIONS}", f"-c{CONNECTIONS}", f"-d{SECONDS}s",
                 "-s", os.path.join(os.path.dirname(os.path.abspath(__file__)), "load.lua"),
                 "-H", "Cookie: " + gateway.cookie, "-H", "Content-Type: application/json",
                 gateway.url],
                check=True, text=True, capture_output=True).stdout
            print(output)
            rows = [line.split() for line in output.splitlines() if line.startswith("load")]
            self.assertEqual(CONNECTIONS, len(rows))
            stored = gateway.database("misc")["counters"]
            for name, acknowledged, requests, failures in rows:
                with self.subTest(connection=name):
                    self.assertEqual("0", failures)
                    self.assertGreater(int(requests), 10)
                    # The last request may have been stored without its answer being read.
                    self.assertIn(stored[name] - int(acknowledged), (0, 1))
            self.assertNotIn("Socket errors", output)


if __name__ == "__main__":
    unittest.main()
