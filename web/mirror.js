// Child controls as elements of the page. They show what they are told and say what a person did; they decide nothing.

import { Painter, css } from "./drawing.js";

export const TWIPS = 15; // a CSS pixel
const BUTTONS = { 0: 1, 1: 4, 2: 2 }; // of the mouse, as the controls count them

function make(name, className) {
  const made = document.createElement(name);
  made.className = className;
  return made;
}

/** "p.VS.lStatus" as a line has it: the control or window, and the child. */
export function target(path) {
  const dot = path.indexOf(".");
  return [path.slice(0, dot), path.slice(dot + 1)];
}

function choose(it, index) {
  it.index = index;
  if (!it.element.multiple) it.element.selectedIndex = index;
}

// A browser chooses the first of new options by itself.
function setOptions(it, texts) {
  it.element.replaceChildren(...texts.map((text) => new Option(text)));
  choose(it, it.index ?? -1);
}

// Text typed into a box that was entered replaces the box's text.
function selectOnEntering(box) {
  let entered = false;
  box.addEventListener("focus", () => {
    entered = true;
    box.select();
  });
  box.addEventListener("mouseup", () => {
    // The press that entered it would leave the cursor where it was.
    if (entered && box.selectionStart === box.selectionEnd) box.select();
    entered = false;
  });
}

// Each kind: the element that stands for it, what a person can do with it, and the fields that are its own.
const KINDS = {
  Label: { make: () => make("div", "label"), Caption: (it, text) => (it.element.textContent = text) },
  Frame: { make: () => make("div", "frame") },
  VideoServerPush: { make: () => make("div", "viewer") },
  PictureBox: { make: () => make("div", "picture"), canvas: true, presses: true },
  Image: { make: () => make("div", "picture"), canvas: true, presses: true, ownSize: true },
  Button: {
    make: () => Object.assign(make("button", "button"), { type: "button" }),
    canvas: true,
    ownSize: true,
    listen: (it, act) => it.element.addEventListener("click", () => act("click")),
    Caption: (it, text) => it.caption(text),
  },
  ComboBox: {
    make: () => make("select", "list"),
    listen: (it, act) => it.element.addEventListener("change", () => act("select", it.element.selectedIndex)),
    List: (it, texts) => setOptions(it, texts),
    ListIndex: (it, index) => choose(it, index),
  },
  ListBox: {
    make: () => Object.assign(make("select", "list"), { size: 2 }),
    listen: (it, act) =>
      it.element.addEventListener("change", () =>
        act("select", ...Array.from(it.element.selectedOptions, (each) => each.index)),
      ),
    MultiSelect: (it, several) => (it.element.multiple = several),
    List: (it, texts) => setOptions(it, texts),
    ListIndex: (it, index) => choose(it, index),
    Selected: (it, chosen) => {
      if (it.element.multiple) Array.from(it.element.options, (each) => (each.selected = chosen.includes(each.index)));
    },
  },
  TextBox: {
    make: (fields) => (fields.MultiLine ? make("textarea", "text") : Object.assign(make("input", "text"), { type: "text" })),
    listen: (it, act) => {
      if (it.element.localName === "input") selectOnEntering(it.element);
      it.element.addEventListener("input", async () => {
        it.typing = (it.typing ?? 0) + 1;
        await act("type", it.element.value);
        it.typing -= 1;
        if (it.typing === 0) it.showTold();
      });
      it.element.addEventListener("blur", () => act("leave"));
    },
    MaxLength: (it, length) => length > 0 && (it.element.maxLength = length),
    // The text that a person types is told back, perhaps when more has been typed; it is not to move the cursor either.
    Text: (it, text) => {
      it.told = text;
      it.showTold();
    },
  },
};

const SIDES = { Left: "left", Top: "top", Width: "width", Height: "height" };

/** One child control. */
class Child {
  constructor(fields, mirror) {
    this.path = fields.show;
    this.kind = KINDS[fields.kind];
    this.mirror = mirror;
    this.element = this.kind.make(fields);
    this.element.dataset.child = target(this.path)[1];
    const act = (command, ...words) => mirror.session.act(command, ...target(this.path), ...words);
    if (this.kind.canvas) this.#addCanvas(fields);
    this.kind.listen?.(this, act);
    if (this.kind.presses) this.#listenToMouse(act);
  }

  set(field, value) {
    const style = this.element.style;
    if (field in SIDES) {
      style[SIDES[field]] = `${value / TWIPS}px`;
      this[field] = value / TWIPS;
      if (this.painter && this.Width > 0 && this.Height > 0) this.painter.resize(this.Width, this.Height);
    } else if (field === "Visible") {
      this.element.hidden = !value;
    } else if (field === "Enabled") {
      if ("disabled" in this.element) this.element.disabled = !value;
    } else if (field === "ToolTipText") {
      this.element.title = value;
      this.#name(value);
    } else if (field === "Font") {
      style.fontFamily = `${value}, sans-serif`;
    } else {
      this.kind[field]?.(this, value);
    }
  }

  caption(text) {
    if (this.element.querySelector("canvas")?.width > 0 && !text) return;
    this.element.firstChild.nodeValue = text;
    this.#name(this.element.title || text);
  }

  /** Of a text box: it keeps what it shows, and what is typed, whatever the control writes. */
  hold(held, { forget = false } = {}) {
    this.held = held;
    if (forget) this.told = undefined;
    this.showTold();
  }

  showTold() {
    if (this.held || this.typing > 0 || this.told === undefined) return;
    if (this.element.value !== this.told) this.element.value = this.told;
    this.told = undefined;
  }

  draw(drawing) {
    this.element.classList.add("drawn");
    this.painter.draw(drawing);
  }

  #name(text) {
    if (text) this.element.setAttribute("aria-label", text);
  }

  #addCanvas(fields) {
    const canvas = document.createElement("canvas");
    [canvas.width, canvas.height] = [0, 0];
    canvas.setAttribute("aria-hidden", "true");
    this.element.append(document.createTextNode(""), canvas);
    if (fields.BackColor !== undefined) this.element.style.backgroundColor = css(fields.BackColor);
    this.painter = new Painter(canvas, {
      ownSize: this.kind.ownSize,
      background: fields.BackColor,
      painted: () => this.mirror.painted(this.path),
    });
  }

  /** Its menu, which the right button brings, comes by the keyboard too. */
  bringMenu() {
    const element = this.element;
    element.tabIndex = 0;
    element.setAttribute("role", "button");
    element.setAttribute("aria-haspopup", "menu");
    element.addEventListener("keydown", (event) => {
      if (!["Enter", " ", "ContextMenu"].includes(event.key)) return;
      event.preventDefault();
      const { left, top } = element.getBoundingClientRect();
      this.mirror.pointer = { x: left, y: top };
      this.mirror.session.act("press", ...target(this.path), BUTTONS[2]);
    });
  }

  #listenToMouse(act) {
    const element = this.element;
    element.addEventListener("pointerdown", (event) => {
      event.stopPropagation();
      this.mirror.pointer = { x: event.clientX, y: event.clientY };
      if (event.button in BUTTONS) act("press", BUTTONS[event.button]);
    });
    element.addEventListener("contextmenu", (event) => event.preventDefault());
    element.addEventListener("dragover", (event) => event.preventDefault());
    element.addEventListener("drop", (event) => {
      event.preventDefault();
      event.stopPropagation();
      act("drop", event.dataTransfer.getData("text/plain"));
    });
  }
}

/** The children of one control, and of its windows, inside `root`. */
export class Mirror {
  children = new Map(); // by path
  pointer = { x: 0, y: 0 };
  #roots = new Map(); // by the path that they are the inside of
  #names;
  #made;

  /** `names`: accessible names of children that have no text of their own; `made` is told a new child and its name. */
  constructor(session, { names = {}, made = () => {} } = {}) {
    this.session = session;
    this.#names = names;
    this.#made = made;
  }

  /** The children of `path` go into `element`. */
  addRoot(path, element) {
    this.#roots.set(path, element);
  }

  show(fields) {
    const path = fields.show;
    const known = this.children.get(path);
    if (known) return this.#setAll(known, fields);
    if (this.#roots.has(path)) return;
    const child = new Child(fields, this);
    const inside = fields.inside ?? path.slice(0, path.lastIndexOf("."));
    const outer = this.#roots.get(inside) ?? this.children.get(inside)?.element;
    if (!outer) return;
    // The first is the topmost.
    child.element.style.zIndex = String(1000 - outer.childElementCount);
    this.children.set(path, child);
    outer.append(child.element);
    this.#setAll(child, fields);
    const name = this.#names[target(path)[1]];
    if (name) child.element.setAttribute("aria-label", name);
    if (path.endsWith(".StatusDisplay")) child.bringMenu();
    else if (name && child.kind.presses) child.element.setAttribute("role", "img");
    if (fields.kind === "Frame") child.element.setAttribute("role", "group");
    this.#made(target(path)[1], child);
  }

  /** {"changed": "p.VS.lStatus.Caption", "value": V} */
  change({ changed, value }) {
    const dot = changed.lastIndexOf(".");
    this.children.get(changed.slice(0, dot))?.set(changed.slice(dot + 1), value);
  }

  draw(line, bytes) {
    const child = this.children.get(line.draw);
    if (child) child.draw({ ...line, bytes });
    else if (bytes) this.painted(line.draw);
  }

  painted(path) {
    this.session.act("painted", path);
  }

  forget(path) {
    this.#roots.delete(path);
    for (const each of this.children.keys()) if (each.startsWith(`${path}.`)) this.children.delete(each);
  }

  #setAll(child, fields) {
    for (const [field, value] of Object.entries(fields)) child.set(field, value);
  }
}
