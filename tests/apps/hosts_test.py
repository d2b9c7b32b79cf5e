#!/usr/bin/env python3
"""The example hosts against the camera server: hosts_test.py SERVER_PROGRAM LIBRARY HOST... --qt PROGRAM...

A Qt program whose name ends in "form" is given a server, the others the address of a camera; they need no screen.
"""

import os
import pathlib
import subprocess
import sys
import tempfile
import time
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).parent / "camera_server"))
from camera_server import PICTURE, TIMEOUT, PictureServer, Server, end_with_parent  # noqa: E402

LIBRARY, *HOSTS = sys.argv[1:sys.argv.index("--qt")]
PROGRAMS = sys.argv[sys.argv.index("--qt") + 1:]


class HostsTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def test_each_host_sees_the_stream_and_saves_the_servers_bytes(self):
        saved = self.folder / "saved.jpg"
        with PictureServer() as server:
            for host in HOSTS:
                run = subprocess.run([host, LIBRARY, f"http://127.0.0.1:{server.port}/live/1", saved],
                                     capture_output=True, text=True, timeout=TIMEOUT)
                self.assertEqual((run.returncode, run.stderr), (0, ""), host)
                for line in ("FrameRate: 30", "Connected", "StreamInfo", "can unload: yes"):
                    self.assertIn(line, run.stdout, host)
                self.assertEqual(saved.read_bytes(), PICTURE.read_bytes(), host)
                saved.unlink()

    def test_each_qt_program_shows_its_cameras(self):
        places = dict.fromkeys(("HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR"), str(self.folder))
        environment = {**os.environ, **places, "QT_QPA_PLATFORM": "offscreen", "ORBELCAST_USER": "ann"}
        for program in PROGRAMS:
            with self.subTest(program=program), Server() as server:
                address = f"127.0.0.1:{server.port}"
                form = program.endswith("form")
                host = subprocess.Popen([program, *(address.split(":") if form else [f"http://{address}/live/1"])],
                                        preexec_fn=end_with_parent, stderr=subprocess.DEVNULL, env=environment)
                self.addCleanup(host.wait)
                self.addCleanup(host.kill)
                # The form names the player's camera, of which it shows one picture to begin with.
                for camera, count in (("/live/1/ann:", 1), ("/live/2 ", 2)) if form else (("/live/1 ", 2),):
                    self.wait_for_pictures(host, server, camera, count)

    def wait_for_pictures(self, host, server, camera, count):
        end = time.monotonic() + TIMEOUT
        while sum(camera in line for line, _ in server.asked()) < count:
            self.assertIsNone(host.poll(), "it has ended")
            self.assertLess(time.monotonic(), end, f"{camera} was not asked for")
            time.sleep(0.1)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
