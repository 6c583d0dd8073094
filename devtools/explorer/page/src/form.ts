// The form of the options, made from the schema: a field for each, its text from the documents, and a button that takes
// a changed value back.

import type { Engine } from "./api";
import { button, el, makeId } from "./dom";
import { explain } from "./explanations";
import { isSameValue, type OptionValues } from "./options";
import type { ConstructOption, ConstructTree, Option, OptionValue, Section, WordTree } from "./schema";

type Change = (option: Option, value: OptionValue) => void;

/** "trimUnnecessaryWhitespace" as words. */
function makeLabel(key: string): string {
  const words = key.replace(/[A-Z]/g, (letter) => ` ${letter.toLowerCase()}`);
  return words.charAt(0).toUpperCase() + words.slice(1);
}

function makeSelect(id: string, words: string[], value: string, onChange: (word: string) => void): HTMLSelectElement {
  const select = el("select", { id, change: () => onChange(select.value) });
  for (const word of words) {
    select.append(el("option", { value: word }, word));
  }
  select.value = value;
  return select;
}

/** A value that is a word. */
function getWord(value: OptionValue): string {
  return typeof value === "string" ? value : "";
}

const separately = "separately…";

/** Fields for a value that is a word for all constructs of a group, or one for each of its members. */
class ConstructFields {
  constructor(
    private readonly option: ConstructOption,
    private readonly change: (value: string | WordTree) => void,
  ) {}

  make(tree: ConstructTree, value: string | WordTree, id: string): HTMLElement[] {
    return this.makeGroup(tree, value, id, this.change);
  }

  private makeGroup(
    tree: ConstructTree,
    value: string | WordTree,
    id: string,
    change: (value: string | WordTree) => void,
  ): HTMLElement[] {
    const isGroup = tree.members.length > 0;
    const words = isGroup ? [...this.option.words, separately] : this.option.words;
    const select = makeSelect(id, words, typeof value === "string" ? value : separately, (word) =>
      change(word === separately ? this.expand(tree, value) : word),
    );
    return typeof value === "string" ? [select] : [select, this.makeMembers(tree, value, change)];
  }

  private makeMembers(tree: ConstructTree, value: WordTree, change: (value: WordTree) => void): HTMLElement {
    const list = el("ul", { class: "constructs" });
    for (const member of tree.members) {
      const id = makeId("construct");
      const own = value[member.name] ?? getWord(this.option.factory);
      const fields = this.makeGroup(member, own, id, (inner) => change({ ...value, [member.name]: inner }));
      fields[0]?.setAttribute("data-construct", member.name);
      list.append(el("li", {}, el("label", { for: id }, member.name), ...fields));
    }
    return list;
  }

  /** The same word for each member. */
  private expand(tree: ConstructTree, value: string | WordTree): WordTree {
    const word = typeof value === "string" ? value : getWord(this.option.factory);
    return Object.fromEntries(tree.members.map((member) => [member.name, word]));
  }
}

class OptionField {
  readonly element: HTMLElement;
  private readonly id = makeId("option");
  private readonly control = el("div", { class: "control" });
  private readonly reset: HTMLButtonElement;
  private shown: OptionValue | undefined;

  constructor(
    private readonly option: Option,
    private readonly change: Change,
  ) {
    const label = makeLabel(option.key);
    this.reset = button("↺", () => this.takeBack(), {
      class: "reset",
      "aria-label": `Reset ${label} to its default`,
      title: `Default: ${JSON.stringify(option.factory)}`,
    });
    this.element = el(
      "div",
      { class: "option", "data-option": option.name },
      el("div", { class: "option-head" }, el("label", { for: this.id }, label), this.reset),
      this.control,
      el("p", { class: "hint", id: `${this.id}-hint` }, option.description),
      this.makeExplanation(label),
    );
  }

  show(value: OptionValue): void {
    const isChanged = !isSameValue(value, this.option.factory);
    this.element.classList.toggle("changed", isChanged);
    this.reset.hidden = !isChanged;
    if (this.shown === undefined || !isSameValue(this.shown, value)) {
      this.shown = value;
      this.renderControl(value);
    }
  }

  private takeBack(): void {
    this.change(this.option, this.option.factory);
    document.getElementById(this.id)?.focus();
  }

  private renderControl(value: OptionValue): void {
    const focused = this.getFocusedConstruct();
    const fields = this.makeFields(value);
    fields[0]?.setAttribute("aria-describedby", `${this.id}-hint`);
    if (this.isInUse(value)) {
      return;
    }
    this.control.replaceChildren(...fields);
    if (focused !== null) {
      this.control.querySelector<HTMLElement>(focused)?.focus();
    }
  }

  /** A number that is being typed stays as it is typed. */
  private isInUse(value: OptionValue): boolean {
    const field = document.activeElement;
    return field instanceof HTMLInputElement && field.id === this.id && field.type === "number"
      && Number(field.value) === value;
  }

  private getFocusedConstruct(): string | null {
    const field = document.activeElement;
    if (!(field instanceof HTMLElement) || !this.control.contains(field)) {
      return null;
    }
    const construct = field.getAttribute("data-construct");
    return construct === null ? `#${this.id}` : `[data-construct="${construct}"]`;
  }

  private makeFields(value: OptionValue): HTMLElement[] {
    const { option } = this;
    const change = (newValue: OptionValue) => this.change(option, newValue);
    switch (option.type) {
      case "boolean": {
        const box = el("input", { type: "checkbox", id: this.id, change: () => change(box.checked) });
        box.checked = value === true;
        return [box];
      }
      case "number": {
        const field = el("input", {
          type: "number",
          id: this.id,
          min: String(option.low),
          max: String(option.high),
          input: () => field.validity.valid && field.value !== "" && change(Number(field.value)),
        });
        field.value = JSON.stringify(value);
        return [field];
      }
      case "word":
        return [makeSelect(this.id, option.words, getWord(value), change)];
      case "construct":
        return new ConstructFields(option, change).make(option.constructs, value as string | WordTree, this.id);
    }
  }

  private makeExplanation(label: string): HTMLElement | null {
    const blocks = this.option.section === "formatting" ? explain(this.option.key) : [];
    if (blocks.length === 0) {
      return null;
    }
    const summary = el("summary", {}, "What it does", el("span", { class: "unseen" }, `: ${label}`));
    return el("details", { class: "explanation" }, summary, ...blocks);
  }
}

/** The options of the engine that is chosen. */
export class OptionForm {
  readonly element = el("div", { class: "form" });
  private readonly fields = new Map<string, OptionField>();
  private readonly groups: { engine: Engine; element: HTMLElement }[] = [];

  constructor(
    private readonly sections: Section[],
    change: Change,
  ) {
    for (const section of sections.filter(({ name }) => name !== "")) {
      const group = el("fieldset", {}, el("legend", {}, section.description));
      for (const option of section.options) {
        const field = new OptionField(option, change);
        this.fields.set(option.name, field);
        group.append(field.element);
      }
      this.groups.push({ engine: section.name === "formatting" ? "tree" : "line", element: group });
      this.element.append(group);
    }
  }

  show(values: OptionValues, engine: Engine): void {
    for (const { options } of this.sections) {
      for (const option of options) {
        this.fields.get(option.name)?.show(values[option.name] ?? option.factory);
      }
    }
    for (const group of this.groups) {
      group.element.hidden = group.engine !== engine;
    }
  }
}
