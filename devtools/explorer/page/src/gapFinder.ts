// Finds out what is known of a gap: for the mouse, which points at it, and for the cursor, which is moved to it.

import type { Extension } from "@codemirror/state";
import { hoverTooltip } from "@codemirror/view";
import type { FormatAnswer, Row } from "./api";
import { el } from "./dom";
import { makeEditCard, makeGapCard } from "./gapCard";
import type { Change, Range } from "./offsets";
import type { TextPane } from "./textPane";

const hint = "Point at a gap between two words, or move the cursor to it, to see what decides about it.";
const cursorPause = 200;

/** What a text comes from and goes to. */
export interface GapSource {
  engine: "line" | "tree";
  answer: FormatAnswer | null;
  changes: Change[];
  source: TextPane;
  result: TextPane;
  findDecision: (offset: number) => Promise<Row | null>;
}

type Found = Range & { card: HTMLElement };

export class GapFinder {
  readonly element = el("div", { class: "place", "aria-live": "polite" });
  private timer = 0;

  constructor(private readonly getSource: () => GapSource) {}

  /** Shows a card beside the gap that the mouse points at. */
  makeHover(): Extension {
    const find = async (offset: number) => {
      const found = await this.find(offset);
      return found === null
        ? null
        : { pos: found.begin, end: found.end, above: true, create: () => ({ dom: found.card }) };
    };
    return hoverTooltip((_view, offset) => find(offset), { hoverTime: 250 });
  }

  /** Shows the same for the cursor, soon. */
  describe(offset: number): void {
    window.clearTimeout(this.timer);
    this.timer = window.setTimeout(() => {
      void this.find(offset).then((found) => {
        this.element.replaceChildren(found?.card ?? el("p", { class: "hint" }, hint));
      });
    }, cursorPause);
  }

  private async find(offset: number): Promise<Found | null> {
    const source = this.getSource();
    if (source.answer === null || source.answer.errors.length > 0) {
      return null;
    }
    try {
      return source.engine === "line" ? findEdit(source, offset) : await findDecision(source, source.answer, offset);
    } catch {
      return null; // the text has changed meanwhile, or the server says so where the text is formatted
    }
  }
}

async function findDecision(source: GapSource, answer: FormatAnswer, offset: number): Promise<Found | null> {
  const row = await source.findDecision(offset);
  if (row?.gap === undefined || offset < row.begin || offset > row.end) {
    return null;
  }
  const kept = answer.kept.find(({ begin, end }) => begin <= row.begin && row.end <= end) ?? null;
  return { begin: row.begin, end: row.end, card: makeGapCard({ gap: row.gap, kept }) };
}

function findEdit({ changes, source, result }: GapSource, offset: number): Found | null {
  const change = changes.find((one) => one.source.begin <= offset && offset <= one.source.end);
  if (change === undefined) {
    return null;
  }
  const { begin, end } = change.source;
  const before = source.view.state.sliceDoc(begin, end);
  const after = result.view.state.sliceDoc(change.result.begin, change.result.end);
  const isAtStart = source.view.state.doc.lineAt(begin).from === begin;
  return { begin, end, card: makeEditCard(before, after, isAtStart) };
}
