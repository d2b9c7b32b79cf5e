#!/usr/bin/env python3
"""The ABI that programs were built against still holds: abi_test.py SERVER_PROGRAM LIBRARY QT_LIBRARY [--record]

orbelcast-h.recorded is the public header's C part without comments, as it was released: functions in their order,
structures, ids, constants. liborbelcast-qt.recorded has the symbols of the widgets' library, the size of each class's
table of virtual functions, and what each of its slots holds. --record writes both anew, which is right where something was added, and at a release of
another first number.
"""

import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

SERVER, LIBRARY, QT_LIBRARY = sys.argv[1:4]
FOLDER = pathlib.Path(__file__).parent
ROOT = FOLDER.parent.parent
HEADER, SYMBOLS = FOLDER / "orbelcast-h.recorded", FOLDER / "liborbelcast-qt.recorded"
MAY_GROW = ("struct OrbelcastMemberInfo", "enum")


def c_part():
    text = (ROOT / "include/orbelcast/orbelcast.h").read_text().partition("#else  // C")[2].rpartition("#endif")[0]
    return re.sub(r"\n\s*\n+", "\n", re.sub(r"[ \t]*//.*", "", text)).lstrip()


def declarations(text):
    return re.split(r"\n(?=typedef|struct|enum|static|#define)", text.strip())


def private():
    """Names that no program outside can call: of private members, and those for programs built from the sources."""
    text = "".join((ROOT / f"include/orbelcast/{name}_widget.h").read_text() for name in ("player", "video_server_push"))
    parts = re.findall(r"^ private:(.*?)^};", text, re.M | re.S)
    return {f"{len(name)}{name}E" for part in parts for name in re.findall(r"(\w+)\(", part)} | {"8Platform", "7ControlEv"}


def printed(*command):
    return subprocess.run(command, capture_output=True, text=True, check=True).stdout.splitlines()


def symbols():
    found, hidden = set(), private()
    for line in printed("nm", "-DS", "--defined-only", QT_LIBRARY):
        *_, size, kind, name = line.split()
        if name.startswith("_ZTV"):
            found.add(f"{name} {int(size, 16)} bytes")
        elif kind in "TBDR" and not any(each in name for each in hidden):  # what the compiler may leave out, inline functions, is none of a library's promises
            found.add(name)
    return sorted(found | slots())


def slots():
    """The slots of the tables of virtual functions that hold the library's own; the others are Qt's. A slot is found by the
    relocation that fills it."""
    names = {}
    for line in printed("nm", "--defined-only", QT_LIBRARY):
        address, _, name = line.split()
        names.setdefault(int(address, 16), set()).add(name)
    tables, found = {}, set()
    for line in printed("nm", "-DS", "--defined-only", QT_LIBRARY):
        address, *size, _, name = line.split()
        if name.startswith("_ZTV"):
            tables[name] = range(int(address, 16), int(address, 16) + int(size[0], 16), 8)
    for line in printed("readelf", "-rW", QT_LIBRARY):
        place, _, kind, *value = line.split() if re.match("[0-9a-f]{12}", line) else ("0", "", "", "")
        for table, places in tables.items():
            if int(place, 16) in places:
                # A symbol by its name, or an address in the library, where the first of several names is taken.
                held = min(names[int(value[0], 16)]) if "RELATIV" in kind else value[1].partition("@")[0]
                if "orbelcast" in held and not held.startswith("_ZTI"):
                    found.add(f"{table} slot {places.index(int(place, 16)):02} {held}")
    return found


class AbiTest(unittest.TestCase):
    def test_the_header_declares_all_that_it_did(self):
        now = declarations(c_part())
        for old in declarations(HEADER.read_text()):
            grown = old.startswith(MAY_GROW) and any(new.startswith(old.rstrip("\n};, ")) for new in now)
            self.assertTrue(old in now or grown, f"changed or gone:\n{old}")

    def test_a_program_of_the_recorded_header_uses_the_library(self):
        with tempfile.TemporaryDirectory() as folder:
            include = pathlib.Path(folder, "orbelcast")
            include.mkdir()
            (include / "orbelcast.h").write_text(HEADER.read_text())
            host = f"{folder}/host"
            subprocess.run(["cc", "-std=c11", f"-I{folder}", ROOT / "examples/host.c", "-o", host, "-ldl"], check=True)
            run = subprocess.run([sys.executable, ROOT / "tests/apps/hosts_test.py", SERVER, LIBRARY, host, "--qt"],
                                 capture_output=True, text=True)
            self.assertEqual(run.returncode, 0, run.stderr)

    @unittest.skipUnless(pathlib.Path(QT_LIBRARY).exists(), "there are no widgets")
    def test_the_widgets_library_has_all_that_it_had(self):
        self.assertEqual(sorted(set(SYMBOLS.read_text().splitlines()) - set(symbols())), [])


if __name__ == "__main__":
    if "--record" in sys.argv:
        HEADER.write_text(c_part())
        SYMBOLS.write_text("\n".join(symbols()) + "\n")
    else:
        unittest.main(argv=sys.argv[:1])
