// <video-server-push>: the stream viewer.

import { ControlElement, addMembers } from "./element.js";
import { interfaces } from "./interface.js";

const PROPERTIES = Object.entries(interfaces.VideoServerPush.properties).filter(([, { writable }]) => writable);
const BY_ATTRIBUTE = new Map(PROPERTIES.map(([name, { type }]) => [name.toLowerCase(), { name, type }]));

/** The value of an attribute; one without a text, or with "true" or "yes", is true. */
function valueOf(text, type) {
  if (type === "Boolean") return ["", "true", "yes"].includes(text.toLowerCase());
  return type === "String" ? text : Number(text);
}

export class VideoServerPushElement extends ControlElement {
  static control = "VideoServerPush";
  static observedAttributes = ["url", ...BY_ATTRIBUTE.keys()];

  #connected = null; // the arguments of the Connect that holds
  #waiting = 0; // calls of it that a page waits for

  // One that is removed is false, or no address; what was a number or a text stays.
  attributeChangedCallback(attribute, before, text) {
    if (text === before) return;
    if (attribute === "url") {
      this.#connected = text ? [text] : null;
      if (!this.session?.isOpen) return; // the next session begins with it
      this.session.act("call", this.name, ...(text ? ["Connect", text] : ["Disconnect"]));
    } else {
      const { name, type } = BY_ATTRIBUTE.get(attribute);
      if (text !== null) this.setProperty(name, valueOf(text, type));
      else if (type === "Boolean") this.setProperty(name, false);
    }
  }

  get childNames() {
    return { VideoStream: "Camera picture", Mira: "Test card", StatusDisplay: "Status" };
  }

  begin() {
    if (this.#connected && this.#waiting === 0) this.session.act("call", this.name, "Connect", ...this.#connected);
  }

  Connect(...given) {
    this.#connected = given;
    this.#waiting += 1;
    return this.callMethod("Connect", given)
      .finally(() => (this.#waiting -= 1))
      .then(() => undefined);
  }

  Disconnect(...given) {
    this.#connected = null;
    return this.callMethod("Disconnect", given).then(() => undefined);
  }

  /** The newest picture as the browser has pictures; null where there is none. */
  async GetPicture() {
    const bytes = await this.GetPictureArray();
    if (bytes.length === 0) return null;
    return createImageBitmap(new Blob([bytes])).catch(() => null);
  }

  /** Draws the newest picture at the top-left corner of a canvas. */
  async RenderPicture(canvas, width = 0, height = 0) {
    const picture = await this.GetPicture();
    if (picture) canvas.getContext("2d").drawImage(picture, 0, 0, width || picture.width, height || picture.height);
  }
}

addMembers(VideoServerPushElement);
