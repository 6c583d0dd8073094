// The page: its panes, and what happens when one of them changes.

import { ServerError, type Api, type FormatAnswer, type Row, type Stage } from "./api";
import { makeBar, makeTabs, moveBetweenPanes } from "./bar";
import { ChangesView } from "./changesView";
import { button, el } from "./dom";
import { reveal } from "./editors";
import { acceptDrops, normalize, readText } from "./files";
import { GapFinder } from "./gapFinder";
import type { Mark } from "./marks";
import { makeChanges, mapRange, type Change, type Range } from "./offsets";
import { OptionsPane } from "./optionsPane";
import { ProblemList } from "./problemList";
import type { Section } from "./schema";
import { ShareMenu } from "./share";
import { StagePane } from "./stagePane";
import { keepInTab, splitFragment, type ResultView, type Shared } from "./state";
import { TextPane } from "./textPane";
import { TokenColors } from "./tokenColors";

/** Rows that are asked for at once: more than fit on any screen, and few enough to be shown at once. */
const stageRows = 20_000;
const colorRows = 8_000;
const gapRows = 3;
const maximalTextLength = 1_300_000; // JSON in UTF-8 stays below the server's limit, whatever the text is

interface Context {
  api: Api;
  sections: Section[];
  nonce: string;
  token: string;
}

type Origin = "source" | "result" | "stage" | "program";

export class Explorer {
  private readonly optionsPane: OptionsPane;
  private readonly source: TextPane;
  private readonly result: TextPane;
  private readonly stagePane: StagePane;
  private readonly colors: TokenColors;
  private readonly changesView: ChangesView;
  private readonly problems = new ProblemList();
  private readonly gaps: GapFinder;
  private readonly status = el("p", { class: "status-text", role: "status" });
  private readonly facts = el("p", { class: "facts" });
  private readonly nameField = el("span", { class: "file-name" });
  private readonly stable = el("span", { class: "badge", hidden: true });
  private readonly viewButtons = new Map<ResultView, HTMLButtonElement>();
  private shared: Shared = { name: "", text: "", engine: "tree", options: "{}\n", stage: "decisions", view: "result" };
  private answer: FormatAnswer | null = null;
  private changes: Change[] = [];
  private selection: Range = { begin: 0, end: 0 };
  private timer = 0;
  private running = new AbortController();

  constructor(private readonly context: Context) {
    const { nonce, sections } = context;
    this.gaps = new GapFinder(() => ({
      engine: this.shared.engine,
      answer: this.answer,
      changes: this.changes,
      source: this.source,
      result: this.result,
      findDecision: (offset) => this.findDecision(offset),
    }));
    this.optionsPane = new OptionsPane(sections, nonce, (options, engine) => this.change({ options, engine }));
    this.stagePane = new StagePane(nonce, (stage) => this.changeStage(stage), (range) => this.select(range, "stage"));
    this.source = this.makeSource();
    this.result = this.makeResult();
    this.changesView = new ChangesView(this.source, this.result);
    this.colors = new TokenColors(this.source, this.result, () => void this.guard(this.color(this.running.signal)));
    this.build();
  }

  /** `notice` is said in place of the first result. */
  start(shared: Shared, notice: string): void {
    this.shared = { ...shared, text: normalize(shared.text) };
    this.source.setText(this.shared.text);
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

  // The panes

  private makeSource(): TextPane {
    const details = { class: "details", role: "region", "aria-label": "Problems and the gap at the cursor", tabindex: "0" };
    return new TextPane({
      title: "Source",
      isReadOnly: false,
      nonce: this.context.nonce,
      head: [this.nameField],
      foot: [el("div", details, this.problems.element, this.gaps.element)],
      extensions: [this.gaps.makeHover()],
      events: {
        onEdit: () => this.change({ text: this.source.getText() }),
        onSelect: (selection) => this.select(selection, "source"),
      },
    });
  }

  private makeResult(): TextPane {
    const views = el("div", { class: "segments", role: "group", "aria-label": "Show the result as" });
    for (const [view, label] of [["result", "Text"], ["diff", "Changes"]] as const) {
      const choice = button(label, () => this.changeView(view));
      this.viewButtons.set(view, choice);
      views.append(choice);
    }
    return new TextPane({
      title: "Result",
      isReadOnly: true,
      nonce: this.context.nonce,
      head: [this.stable, views],
      events: { onSelect: (selection) => this.select(mapRange(this.changes, "result", selection), "result") },
    });
  }

  private build(): void {
    const share = new ShareMenu(
      () => ({ shared: this.shared, values: this.optionsPane.getValues(), answer: this.answer, token: this.context.token }),
      (text) => this.say(text),
      (link) => this.openLink(link),
    );
    const onFile = (file: File) => void this.openFile(file);
    const panes = [
      { label: "Options", element: this.optionsPane.element },
      { label: "Source", element: this.source.element },
      { label: "Result", element: this.result.element },
      { label: "Stage", element: this.stagePane.element },
    ];
    document.body.append(
      makeBar({ onExample: (name, text) => this.openText(name, text), onFile }, share),
      makeTabs(panes, 1),
      el("main", { class: "panes" }, ...panes.map(({ element }) => element)),
      el("footer", { class: "status" }, this.status, this.facts),
    );
    document.addEventListener("keydown", moveBetweenPanes);
    acceptDrops(onFile);
  }

  // Texts from elsewhere

  private openText(name: string, text: string): void {
    this.say(text.includes("\r") ? `${name} is open; its line ends are shown as LF` : `${name} is open`);
    this.source.setText(normalize(text));
    this.source.view.dispatch({ selection: { anchor: 0 }, scrollIntoView: true });
    this.change({ name, text: normalize(text) });
    this.showName();
  }

  private async openFile(file: File): Promise<void> {
    try {
      const text = await readText(file, maximalTextLength);
      if (file.name.endsWith(".json")) {
        this.optionsPane.show(text, this.shared.engine);
        this.change({ options: text });
      } else {
        this.openText(file.name, text);
      }
    } catch (error) {
      this.showFailure(error);
    }
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
  private change(changed: Partial<Shared>): void {
    this.shared = { ...this.shared, ...changed };
    this.running.abort();
    window.clearTimeout(this.timer);
    this.timer = window.setTimeout(() => void this.run(), 60 + Math.min(400, this.shared.text.length / 2500));
  }

  private async run(): Promise<void> {
    this.running.abort();
    this.running = new AbortController();
    keepInTab(this.shared);
    if (this.canFormat()) {
      const { signal } = this.running;
      await this.guard(this.format(signal));
    }
  }

  private async format(signal: AbortSignal): Promise<void> {
    const { text, engine, options } = this.shared;
    const formatted = this.context.api.format({ text, engine, options }, signal).then((answer) => this.showAnswer(answer));
    await Promise.all([formatted, this.color(signal), this.loadStage(signal)]);
    this.select(this.selection, "program");
    document.body.dataset.state = "ready";
  }

  private canFormat(): boolean {
    const { text } = this.shared;
    const isUnpaired = /[\uD800-\uDBFF](?![\uDC00-\uDFFF])|(?<![\uD800-\uDBFF])[\uDC00-\uDFFF]/.test(text);
    if (isUnpaired || text.length > maximalTextLength) {
      this.say(isUnpaired ? "The text has half a surrogate pair: it isn't Unicode" : "The text is too long to be formatted here", true);
    }
    return !isUnpaired && text.length <= maximalTextLength;
  }

  private async guard(work: Promise<void>): Promise<void> {
    try {
      await work;
    } catch (error) {
      this.showFailure(error);
    }
  }

  private showFailure(error: unknown): void {
    if (error instanceof DOMException && error.name === "AbortError") {
      return; // outdated
    }
    if (error instanceof ServerError) {
      document.body.dataset.state = "failed";
      this.facts.replaceChildren();
    }
    this.say(error instanceof Error ? error.message : String(error), true);
  }

  private async color(signal: AbortSignal): Promise<void> {
    const { text, engine } = this.shared;
    const around = this.source.view.viewport.from;
    const request = { text, engine, options: "{}", stage: "tokens" as const, around, limit: colorRows };
    this.colors.show(await this.context.api.dump(request, signal), this.changes);
  }

  private showAnswer(answer: FormatAnswer): void {
    this.answer = answer;
    this.changes = makeChanges(answer.edits);
    this.result.setText(answer.text);
    this.result.view.dom.classList.toggle("outdated", answer.errors.length > 0);
    this.colors.showResult(this.changes);
    this.showView();
    this.showFacts(answer);
    this.problems.show(answer, this.source, this.optionsPane);
  }

  private showFacts({ errors, edits, kept, milliseconds, isStable }: FormatAnswer): void {
    const count = (number: number, word: string) => `${number.toLocaleString("en")} ${word}${number === 1 ? "" : "s"}`;
    const keptCount = kept.filter(({ kind }) => kind === "kept").length;
    const facts = kept.length > 0 ? [`${keptCount} kept, ${kept.length - keptCount} repaired`] : [];
    this.facts.replaceChildren(...[...facts, `${milliseconds.toFixed(1)} ms`].map((fact) => el("span", {}, fact)));
    if (errors.length > 0) {
      this.say(`${count(errors.length, "error")}: the text stays as it is`, true);
    } else {
      this.say(edits.length === 0 ? "Nothing to change" : `${count(edits.length, "gap")} changed`);
    }
    this.stable.hidden = isStable === null;
    this.stable.textContent = isStable === true ? "stable" : "changes again";
    this.stable.title = isStable === true ? "A second run changes nothing" : "A second run changes something";
    this.stable.classList.toggle("bad", isStable === false);
  }

  private changeView(view: ResultView): void {
    this.shared = { ...this.shared, view };
    keepInTab(this.shared);
    this.showView();
  }

  private showView(): void {
    for (const [view, choice] of this.viewButtons) {
      choice.setAttribute("aria-pressed", String(view === this.shared.view));
    }
    this.changesView.show(this.shared.view === "diff" ? this.changes : null);
  }

  // The stage

  private changeStage(stage: Stage): void {
    this.shared = { ...this.shared, stage };
    keepInTab(this.shared);
    void this.guard(this.loadStage(this.running.signal).then(() => this.select(this.selection, "program")));
  }

  private async loadStage(signal: AbortSignal): Promise<void> {
    const { text, engine, options, stage } = this.shared;
    const request = { text, engine, options, stage, around: this.selection.begin, limit: stageRows };
    const answer = await this.context.api.dump(request, signal);
    if (stage === this.shared.stage) {
      this.stagePane.show(answer);
    }
  }

  private async findDecision(offset: number): Promise<Row | null> {
    const known = this.stagePane.findGap(offset);
    if (known !== null) {
      return known;
    }
    const { text, engine, options } = this.shared;
    const request = { text, engine, options, stage: "decisions" as const, around: offset, limit: gapRows };
    const { rows } = await this.context.api.dump(request, this.running.signal);
    return rows.find(({ begin, end }) => begin <= offset && offset <= end) ?? null;
  }

  // The selection

  /** Marks a part of the source wherever it is shown, except where it was selected. */
  private select(range: Range, origin: Origin): void {
    const inResult = mapRange(this.changes, "source", range);
    const makeMarks = ({ begin, end }: Range): Mark[] => [{ begin, end, className: "linked" }];
    this.selection = range;
    this.source.mark("linked", origin === "source" || origin === "program" ? [] : makeMarks(range));
    this.result.mark("linked", origin === "result" ? [] : makeMarks(inResult));
    if (origin === "stage" || origin === "result") {
      reveal(this.source.view, range.begin);
    }
    if (origin === "stage" || origin === "source") {
      reveal(this.result.view, inResult.begin);
    }
    if (origin !== "stage") {
      this.markStage(range, origin !== "program");
    }
    this.gaps.describe(range.begin);
  }

  private markStage(range: Range, scrolls: boolean): void {
    if (scrolls && !this.stagePane.covers(range.begin)) {
      this.changeStage(this.shared.stage);
    } else {
      this.stagePane.mark(range, scrolls);
    }
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
}
