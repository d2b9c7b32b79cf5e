"""The page elements' part of the interface, for tools/make_reference: web/interface.js and web/orbelcast.d.ts."""

import json

NOTE = "// Made by tools/make_reference from the description of the controls' interfaces. Do not change it by hand.\n"
ELEMENTS = {"VideoServerPush": "video-server-push", "UserControl1": "user-control-1"}
TYPES = {"": "void", "Boolean": "boolean", "Integer": "number", "Long": "number", "Single": "number",
         "String": "string", "IDataObject": "Record<string, string>", "IPicture": "ImageBitmap | null",
         "Variant": "Uint8Array"}


def script(described):
    """The module that the elements are made from."""
    controls = {}
    for name, control in described.items():
        controls[name] = {
            "element": ELEMENTS[name],
            "properties": {each["name"]: {"type": each["type"], "writable": each["writable"]}
                           for each in control["properties"]},
            "methods": {each["name"]: {"arguments": [[it["name"], it["type"], it["optional"]]
                                                     for it in each["arguments"]], "result": each["result"]}
                        for each in control["methods"]},
            "events": {each["name"]: [it["name"] for it in each["arguments"]] for each in control["events"]},
            "persisted": [each["key"] for each in control["persisted"]],
        }
    lines = [NOTE, "export const interfaces = " + json.dumps(controls, indent=1) + ";", ""]
    return "\n".join(lines)


def comment(text, indent="  "):
    return f"{indent}/** {text} */" if text else ""


def argument(given, name):
    # A canvas stands for the host's surface, which the interface has a number for.
    kind = "HTMLCanvasElement" if name == "RenderPicture" and given["name"] == "PictureHdc" else TYPES[given["type"]]
    return f"{given['name']}{'?' if given['optional'] else ''}: {kind}"


def types(described):
    """The declarations for TypeScript."""
    lines = [NOTE]
    for name, control in described.items():
        lines += [f"/** {control['text']}. */", f"export class {name}Element extends HTMLElement {{"]
        for each in control["properties"]:
            lines += [comment(each["text"]), f"  {'' if each['writable'] else 'readonly '}{each['name']}: "
                                             f"{TYPES[each['type']]};"]
        for each in control["methods"]:
            given = ", ".join(argument(it, each["name"]) for it in each["arguments"])
            lines += [comment(each["text"]), f"  {each['name']}({given}): Promise<{TYPES[each['result']]}>;"]
        lines += ["  /** Resolves when the gateway shows the control. */", "  readonly ready: Promise<void>;"]
        for each in control["events"]:
            detail = "; ".join(f"{it['name']}: {TYPES[it['type']]}" for it in each["arguments"])
            lines += [comment(each["text"]),
                      f"  addEventListener(type: \"{each['name']}\", listener: (event: CustomEvent<{{ {detail} }}>) => "
                      "void, options?: boolean | AddEventListenerOptions): void;"]
        lines += ["  addEventListener(type: string, listener: EventListenerOrEventListenerObject, "
                  "options?: boolean | AddEventListenerOptions): void;", "}", ""]
    lines += ["declare global {", "  interface HTMLElementTagNameMap {"]
    lines += [f"    \"{ELEMENTS[name]}\": {name}Element;" for name in described]
    lines += ["  }", "}", ""]
    return "\n".join(line for line in lines if line is not None)
