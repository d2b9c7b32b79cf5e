"""The Python package against the camera server: python_test.py SERVER_PROGRAM LIBRARY"""

import asyncio
import gc
import os
import pathlib
import resource
import subprocess
import sys
import tempfile
import time
import unittest
from unittest import mock

ROOT = pathlib.Path(__file__).parent.parent.parent
sys.path[:0] = [str(ROOT / "tests/apps/camera_server"), str(ROOT / "python")]
from camera_server import PICTURE, TIMEOUT, PictureServer  # noqa: E402

os.environ["ORBELCAST_LIBRARY"] = sys.argv.pop(1)
REGISTRY = tempfile.TemporaryDirectory()
os.environ["ORBELCAST_REGISTRY"] = REGISTRY.name + "/registry.json"
import orbelcast  # noqa: E402


class PythonTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.folder = pathlib.Path(folder.name)
        cls.server = PictureServer()
        cls.addClassCleanup(cls.server.end)
        cls.url = f"http://127.0.0.1:{cls.server.port}/live/1"

    def tearDown(self):
        gc.collect()
        self.assertTrue(orbelcast.unload_library(), "something of the library is still alive")

    def program(self, text, start="viewer = orbelcast.VideoServerPush(FrameRate=30)\n"):
        """Runs a program that streams: its exit status, and what it wrote to standard error."""
        start = f"import sys, orbelcast\nurl = {self.url!r}\n" + start
        run = subprocess.run([sys.executable, "-c", start + text], capture_output=True, text=True, timeout=TIMEOUT,
                             env={**os.environ, "PYTHONPATH": str(ROOT / "python")})
        return run.returncode, run.stderr


class Members(PythonTest):
    def test_values_and_what_is_wrong_with_them(self):
        with orbelcast.VideoServerPush(FrameRate="25", Username="änn", MotionByZones=True) as viewer:
            self.assertEqual((viewer.FrameRate, viewer.Username, viewer.MotionByZones), (25, "änn", True))
            self.assertEqual((viewer.let("FrameRate", 40), viewer.FrameRate), (30, 30))
            for name, value, error in (("FrameRate", 1 << 20, OverflowError), ("FrameRate", 1 << 70, OverflowError),
                                       ("FrameRate", "ten", TypeError), ("FrameRate", [], TypeError),
                                       ("Server", "x", AttributeError), ("FrameRat", 1, AttributeError)):
                with self.subTest(name=name, value=value), self.assertRaises(error):
                    setattr(viewer, name, value)
            with self.assertRaisesRegex(TypeError, "URL"):
                viewer.Connect()
            with self.assertRaisesRegex(ValueError, "MotionDetected"):
                viewer.on("Motion", print)
        with self.assertRaisesRegex(RuntimeError, "closed"):
            viewer.FrameRate

    def test_dialogs_are_answered_by_functions(self):
        clip, said = self.folder / "clip.avi", []
        orbelcast.answer("AskSaveName", lambda title, filter: str(clip))
        orbelcast.answer("ChooseCompression", lambda codecs: codecs[0])
        orbelcast.answer("ShowMessage", lambda text, title, question: said.append(text))
        self.addCleanup(orbelcast._dialogs._answers.clear)
        with orbelcast.UserControl1(Server="127.0.0.1", Port=self.server.port, Device="1") as player:
            self.assertTrue(player.SystemName)
            orbelcast.run(2, until=lambda: any("/live/1" in line for line, _ in self.server.asked()))
            player.AviStart()
            orbelcast.run(1)
            player.StopAvi()
        self.assertEqual(clip.read_bytes()[:4], b"RIFF")
        self.assertIn("Total frames", "".join(said))


class Events(PythonTest):
    def test_failing_handlers_leave_the_library_and_the_others_alone(self):
        seen, told = [], []
        with orbelcast.VideoServerPush() as viewer, mock.patch("sys.excepthook", lambda kind, *_: told.append(kind)):
            viewer.on("Connected", lambda: 1 / 0)
            viewer.on("Connected", lambda: seen.append(viewer.URL))
            # A member that waits, in a handler: it is started, and the handler goes on.
            viewer.on("Status", lambda text: viewer.ShowStatus("busy") if text.startswith("Streaming") else None)
            viewer.on("Connected", lambda: seen.append(orbelcast.run(1)))
            viewer.Connect(self.url)
        self.assertEqual((seen, told), ([self.url], [ZeroDivisionError, RuntimeError]))

    def test_a_connect_in_a_handler_takes_over(self):
        with orbelcast.VideoServerPush(FrameRate=30) as viewer:
            viewer.on("ConnectionFailed", lambda: viewer.Connect(self.url))
            viewer.Connect("http://127.0.0.1:1/")
            self.assertEqual([frame.jpeg for frame in viewer.frames(count=2)], [PICTURE.read_bytes()] * 2)

    def test_close_in_an_event(self):  # each kind: in the call, with values that go back, from the loop
        for event, address in (("Status", self.url), ("ConnectionFailedV2", "http://127.0.0.1:1/"),
                               ("StreamInfo", self.url)):
            with self.subTest(event=event):
                viewer = orbelcast.VideoServerPush(FrameRate=30)
                viewer.on(event, lambda *_: viewer.close())
                viewer.Connect(address)
                self.assertTrue(orbelcast.run(TIMEOUT, until=lambda: not viewer._finalizer.alive))


class Frames(PythonTest):
    def test_bytes_arrays_and_images(self):
        import numpy
        from PIL import Image
        with orbelcast.VideoServerPush(FrameRate=30) as viewer:
            with self.assertRaises(orbelcast.NotConnected):
                next(iter(viewer.frames()))
            viewer.Connect(self.url)
            frames = []
            for frame in viewer.frames(count=3):
                frames.append((frame, frame.array))
        self.assertFalse(orbelcast.unload_library(), "pictures are alive")
        expected = numpy.asarray(Image.open(PICTURE).convert("RGB")).astype(int)
        for frame, array in frames:  # they outlive the viewer
            self.assertEqual(frame.jpeg, PICTURE.read_bytes())
            self.assertLess(abs(frame.time.timestamp() - time.time()), TIMEOUT)
            self.assertLess(abs(array[:, :, ::-1] - expected).mean(), 2)
            self.assertEqual(numpy.asarray(frame.image).tolist(), array[:, :, ::-1].tolist())
        self.assertFalse(array.flags.writeable or array.flags.owndata)
        png = self.folder / "shown.png"
        png.write_bytes(frame.picture._repr_png_())
        self.assertEqual(list(Image.open(png).getdata()), list(frame.image.getdata()))

    def test_a_camera_that_goes_away_and_comes_back(self):
        with orbelcast.VideoServerPush(FrameRate=30) as viewer:
            viewer.Connect(self.url)
            self.server.fault(1, "status:503")
            self.addCleanup(self.server.fault, 1, "none")
            orbelcast.run(0.3)
            self.assertEqual(list(viewer.frames(seconds=0.3)), [])
            self.server.fault(1, "none")
            self.assertEqual(len(list(viewer.frames(seconds=TIMEOUT, count=2))), 2)

    def test_frames_keep_no_memory(self):
        def memory_after(count):
            for _ in range(count):
                viewer.RequestEnd()  # the camera's answer once more, as a frame
            return int(pathlib.Path("/proc/self/statm").read_text().split()[1]) * resource.getpagesize()

        frames = []
        with orbelcast.VideoServerPush() as viewer:
            viewer.on("VigilboxTCR", lambda *_: frames.append(len(viewer.GetPictureArray()) +
                                                              int(viewer.GetPicture().array[0, 0, 0])))
            viewer.Connect(self.url)
            before = memory_after(500)
            self.assertLess(memory_after(10_000) - before, 10_000 * PICTURE.stat().st_size / 4)
        self.assertGreater(len(frames), 10_000)


class Asyncio(PythonTest):
    def test_two_cameras_beside_other_tasks(self):
        async def take(url):
            with orbelcast.VideoServerPush(FrameRate=30) as viewer:
                start = time.monotonic()
                viewer.Connect(url)
                self.assertLess(time.monotonic() - start, 0.3, "Connect held asyncio up")
                await orbelcast.connected(viewer)
                return [frame.jpeg async for frame in viewer.frames(count=2)]

        async def main():
            self.server.fault(2, "delay:400")
            task = asyncio.create_task(asyncio.sleep(0.01))
            taken = await asyncio.wait_for(asyncio.gather(take(self.url), take(self.url[:-1] + "2")), TIMEOUT)
            self.assertTrue(task.done())
            self.assertEqual(taken, [[PICTURE.read_bytes()] * 2] * 2)

        asyncio.run(main())

    def test_no_connection(self):
        async def main():
            with orbelcast.VideoServerPush() as viewer:
                for address in ("http://127.0.0.1:1/", "rtsp://127.0.0.1/"):
                    viewer.Connect(address)
                    with self.assertRaises(orbelcast.NotConnected):
                        await asyncio.wait_for(orbelcast.connected(viewer), TIMEOUT)
                with self.assertRaisesRegex(RuntimeError, "asyncio"):
                    orbelcast.run(1)

        asyncio.run(main())


class Ends(PythonTest):
    def test_the_interpreter_ends_in_mid_stream(self):
        self.assertEqual(self.program("viewer.Connect(url)\nfor frame in viewer.frames():\n    array = frame.array\n    break"),
                         (0, ""))
        self.assertEqual(self.program("viewer.on('VigilboxTCR', lambda *_: sys.exit(3))\nviewer.Connect(url)\n"
                                      "orbelcast.run()"), (3, ""))
        self.assertEqual(self.program("import asyncio\nasync def main():\n    viewer.Connect(url)\n"
                                      "    async for frame in viewer.frames():\n        sys.exit(4)\nasyncio.run(main())"),
                         (4, ""))

    def test_the_interpreter_ends_while_another_thread_is_in_the_library(self):
        self.server.fault(2, "never")
        self.addCleanup(self.server.fault, 2, "none")
        start = ("import threading, time\nready = threading.Event()\nclass Work(threading.Thread):\n  def run(self):\n"
                 "    viewer = orbelcast.VideoServerPush(FrameRate=30)\n")
        end = "\nWork(daemon=True).start()\nready.wait()\n"
        for place, work in (("frames", "    viewer.Connect(url)\n    for frame in viewer.frames(): ready.set()"),
                            ("Connect", "    ready.set()\n    viewer.Connect(url[:-1] + '2')"),
                            ("a handler", "    viewer.on('VigilboxTCR', lambda *_: (ready.set(), time.sleep(0.1)))\n"
                                          "    viewer.Connect(url)\n    orbelcast.run()"),
                            ("run", "    del viewer\n    ready.set()\n    orbelcast.run()")):
            with self.subTest(place=place):
                self.assertEqual(self.program(work + end + "time.sleep(0.1)", start), (0, ""))


class Types(unittest.TestCase):
    def test_the_package_the_examples_and_a_wrong_program(self):
        wrong = pathlib.Path(REGISTRY.name, "wrong.py")
        wrong.write_text("import orbelcast\nviewer = orbelcast.VideoServerPush(FrameRate='a')\nviewer.Connect(1)\n"
                         "@viewer.on('MotionDetected')\ndef motion(X1: str) -> None: ...\n")
        examples = sorted((ROOT / "examples/python").glob("*.py"))
        self.assertTrue(examples)
        run = subprocess.run(["mypy", "--strict", "--ignore-missing-imports", "--cache-dir", REGISTRY.name,
                              ROOT / "python/orbelcast", *examples, wrong], capture_output=True, text=True,
                             env={**os.environ, "MYPYPATH": str(ROOT / "python")})
        self.assertIn("Found 3 errors in 1 file", run.stdout, run.stdout + run.stderr)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[1:])
