"""Each way in gets its first picture: first_picture_test.py SERVER_PROGRAM ORBELCAST LIBRARY HEADLESS BY_NAME..."""

import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).parent.parent.parent
sys.path.insert(0, str(ROOT / "tests/apps/camera_server"))
from camera_server import PICTURE, TIMEOUT, PictureServer  # noqa: E402

ORBELCAST, LIBRARY, HEADLESS, *BY_NAME = sys.argv[1:]
EXAMPLES = ROOT / "examples/first_picture"


class FirstPictureTest(unittest.TestCase):
    def test_each_saves_the_servers_bytes(self):
        folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        server = self.enterContext(PictureServer())
        address = f"http://127.0.0.1:{server.port}/live/1"
        for name in ("first.orb", "first.sh"):  # their camera and file are in them
            text = (EXAMPLES / name).read_text()
            (folder / name).write_text(text.replace("127.0.0.1:8080", f"127.0.0.1:{server.port}"))
        for command in ([HEADLESS, address, "now.jpg"], *[[host, LIBRARY, address, "now.jpg"] for host in BY_NAME],
                        [sys.executable, EXAMPLES / "first.py", address, "now.jpg"],
                        [ORBELCAST, "script", "first.orb"], ["sh", "-e", "first.sh"]):
            with self.subTest(command=command):
                environment = {**os.environ, "PATH": f"{pathlib.Path(ORBELCAST).parent}:{os.environ['PATH']}",
                               "ORBELCAST_LIBRARY": LIBRARY, "PYTHONPATH": str(ROOT / "python")}
                subprocess.run(command, cwd=folder, env=environment, timeout=TIMEOUT, check=True, capture_output=True)
                self.assertEqual((folder / "now.jpg").read_bytes(), PICTURE.read_bytes())
                (folder / "now.jpg").unlink()


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
