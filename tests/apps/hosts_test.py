#!/usr/bin/env python3
"""The example hosts against the camera server: hosts_test.py SERVER_PROGRAM LIBRARY HOST..."""

import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).parent / "camera_server"))
from camera_server import TIMEOUT, Server  # noqa: E402

LIBRARY, *HOSTS = sys.argv[1:]
ROOT = pathlib.Path(__file__).parent.parent.parent
PICTURE = ROOT / "tests/fuzz/corpus/jpeg/420.jpg"


class HostsTest(unittest.TestCase):
    def test_each_host_sees_the_stream_and_saves_the_servers_bytes(self):
        with tempfile.TemporaryDirectory() as folder:
            pictures = pathlib.Path(folder, "pictures")
            pictures.mkdir()
            shutil.copy(PICTURE, pictures)
            with Server("--folder", str(pictures)) as server:
                for host in HOSTS:
                    with self.subTest(host=host):
                        self.watch(host, f"http://127.0.0.1:{server.port}/live/1", pathlib.Path(folder, "saved.jpg"))

    def test_the_readme_shows_the_python_host_as_it_is(self):
        self.assertIn((ROOT / "examples/host.py").read_text(), (ROOT / "README.md").read_text())

    def watch(self, host, address, saved):
        interpreter = [sys.executable] if host.endswith(".py") else []
        run = subprocess.run([*interpreter, host, LIBRARY, address, saved], capture_output=True, text=True,
                             timeout=TIMEOUT)
        self.assertEqual((run.returncode, run.stderr), (0, ""))
        for line in ("FrameRate: 30", "Connected", "StreamInfo", "can unload: yes"):
            self.assertIn(line, run.stdout)
        self.assertEqual(saved.read_bytes(), PICTURE.read_bytes())
        saved.unlink()


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
