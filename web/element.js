// The common part of both elements: a control of the gateway's, with its members, its children and its questions.

import { interfaces } from "./interface.js";
import { Mirror, TWIPS } from "./mirror.js";
import { ask, download, keep, kept, toClipboard } from "./questions.js";
import { Session } from "./session.js";
import { sheet } from "./style.js";

const GRACE_MS = 5000; // an element that is moved in the page keeps its session
const NAME = "c"; // of the control in its session

function gatewayAddress(element) {
  const address = new URL("session", element.getAttribute("gateway") ?? import.meta.url);
  address.protocol = address.protocol === "https:" ? "wss:" : "ws:";
  return address.href;
}

function bytesOf(base64) {
  return Uint8Array.from(atob(base64), (letter) => letter.charCodeAt(0));
}

/** An element that shows a control. A class made from it names the control's class and its attributes. */
export class ControlElement extends HTMLElement {
  /** Of the interface's description. */
  static control = "";

  #session = null;
  #mirror = null;
  #values = {}; // the properties, as the control told them last
  #set = {}; // those that the page set, which a new session gets again
  #inside = document.createElement("div");
  #notice = Object.assign(document.createElement("div"), { className: "notice", hidden: true });
  #grace = 0;
  #seen = true;
  #inView = true;
  #windows = new Map();
  #ready = Promise.withResolvers ? Promise.withResolvers() : withResolvers();
  #sizes = new ResizeObserver(() => this.#place());
  #views = new IntersectionObserver((entries) => {
    this.#inView = entries.at(-1).isIntersecting;
    this.#tellSeen();
  });
  #visibility = () => this.#tellSeen();

  constructor() {
    super();
    const root = this.attachShadow({ mode: "open" });
    root.adoptedStyleSheets = [sheet];
    this.#inside.className = "inside";
    this.#notice.setAttribute("role", "status");
    root.append(this.#inside, this.#notice);
    this.#takeEarlyProperties();
  }

  // Those that a script set while the element was none of these yet.
  #takeEarlyProperties() {
    const { properties } = interfaces[this.constructor.control];
    for (const [name, { writable }] of Object.entries(properties)) {
      if (!Object.hasOwn(this, name)) continue;
      const value = this[name];
      delete this[name];
      if (writable) this[name] = value;
    }
  }

  /** Resolves when the gateway shows the control. */
  get ready() {
    return this.#ready.promise;
  }

  connectedCallback() {
    if (!this.hasAttribute("role")) this.setAttribute("role", "group");
    clearTimeout(this.#grace);
    this.#sizes.observe(this);
    this.#views.observe(this);
    document.addEventListener("visibilitychange", this.#visibility);
    this.#session ??= this.#begin();
  }

  disconnectedCallback() {
    this.#sizes.disconnect();
    this.#views.disconnect();
    document.removeEventListener("visibilitychange", this.#visibility);
    this.#grace = setTimeout(() => this.#end(), GRACE_MS);
  }

  // ---- For the elements made from it ----

  get session() {
    return this.#session;
  }
  get name() {
    return NAME;
  }
  get inside() {
    return this.#inside;
  }
  get mirror() {
    return this.#mirror;
  }
  /** Accessible names of children, by their names. */
  get childNames() {
    return {};
  }
  /** A child control is shown for the first time. */
  childMade(_name, _child) {}
  /** The control is there, before the page's own properties are set again. */
  prepare() {}
  /** Those are set. */
  begin() {}
  /** A line that the common part does not know. */
  take(_line) {}

  property(name) {
    return this.#values[name] ?? this.#set[name];
  }
  setProperty(name, value) {
    this.#set[name] = value;
    this.#values[name] = value;
    if (this.#session?.isOpen) this.#session.act("set", NAME, name, value);
  }
  async callMethod(name, given) {
    await this.ready;
    return this.#session.send("call", NAME, name, ...given);
  }

  // ---- The session ----

  #begin() {
    return new Session(gatewayAddress(this), {
      opened: () => this.#opened(),
      line: (line) => this.#take(line),
      bytes: (line, bytes) => this.#takeBytes(line, bytes),
      lost: () => this.#lost(),
    });
  }

  #end() {
    this.#session?.close();
    this.#session = null;
    this.#closeWindows();
    this.#inside.replaceChildren();
    if (this.#ready.done) this.#ready = withResolvers();
  }

  #opened() {
    const session = this.#session;
    this.#closeWindows();
    this.#inside.replaceChildren();
    this.#mirror = new Mirror(session, {
      names: this.childNames,
      made: (name, child) => this.childMade(name, child),
    });
    this.#mirror.addRoot(NAME, this.#inside);
    for (const each of kept()) session.act("keep", ...each);
    session.act("create", NAME, this.constructor.control);
    session.act("show", NAME);
    this.#seen = true;
    this.#place();
    this.prepare();
    for (const [name, value] of Object.entries(this.#set)) session.act("set", NAME, name, value);
    this.begin();
    this.#tellSeen();
    this.#notice.hidden = true;
    this.#ready.done = true;
    this.#ready.resolve();
  }

  #lost() {
    if (this.#ready.done) this.#ready = withResolvers();
    this.#closeWindows();
    this.#inside.classList.add("away");
    this.#notice.textContent = "The gateway does not answer. Trying again…";
    this.#notice.hidden = false;
    this.dispatchEvent(new CustomEvent("gatewaylost"));
  }

  #take(line) {
    if ("event" in line) this.dispatchEvent(new CustomEvent(line.event, { detail: line.args }));
    else if ("show" in line) this.#show(line);
    else if ("changed" in line) this.#change(line);
    else if ("draw" in line) this.#mirror.draw(line);
    else if ("property" in line) this.#values[line.property.slice(NAME.length + 1)] = line.value;
    else if ("window" in line) this.#openWindow(line);
    else if ("closed" in line) this.#closeWindow(line.closed);
    else if ("dialog" in line) this.#ask(line);
    else if ("menu" in line) this.#popUp(line);
    else if ("keep" in line) keep(line);
    else this.take(line);
  }

  #takeBytes(line, bytes) {
    if ("draw" in line) this.#mirror.draw(line, bytes);
    else if ("file" in line) download(line.file, bytes);
    else if ("clipboard" in line) toClipboard(bytes);
  }

  #show(line) {
    this.#inside.classList.remove("away");
    if (this.#windows.has(line.show)) this.#sizeWindow(line.show, line);
    else if (line.show !== NAME) this.#mirror.show(line);
  }

  #change(line) {
    const [path, field] = [line.changed.slice(0, line.changed.lastIndexOf(".")), line.changed.split(".").at(-1)];
    if (this.#windows.has(path)) this.#sizeWindow(path, { [field]: line.value });
    else if (path === NAME) this.changed(field, line.value);
    else this.#mirror.change(line);
  }

  /** A field of the control itself. */
  changed(_field, _value) {}

  async #ask(line) {
    const session = this.#session;
    session.act("answer", line.dialog, await ask(line, this.shadowRoot));
  }

  // ---- Size and sight ----

  #place() {
    if (!this.#session?.isOpen || this.clientWidth === 0) return;
    this.#session.act("place", NAME, this.clientWidth * TWIPS, this.clientHeight * TWIPS);
  }

  // Nobody looks at a tab that is hidden, or at an element out of sight: its pictures are not sent, its events are.
  #tellSeen() {
    const seen = this.hasAttribute("background") || (this.#inView && document.visibilityState === "visible");
    if (seen === this.#seen || !this.#session?.isOpen) return;
    this.#seen = seen;
    this.#session.act(seen ? "seen" : "unseen", NAME);
  }

  // ---- Windows ----

  #openWindow({ window: name, caption }) {
    const dialog = document.createElement("dialog");
    dialog.className = "window";
    dialog.autofocus = true; // not its close box
    dialog.innerHTML = `<header><h2></h2><button type="button" class="close" aria-label="Close">✕</button></header>
      <div class="inside"></div>`;
    const close = () => this.#session.act("close", name);
    dialog.querySelector(".close").onclick = close;
    dialog.addEventListener("cancel", (event) => {
      event.preventDefault();
      close();
    });
    this.#windows.set(name, dialog);
    this.#mirror.addRoot(name, dialog.querySelector(".inside"));
    this.#sizeWindow(name, { Caption: caption });
    this.shadowRoot.append(dialog);
    dialog.showModal();
  }

  #sizeWindow(name, fields) {
    const dialog = this.#windows.get(name);
    const inside = dialog.querySelector(".inside");
    if (fields.FullScreen) return this.#fillScreen(name, dialog);
    if (dialog.classList.contains("full")) return;
    if ("Width" in fields) inside.style.width = `${fields.Width / TWIPS}px`;
    if ("Height" in fields) inside.style.height = `${fields.Height / TWIPS}px`;
    if ("Caption" in fields) {
      dialog.querySelector("h2").textContent = fields.Caption;
      dialog.setAttribute("aria-label", fields.Caption);
    }
  }

  #fillScreen(name, dialog) {
    dialog.classList.add("full");
    dialog.setAttribute("aria-label", "Full screen");
    const place = () => this.#session.act("place", name, dialog.clientWidth * TWIPS, dialog.clientHeight * TWIPS);
    dialog.sizes = new ResizeObserver(place);
    dialog.sizes.observe(dialog);
    dialog.requestFullscreen?.().catch(() => {
      // It fills the page then.
    });
    dialog.addEventListener("fullscreenchange", () => {
      if (!document.fullscreenElement) this.#session.act("close", name);
    });
  }

  #closeWindow(name) {
    const dialog = this.#windows.get(name);
    if (!dialog) return;
    this.#windows.delete(name);
    this.#mirror.forget(name);
    dialog.sizes?.disconnect();
    if (document.fullscreenElement) document.exitFullscreen().catch(() => {});
    dialog.close();
    dialog.remove();
  }

  #closeWindows() {
    for (const name of [...this.#windows.keys()]) this.#closeWindow(name);
    for (const each of this.shadowRoot.querySelectorAll("dialog, .menu")) each.remove();
  }

  #popUp({ menu, items }) {
    const popup = document.createElement("div");
    popup.className = "menu";
    popup.setAttribute("role", "menu");
    popup.setAttribute("aria-label", "Status strip");
    popup.popover = "auto";
    items.forEach(({ caption, checked }, index) => {
      if (caption === "-") return popup.append(document.createElement("hr"));
      const item = Object.assign(document.createElement("button"), { type: "button", textContent: caption });
      item.setAttribute("role", "menuitemcheckbox");
      item.setAttribute("aria-checked", String(checked));
      item.onclick = () => {
        popup.hidePopover?.();
        popup.remove();
        this.#session.act("menu", menu, `Menux(${index})`);
      };
      popup.append(item);
    });
    this.shadowRoot.append(popup);
    popup.style.left = `${this.#mirror.pointer.x}px`;
    popup.style.top = `${this.#mirror.pointer.y}px`;
    popup.addEventListener("toggle", (event) => event.newState === "closed" && popup.remove());
    popup.showPopover?.();
    popup.querySelector("button")?.focus();
  }
}

function withResolvers() {
  const made = {};
  made.promise = new Promise((resolve) => (made.resolve = resolve));
  return made;
}

/** Gives an element's class the members of its control: properties, and methods that return promises. */
export function addMembers(elementClass) {
  const { properties, methods } = interfaces[elementClass.control];
  for (const [name, { type, writable }] of Object.entries(properties)) {
    const members = { get() { return this.property(name); }, configurable: true, enumerable: true };
    const number = type !== "String" && type !== "Boolean";
    if (writable) {
      members.set = function (value) {
        this.setProperty(name, number ? Number(value) : type === "Boolean" ? Boolean(value) : String(value));
      };
    }
    Object.defineProperty(elementClass.prototype, name, members);
  }
  for (const [name, { result }] of Object.entries(methods)) {
    if (Object.hasOwn(elementClass.prototype, name)) continue; // one that the page has its own form of
    elementClass.prototype[name] = async function (...given) {
      const answer = await this.callMethod(name, given);
      return result === "Variant" ? bytesOf(answer.base64) : answer ?? undefined;
    };
  }
}
