#!/usr/bin/env python3
"""Lifetimes of controls and of the library, seen by a host in C: lifetime_test.py SERVER_PROGRAM HOST LIBRARY"""

import os
import pathlib
import subprocess
import sys
import threading
import time
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).parent.parent / "apps/camera_server"))
from camera_server import TIMEOUT, Server  # noqa: E402

HOST, LIBRARY = sys.argv[1:]
# Raised by a camera whose picture moves. A window's own are missing, MouseDown and OLEDragDrop, and RCQueryMethod.
STREAMED = ("Status", "VigilboxInfo", "Plugin", "VigilboxTCR", "Connected", "StreamInfo", "MotionArea", "MotionDetected",
            "MotionDetectedArea", "Disconnected")


class LifetimeTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.server = Server("--vigilbox-info", "1 text", "--plugins", "text", "--fault", "2=never")
        cls.addClassCleanup(cls.server.end)
        cls.live = f"http://127.0.0.1:{cls.server.port}/live/"

    def run_host(self, *arguments, leaks="1"):
        options = os.environ.get("ASAN_OPTIONS", "") + ":detect_leaks=" + leaks
        run = subprocess.run([HOST, LIBRARY, *arguments], capture_output=True, text=True, timeout=4 * TIMEOUT,
                             env={**os.environ, "ASAN_OPTIONS": options})
        self.assertEqual((run.returncode, run.stderr), (0, ""))

    def test_released_inside_each_event_and_question(self):
        nobody = "http://127.0.0.1:1/"
        self.run_host("release", *2 * [f"AskSaveName={self.server.port}"], f"ConnectionFailed={nobody}",
                      f"ConnectionFailedV2={nobody}", *[f"{event}={self.live}1" for event in STREAMED])

    def test_released_when_the_connection_breaks(self):
        def break_off():
            while sum("/live/3" in line for line, _ in self.server.asked()) < 3:
                time.sleep(0.05)
            self.server.fault(3, "status:503")

        thread = threading.Thread(target=break_off)
        thread.start()
        self.run_host("release", f"ConnectionBroken={self.live}3")
        thread.join()

    def test_released_by_another_thread_while_connect_waits(self):
        start = time.monotonic()
        self.run_host("thread", self.live + "2")
        self.assertLess(time.monotonic() - start, 15, "Connect went on waiting for the camera")

    def test_the_process_ends_in_mid_stream(self):
        for way in ("end", "leave"):
            self.run_host(way, self.live + "1", leaks="0")  # what is alive is left to the system


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
