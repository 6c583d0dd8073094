// Elements are only ever made here, and texts only ever become text nodes.

export type Child = Node | string | null;

type Attributes = Record<string, string | boolean | ((event: Event) => void)>;

/** Makes an element. An attribute that is a function listens to the event of that name; `false` leaves one out. */
export function el<Name extends keyof HTMLElementTagNameMap>(
  name: Name,
  attributes: Attributes = {},
  ...children: Child[]
): HTMLElementTagNameMap[Name] {
  const element = document.createElement(name);
  for (const [key, value] of Object.entries(attributes)) {
    if (typeof value === "function") {
      element.addEventListener(key, value);
    } else if (value !== false) {
      element.setAttribute(key, value === true ? "" : value);
    }
  }
  element.append(...children.filter((child) => child !== null));
  return element;
}

/** A button that does nothing but call a function. */
export function button(label: string, onClick: () => void, attributes: Attributes = {}): HTMLButtonElement {
  return el("button", { type: "button", click: onClick, ...attributes }, label);
}

let lastId = 0;

/** An id that no other element has. */
export function makeId(prefix: string): string {
  lastId += 1;
  return `${prefix}-${lastId}`;
}
