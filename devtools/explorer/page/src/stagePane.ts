// One stage as a text with a line for each row, in an editor that can't be changed: it shows any number of rows, can be
// searched, and is read and selected with the keyboard like every other text.

import type { EditorView } from "@codemirror/view";
import type { DumpAnswer, Row, Stage } from "./api";
import { el, makeId } from "./dom";
import { makeEditor, reveal, setText } from "./editors";
import { showWhitespace } from "./gapCard";
import { MarkLayer, type Mark } from "./marks";
import type { Range } from "./offsets";
import { stages } from "./state";

function describe(row: Row): string {
  const indentation = "  ".repeat(Math.min(row.depth, 60));
  if (row.gap === undefined) {
    return `${indentation}${row.label}  ${row.detail}`;
  }
  const { gap } = row;
  const construct = gap.construct === "" ? "" : ` ${gap.construct}`;
  return `${row.label}${construct}, level ${gap.depth}: ${gap.decision}  ${showWhitespace(gap.before)} → ${showWhitespace(gap.after)}`;
}

function getLength({ begin, end }: Range): number {
  return end - begin;
}

/** The rows for a selection: the smallest one around all of it, or else all that it touches. */
function findRows(rows: Row[], { begin, end }: Range): number[] {
  let best = -1;
  rows.forEach((row, index) => {
    const contains = row.begin <= begin && (row.end > begin || (row.end === begin && getLength(row) === 0)) && row.end >= end;
    const current = rows[best];
    if (contains && (current === undefined || getLength(row) <= getLength(current))) {
      best = index;
    }
  });
  if (best !== -1) {
    return [best];
  }
  return rows.flatMap((row, index) => (row.begin < end && row.end > begin ? [index] : []));
}

export class StagePane {
  readonly element: HTMLElement;
  private readonly select = el("select", { id: makeId("stage"), "aria-label": "Stage" });
  private readonly note = el("p", { class: "note", role: "note", hidden: true });
  private readonly layer = new MarkLayer();
  private readonly view: EditorView;
  private answer: DumpAnswer | null = null;

  constructor(nonce: string, onStage: (stage: Stage) => void, onSelect: (range: Range) => void) {
    for (const { name, label } of stages) {
      this.select.append(el("option", { value: name }, label));
    }
    this.select.addEventListener("change", () => onStage(this.select.value as Stage));
    const box = el("div", { class: "editor" });
    this.element = el(
      "section",
      { class: "pane stage", id: "pane-stage", "aria-labelledby": "stage-title" },
      el("div", { class: "pane-head" }, el("h2", { id: "stage-title" }, "Stage"), this.select),
      this.note,
      box,
    );
    this.view = makeEditor(box, {
      label: "Rows of the stage",
      isReadOnly: true,
      nonce,
      hasLineNumbers: false,
      extensions: [this.layer.extension],
      events: { onSelect: (selection) => this.reportSelection(selection, onSelect) },
    });
  }

  showStage(stage: Stage): void {
    this.select.value = stage;
  }

  show(answer: DumpAnswer): void {
    this.answer = answer;
    const { rows, errors, total, first } = answer;
    setText(this.view, rows.map(describe).join("\n"));
    const error = errors[0];
    this.note.textContent =
      error !== undefined
        ? `This stage needs a text that parses: ${error.in} ${error.line}:${error.column}: ${error.message}`
        : total > rows.length
          ? `Rows ${(first + 1).toLocaleString("en")} to ${(first + rows.length).toLocaleString("en")} of ${total.toLocaleString("en")}, around the cursor`
          : "";
    this.note.hidden = this.note.textContent === "";
    this.note.classList.toggle("error", error !== undefined);
  }

  /** Whether there are rows for a place, or there can't be any. */
  covers(offset: number): boolean {
    const rows = this.answer?.rows ?? [];
    const isWhole = this.answer !== null && this.answer.total === rows.length;
    return isWhole || ((rows[0]?.begin ?? 0) <= offset && offset <= (rows.at(-1)?.end ?? 0));
  }

  mark(range: Range, scrolls: boolean): void {
    const { doc } = this.view.state;
    const lines = findRows(this.answer?.rows ?? [], range).filter((row) => row < doc.lines).map((row) => doc.line(row + 1));
    const marks: Mark[] = lines.map(({ from, to }) => ({ begin: from, end: to, className: "linked" }));
    this.layer.show(this.view, marks);
    const first = lines[0];
    if (first !== undefined && scrolls) {
      reveal(this.view, first.from);
    }
  }

  /** The gap at a place, if this is the stage of decisions. */
  findGap(offset: number): Row | null {
    const rows = this.answer?.stage === "decisions" ? this.answer.rows : [];
    const [row = -1] = findRows(rows, { begin: offset, end: offset });
    return rows[row] ?? null;
  }

  private reportSelection(selection: Range, onSelect: (range: Range) => void): void {
    const { doc } = this.view.state;
    const first = doc.lineAt(selection.begin).number;
    const last = doc.lineAt(selection.end).number;
    const rows = (this.answer?.rows ?? []).slice(first - 1, last);
    if (rows.length > 0) {
      const begin = Math.min(...rows.map((row) => row.begin));
      const end = Math.max(...rows.map((row) => row.end));
      this.layer.show(this.view, []);
      onSelect({ begin, end });
    }
  }
}
