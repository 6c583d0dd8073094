// The page: its panes, and what happens when one of them changes.

import { hoverTooltip, type EditorView, type Tooltip } from "@codemirror/view";
import examples from "project:examples";
import { ServerError, type Api, type DumpAnswer, type FormatAnswer, type KeptGap, type Problem, type Stage } from "./api";
import { button, el, makeId } from "./dom";
import { goTo, makeEditor, reveal, setText } from "./editors";
import { makeEditCard, makeGapCard } from "./gapCard";
import { getOffset, makeTokenMarks, MarkLayer, SpacerLayer, type Mark } from "./marks";
import { makeChanges, mapRange, type Change, type Range } from "./offsets";
import { OptionsPane } from "./optionsPane";
import type { Section } from "./schema";
import { ShareMenu } from "./share";
import { StagePane } from "./stagePane";
import { keepInTab, splitFragment, type ResultView, type Shared } from "./state";
import { makeThemeField } from "./theme";

/** Rows that are asked for at once: more than fit on any screen, and few enough to be shown at once. */
const stageRows = 20_000;
const colorRows = 8_000;
const maximalListed = 100;
const maximalTextLength = 1_300_000; // JSON in UTF-8 stays below the server's limit, whatever the text is
const presentableRows = 3;

const placeHint = "Point at a gap between two words, or move the cursor to it, to see what decides about it.";

interface Context {
  api: Api;
  sections: Section[];
  nonce: string;
  token: string;
}

interface ListedProblem {
  text: string;
  severity: string;
  go: () => void;
}

/** Text as the editor has it: LF only, no byte-order mark. */
function normalize(text: string): string {
  return text.replace(/^\uFEFF/, "").replace(/\r\n?/g, "\n");
}

export class Explorer {
  private readonly sourceMarks = { tokens: new MarkLayer(), linked: new MarkLayer(), changes: new MarkLayer(), problems: new MarkLayer() };
  private readonly resultMarks = { tokens: new MarkLayer(), linked: new MarkLayer(), changes: new MarkLayer() };
  private readonly spacers = { source: new SpacerLayer(), result: new SpacerLayer() };
  private readonly source: EditorView;
  private readonly result: EditorView;
  private readonly stagePane: StagePane;
  private readonly optionsPane: OptionsPane;
  private readonly status = el("p", { class: "status-text", role: "status" });
  private readonly facts = el("p", { class: "facts" });
  private readonly problemList = el("ul", { class: "problems", "aria-label": "Problems" });
  private readonly place = el("div", { class: "place", "aria-live": "polite" });
  private readonly nameField = el("span", { class: "file-name" });
  private readonly viewButtons = new Map<ResultView, HTMLButtonElement>();
  private readonly stable = el("span", { class: "badge", hidden: true });
  private shared: Shared = { name: "", text: "", engine: "tree", options: "{}\n", stage: "decisions", view: "result" };
  private answer: FormatAnswer | null = null;
  private changes: Change[] = [];
  private tokenMarks: Mark[] = [];
  private colored: Range = { begin: 0, end: 0 };
  private timer = 0;
  private placeTimer = 0;
  private colorTimer = 0;
  private running = new AbortController();
  private selection: Range = { begin: 0, end: 0 };
  private isScrolling = false;

  constructor(private readonly context: Context) {
    const { nonce } = context;
    this.optionsPane = new OptionsPane(context.sections, nonce, (options, engine) => {
      this.shared = { ...this.shared, options, engine };
      this.schedule();
    });
    this.stagePane = new StagePane(nonce, (stage) => this.changeStage(stage), (range) => this.select(range, "stage"));
    const sourceBox = el("div", { class: "editor" });
    const resultBox = el("div", { class: "editor" });
    this.build(sourceBox, resultBox);
    this.source = makeEditor(sourceBox, {
      label: "Source",
      isReadOnly: false,
      nonce,
      extensions: [...this.getLayers("source"), this.makeHover()],
      events: {
        onEdit: () => {
          this.shared = { ...this.shared, text: this.source.state.doc.toString() };
          this.schedule();
        },
        onSelect: (selection) => this.select(selection, "source"),
      },
    });
    this.result = makeEditor(resultBox, {
      label: "Result",
      isReadOnly: true,
      nonce,
      extensions: this.getLayers("result"),
      events: { onSelect: (selection) => this.select(mapRange(this.changes, "result", selection), "result") },
    });
    for (const editor of [this.source, this.result]) {
      editor.scrollDOM.addEventListener("scroll", () => this.onScroll(editor === this.source ? "source" : "result"));
    }
    this.acceptFiles();
  }

  /** `notice` is said in place of the first result. */
  start(shared: Shared, notice: string): void {
    this.shared = { ...shared, text: normalize(shared.text) };
    setText(this.source, this.shared.text);
    this.optionsPane.show(shared.options, shared.engine);
    this.stagePane.showStage(shared.stage);
    this.showName();
    this.showView();
    void this.run().then(() => {
      if (notice !== "") {
        this.say(notice, true);
      }
      performance.mark("formatted");
    });
  }

  private getLayers(side: "source" | "result") {
    const layers = side === "source" ? Object.values(this.sourceMarks) : Object.values(this.resultMarks);
    return [...layers.map((layer) => layer.extension), this.spacers[side].extension];
  }

  // The panes

  private build(sourceBox: HTMLElement, resultBox: HTMLElement): void {
    const sourcePane = el(
      "section",
      { class: "pane source", id: "pane-source", "aria-labelledby": "source-title" },
      el("div", { class: "pane-head" }, el("h2", { id: "source-title" }, "Source"), this.nameField),
      sourceBox,
      el("div", { class: "details", role: "region", "aria-label": "Problems and the gap at the cursor", tabindex: "0" }, this.problemList, this.place),
    );
    const resultPane = el(
      "section",
      { class: "pane result", id: "pane-result", "aria-labelledby": "result-title" },
      el("div", { class: "pane-head" }, el("h2", { id: "result-title" }, "Result"), this.stable, this.makeViews()),
      resultBox,
    );
    const panes = [this.optionsPane.element, sourcePane, resultPane, this.stagePane.element];
    document.body.append(
      this.makeBar(),
      this.makeTabs(panes),
      el("main", { class: "panes" }, ...panes),
      el("footer", { class: "status" }, this.status, this.facts),
    );
    document.addEventListener("keydown", (event) => this.moveBetweenPanes(event));
  }

  private makeBar(): HTMLElement {
    const select = el("select", { id: makeId("example") }, el("option", { value: "" }, "Examples…"));
    for (const { name } of examples) {
      select.append(el("option", { value: name }, name));
    }
    select.addEventListener("change", () => {
      const example = examples.find(({ name }) => name === select.value);
      if (example !== undefined) {
        this.openText(example.name, example.text);
      }
      select.value = "";
    });
    select.setAttribute("aria-label", "Open an example");
    const file = el("input", { type: "file", class: "unseen", accept: ".omb,text/plain", tabindex: "-1", "aria-hidden": "true" });
    file.addEventListener("change", () => {
      const chosen = file.files?.[0];
      if (chosen !== undefined) {
        void this.openFile(chosen);
      }
      file.value = "";
    });
    const share = new ShareMenu(
      () => ({ shared: this.shared, values: this.optionsPane.getValues(), answer: this.answer, token: this.context.token }),
      (text) => this.say(text),
      (link) => this.openLink(link),
    );
    return el(
      "header",
      { class: "bar" },
      el("h1", {}, "Ombrel", el("span", {}, " explorer")),
      el("div", { class: "bar-tools" }, select, button("Open…", () => file.click()), file, share.element, makeThemeField()),
    );
  }

  private makeViews(): HTMLElement {
    const group = el("div", { class: "segments", role: "group", "aria-label": "Show the result as" });
    for (const [view, label] of [["result", "Text"], ["diff", "Changes"]] as const) {
      const choice = button(label, () => {
        this.shared = { ...this.shared, view };
        this.showView();
        this.keep();
      });
      this.viewButtons.set(view, choice);
      group.append(choice);
    }
    return group;
  }

  /** On a narrow screen there is room for one pane. */
  private makeTabs(panes: HTMLElement[]): HTMLElement {
    const tabs = el("nav", { class: "tabs", "aria-label": "Panes" });
    const show = (index: number) => {
      panes.forEach((pane, place) => pane.classList.toggle("shown", place === index));
      [...tabs.children].forEach((tab, place) => tab.setAttribute("aria-pressed", String(place === index)));
    };
    ["Options", "Source", "Result", "Stage"].forEach((label, index) => tabs.append(button(label, () => show(index))));
    show(1);
    return tabs;
  }

  /** F6 goes to the next pane, with Shift to the one before. */
  private moveBetweenPanes(event: KeyboardEvent): void {
    if (event.key !== "F6") {
      return;
    }
    event.preventDefault();
    const panes = [...document.querySelectorAll<HTMLElement>(".pane")].filter((pane) => pane.offsetParent !== null);
    const current = panes.findIndex((pane) => pane.contains(document.activeElement));
    const next = panes[(current + (event.shiftKey ? panes.length - 1 : 1) + panes.length) % panes.length];
    const fields = [...(next?.querySelectorAll<HTMLElement>(".cm-content, input, select, button") ?? [])];
    (fields.find((field) => field.classList.contains("cm-content") && field.offsetParent !== null) ?? fields[0])?.focus();
  }

  // Texts from elsewhere

  private openText(name: string, text: string): void {
    const hasOtherLineEnds = text.includes("\r");
    this.shared = { ...this.shared, name, text: normalize(text) };
    this.say(hasOtherLineEnds ? `${name} is open; its line ends are shown as LF` : `${name} is open`);
    setText(this.source, this.shared.text);
    this.source.dispatch({ selection: { anchor: 0 }, scrollIntoView: true });
    this.showName();
    this.schedule();
  }

  private async openFile(file: File): Promise<void> {
    if (file.size > maximalTextLength) {
      this.say(`${file.name} is too long: ${maximalTextLength.toLocaleString("en")} bytes is the limit`, true);
      return;
    }
    try {
      const text = new TextDecoder("utf-8", { fatal: true }).decode(await file.arrayBuffer());
      if (file.name.endsWith(".json")) {
        this.optionsPane.show(text, this.shared.engine);
        this.shared = { ...this.shared, options: text };
        this.schedule();
      } else {
        this.openText(file.name, text);
      }
    } catch {
      this.say(`${file.name} isn't text in UTF-8`, true);
    }
  }

  /** Files that are dropped anywhere: a source, or an options file. */
  private acceptFiles(): void {
    const { body } = document;
    const isFile = (event: DragEvent) => event.dataTransfer?.types.includes("Files") === true;
    body.addEventListener("dragover", (event) => {
      if (isFile(event)) {
        event.preventDefault();
        body.classList.add("drop");
      }
    });
    body.addEventListener("dragleave", (event) => body.classList.toggle("drop", event.relatedTarget !== null));
    document.addEventListener("drop", (event) => {
      body.classList.remove("drop");
      const file = isFile(event) ? event.dataTransfer?.files[0] : undefined;
      if (file !== undefined) {
        event.preventDefault();
        event.stopPropagation();
        void this.openFile(file);
      }
    }, true);
  }

  private openLink(link: string): void {
    const { packed } = splitFragment(link.slice(link.indexOf("#")));
    if (link.includes("#") && packed !== "") {
      location.hash = `${this.context.token}/${packed}`;
    } else {
      this.say("This isn't a link of the explorer", true);
    }
  }

  // Formatting

  /** Formats soon: later for a long text, so that typing stays smooth. */
  private schedule(): void {
    this.running.abort();
    window.clearTimeout(this.timer);
    this.timer = window.setTimeout(() => void this.run(), 60 + Math.min(400, this.shared.text.length / 2500));
  }

  private async run(): Promise<void> {
    this.running.abort();
    const controller = new AbortController();
    this.running = controller;
    this.keep();
    if (!this.canFormat()) {
      return;
    }
    const { text, engine, options } = this.shared;
    try {
      const { signal } = controller;
      const formatted = this.context.api.format({ text, engine, options }, signal).then((answer) => this.showAnswer(answer));
      await Promise.all([formatted, this.color(signal), this.loadStage(signal)]);
      this.select(this.selection, "program");
      document.body.dataset.state = "ready";
    } catch (error) {
      this.showFailure(error);
    }
  }

  private canFormat(): boolean {
    const { text } = this.shared;
    const isUnpaired = /[\uD800-\uDBFF](?![\uDC00-\uDFFF])|(?<![\uD800-\uDBFF])[\uDC00-\uDFFF]/.test(text);
    if (isUnpaired || text.length > maximalTextLength) {
      this.say(isUnpaired ? "The text has half a surrogate pair: it isn't Unicode" : "The text is too long to be formatted here", true);
    }
    return !isUnpaired && text.length <= maximalTextLength;
  }

  private showFailure(error: unknown): void {
    if (error instanceof DOMException && error.name === "AbortError") {
      return;
    }
    document.body.dataset.state = "failed";
    this.facts.replaceChildren();
    this.say(error instanceof ServerError || error instanceof Error ? error.message : String(error), true);
  }

  private showAnswer(answer: FormatAnswer): void {
    this.answer = answer;
    this.changes = makeChanges(answer.edits);
    setText(this.result, answer.text);
    this.colorResult();
    this.showView();
    this.showFacts(answer);
    this.showProblems(answer);
    this.result.dom.classList.toggle("outdated", answer.errors.length > 0);
  }

  private showFacts(answer: FormatAnswer): void {
    const count = answer.edits.length;
    const kept = answer.kept.filter(({ kind }) => kind === "kept").length;
    const repaired = answer.kept.length - kept;
    this.say(
      answer.errors.length > 0
        ? `${answer.errors.length} ${answer.errors.length === 1 ? "error" : "errors"}: the text stays as it is`
        : count === 0 ? "Nothing to change" : `${count.toLocaleString("en")} ${count === 1 ? "gap" : "gaps"} changed`,
      answer.errors.length > 0,
    );
    const facts = [`${answer.milliseconds.toFixed(1)} ms`];
    if (answer.kept.length > 0) {
      facts.unshift(`${kept} kept, ${repaired} repaired`);
    }
    this.facts.replaceChildren(...facts.map((fact) => el("span", {}, fact)));
    this.stable.hidden = answer.isStable === null;
    this.stable.textContent = answer.isStable === true ? "stable" : "changes again";
    this.stable.title = answer.isStable === true ? "A second run changes nothing" : "A second run changes something";
    this.stable.classList.toggle("bad", answer.isStable === false);
  }

  private showProblems(answer: FormatAnswer): void {
    const all = [...answer.errors, ...answer.problems];
    const { doc } = this.source.state;
    const places = all.filter(({ in: place, line }) => place === "source" && line > 0).map(({ line, column }) => getOffset(doc, line, column));
    this.sourceMarks.problems.show(
      this.source,
      places.sort((a, b) => a - b).map((begin) => ({ begin, end: Math.min(doc.length, begin + 1), className: "problem" })),
    );
    this.optionsPane.showProblems(all.filter(({ in: place, line }) => place === "options" && line > 0));
    const listed = [...all.map((problem) => this.listProblem(problem)), ...answer.kept.map((gap) => this.listKept(gap))];
    this.problemList.hidden = listed.length === 0;
    this.problemList.replaceChildren(
      ...listed.slice(0, maximalListed).map(({ text, severity, go }) => el("li", { class: severity }, button(text, go))),
    );
  }

  private listProblem({ in: place, line, column, severity, message, code }: Problem): ListedProblem {
    const where = line === 0 ? place : `${place} ${line}:${column}`;
    const go = () => {
      if (place === "options") {
        this.optionsPane.goTo(line, column);
      } else {
        goTo(this.source, getOffset(this.source.state.doc, line, column));
      }
    };
    return { text: `${where}: ${severity}: ${message} [${code}]`, severity, go };
  }

  private listKept({ begin, end, kind }: KeptGap): ListedProblem {
    const { doc } = this.source.state;
    const { number, from } = doc.lineAt(Math.min(begin, doc.length));
    return {
      text: `source ${number}:${begin - from + 1}: gap ${kind}: the formatter's text would change the program`,
      severity: "note",
      go: () => goTo(this.source, begin, end),
    };
  }

  // Changes

  private showView(): void {
    const { view } = this.shared;
    for (const [name, choice] of this.viewButtons) {
      choice.setAttribute("aria-pressed", String(name === view));
    }
    const shown = view === "diff" ? this.changes : [];
    const makeMarks = (side: "source" | "result"): Mark[] =>
      shown.map((change) => ({ ...change[side], className: side === "source" ? "removed" : "added" }));
    this.sourceMarks.changes.show(this.source, makeMarks("source"));
    this.resultMarks.changes.show(this.result, makeMarks("result"));
    this.showSpacers(shown);
  }

  /** Keeps the lines of both texts beside each other where a change adds lines or takes some out. */
  private showSpacers(changes: Change[]): void {
    const spacers = { source: new Map<number, number>(), result: new Map<number, number>() };
    for (const { source, result } of changes) {
      const [first, last] = [source.begin, source.end].map((offset) => this.findLine(this.source, offset));
      const [newFirst, newLast] = [result.begin, result.end].map((offset) => this.findLine(this.result, offset));
      const added = (newLast ?? 0) - (newFirst ?? 0) - ((last ?? 0) - (first ?? 0));
      const [side, line] = added > 0 ? (["source", last ?? 1] as const) : (["result", newLast ?? 1] as const);
      if (added !== 0) {
        spacers[side].set(line, (spacers[side].get(line) ?? 0) + Math.abs(added));
      }
    }
    this.spacers.source.show(this.source, spacers.source);
    this.spacers.result.show(this.result, spacers.result);
  }

  private findLine(view: EditorView, offset: number): number {
    return view.state.doc.lineAt(Math.min(offset, view.state.doc.length)).number;
  }

  /** In the view of changes both texts scroll together. */
  private onScroll(side: "source" | "result"): void {
    window.clearTimeout(this.colorTimer);
    this.colorTimer = window.setTimeout(() => void this.colorAgain(), 150);
    if (this.shared.view !== "diff" || this.isScrolling) {
      return;
    }
    const [from, to] = side === "source" ? [this.source, this.result] : [this.result, this.source];
    this.isScrolling = true;
    to.scrollDOM.scrollTop = from.scrollDOM.scrollTop;
    requestAnimationFrame(() => (this.isScrolling = false));
  }

  // Colors

  private async color(signal: AbortSignal): Promise<void> {
    const { text, engine } = this.shared;
    const around = this.source.viewport.from;
    const answer = await this.context.api.dump({ text, engine, options: "{}", stage: "tokens", around, limit: colorRows }, signal);
    this.tokenMarks = makeTokenMarks(answer.rows);
    this.colored = { begin: answer.first === 0 ? 0 : (answer.rows[0]?.begin ?? 0), end: answer.rows.at(-1)?.end ?? 0 };
    this.sourceMarks.tokens.show(this.source, this.tokenMarks);
    this.colorResult();
  }

  /** Tokens are the same in the result, but elsewhere. */
  private colorResult(): void {
    const mapped = this.tokenMarks.map((mark) => ({ ...mapRange(this.changes, "source", mark), className: mark.className }));
    this.resultMarks.tokens.show(this.result, mapped.filter(({ begin, end }) => begin < end));
  }

  private async colorAgain(): Promise<void> {
    const { from, to } = this.source.viewport;
    if (from < this.colored.begin || (to > this.colored.end && this.colored.end < this.shared.text.length)) {
      await this.color(this.running.signal).catch((error: unknown) => this.showFailure(error));
    }
  }

  // The stage

  private changeStage(stage: Stage): void {
    this.shared = { ...this.shared, stage };
    this.keep();
    this.loadStage(this.running.signal)
      .then(() => this.select(this.selection, "program"))
      .catch((error: unknown) => this.showFailure(error));
  }

  private async loadStage(signal: AbortSignal): Promise<void> {
    const { text, engine, options, stage } = this.shared;
    const around = this.selection.begin;
    const answer = await this.context.api.dump({ text, engine, options, stage, around, limit: stageRows }, signal);
    if (stage === this.shared.stage) {
      this.stagePane.show(answer);
    }
  }

  // The selection

  /** Marks a part of the source wherever it is shown, except where it was selected. */
  private select(range: Range, origin: "source" | "result" | "stage" | "program"): void {
    this.selection = range;
    const isMoved = origin !== "program";
    const inResult = mapRange(this.changes, "source", range);
    const marksOf = ({ begin, end }: Range): Mark[] => [{ begin, end, className: "linked" }];
    this.sourceMarks.linked.show(this.source, origin === "source" || origin === "program" ? [] : marksOf(range));
    this.resultMarks.linked.show(this.result, origin === "result" ? [] : marksOf(inResult));
    if (origin !== "source" && isMoved) {
      reveal(this.source, range.begin);
    }
    if (origin !== "result" && isMoved) {
      reveal(this.result, inResult.begin);
    }
    if (origin !== "stage") {
      this.markStage(range, isMoved);
    }
    window.clearTimeout(this.placeTimer);
    this.placeTimer = window.setTimeout(() => void this.describePlace(range.begin), 200);
  }

  private markStage(range: Range, scrolls: boolean): void {
    if (scrolls && !this.stagePane.covers(range.begin)) {
      this.changeStage(this.shared.stage);
      return;
    }
    this.stagePane.mark(range, scrolls);
  }

  // Gaps

  private makeHover() {
    return hoverTooltip(async (_view, offset): Promise<Tooltip | null> => {
      const found = await this.describeGap(offset);
      return found === null ? null : { pos: found.begin, end: found.end, above: true, create: () => ({ dom: found.card }) };
    }, { hoverTime: 250 });
  }

  /** The same for the keyboard: what is known of the place of the cursor. */
  private async describePlace(offset: number): Promise<void> {
    const found = await this.describeGap(offset);
    this.place.replaceChildren(found?.card ?? el("p", { class: "hint" }, placeHint));
  }

  private async describeGap(offset: number): Promise<(Range & { card: HTMLElement }) | null> {
    if (this.answer === null || this.answer.errors.length > 0) {
      return null;
    }
    try {
      return this.shared.engine === "line" ? this.describeEdit(offset) : await this.describeDecision(offset);
    } catch {
      return null; // the text has changed meanwhile, or the server says so where the text is formatted
    }
  }

  private async describeDecision(offset: number): Promise<(Range & { card: HTMLElement }) | null> {
    const row = this.stagePane.findGap(offset) ?? (await this.findDecision(offset));
    const isAt = row !== null && row.begin <= offset && offset <= row.end;
    if (!isAt || row.gap === undefined) {
      return null;
    }
    const kept = this.answer?.kept.find(({ begin, end }) => begin <= row.begin && row.end <= end) ?? null;
    return { begin: row.begin, end: row.end, card: makeGapCard({ gap: row.gap, kept }) };
  }

  private async findDecision(offset: number) {
    const { text, engine, options } = this.shared;
    const request = { text, engine, options, stage: "decisions" as const, around: offset, limit: presentableRows };
    const answer: DumpAnswer = await this.context.api.dump(request, this.running.signal);
    return answer.rows.find(({ begin, end }) => begin <= offset && offset <= end) ?? null;
  }

  private describeEdit(offset: number): (Range & { card: HTMLElement }) | null {
    const change = this.changes.find(({ source }) => source.begin <= offset && offset <= source.end);
    if (change === undefined) {
      return null;
    }
    const { source, result } = change;
    const before = this.source.state.sliceDoc(source.begin, source.end);
    const after = this.result.state.sliceDoc(result.begin, result.end);
    const isAtStart = this.source.state.doc.lineAt(source.begin).from === source.begin;
    return { ...source, card: makeEditCard(before, after, isAtStart) };
  }

  // Small things

  private showName(): void {
    this.nameField.textContent = this.shared.name;
    document.title = `${this.shared.name} – Ombrel explorer`;
  }

  private say(text: string, isError = false): void {
    this.status.textContent = text;
    this.status.classList.toggle("error", isError);
  }

  private keep(): void {
    keepInTab(this.shared);
  }
}
