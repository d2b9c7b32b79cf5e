// The controls' questions to a person, and what they give one: files, the clipboard, settings.

const KEPT = "orbelcast:";

function element(name, properties = {}, ...children) {
  const made = Object.assign(document.createElement(name), properties);
  made.append(...children);
  return made;
}

/** A name to begin with for a file of the kinds in `filter`: pairs of a description and a pattern, with | between. */
function proposedName(filter = "") {
  const ending = /\*(\.[a-z0-9]+)/i.exec(filter)?.[1] ?? "";
  const now = new Date();
  const two = (number) => String(number).padStart(2, "0");
  const day = `${now.getFullYear()}-${two(now.getMonth() + 1)}-${two(now.getDate())}`;
  return `${day}-${two(now.getHours())}${two(now.getMinutes())}${two(now.getSeconds())}${ending}`;
}

const KINDS = {
  message: ({ buttons }) => ({ buttons, cancelled: buttons.includes("No") ? "No" : "OK" }),
  input: () => ({ field: element("input", { type: "text" }), buttons: ["OK", "Cancel"], cancelled: "cancel" }),
  save: ({ filter }) => ({
    field: element("input", { type: "text", value: proposedName(filter) }),
    buttons: ["Save", "Cancel"],
    cancelled: "cancel",
    label: "File name",
  }),
  compression: ({ choices }) => ({
    field: element("select", {}, ...choices.map((each) => element("option", { textContent: each }))),
    buttons: ["OK", "Cancel"],
    cancelled: "cancel",
    label: "Compression",
  }),
};

/** Asks the question of a line {"dialog": KIND, ...} in a dialog inside `root`; resolves with the answer. */
export function ask(question, root) {
  const { field, buttons, cancelled, label } = KINDS[question.dialog](question);
  return new Promise((resolve) => {
    const form = element("form", { method: "dialog" });
    const dialog = element("dialog", { className: "question" }, form);
    const text = element("p", { textContent: question.text ?? "" });
    text.className = question.icon ?? "";
    if (question.title) form.append(element("h2", { textContent: question.title }));
    if (question.text) form.append(field ? element("label", {}, text, field) : text);
    else if (field) form.append(element("label", {}, label, field));
    dialog.setAttribute("aria-label", question.title || question.text || label);
    const row = element("div", { className: "row" });
    for (const each of buttons) row.append(element("button", { value: each, textContent: each }));
    form.append(row);
    dialog.onclose = () => {
      const given = dialog.returnValue;
      const refused = given === "" || given === "Cancel";
      dialog.remove();
      if (refused) resolve(cancelled);
      else resolve(field ? field.value || cancelled : given);
    };
    root.append(dialog);
    dialog.showModal();
    (field ?? row.firstChild).focus();
    field?.select?.();
  });
}

/** Gives the person a file. */
export function download(name, bytes, type = "application/octet-stream") {
  const address = URL.createObjectURL(new Blob([bytes], { type }));
  element("a", { href: address, download: name.split(/[\\/]/).pop() || "file" }).click();
  setTimeout(() => URL.revokeObjectURL(address), 60_000);
}

/** Puts a PNG on the clipboard; where the browser does not let it be, it is a download. */
export async function toClipboard(bytes) {
  const png = new Blob([bytes], { type: "image/png" });
  try {
    await navigator.clipboard.write([new ClipboardItem({ "image/png": png })]);
  } catch {
    download("picture.png", bytes, "image/png");
  }
}

/** Keeps a setting of the controls, for this page's origin. */
export function keep({ keep: key, name, text }) {
  try {
    localStorage.setItem(KEPT + JSON.stringify([key, name]), text);
  } catch {
    // a page without storage
  }
}

/** All that were kept: [key, name, text]. */
export function kept() {
  try {
    return Object.keys(localStorage)
      .filter((each) => each.startsWith(KEPT))
      .map((each) => [...JSON.parse(each.slice(KEPT.length)), localStorage.getItem(each)]);
  } catch {
    return [];
  }
}
