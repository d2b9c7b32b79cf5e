#!/usr/bin/env python3
"""The example hosts against the camera server: hosts_test.py SERVER_PROGRAM LIBRARY HOST..."""

import ctypes
import pathlib
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import unittest

SERVER, LIBRARY, *HOSTS = sys.argv[1:]
ROOT = pathlib.Path(__file__).parent.parent.parent
PICTURE = ROOT / "tests/fuzz/corpus/jpeg/420.jpg"
TIMEOUT = 30


def end_with_parent():
    """A server does not outlive a test that was killed."""
    set_parent_death_signal = 1
    ctypes.CDLL(None).prctl(set_parent_death_signal, signal.SIGKILL)


class HostsTest(unittest.TestCase):
    def test_each_host_sees_the_stream_and_saves_the_servers_bytes(self):
        with tempfile.TemporaryDirectory() as folder:
            pictures = pathlib.Path(folder, "pictures")
            pictures.mkdir()
            shutil.copy(PICTURE, pictures)
            server = subprocess.Popen([SERVER, "--port", "0", "--folder", pictures], stdout=subprocess.PIPE, text=True,
                                      preexec_fn=end_with_parent)
            try:
                address = re.search(r"http://\S+/", server.stdout.readline())[0] + "live/1"
                for host in HOSTS:
                    with self.subTest(host=host):
                        self.watch(host, address, pathlib.Path(folder, "saved.jpg"))
            finally:
                server.kill()
                server.communicate()

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
