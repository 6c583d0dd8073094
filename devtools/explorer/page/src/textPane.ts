// A pane with a text: the source or the result, with layers of marks that are replaced one by one.

import type { Extension } from "@codemirror/state";
import type { EditorView } from "@codemirror/view";
import { el, type Child } from "./dom";
import { makeEditor, setText, type EditorEvents } from "./editors";
import { getOffset, MarkLayer, SpacerLayer, type Mark } from "./marks";

type LayerName = "tokens" | "linked" | "changes" | "problems";

interface TextPaneSettings {
  title: string;
  isReadOnly: boolean;
  nonce: string;
  events: EditorEvents;
  extensions?: Extension[];
  head: Child[]; // what is beside the title
  foot?: Child[]; // what is below the text
}

export class TextPane {
  readonly element: HTMLElement;
  readonly view: EditorView;
  readonly spacers = new SpacerLayer();
  private readonly layers: Record<LayerName, MarkLayer> = {
    tokens: new MarkLayer(),
    linked: new MarkLayer(),
    changes: new MarkLayer(),
    problems: new MarkLayer(),
  };

  constructor({ title, isReadOnly, nonce, events, extensions = [], head, foot = [] }: TextPaneSettings) {
    const name = title.toLowerCase();
    const box = el("div", { class: "editor" });
    this.element = el(
      "section",
      { class: `pane ${name}`, id: `pane-${name}`, "aria-labelledby": `${name}-title` },
      el("div", { class: "pane-head" }, el("h2", { id: `${name}-title` }, title), ...head),
      box,
      ...foot,
    );
    const layers = Object.values(this.layers).map((layer) => layer.extension);
    this.view = makeEditor(box, {
      label: title,
      isReadOnly,
      nonce,
      events,
      extensions: [...layers, this.spacers.extension, ...extensions],
    });
  }

  getText(): string {
    return this.view.state.doc.toString();
  }

  setText(text: string): void {
    setText(this.view, text);
  }

  mark(layer: LayerName, marks: Mark[]): void {
    this.layers[layer].show(this.view, marks);
  }

  /** Marks the places of problems: lines and columns from 1. */
  markProblems(places: { line: number; column: number }[]): void {
    const { doc } = this.view.state;
    const offsets = places.map(({ line, column }) => getOffset(doc, line, column));
    this.mark("problems", offsets.map((begin) => ({ begin, end: Math.min(doc.length, begin + 1), className: "problem" })));
  }

  /** The number of the line that a place is in, from 1. */
  findLine(offset: number): number {
    const { doc } = this.view.state;
    return doc.lineAt(Math.min(offset, doc.length)).number;
  }
}
