#!/usr/bin/env python3
"""Runs one end-to-end script and compares what it prints; see README.md beside this file.

    run_script.py CAMERA_SERVER ORBELCAST NAME.orb [--accept]
"""

import os
import pathlib
import re
import shlex
import subprocess
import sys
import tempfile

sys.path.insert(0, str(pathlib.Path(__file__).parent.parent / "apps/camera_server"))
from camera_server import Server  # noqa: E402

PLACEHOLDERS = {
    "<number>": r"-?\d+(?:\.\d+)?",
    "<text>": r'"(?:[^"\\]|\\.)*"',
    "<any>": r".*",
}
SECONDS = 60  # for a whole script


def directives(script):
    """The values of the "# word: value" lines of a script, by word."""
    found = {word: [] for word in ("server", "ignore", "exit", "also", "same picture", "same", "missing")}
    for match in re.finditer(r"^# (%s): (.*)$" % "|".join(found), script, re.MULTILINE):
        found[match[1]].append(match[2])
    return found


def to_regex(line):
    parts = re.split("(" + "|".join(map(re.escape, PLACEHOLDERS)) + ")", line)
    return re.compile("".join(PLACEHOLDERS.get(part) or re.escape(part) for part in parts))


def mismatch(expected, printed, also):
    """None where they agree, else how many printed lines agreed at the best try. Lines like those of `also` may come
    anywhere besides."""
    extras = [to_regex(line) for line in also]

    def past_extras(reached):
        for number in range(min(reached, default=len(printed)), len(printed)):
            if number in reached and any(extra.fullmatch(printed[number]) for extra in extras):
                reached.add(number + 1)
        return reached

    best = 0
    reached = past_extras({0})  # how many printed lines the patterns so far may have used up
    for line in expected:
        if line == "...":
            reached = set(range(min(reached), len(printed) + 1)) if reached else set()
        else:
            optional = line.startswith("? ")
            regex = to_regex(line[2:] if optional else line)
            matched = {n + 1 for n in reached if n < len(printed) and regex.fullmatch(printed[n])}
            reached = past_extras(matched | reached if optional else matched)
        best = max(reached, default=best)
    return None if len(printed) in reached else best


def compare(name, expected, printed, accept, also=()):
    """True where the printed lines are those of the file; a file that is missing expects nothing to be looked at."""
    if accept:
        with open(name, "w", encoding="utf-8") as file:
            file.writelines(line + "\n" for line in printed)
        return True
    agreed = mismatch(expected, printed, also)
    if agreed is None:
        return True
    print(f"{name}: after {agreed} lines that agree came\n")
    for number, line in enumerate(printed, 1):
        print(("  " if number <= agreed else "> ") + line)
    print("\nwhere this was expected:\n")
    for line in expected:
        print("  " + line)
    return False


def look_at_files(said, fill_in):
    """True where the pairs of files hold the same bytes or pictures, and those that are to be missing are not there."""
    wrong = [name for name in map(fill_in, said["missing"]) if os.path.lexists(name)]
    for word, command, rest in ("same", ["cmp"], []), ("same picture", ["compare", "-metric", "AE"], ["null:"]):
        for pair in map(fill_in, said[word]):
            done = subprocess.run([*command, *pair.split(), *rest], capture_output=True, check=False)
            wrong += [pair] * (done.returncode != 0)
    print(*(f"not as it is to be: {files}\n" for files in wrong), sep="", end="")
    return not wrong


def read_lines(name):
    with open(name, encoding="utf-8") as file:
        return file.read().splitlines()


def run(orbelcast, script_name, accept):
    with open(script_name, encoding="utf-8") as file:
        script = file.read()
    said = directives(script)
    here = os.path.dirname(os.path.abspath(script_name))
    base = os.path.splitext(script_name)[0]
    with tempfile.TemporaryDirectory() as folder:
        pathlib.Path(folder, "empty").touch()
        options = [word.replace("{HERE}", here) for word in shlex.split(" ".join(said["server"]))]
        with Server("--log-passwords", *options) as server:
            names = {"{SERVER}": f"127.0.0.1:{server.port}", "{FOLDER}": folder, "{HERE}": here}

            def fill_in(text):
                for name, value in names.items():
                    text = text.replace(name, value)
                return text.replace("{PORT}", str(server.port))

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
            requests = [take_out(line) for line, _ in server.asked()]
            good = look_at_files(said, fill_in)
    printed = [take_out(line) for line in done.stdout.splitlines()]
    ignored = tuple(f'{{"event":"{event}",' for event in " ".join(said["ignore"]).split())
    printed = [line for line in printed if not ignored or not line.startswith(ignored)]

    if done.stderr:
        print(f"{script_name}: standard error had\n{done.stderr}")
        good = False
    if done.returncode != int((said["exit"] or ["0"])[0]):
        print(f"{script_name}: exit status {done.returncode}")
        good = False
    expected = [] if accept else read_lines(base + ".expected")
    good = compare(base + ".expected", expected, printed, accept, said["also"]) and good
    if os.path.exists(base + ".requests"):
        good = compare(base + ".requests", read_lines(base + ".requests"), requests, accept) and good
    return good


def main():
    arguments = [word for word in sys.argv[1:] if word != "--accept"]
    sys.exit(0 if run(*arguments, "--accept" in sys.argv) else 1)


if __name__ == "__main__":
    main()
