#!/usr/bin/env python3
"""Shows that a door that is not in the plan does not exist: an include through it fails to compile.

Usage: check_doors.py COMPILER BUILD_FOLDER SOURCE_FOLDER

Compiles one-line files with a room's own include folders, as the build has them, and reads every include of the tree.
"""
import pathlib
import re
import subprocess
import sys
import tempfile

# room: what it may include besides itself. The plan of the house, written down a second time on purpose.
DOORS = {
    "platform": [],
    "imaging": ["platform"],
    "recording": ["imaging", "platform"],
    "mosaic": ["platform"],
    "protocol": ["platform"],
    "viewer": ["recording", "mosaic", "imaging", "protocol", "platform"],
    "adapters/curl": ["platform"],
    "adapters/jpeg": ["platform"],
    "adapters/png": ["platform"],
    "adapters/fiber": ["platform"],
    "adapters/posix": ["platform"],
    # And the headers that hosts see.
    "adapters/qt": ["orbelcast", "player", "viewer", "recording", "mosaic", "imaging", "protocol", "platform"],
}

ALLOWED = [("imaging", "platform/surface.h"), ("viewer", "imaging/motion.h"), ("adapters/curl", "platform/http_request.h")]
FORBIDDEN = [
    ("platform", "imaging/motion.h"),
    ("imaging", "viewer/video_server_push.h"),
    ("viewer", "adapters/curl/curl_http.h"),
    ("adapters/jpeg", "adapters/png/png_codec.h"),
    ("adapters/curl", "viewer/video_server_push.h"),
]


def compiles(compiler, build, room, header):
    folders = [build / "doors" / name.replace("/", "_") for name in [room, *DOORS[room]]]
    with tempfile.NamedTemporaryFile("w", suffix=".cpp") as file:
        file.write(f'#include "{header}"\n')
        file.flush()
        command = [compiler, "-std=c++20", "-fsyntax-only", *(f"-I{folder}" for folder in folders), file.name]
        return subprocess.run(command, capture_output=True, check=False).returncode == 0


def stray_includes(source):
    """Includes that go round the doors (".."), or that name a room which the including one may not know."""
    for room, doors in DOORS.items():
        known = {room, *doors}
        for path in sorted((source / "src" / room).glob("*.[ch]*")):
            for header in re.findall(r'^\s*#\s*include\s+"([^"]+)"', path.read_text(), re.M):
                folder = str(pathlib.PurePosixPath(header).parent)
                if ".." in header or (folder not in known and folder != "."):
                    yield f"{path}: {header}"


def main():
    compiler, build, source = sys.argv[1], pathlib.Path(sys.argv[2]), pathlib.Path(sys.argv[3])
    faults = [f"{room} cannot include {header}" for room, header in ALLOWED if not compiles(compiler, build, room, header)]
    faults += [f"{room} can include {header}" for room, header in FORBIDDEN if compiles(compiler, build, room, header)]
    faults += stray_includes(source)
    print("\n".join(faults) or "every door is where the plan has it")
    return 1 if faults else 0


sys.exit(main())
