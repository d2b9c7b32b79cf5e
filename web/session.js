// A session with the gateway: lines out, JSON lines and bytes in, over a WebSocket that comes back by itself.

const SILENCE_MS = 40_000; // the gateway says something every 15 s
const FIRST_RETRY_MS = 500;
const LONGEST_RETRY_MS = 15_000;

/** The text as one word of a line, whatever is in it. */
export function quoted(text) {
  const escapes = { "\\": "\\\\", '"': '\\"', "\n": "\\n", "\r": "\\r", "\t": "\\t" };
  return `"${String(text).replace(/[\\"\n\r\t]/g, (each) => escapes[each])}"`;
}

function linesOf(text) {
  return text.split("\n").map((each) => JSON.parse(each));
}

/** A message of bytes: the length of its lines in four bytes, the lines, and what the last of them describes. */
function split(buffer) {
  const length = new DataView(buffer).getUint32(0, true);
  const lines = new TextDecoder().decode(new Uint8Array(buffer, 4, length));
  return [linesOf(lines), new Uint8Array(buffer, 4 + length)];
}

export class Session {
  #url;
  #handlers;
  #socket = null;
  #sent = 0;
  #asked = new Map(); // by the line's number
  #retries = 0;
  #timer = 0;
  #silence = 0;
  #closed = false;
  #backOnline = () => this.#retryNow();

  /** handlers: opened(), line(json), bytes(json, Uint8Array), lost(). Each opening is a new session at the gateway. */
  constructor(url, handlers) {
    this.#url = url;
    this.#handlers = handlers;
    window.addEventListener("online", this.#backOnline);
    this.#connect();
  }

  get isOpen() {
    return this.#socket?.readyState === WebSocket.OPEN;
  }

  /** Sends a line; resolves with its answer (undefined where it has none), rejects with what was wrong. */
  send(command, ...words) {
    if (!this.isOpen) return Promise.reject(new Error("there is no connection to the gateway"));
    this.#socket.send([command, ...words.map(quoted)].join(" "));
    const number = ++this.#sent;
    if (command === "painted") return Promise.resolve();
    return new Promise((resolve, reject) => this.#asked.set(number, { resolve, reject, answer: undefined }));
  }

  /** The same, for a person's action that may come too late: what is wrong with it is of no interest. */
  act(command, ...words) {
    return this.send(command, ...words).catch(() => {});
  }

  close() {
    this.#closed = true;
    window.removeEventListener("online", this.#backOnline);
    clearTimeout(this.#timer);
    clearTimeout(this.#silence);
    this.#socket?.close();
    this.#forget("the element is not in the page any more");
  }

  #connect() {
    if (this.#closed) return;
    const socket = new WebSocket(this.#url);
    socket.binaryType = "arraybuffer";
    this.#socket = socket;
    this.#sent = 0;
    socket.onopen = () => {
      this.#retries = 0;
      this.#listen();
      this.#handlers.opened();
    };
    socket.onmessage = ({ data }) => {
      if (socket !== this.#socket) return;
      this.#listen();
      if (typeof data === "string") return linesOf(data).forEach((each) => this.#take(each));
      const [lines, bytes] = split(data);
      lines.slice(0, -1).forEach((each) => this.#take(each));
      this.#handlers.bytes(lines.at(-1), bytes);
    };
    socket.onclose = () => this.#lost(socket);
    this.#listen();
  }

  #take(line) {
    const asked = this.#asked.get(line.done ?? line.line);
    if (asked && "error" in line) {
      this.#asked.delete(line.line);
      asked.reject(new Error(line.error));
    } else if (asked && "done" in line) {
      this.#asked.delete(line.done);
      asked.resolve(asked.answer);
    } else if (asked) {
      asked.answer = "result" in line ? line.result : line.value;
    } else if (!("done" in line || "alive" in line)) {
      this.#handlers.line(line);
    }
  }

  // Again after a time that doubles, up to a ceiling, and is never the same for all pages of a gateway.
  #lost(socket) {
    if (this.#closed || socket !== this.#socket) return;
    clearTimeout(this.#silence);
    this.#forget("the connection to the gateway was lost");
    this.#handlers.lost();
    const longest = Math.min(FIRST_RETRY_MS * 2 ** this.#retries++, LONGEST_RETRY_MS);
    this.#timer = setTimeout(() => this.#connect(), longest * (0.5 + Math.random() / 2));
  }

  #retryNow() {
    if (this.#closed || this.isOpen) return;
    clearTimeout(this.#timer);
    this.#connect();
  }

  #listen() {
    clearTimeout(this.#silence);
    this.#silence = setTimeout(() => {
      const socket = this.#socket;
      socket.close();
      this.#lost(socket);
    }, SILENCE_MS);
  }

  #forget(why) {
    for (const { reject } of this.#asked.values()) reject(new Error(why));
    this.#asked.clear();
  }
}
