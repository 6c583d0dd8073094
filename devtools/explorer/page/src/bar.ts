// What is around the panes: the bar at the top, the tabs of narrow screens, and the way from pane to pane by keyboard.

import examples from "project:examples";
import { button, el } from "./dom";
import { makeFileField } from "./files";
import type { ShareMenu } from "./share";
import { makeThemeField } from "./theme";

interface BarEvents {
  onExample: (name: string, text: string) => void;
  onFile: (file: File) => void;
}

export function makeBar({ onExample, onFile }: BarEvents, share: ShareMenu): HTMLElement {
  const select = el("select", { "aria-label": "Open an example" }, el("option", { value: "" }, "Examples…"));
  for (const { name } of examples) {
    select.append(el("option", { value: name }, name));
  }
  select.addEventListener("change", () => {
    const example = examples.find(({ name }) => name === select.value);
    if (example !== undefined) {
      onExample(example.name, example.text);
    }
    select.value = "";
  });
  const file = makeFileField(onFile);
  const tools = [select, button("Open…", () => file.click()), file, share.element, makeThemeField()];
  const title = el("h1", {}, "Ombrel", el("span", {}, " explorer"));
  return el("header", { class: "bar" }, title, el("div", { class: "bar-tools" }, ...tools));
}

/** On a narrow screen there is room for one pane. */
export function makeTabs(panes: { label: string; element: HTMLElement }[], first: number): HTMLElement {
  const tabs = el("nav", { class: "tabs", "aria-label": "Panes" });
  const show = (index: number) => {
    panes.forEach(({ element }, place) => element.classList.toggle("shown", place === index));
    [...tabs.children].forEach((tab, place) => tab.setAttribute("aria-pressed", String(place === index)));
  };
  panes.forEach(({ label }, index) => tabs.append(button(label, () => show(index))));
  show(first);
  return tabs;
}

/** F6 goes to the next pane, with Shift to the one before. */
export function moveBetweenPanes(event: KeyboardEvent): void {
  if (event.key !== "F6") {
    return;
  }
  event.preventDefault();
  const panes = [...document.querySelectorAll<HTMLElement>(".pane")].filter(isVisible);
  const current = panes.findIndex((pane) => pane.contains(document.activeElement));
  const next = panes[(current + (event.shiftKey ? panes.length - 1 : 1) + panes.length) % panes.length];
  const fields = [...(next?.querySelectorAll<HTMLElement>(".cm-content, input, select, button") ?? [])].filter(isVisible);
  (fields.find((field) => field.classList.contains("cm-content")) ?? fields[0])?.focus();
}

function isVisible(element: HTMLElement): boolean {
  return element.offsetParent !== null;
}
