// The player's six boxes of date and time, as a person uses them to search the archive.

const BOXES = /^TCR\(\d\)$/;
const SEARCH = "Player(7)";

/**
 * While a picture comes its time is written into the boxes. The one that has the focus keeps its text nevertheless, and
 * once a person has typed so do all, until the search, or until the focus goes elsewhere. Enter searches.
 */
export class SearchBoxes {
  #boxes = [];
  #search = null;
  #typed = false;

  /** `inside` holds the boxes; `act` sends what a person does with a child. */
  constructor(inside, act) {
    this.act = act;
    inside.addEventListener("focusin", ({ target }) => this.#focusOn(target));
    inside.addEventListener("pointerdown", ({ target }) => this.#focusOn(target));
    inside.addEventListener("focusout", ({ relatedTarget }) => relatedTarget && this.#focusOn(relatedTarget));
  }

  /** The children are made anew. */
  reset() {
    this.#boxes = [];
    this.#typed = false;
  }

  /** A child of the player is there. */
  add(name, child) {
    if (name === SEARCH) {
      this.#search = child.element;
      // Before the press itself, which reads the boxes.
      child.element.addEventListener("click", () => this.#send(), { capture: true });
    } else if (BOXES.test(name)) {
      this.#boxes.push({ name, child });
      child.element.addEventListener("input", () => {
        this.#typed = true;
        for (const each of this.#boxes) each.child.hold(true);
      });
      child.element.addEventListener("keydown", ({ key }) => key === "Enter" && this.#search?.click());
    }
  }

  #focusOn(target) {
    const isBox = this.#boxes.some(({ child }) => child.element === target);
    if (!isBox && !this.#search?.contains(target)) this.#typed = false;
    for (const { child } of this.#boxes) child.hold(this.#typed || child.element === target);
  }

  // The time in the boxes is searched for, in the form that the control gives a box that is left.
  #send() {
    if (this.#typed) {
      for (const { name, child } of this.#boxes) {
        this.act("type", name, child.element.value);
        this.act("leave", name);
      }
    }
    this.#typed = false;
    for (const { child } of this.#boxes) child.hold(false, { forget: true });
  }
}
