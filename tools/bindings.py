"""Bindings of the controls, as text that tools/make_reference writes: Python's members and types, C's declarations."""

import pprint
import re
import textwrap

WIDTH = 118

# ---- Python, from the description of the interfaces -----------------------------------------------------------------

PYTHON_TYPES = {"": "None", "Boolean": "bool", "Integer": "int", "Long": "int", "Single": "float", "String": "str",
                "Variant": "bytes", "IPicture": "Picture | None", "IDataObject": "dict[str, bytes]"}


def python_members(controls):
    described = {name: {**control, "persisted": [each["key"] for each in control["persisted"]]}
                 for name, control in controls.items()}
    return ('"""The interfaces of the controls. Made by tools/make_reference."""\n\nfrom typing import Any, Dict\n\n'
            f"CLASSES: Dict[str, Any] = {pprint.pformat(described, width=WIDTH, sort_dicts=False)}\n")


def docstring(text, indent):
    lines = textwrap.wrap(text.replace("\\", "\\\\"), 110)
    return "\n".join(f"{indent}{line}" for line in ['"""' + lines[0], *lines[1:]]) + '"""'


def python_parameters(given, by_reference):
    shown = []
    for each in given:
        kind = PYTHON_TYPES[each["type"]]
        if by_reference and not each["by_value"]:
            kind += f" | Ref[{kind}]"
        shown.append(f"{each['name']}: {kind}" + (" | None = ..." if each["optional"] else ""))
    return shown


def python_class(name, control, base):
    keys = [f"{each['key']}: str = ..." for each in control["persisted"]]
    keys += [f"{each['name']}: {PYTHON_TYPES[each['type']]} = ..." for each in control["properties"] if each["writable"]]
    lines = [f"class {name}({base}):", docstring(control["text"], "    "), "",
             f"    def __init__(self, *, width: int = ..., height: int = ..., {', '.join(keys)}) -> None: ..."]
    for each in control["properties"]:
        kind = PYTHON_TYPES[each["type"]]
        lines += ["", "    @property", f"    def {each['name']}(self) -> {kind}:", docstring(each["text"], "        ")]
        if each["writable"]:
            lines += [f"    @{each['name']}.setter", f"    def {each['name']}(self, value: {kind}) -> None: ..."]
    for each in control["methods"]:
        parameters = ", ".join(["self", *python_parameters(each["arguments"], by_reference=True)])
        lines += ["", f"    def {each['name']}({parameters}) -> {PYTHON_TYPES[each['result']]}:",
                  docstring(each["text"], "        ")]
    for number, each in enumerate(control["events"]):
        ignored = "" if number else "  # type: ignore[override]"
        handler = "Callable[[{}], Any]".format(", ".join(PYTHON_TYPES[a["type"]] for a in each["arguments"]))
        event = f'event: Literal["{each["name"]}"]'
        lines += ["", f"    @overload{ignored}",
                  f"    def on(self, {event}) -> Callable[[{handler}], {handler}]:", docstring(each["text"], "        "),
                  "    @overload", f"    def on(self, {event}, handler: {handler}) -> {handler}: ..."]
    return "\n".join(lines) + "\n"


def python_stubs(controls):
    bases = {"VideoServerPush": "Viewer", "UserControl1": "Control"}
    head = ["# Made by tools/make_reference of the interfaces' description.",
            "from typing import Any, Callable, Literal, overload", "", "from ._control import Control, Ref",
            "from ._frames import Picture, Viewer", ""]
    return "\n".join(head) + "\n" + "\n".join(python_class(name, control, bases[name])
                                             for name, control in controls.items())


# ---- C, from the C++ part of the public header ----------------------------------------------------------------------

COMMENT = r"(?P<comment>(?:^///.*\n)*)"
DECLARATION = re.compile(
    COMMENT + r"(?:^using (?P<alias>\w+) = (?P<aliased>[^;]+);"
    r"|^inline constexpr (?:Result|std::int32_t) (?P<constant>\w+) = (?P<value>[^;]+);(?P<trailing>.*)"
    r"|^inline constexpr Guid (?P<guid>\w+)\{(?P<bytes>[^;]+)\};"
    r"|^enum (?P<enum>\w+) : [\w:]+ \{(?P<values>[^}]*)\};"
    r"|^struct (?P<struct>\w+)(?: : (?P<base>\w+))? \{\n(?P<body>[\s\S]*?)^\};)", re.M)
FUNCTION = re.compile(r"(?P<comment>(?:^  ///.*\n)*)^  virtual (?P<result>[\w:]+) (?P<name>\w+)\((?P<arguments>[^)]*)\) = 0;", re.M)


def c_name(name):
    """kPropertyPut as PROPERTY_PUT, S_OK as it is."""
    plain = re.sub(r"(?<=[a-z0-9])(?=[A-Z])", "_", name[1:]) if re.match("k[A-Z]", name) else name
    return "ORBELCAST_" + plain.upper()


def filled(line):
    return "\n".join(textwrap.wrap(line, WIDTH, subsequent_indent="      ", break_long_words=False))


class CPart:
    """The declarations of the header's C++ part, in C and in their order."""

    def __init__(self, header):
        self.found = list(DECLARATION.finditer(header[:header.index("// ---- Conveniences for C++")]))
        self.types = {each["struct"] or each["alias"] for each in self.found if each["struct"] or each["alias"]}
        self.constants = {each["constant"] or each["guid"] for each in self.found}
        for each in self.found:
            self.constants |= set(re.findall(r"\b(k[A-Z]\w*)(?= =)", each["values"] or ""))
        self.functions = {}  # of each interface, its base's first

    def c(self, text):
        text = re.sub(r"\bstd::", "", text)
        text = re.sub(r"static_cast<Result>\((\w+)\)", r"((Result)\1)", text)
        return re.sub(r"\b\w+\b", lambda word: self.renamed(word[0]), text)

    def renamed(self, word):
        if word in self.types:
            return "Orbelcast" + word
        return c_name(word) if word in self.constants else word

    def guid(self, name, value):
        return filled(f"static const OrbelcastGuid {name} = {{{' '.join(value.split())}}};")

    def declaration(self, each):
        if each["alias"]:
            if "(" not in each["aliased"]:
                return f"typedef {self.c(each['aliased'])} Orbelcast{each['alias']};"
            result, arguments = each["aliased"].split("(", 1)
            arguments = "void)" if arguments == ")" else self.c(arguments)
            return filled(f"typedef {self.c(result)} Orbelcast{each['alias']}({arguments};")
        if each["constant"]:
            return f"#define {c_name(each['constant'])} {self.c(each['value'])}{self.c(each['trailing'])}"
        if each["guid"]:
            return self.guid(c_name(each["guid"]), each["bytes"])
        if each["enum"]:
            return f"enum {{{self.c(each['values'])}}};"
        if "virtual" in each["body"]:
            return self.interface(each)
        body = re.sub(r"^\n?  friend .*\n", "", each["body"], flags=re.M)
        return f"struct Orbelcast{each['struct']} {{\n{self.c(body)}}};"

    def interface(self, each):
        name = f"Orbelcast{each['struct']}"
        own = [(self.c(function["comment"]), function) for function in FUNCTION.finditer(each["body"])]
        inherited = [("", function) for _, function in self.functions.get(each["base"], [])]
        self.functions[each["struct"]] = inherited + own
        [value] = re.findall(r"kId\{(.*)\};", each["body"])
        lines = [self.guid(f"ORBELCAST_{each['struct'].upper()}_ID", value), f"typedef struct {name}Functions {{"]
        for comment, function in self.functions[each["struct"]]:
            arguments = ", ".join(filter(None, [f"{name}* self", " ".join(self.c(function["arguments"]).split())]))
            lines.append(comment + filled(f"  {self.c(function['result'])} (*{function['name']})({arguments});"))
        return "\n".join([*lines, f"}} {name}Functions;", f"struct {name} {{", f"  const {name}Functions* functions;", "};"])

    def text(self):
        structs = [each["struct"] for each in self.found if each["struct"]]
        forward = [f"typedef struct Orbelcast{name} Orbelcast{name};" for name in dict.fromkeys(structs)]
        parts = [self.c(each["comment"]) + self.declaration(each) for each in self.found]
        joined, last = forward + [""], None
        for each, part in zip(self.found, parts):
            if last is not None and not (each["constant"] and last["constant"]):
                joined.append("")
            joined.append(part)
            last = each
        return "\n".join(joined)


def c_declarations(header):
    """The C part of the header: what its C++ part declares, with the same binary form."""
    return CPart(header).text()


# ---- C++ without a screen, from the description of the interfaces ---------------------------------------------------

CPP_TYPES = {"": "void", "Boolean": "bool", "Integer": "std::int16_t", "Long": "std::int32_t", "Single": "float",
             "String": "std::string", "Variant": "std::vector<std::uint8_t>",
             "IPicture": "server::Held<server::IPicture>", "IDataObject": "server::Held<server::IDataObject>"}
CPP_GIVEN = {**CPP_TYPES, "String": "std::string_view"}


def cpp_comment(text):
    return textwrap.wrap(text, WIDTH, initial_indent="  /// ", subsequent_indent="  /// ")


def cpp_parameters(given):
    shown = []
    for each in given:
        kind = CPP_GIVEN[each["type"]]
        shown.append(f"std::optional<{kind}> {each['name']} = {{}}" if each["optional"] else f"{kind} {each['name']}")
    return ", ".join(shown)


def cpp_events(name, control):
    if not control["events"]:
        return []
    lines = ["  /// Handlers of the events; what is not set is not told.", "  struct EventHandlers {"]
    for each in control["events"]:
        values = ", ".join(f"{CPP_TYPES[a['type']]} {a['name']}" for a in each["arguments"])
        lines += ["  " + line for line in cpp_comment(each["text"])]
        lines.append(f"    std::function<void({values})> {each['name']};")
    lines += ["  };", "", f"  {name}() : Control(server::k{name}Class) {{ Listen<{name}>(server::k{name}Events, handlers_); }}",
              "", " private:", "  const std::shared_ptr<EventHandlers> handlers_ = std::make_shared<EventHandlers>();", "",
              " public:", "  EventHandlers& Events = *handlers_;", "",
              "  static void Raise(const EventHandlers& handlers, std::int32_t event, const server::Arguments& arguments) {",
              "    switch (event) {"]
    lines += [f"      case {each['id']}: return Tell(handlers.{each['name']}, arguments);" for each in control["events"]]
    return [*lines, "    }", "  }"]


def cpp_property(each):
    kind, given = CPP_TYPES[each["type"]], CPP_GIVEN[each["type"]]
    lines = ["", *cpp_comment(each["text"]),
             f"  {kind} {each['name']}() const {{ return Get<{kind}>({each['id']:#x}); }}"]
    if each["writable"]:
        # A number may be corrected, so what it was made into is returned.
        number = each["type"] in ("Integer", "Long")
        returned, put = (kind, "return PutBack") if number else ("void", "Put")
        lines.append(f"  {returned} {each['name']}({given} value) {{ {put}<{given}>({each['id']:#x}, value); }}")
    return lines


def cpp_class(name, control):
    lines = [*(line[2:] for line in cpp_comment(control["text"])), f"class {name} : public Control {{", " public:"]
    lines += cpp_events(name, control) or [f"  {name}() : Control(server::k{name}Class) {{}}"]
    for each in control["properties"]:
        lines += cpp_property(each)
    for each in control["methods"]:
        kind = CPP_TYPES[each["result"]]
        values = "".join(f", {argument['name']}" for argument in each["arguments"])
        lines += ["", *cpp_comment(each["text"]),
                  f"  {kind} {each['name']}({cpp_parameters(each['arguments'])}) "
                  f"{{ return Call<{kind}>({each['id']:#x}{values}); }}"]
    return "\n".join([*lines, "};"])


def cpp_classes(controls):
    return "\n\n".join(cpp_class(name, control) for name, control in controls.items())


# ---- The QML item, from the description of the interfaces -----------------------------------------------------------

QML_TYPES = {"": "void", "Boolean": "bool", "Integer": "int", "Long": "int", "Single": "double", "String": "QString",
             "Variant": "QByteArray", "IPicture": "QImage", "IDataObject": "QVariantMap"}
# The members that the item has in another form, or writes itself because `url` follows it.
QML_OWN = {"URL", "Connect", "Disconnect", "MultiCamView", "RenderPicture"}


def qml_name(name):
    return name[0].lower() + name[1:]


def qml_parameters(given):
    return ", ".join(f"const {QML_TYPES[each['type']]}& {each['name']}" if QML_TYPES[each["type"]].startswith("Q")
                     else f"{QML_TYPES[each['type']]} {each['name']}" for each in given)


def qml_members(control):
    """The members of the item, in the class: properties, methods, signals, and what raises these."""
    lines = []
    for each in control["properties"]:
        kind, name = QML_TYPES[each["type"]], each["name"]
        if name in QML_OWN:
            continue
        put = f"WRITE set{name} NOTIFY settingsChanged" if each["writable"] else "CONSTANT"
        lines += ["", *cpp_comment(each["text"]), f"  Q_PROPERTY({kind} {qml_name(name)} READ {qml_name(name)} {put} FINAL)",
                  f"  {kind} {qml_name(name)}() const {{ return ToQml(control_->{name}()); }}"]
        if each["writable"]:
            parameter = qml_parameters([{**each, "name": "value"}])
            lines.append(f"  void set{name}({parameter}) {{ Put(&VideoServerPush::{name}, value); }}")
    for each in control["methods"]:
        name = each["name"]
        if name in QML_OWN:
            continue
        given = "".join(f", {argument['name']}" for argument in each["arguments"])
        body = f"return ToQml(control_->{name}())" if each["result"] else f"Call(&VideoServerPush::{name}{given})"
        lines += ["", *cpp_comment(each["text"]), f"  Q_INVOKABLE {QML_TYPES[each['result']]} {qml_name(name)}"
                                                  f"({qml_parameters(each['arguments'])}) {{ {body}; }}"]
    lines += ["", " Q_SIGNALS:"]
    for each in control["events"]:
        lines += [*cpp_comment(each["text"]), f"  void {qml_name(each['name'])}({qml_parameters(each['arguments'])});"]
    return "\n".join(lines[1:])


def qml_events(control):
    """The code that raises the item's signals."""
    return "\n".join(f"  Forward(control_->Events.{each['name']}, &VideoServerPushItem::{qml_name(each['name'])});"
                     for each in control["events"])
