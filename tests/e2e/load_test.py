"""Mixed reads and writes over 8 connections: nothing acknowledged may be lost, and nothing may fail.

Run with the seconds and the path of gatewayd; with those of several programs that serve its API, it
tests each, and its figures stand beside each other."""

import os
import re
import subprocess
import sys
import unittest

from gateway import COUNTERS, Gateway

SECONDS, *PROGRAMS = sys.argv[1:]
CONNECTIONS = 8


class LoadTest(unittest.TestCase):
    def test_nothing_is_lost(self):
        for turn, program in enumerate(PROGRAMS * (2 if len(PROGRAMS) > 1 else 1)):
            with self.subTest(turn=turn, program=program), Gateway(program) as gateway:
                self.load(gateway, os.path.basename(program))

    def load(self, gateway, name):
        gateway.log_in()
        for i in range(CONNECTIONS):
            gateway.ask("PUT", f"{COUNTERS}load{i}", 0)
        output = subprocess.run(
            ["wrk", f"-t{CONNECTIONS}", f"-c{CONNECTIONS}", f"-d{SECONDS}s", "--latency",
             "-s", os.path.join(os.path.dirname(os.path.abspath(__file__)), "load.lua"),
             "-H", "Cookie: " + gateway.cookie, "-H", "Content-Type: application/json",
             gateway.url],
            check=True, text=True, capture_output=True).stdout
        rate = re.search(r"Requests/sec: +(\S+)", output).group(1)
        print(f"{name:20} {rate:>10} requests/s, 99 % within {re.search('99% +(.*)', output).group(1)}")
        rows = [line.split() for line in output.splitlines() if line.startswith("load")]
        self.assertEqual(CONNECTIONS, len(rows))
        stored = gateway.database("misc")["counters"]
        for connection, acknowledged, requests, failures in rows:
            self.assertEqual("0", failures)
            self.assertGreater(int(requests), 10)
            # The last request may have been stored without its answer being read.
            self.assertIn(stored[connection] - int(acknowledged), (0, 1))
        self.assertNotIn("Socket errors", output)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
