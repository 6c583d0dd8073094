// Marks in a text: the colors of its tokens, what is selected in another pane, changed gaps and problems.

import { StateEffect, StateField, type Extension, type Text } from "@codemirror/state";
import { Decoration, EditorView, WidgetType, type DecorationSet } from "@codemirror/view";
import type { Row } from "./api";
import type { Range } from "./offsets";

/** A part of a text with a CSS class. */
export interface Mark extends Range {
  className: string;
}

/** Decorations of a view that can be replaced as a whole, and that move with the text while it is edited. */
class DecorationLayer {
  private readonly setDecorations = StateEffect.define<DecorationSet>();
  readonly extension: Extension = StateField.define<DecorationSet>({
    create: () => Decoration.none,
    update: (decorations, transaction) => {
      const effect = transaction.effects.find((one) => one.is(this.setDecorations));
      return effect !== undefined ? effect.value : decorations.map(transaction.changes);
    },
    provide: (field) => EditorView.decorations.from(field),
  });

  protected replace(view: EditorView, ranges: DecorationRange[]): void {
    view.dispatch({ effects: this.setDecorations.of(Decoration.set(ranges, true)) });
  }
}

type DecorationRange = ReturnType<Decoration["range"]>;

/** Marks in a text. */
export class MarkLayer extends DecorationLayer {
  /** What is outside of the text is cut off. A line break that is marked alone shows as a point. */
  show(view: EditorView, marks: Mark[]): void {
    const { doc } = view.state;
    const ranges = marks.flatMap(({ begin, end, className }): DecorationRange[] => {
      if (begin > end || end > doc.length) {
        return [];
      }
      const points = begin === end ? [begin] : findLoneBreaks(doc, begin, end);
      const shown = points.map((place) => getPoint(className).range(place));
      return begin === end ? shown : [getDecoration(className).range(begin, end), ...shown];
    });
    this.replace(view, ranges);
  }
}

const longestGap = 1000;

/** The line breaks of a part of a text that has nothing else to be seen. */
function findLoneBreaks(doc: Text, begin: number, end: number): number[] {
  const text = end - begin > longestGap ? "" : doc.sliceString(begin, end);
  return /^\s*\n\s*$/.test(text) ? [...text.matchAll(/\n/g)].map((match) => begin + match.index) : [];
}

const decorations = new Map<string, Decoration>();

function getDecoration(className: string): Decoration {
  const known = decorations.get(className) ?? Decoration.mark({ class: className });
  decorations.set(className, known);
  return known;
}

/** A place without length that is marked all the same. */
class Point extends WidgetType {
  constructor(private readonly className: string) {
    super();
  }

  override eq(other: Point): boolean {
    return other.className === this.className;
  }

  toDOM(): HTMLElement {
    const point = document.createElement("span");
    point.className = `point ${this.className}`;
    point.ariaHidden = "true";
    return point;
  }
}

const points = new Map<string, Decoration>();

function getPoint(className: string): Decoration {
  const known = points.get(className) ?? Decoration.widget({ widget: new Point(className), side: 1 });
  points.set(className, known);
  return known;
}

/** Empty lines after a line, so that the lines of two texts side by side stay beside each other. */
class Spacer extends WidgetType {
  constructor(private readonly lines: number) {
    super();
  }

  override eq(other: Spacer): boolean {
    return other.lines === this.lines;
  }

  override get estimatedHeight(): number {
    return this.lines * 20;
  }

  toDOM(view: EditorView): HTMLElement {
    const spacer = document.createElement("div");
    spacer.className = "spacer";
    spacer.ariaHidden = "true";
    spacer.style.height = `${this.lines * view.defaultLineHeight}px`;
    return spacer;
  }
}

/** Spacers after lines. */
export class SpacerLayer extends DecorationLayer {
  /** By the numbers of the lines that they come after, from 1. */
  show(view: EditorView, spacers: Map<number, number>): void {
    const { doc } = view.state;
    const ranges = [...spacers]
      .filter(([line]) => line <= doc.lines)
      .map(([line, count]) =>
        Decoration.widget({ widget: new Spacer(count), block: true, side: 1 }).range(doc.line(line).to),
      );
    this.replace(view, ranges);
  }
}

/** The color of a token by the tokenizer's name for it; null if it has none of its own. */
function getTokenClass(label: string): string | null {
  if (/Keyword|^(Function|End|Break|Continue|Global|Persistent|Return|Import)$/.test(label)) {
    return "tok-keyword";
  }
  if (/Comment|^LineTail|^Continuation/.test(label)) {
    return "tok-comment";
  }
  if (/Literal/.test(label)) {
    return "tok-string";
  }
  if (/^Number/.test(label)) {
    return "tok-number";
  }
  if (/^(CommandWord|Unmeasured)/.test(label)) {
    return "tok-command";
  }
  if (/Operator|^(Assign|Colon|At)$/.test(label)) {
    return "tok-operator";
  }
  return label === "Unrecognized" ? "tok-invalid" : null;
}

export function makeTokenMarks(rows: Row[]): Mark[] {
  const marks: Mark[] = [];
  for (const { begin, end, label } of rows) {
    const className = getTokenClass(label);
    if (className !== null) {
      marks.push({ begin, end, className });
    }
  }
  return marks;
}

/** The offset of a line and column, both from 1, as far as the text has it. */
export function getOffset(text: Text, line: number, column: number): number {
  const { from, to } = text.line(Math.max(1, Math.min(line, text.lines)));
  return Math.min(to, from + Math.max(column, 1) - 1);
}
