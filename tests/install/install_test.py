#!/usr/bin/env python3
"""Installs a build below a folder and builds hosts on what is there: install_test.py BUILD_FOLDER SERVER_PROGRAM."""

import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
import unittest
import zipfile

BUILD, SERVER = sys.argv[1:]
ROOT = pathlib.Path(__file__).parent.parent.parent
del sys.argv[1]
sys.path.insert(0, str(ROOT / "tests/apps/camera_server"))
from camera_server import Server  # noqa: E402

TIMEOUT = 200
PYTHON = "/usr/bin/python3"  # which has what the wheel is made with


class InstallTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.folder = pathlib.Path(folder.name)
        cls.prefix = cls.folder / "prefix"
        cls.run_command("cmake", "--install", BUILD, "--prefix", cls.prefix)
        [cls.pkgconfig] = cls.prefix.glob("lib*/**/pkgconfig")
        cls.library = cls.pkgconfig.parent / "liborbelcast.so"

    @classmethod
    def run_command(cls, *command, **environment):
        run = subprocess.run(command, capture_output=True, text=True, timeout=TIMEOUT, env={**os.environ, **environment})
        if run.returncode:
            raise AssertionError(f"{command}\n{run.stdout}{run.stderr}")
        return run.stdout

    def build(self, source, *options):
        """Builds a project that finds the package by CMake."""
        build = self.folder / "build" / pathlib.Path(source).name
        self.run_command("cmake", "-S", source, "-B", build, "-G", "Ninja", f"-DCMAKE_PREFIX_PATH={self.prefix}", *options)
        self.run_command("cmake", "--build", build)
        return build

    def compile(self, source, package):
        """Compiles a file with what pkg-config says."""
        flags = self.run_command("pkg-config", "--cflags", "--libs", package, PKG_CONFIG_PATH=str(self.pkgconfig))
        program = self.folder / f"{package}-host"
        # Qt wants -fPIC, and leaves it to whoever compiles.
        self.run_command("c++", "-std=c++20", "-fPIC", source, "-o", program, *shlex.split(flags))
        return program

    def check(self, *hosts):
        """Runs hosts under the test that runs the examples."""
        self.run_command(sys.executable, ROOT / "tests/apps/hosts_test.py", SERVER, self.library, *hosts,
                         LD_LIBRARY_PATH=str(self.library.parent))

    def test_a_host_of_the_library(self):
        source = ROOT / "examples/host.cpp"
        build = self.build(ROOT / "tests/install/server_host", "-DCOMPONENT=Server", f"-DHOST={source}")
        self.assertTrue(self.library.samefile((build / "library").read_text()))
        self.check(build / "host", self.compile(source, "orbelcast"), "--qt")

    def test_the_python_package(self):
        wheels, source = self.folder / "wheels", self.folder / "python"
        shutil.copytree(ROOT / "python", source)
        self.run_command(PYTHON, "-m", "pip", "wheel", "--no-index", "--no-build-isolation", "-w", wheels, source)
        [wheel] = wheels.iterdir()
        for package in (wheel, self.prefix / "lib/python3/dist-packages"):
            program = ("import orbelcast, pathlib; print(pathlib.Path(orbelcast.__file__).parts[-3], "
                       "orbelcast.VideoServerPush().let('FrameRate', 40))")
            printed = self.run_command(PYTHON, "-c", program, PYTHONPATH=str(package),
                                       LD_LIBRARY_PATH=str(self.library.parent))
            self.assertEqual(printed.split(), [package.name, "30"])
        self.assertLessEqual({"orbelcast/py.typed", "orbelcast/controls.pyi"}, set(zipfile.ZipFile(wheel).namelist()))

    def test_a_program_without_a_screen(self):
        source = ROOT / "examples/snippets/headless.cpp"
        build = self.build(ROOT / "tests/install/server_host", "-DCOMPONENT=Headless", f"-DHOST={source}")
        with Server() as server:
            for program in (build / "host", self.compile(source, "orbelcast-headless")):
                host = subprocess.Popen([program, f"http://127.0.0.1:{server.port}/live/1"], stdout=subprocess.PIPE,
                                        text=True, env={**os.environ, "LD_LIBRARY_PATH": str(self.library.parent)})
                with host:
                    self.assertRegex(host.stdout.readline(), r"^\d+ \d+ \d+ \d+$")  # something moved
                    host.kill()

    def test_documents(self):
        documents = self.prefix / "share/doc/orbelcast"
        for name in ("LICENSE", "README.md", "docs/images/player.png", "examples/qt/CMakeLists.txt"):
            self.assertTrue((documents / name).is_file(), name)

    def test_a_component_that_there_is_not_is_named(self):
        with self.assertRaisesRegex(AssertionError, 'no\\s+component "Gtk"'):
            self.build(ROOT / "tests/install/server_host", "-DCOMPONENT=Gtk")

    @unittest.skipUnless(pathlib.Path(BUILD, "bin/orbelcast-player").exists(), "there are no widgets")
    def test_qt_applications(self):
        for header in (self.prefix / "include/orbelcast").glob("*_widget.h"):
            self.assertNotIn("Platform&", header.read_text(), header)
        form = self.build(ROOT / "examples/form") / "example-form"
        self.check("--qt", form, self.compile(ROOT / "examples/qt/main.cpp", "orbelcast-qt"))

    @unittest.skipUnless(pathlib.Path(BUILD, "qml").exists(), "there is no QML module")
    def test_the_qml_module_tells_its_types(self):
        [module] = self.prefix.glob("lib*/**/qml/Orbelcast")
        self.run_command("/usr/lib/qt6/bin/qmllint", "-I", module.parent, ROOT / "examples/qml/watch.qml")
        self.assertNotIn("not found", self.run_command("ldd", *module.glob("*.so")))

    @unittest.skipUnless(pathlib.Path(BUILD, "bin/orbelcast-player").exists(), "there are no widgets")
    def test_the_widgets_library_shows_the_widgets_alone(self):
        names = self.run_command("nm", "-DC", "--defined-only", self.library.parent / "liborbelcast-qt.so")
        # A small letter is a symbol that nobody else can see.
        seen = [line for line in names.splitlines() if line.split()[1].isupper()]
        self.assertTrue(seen)
        widgets = re.compile(r" orbelcast::(PlayerWidget|VideoServerPushWidget)(::|$)")
        self.assertEqual([line for line in seen if not widgets.search(line)], [])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
