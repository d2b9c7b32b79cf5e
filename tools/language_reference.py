"""Reference pages of the controls, one a language, as text that tools/make_reference writes; and the table of ways in."""

import re

from bindings import CPP_TYPES, PYTHON_TYPES, cpp_parameters, python_parameters
from page_interface import TYPES as SCRIPT_TYPES, argument as script_argument

VARIANTS = {"": "", "Boolean": "BOOLEAN", "Integer": "INTEGER", "Long": "LONG", "Single": "SINGLE", "String": "TEXT",
            "Variant": "BYTES", "IPicture": "OBJECT", "IDataObject": "OBJECT"}
WORDS = {"": "null", "Boolean": "true|false", "Integer": "INTEGER", "Long": "INTEGER", "Single": "NUMBER", "String": "TEXT",
         "Variant": '{"bytes":N,"sha256":HEX}', "IPicture": '{"width":W,"height":H}', "IDataObject": "{TYPE:TEXT,...}"}
WIDGETS = {"VideoServerPush": "video_server_push_widget.h", "UserControl1": "player_widget.h"}


class Missing(Exception):
    """A language lacks a member of the interface."""


def python_lines(name, control):
    def handler(each):
        given = ", ".join(f"{a['name']}: {PYTHON_TYPES[a['type']]}" for a in each["arguments"])
        return f'@viewer.on("{each["name"]}") def handler({given})'

    return ([f"{each['name']}: {PYTHON_TYPES[each['type']]}" + ("" if each["writable"] else "  # read only")
             for each in control["properties"]],
            [f"{each['name']}({', '.join(python_parameters(each['arguments'], True))}) -> {PYTHON_TYPES[each['result']]}"
             for each in control["methods"]], [handler(each) for each in control["events"]])


def cpp_lines(name, control):
    def accessors(each):
        read = f"{CPP_TYPES[each['type']]} {each['name']}() const"
        if not each["writable"]:
            return read
        corrected = each["type"] in ("Integer", "Long")
        given = cpp_parameters([{"name": "value", "type": each["type"], "optional": False}])
        return f"{read}; {CPP_TYPES[each['type']] if corrected else 'void'} {each['name']}({given})"

    def event(each):
        return f"Events.{each['name']} = [](" + ", ".join(f"{CPP_TYPES[a['type']]} {a['name']}"
                                                           for a in each["arguments"]) + ") {}"

    return ([accessors(each) for each in control["properties"]],
            [f"{CPP_TYPES[each['result']]} {each['name']}({cpp_parameters(each['arguments'])})"
             for each in control["methods"]], [event(each) for each in control["events"]])


def c_lines(name, control):
    def argument(each, by_reference):
        shown = f"{VARIANTS[each['type']]}{'*' if by_reference and not each['by_value'] else ''} {each['name']}"
        return f"[{shown}]" if each["optional"] else shown

    def call(each, by_reference):
        given = ", ".join(argument(it, by_reference) for it in each["arguments"])
        result = f" -> {VARIANTS[each['result']]}" if each.get("result") else ""
        number = each['id'] if each['id'] < 100 else hex(each['id'])
        return f"{number} {each['name']}({given}){result}"

    return ([f"{each['id']:#x} {each['name']}: {VARIANTS[each['type']]}, GET" + (" PUT" if each["writable"] else "")
             for each in control["properties"]], [call(each, False) for each in control["methods"]],
            [call(each, True) for each in control["events"]])


def qt_lines(name, control, header):
    """From the widget's header, which must have each member."""
    def declared(member, pattern):
        found = re.search(pattern.format(member), header, re.M)
        if not found:
            raise Missing(f"{WIDGETS[name]} lacks {member}")
        return " ".join(found[1].split()).replace("( ", "(")

    properties = [declared(each["name"], r"Q_PROPERTY\((\w+ {} READ \w+(?: WRITE \w+)?)") for each in control["properties"]]
    slots, signals = [], []
    for kind, lines in (("methods", slots), ("events", signals)):
        lines += [declared(each["name"], r"^  (\w+ {}\([^)]*\)(?: const)?);") for each in control[kind]]
    return properties, slots, signals


def javascript_lines(name, control):
    def event(each):
        detail = ", ".join(f"{a['name']}: {SCRIPT_TYPES[a['type']]}" for a in each["arguments"])
        return f'addEventListener("{each["name"]}", ({{ detail: {{ {detail} }} }}) => {{}})'.replace("{  }", "{}")

    return ([f"{'' if each['writable'] else 'readonly '}{each['name']}: {SCRIPT_TYPES[each['type']]}"
             for each in control["properties"]],
            [f"await {each['name']}({', '.join(script_argument(it, each['name']) for it in each['arguments'])}): "
             f"{SCRIPT_TYPES[each['result']]}" for each in control["methods"]],
            [event(each) for each in control["events"]])


def script_lines(name, control):
    def call(each):
        given = [f"[{WORDS[it['type']]}]" if it["optional"] else WORDS[it["type"]] for it in each["arguments"]]
        return " ".join(["call NAME", each["name"], *given]) + f"  # result {WORDS[each['result']]}"

    def event(each):
        given = ",".join(f'"{it["name"]}":{WORDS[it["type"]]}' for it in each["arguments"])
        return f'{{"event":"{each["name"]}","from":"NAME","args":{{{given}}}}}'

    return ([f"get NAME {each['name']}" + (f"; set NAME {each['name']} {WORDS[each['type']]}" if each["writable"] else "")
             for each in control["properties"]], [call(each) for each in control["methods"]],
            [event(each) for each in control["events"]])


def block(parts):
    headings = ("Properties", "Methods", "Events")
    return "\n\n".join(f"{heading}:\n\n```\n" + "\n".join(lines) + "\n```"
                       for heading, lines in zip(headings, parts) if lines)


def reference(controls, read):
    """The made parts by page and name."""
    headers = {name: read(f"include/orbelcast/{file}") for name, file in WIDGETS.items()}
    languages = {"python": python_lines, "cpp": cpp_lines, "c": c_lines, "javascript": javascript_lines,
                 "script": script_lines, "qt": lambda name, control: qt_lines(name, control, headers[name])}
    return {f"docs/reference/{language}.md": {name: block(lines(name, control)) for name, control in controls.items()}
            for language, lines in languages.items()}


# ---- The ways in ----------------------------------------------------------------------------------------------------

FIRST = "examples/first_picture"
# Way, its page, the example that gets the first picture, what it needs, what it cannot do.
WAYS = [
    ("Qt widgets", "reference/qt.md", "qt.cpp", "`liborbelcast-qt`, Qt 6.4", "run without an application of Qt's"),
    ("QML", "qt.md#qml", "scene.qml", "`orbelcast-qml`, Qt 6.4 Quick", "show the player; open the status strip's menu"),
    ("C++ without a screen", "reference/cpp.md", "headless.cpp", "`liborbelcast.so`, C++20",
     "show a window; answer an event's argument by reference (`Dispatch()` can)"),
    ("C++ that links nothing", "control-server.md", "by_name.cpp", "`liborbelcast.so`, C++20",
     "show a window; have members' types checked by the compiler"),
    ("C", "reference/c.md", "by_name.c", "`liborbelcast.so`, C11",
     "show a window; have members' types checked by the compiler"),
    ("Python", "reference/python.md", "first.py", "`liborbelcast.so`, Python 3.9; numpy and PIL for arrays and images",
     "show a window; wait inside a handler"),
    ("a web page", "reference/javascript.md", "page.html", "`orbelcast serve`, a browser",
     "see a camera without the gateway"),
    ("the command line", "command-line.md", "first.sh", "`orbelcast`", "call a member, but for those that a command stands for"),
    ("the script host", "reference/script.md", "first.orb", "`orbelcast`", "compute, branch or repeat"),
]


def code_lines(text):
    """Lines that are neither blank nor a comment alone."""
    return sum(1 for line in text.splitlines() if line.strip() and not re.match(r"\s*(//|#(?!include)|<!--|\"\"\")", line))


def ways(read):
    lines = ["| way in | lines to the first picture | needs | cannot |", "|---|---|---|---|"]
    for way, page, file, needs, cannot in WAYS:
        count = code_lines(read(f"{FIRST}/{file}"))
        lines.append(f"| [{way}]({page}) | [{count}](../{FIRST}/{file}) | {needs} | {cannot} |")
    return "\n".join(lines)
