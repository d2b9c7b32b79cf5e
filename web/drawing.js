// The drawings of a control, made again on a canvas.

const RED = (color) => color & 0xff;
const GREEN = (color) => (color >> 8) & 0xff;
const BLUE = (color) => (color >> 16) & 0xff;

/** A colour of the interface, red + 256 × green + 65536 × blue, as CSS has it. */
export function css(color) {
  return `rgb(${RED(color)}, ${GREEN(color)}, ${BLUE(color)})`;
}

function covers(drawing, other) {
  return (
    drawing.x <= other.x &&
    drawing.y <= other.y &&
    drawing.x + drawing.width >= other.x + other.width &&
    drawing.y + drawing.height >= other.y + other.height
  );
}

/** Draws on a canvas, in order; pictures are decoded by the browser, off this thread where it can, the newest alone. */
export class Painter {
  #canvas;
  #painted;
  #waiting = [];
  #busy = false;
  #own; // the canvas has the picture's size, and is stretched
  #background;

  /** `painted` is called for each picture, drawn or left out. */
  constructor(canvas, { painted, ownSize = false, background = 0xffffff }) {
    this.#canvas = canvas;
    this.#painted = painted;
    this.#own = ownSize;
    this.#background = background;
  }

  /** Gives the canvas a size in CSS pixels. What was drawn stays at the top-left corner. */
  resize(width, height) {
    if (this.#own) return;
    const ratio = window.devicePixelRatio || 1;
    const size = [Math.round(width * ratio), Math.round(height * ratio)];
    const canvas = this.#canvas;
    if (canvas.width === size[0] && canvas.height === size[1]) return;
    const kept = canvas.width && canvas.height ? copyOf(canvas) : null;
    [canvas.width, canvas.height] = size;
    const context = canvas.getContext("2d");
    context.fillStyle = css(this.#background);
    context.fillRect(0, 0, ...size);
    if (kept) context.drawImage(kept, 0, 0);
    context.scale(ratio, ratio);
  }

  /** drawing: {x, y, width, height} with a color, or a type and bytes. */
  draw(drawing) {
    this.#waiting.push(drawing);
    if (!this.#busy) this.#drawAll();
  }

  async #drawAll() {
    this.#busy = true;
    while (this.#waiting.length > 0) {
      const next = this.#waiting.shift();
      if (next.type === undefined) this.#fill(next);
      else await this.#picture(next);
    }
    this.#busy = false;
  }

  #fill({ x, y, width, height, color }) {
    const context = this.#canvas.getContext("2d");
    context.fillStyle = css(color);
    context.fillRect(x, y, width, height);
  }

  // One that cannot be decoded leaves the canvas as it is.
  async #picture(drawing) {
    const covered = this.#waiting.some((later) => later.type === "image/jpeg" && covers(later, drawing));
    try {
      if (!covered) this.#show(await createImageBitmap(new Blob([drawing.bytes], { type: drawing.type })), drawing);
    } catch {
      // not a picture
    }
    this.#painted();
  }

  #show(bitmap, { x, y, width, height }) {
    const canvas = this.#canvas;
    if (this.#own) {
      [canvas.width, canvas.height] = [bitmap.width, bitmap.height];
      canvas.getContext("2d").drawImage(bitmap, 0, 0);
    } else {
      canvas.getContext("2d").drawImage(bitmap, x, y, width, height);
    }
    bitmap.close();
  }
}

function copyOf(canvas) {
  const copy = document.createElement("canvas");
  [copy.width, copy.height] = [canvas.width, canvas.height];
  copy.getContext("2d").drawImage(canvas, 0, 0);
  return copy;
}
