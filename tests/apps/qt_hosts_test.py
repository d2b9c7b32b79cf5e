#!/usr/bin/env python3
"""The example Qt applications against the camera server, without a screen: qt_hosts_test.py SERVER_PROGRAM PROGRAM...

A program whose name ends in "form" is given a server, the others the address of a camera.
"""

import os
import pathlib
import subprocess
import sys
import tempfile
import time
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).parent / "camera_server"))
from camera_server import TIMEOUT, Server, end_with_parent  # noqa: E402

PROGRAMS = sys.argv[1:]


class QtHostsTest(unittest.TestCase):
    def test_each_shows_its_cameras(self):
        for program in PROGRAMS:
            with self.subTest(program=program), tempfile.TemporaryDirectory() as folder, Server() as server:
                address = f"127.0.0.1:{server.port}"
                form = program.endswith("form")
                arguments = address.split(":") if form else [f"http://{address}/live/1"]
                places = {name: folder for name in ("HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR")}
                host = subprocess.Popen([program, *arguments], preexec_fn=end_with_parent, stderr=subprocess.DEVNULL,
                                        env={**os.environ, **places, "QT_QPA_PLATFORM": "offscreen",
                                             "ORBELCAST_USER": "ann"})
                try:
                    # The form names the player's camera, of which it shows one picture to begin with.
                    for camera, count in (("/live/1/ann:", 1), ("/live/2 ", 2)) if form else (("/live/1 ", 2),):
                        self.wait_for_pictures(host, server, camera, count)
                finally:
                    host.kill()
                    host.wait()

    def wait_for_pictures(self, host, server, camera, count):
        end = time.monotonic() + TIMEOUT
        while sum(camera in line for line, _ in server.asked()) < count:
            self.assertIsNone(host.poll(), "it has ended")
            self.assertLess(time.monotonic(), end, f"{camera} was not asked for")
            time.sleep(0.1)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
