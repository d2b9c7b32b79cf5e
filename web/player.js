// <user-control-1>: the player.

import { ControlElement, addMembers } from "./element.js";
import { interfaces } from "./interface.js";
import { SearchBoxes } from "./search.js";

const KEYS = new Map(interfaces.UserControl1.persisted.map((key) => [key.toLowerCase(), key]));
const HOURGLASS = 11;

export class UserControl1Element extends ControlElement {
  static control = "UserControl1";
  static observedAttributes = [...KEYS.keys()];

  #loading = false;
  #boxes = new SearchBoxes(this.inside, (command, child, ...words) =>
    this.session?.act(command, this.name, child, ...words),
  );

  attributeChangedCallback(_attribute, before, text) {
    if (text !== before && this.session?.isOpen) this.#load();
  }

  get childNames() {
    return {
      CamList: "Camera", PlayerControls: "Toolbar", Frame1: "Server", VS: "Viewer", "VS.VideoStream": "Camera picture",
      "VS.Mira": "Test card", "VS.StatusDisplay": "Status", "TCR(0)": "Year", "TCR(1)": "Month", "TCR(2)": "Day",
      "TCR(3)": "Hour", "TCR(4)": "Minute", "TCR(5)": "Second", Cameras: "Cameras", Log: "Activity log",
      AlertList: "Alerts or inputs", OutList: "Outputs", "vs.VideoStream": "Camera picture",
    };
  }

  prepare() {
    this.#boxes.reset();
    this.#load();
  }

  childMade(name, child) {
    this.#boxes.add(name, child);
  }

  // The attributes, as a host has kept them; several that change together are read once.
  #load() {
    if (this.#loading) return;
    this.#loading = true;
    queueMicrotask(() => {
      this.#loading = false;
      if (!this.session?.isOpen) return;
      const bag = [...KEYS].filter(([attribute]) => this.hasAttribute(attribute));
      this.session.act("load", this.name, ...bag.map(([attribute, key]) => `${key}=${this.getAttribute(attribute)}`));
    });
  }

  changed(field, value) {
    if (field !== "MousePointer") return;
    const busy = value === HOURGLASS;
    this.style.cursor = busy ? "progress" : "";
    this.setAttribute("aria-busy", String(busy));
  }
}

addMembers(UserControl1Element);
