// The options: as a form, and as the file that says the same, which can be edited too.

import type { EditorView } from "@codemirror/view";
import type { Engine, Problem } from "./api";
import { button, el } from "./dom";
import { makeEditor, goTo, setText } from "./editors";
import { OptionForm } from "./form";
import { getOffset, MarkLayer } from "./marks";
import { isSameValue, makeOptionsFile, readOptionsFile, type OptionValues } from "./options";
import type { Option, OptionValue, Section } from "./schema";

const engines: { name: Engine; label: string; hint: string }[] = [
  { name: "line", label: "Line engine", hint: "Indents any text, line by line" },
  { name: "tree", label: "Tree engine", hint: "Lays out a text that parses" },
];

/** What most people want first: indentation, and lines that fit. */
const layout: OptionValues = {
  "formatting.indentationEnabled": true,
  "formatting.lineBreakingEnabled": true,
};

export class OptionsPane {
  readonly element: HTMLElement;
  private readonly form: OptionForm;
  private readonly file: EditorView;
  private readonly problems = new MarkLayer();
  private readonly formBox: HTMLElement;
  private readonly fileBox = el("div", { class: "editor", hidden: true });
  private readonly views: HTMLButtonElement[];
  private readonly engineFields = new Map<Engine, HTMLInputElement>();
  private readonly resetAll = button("Reset all", () => this.change({}), { class: "quiet" });
  private values: OptionValues = {};
  private engine: Engine = "tree";

  constructor(
    private readonly sections: Section[],
    nonce: string,
    private readonly onChange: (text: string, engine: Engine) => void,
  ) {
    this.form = new OptionForm(sections, (option, value) => this.changeOption(option, value));
    const tryLayout = button("Indent and break lines", () => this.change({ ...this.values, ...layout }), { class: "quiet for-tree" });
    this.formBox = el("div", { class: "form-box" }, el("div", { class: "form-tools" }, tryLayout, this.resetAll), this.form.element);
    this.views = ["Form", "File"].map((label, index) =>
      button(label, () => this.showView(index), { "aria-pressed": String(index === 0) }),
    );
    this.element = el(
      "section",
      { class: "pane options", id: "pane-options", "aria-labelledby": "options-title" },
      el(
        "div",
        { class: "pane-head" },
        el("h2", { id: "options-title" }, "Options"),
        el("div", { class: "segments", role: "group", "aria-label": "Options as" }, ...this.views),
      ),
      this.makeEngines(),
      this.formBox,
      this.fileBox,
    );
    this.file = makeEditor(this.fileBox, {
      label: "Options file",
      isReadOnly: false,
      nonce,
      extensions: [this.problems.extension],
      events: { onEdit: () => this.readFile() },
    });
  }

  getValues(): OptionValues {
    return this.values;
  }

  getText(): string {
    return this.file.state.doc.toString();
  }

  show(text: string, engine: Engine): void {
    setText(this.file, text);
    this.engine = engine;
    this.values = readOptionsFile(text, this.sections) ?? {};
    this.showValues();
  }

  showProblems(problems: Problem[]): void {
    const { doc } = this.file.state;
    const offsets = problems.map(({ line, column }) => getOffset(doc, line, column)).sort((a, b) => a - b);
    this.problems.show(
      this.file,
      offsets.map((begin) => ({ begin, end: Math.min(doc.length, begin + 1), className: "problem" })),
    );
  }

  /** Shows the place of a problem in the file. */
  goTo(line: number, column: number): void {
    this.showView(1);
    goTo(this.file, getOffset(this.file.state.doc, line, column));
  }

  private makeEngines(): HTMLElement {
    const group = el("div", { class: "engines", role: "radiogroup", "aria-label": "Engine" });
    for (const { name, label, hint } of engines) {
      const field = el("input", { type: "radio", name: "engine", value: name, change: () => this.changeEngine(name) });
      this.engineFields.set(name, field);
      group.append(el("label", {}, field, el("span", {}, el("strong", {}, label), el("small", {}, hint))));
    }
    return group;
  }

  private showView(index: number): void {
    this.formBox.hidden = index !== 0;
    this.fileBox.hidden = index !== 1;
    this.views.forEach((view, place) => view.setAttribute("aria-pressed", String(place === index)));
  }

  private showValues(): void {
    for (const [name, field] of this.engineFields) {
      field.checked = name === this.engine;
    }
    this.form.show(this.values, this.engine);
    this.element.classList.toggle("is-tree", this.engine === "tree");
    this.resetAll.disabled = Object.keys(this.values).length === 0;
  }

  private changeOption(option: Option, value: OptionValue): void {
    this.change({ ...this.values, [option.name]: value });
  }

  private change(values: OptionValues): void {
    const options = new Map(this.sections.flatMap((section) => section.options.map((option) => [option.name, option])));
    const isChanged = ([name, value]: [string, OptionValue]) => {
      const option = options.get(name);
      return option !== undefined && !isSameValue(value, option.factory);
    };
    this.values = Object.fromEntries(Object.entries(values).filter(isChanged));
    setText(this.file, makeOptionsFile(this.values, this.sections));
    this.showValues();
    this.onChange(this.getText(), this.engine);
  }

  private changeEngine(engine: Engine): void {
    this.engine = engine;
    this.showValues();
    this.onChange(this.getText(), engine);
  }

  private readFile(): void {
    this.values = readOptionsFile(this.getText(), this.sections) ?? this.values;
    this.showValues();
    this.onChange(this.getText(), this.engine);
  }
}
