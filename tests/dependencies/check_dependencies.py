#!/usr/bin/env python3
"""Shows that a module can include what it declares to depend on, and nothing else.

Usage: check_dependencies.py BUILD_FOLDER SOURCE_FOLDER

Reads the declarations that the build writes to modules.txt (a line a module: its folder, then those it depends on), and
holds against them what the compiler finds with the module's own command line. What it does not find nobody includes.
"""
import json
import pathlib
import re
import shlex
import subprocess
import sys

BUILD, SOURCE = map(pathlib.Path, sys.argv[1:3])


def declared():
    """Each module with all that it depends on, itself and what those depend on included."""
    direct = {name: others for name, *others in map(str.split, (BUILD / "modules.txt").read_text().splitlines())}
    closed = {}
    for name, others in direct.items():  # a module is declared after those that it depends on
        assert all(other in closed for other in others), f"{name} depends on what is declared after it"
        closed[name] = {name}.union(*(closed[other] for other in others))
    return closed


def headers_of(module):
    return sorted((SOURCE / "src" / module).glob("*.h"))


def found_by_the_compiler(module, modules):
    """The modules of which the compiler finds a header, with the command that compiles the module; none without one."""
    target = "/orbelcast_" + module.replace("/", "_") + ".dir/"
    for entry in json.loads((BUILD / "compile_commands.json").read_text()):
        if target not in entry["command"]:
            continue
        words = shlex.split(entry["command"])
        folders = [word for word in words if word.startswith("-I")]
        probes = {other: headers_of(other)[0].name for other in modules if headers_of(other)}
        lines = [f'#if __has_include("{other}/{header}")\nfound {other}\n#endif' for other, header in probes.items()]
        output = subprocess.run([words[0], *folders, "-std=c++20", "-E", "-P", "-x", "c++", "-"], input="\n".join(lines),
                                capture_output=True, text=True, check=True)
        return set(re.findall(r"^found (\S+)$", output.stdout, re.M))
    return None


def main():
    modules = declared()
    faults = []
    for module, known in modules.items():
        found = found_by_the_compiler(module, modules)
        expected = {other for other in known if headers_of(other)}
        if found is not None and found != expected:
            faults.append(f"{module} declares {sorted(expected)}, the compiler finds {sorted(found)}")
    print("\n".join(faults) or f"{len(modules)} modules keep to what they declare")
    return 1 if faults else 0


sys.exit(main())
