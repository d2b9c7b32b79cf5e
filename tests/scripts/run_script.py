#!/usr/bin/env python3
"""Runs one end-to-end script and compares what it prints; see README.md beside this file.

    run_script.py ORBELCAST CAMERA_SERVER NAME.orb [--accept]
"""

import json
import os
import re
import shlex
import subprocess
import sys
import tempfile
import time
import urllib.request

PLACEHOLDERS = {
    "<number>": r"-?\d+(?:\.\d+)?",
    "<text>": r'"(?:[^"\\]|\\.)*"',
    "<any>": r".*",
}
SECONDS = 60  # for a whole script


def directives(script):
    """The "# word: value" lines at the head of a script."""
    found = {}
    for line in script.splitlines():
        match = re.fullmatch(r"# (server|ignore|exit): (.*)", line)
        if match:
            found[match[1]] = match[2]
    return found


def to_regex(line):
    parts = re.split("(" + "|".join(map(re.escape, PLACEHOLDERS)) + ")", line)
    return re.compile("".join(PLACEHOLDERS.get(part) or re.escape(part) for part in parts))


def mismatch(expected, printed):
    """None where they agree, else how many printed lines agreed at the best try."""
    best = 0
    reached = {0}  # how many printed lines the patterns so far may have used up
    for line in expected:
        if line == "...":
            reached = set(range(min(reached), len(printed) + 1)) if reached else set()
        else:
            optional = line.startswith("? ")
            regex = to_regex(line[2:] if optional else line)
            matched = {n + 1 for n in reached if n < len(printed) and regex.fullmatch(printed[n])}
            reached = matched | reached if optional else matched
        best = max(reached, default=best)
    return None if len(printed) in reached else best


class CameraServer:
    def __init__(self, program, options):
        command = [program, "--port", "0", "--log-passwords", *options]
        self.process = subprocess.Popen(command, stdout=subprocess.PIPE, text=True)
        self.address = self.process.stdout.readline().split("//")[1].strip().rstrip("/")

    def requests(self):
        with urllib.request.urlopen(f"http://{self.address}/control/requests", timeout=10) as answer:
            lines = answer.read().decode().splitlines()
        return [json.loads(line)["request"] for line in lines]

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.terminate()
        self.process.wait(10)


def compare(name, expected, printed, accept):
    """True where the printed lines are those of the file; a file that is missing expects nothing to be looked at."""
    if accept:
        with open(name, "w", encoding="utf-8") as file:
            file.writelines(line + "\n" for line in printed)
        return True
    agreed = mismatch(expected, printed)
    if agreed is None:
        return True
    print(f"{name}: after {agreed} lines that agree came\n")
    for number, line in enumerate(printed, 1):
        print(("  " if number <= agreed else "> ") + line)
    print("\nwhere this was expected:\n")
    for line in expected:
        print("  " + line)
    return False


def read_lines(name):
    with open(name, encoding="utf-8") as file:
        return file.read().splitlines()


def run(orbelcast, camera_server, script_name, accept):
    with open(script_name, encoding="utf-8") as file:
        script = file.read()
    said = directives(script)
    here = os.path.dirname(os.path.abspath(script_name))
    base = os.path.splitext(script_name)[0]
    with tempfile.TemporaryDirectory() as folder:
        options = [word.replace("{HERE}", here) for word in shlex.split(said.get("server", ""))]
        with CameraServer(camera_server, options) as server:
            names = {"{SERVER}": server.address, "{FOLDER}": folder, "{HERE}": here}

            def fill_in(text):
                for name, value in names.items():
                    text = text.replace(name, value)
                return text

            def take_out(text):
                for name, value in names.items():
                    text = text.replace(value, name)
                return text

            environment = dict(
                os.environ,
                ORBELCAST_REGISTRY=os.path.join(folder, "registry.json"),
                ORBELCAST_MODULE_FOLDER=os.path.join(folder, "module"),
            )
            done = subprocess.run(
                [orbelcast, "script"], input=fill_in(script), capture_output=True, text=True, env=environment,
                timeout=SECONDS, check=False,
            )
            requests = [take_out(line) for line in server.requests()]
    printed = [take_out(line) for line in done.stdout.splitlines()]
    ignored = tuple(f'{{"event":"{event}",' for event in said.get("ignore", "").split())
    printed = [line for line in printed if not ignored or not line.startswith(ignored)]

    good = True
    if done.stderr:
        print(f"{script_name}: standard error had\n{done.stderr}")
        good = False
    if done.returncode != int(said.get("exit", "0")):
        print(f"{script_name}: exit status {done.returncode}")
        good = False
    expected = [] if accept else read_lines(base + ".expected")
    good = compare(base + ".expected", expected, printed, accept) and good
    if os.path.exists(base + ".requests"):
        good = compare(base + ".requests", read_lines(base + ".requests"), requests, accept) and good
    return good


def main():
    arguments = [word for word in sys.argv[1:] if word != "--accept"]
    start = time.monotonic()
    good = run(*arguments, "--accept" in sys.argv)
    print(f"{time.monotonic() - start:.1f} s")
    sys.exit(0 if good else 1)


if __name__ == "__main__":
    main()
