// The editors of the panes: the source, and texts that can be read and selected but not changed.

import { defaultKeymap, history, historyKeymap } from "@codemirror/commands";
import { highlightSelectionMatches, searchKeymap } from "@codemirror/search";
import { Annotation, EditorState, type Extension } from "@codemirror/state";
import {
  drawSelection,
  EditorView,
  highlightActiveLine,
  highlightActiveLineGutter,
  highlightSpecialChars,
  keymap,
  lineNumbers,
} from "@codemirror/view";
import type { Range } from "./offsets";

const byProgram = Annotation.define<boolean>();

export interface EditorEvents {
  onEdit?: () => void;
  onSelect?: (selection: Range) => void;
}

interface EditorSettings {
  label: string;
  isReadOnly: boolean;
  nonce: string;
  events: EditorEvents;
  extensions: Extension[];
  hasLineNumbers?: boolean;
}

const theme = EditorView.theme({
  "&": { height: "100%", backgroundColor: "var(--surface)", color: "var(--text)", fontSize: "var(--code-size)" },
  ".cm-scroller": { fontFamily: "var(--mono)", lineHeight: "1.55" },
  ".cm-content": { caretColor: "var(--accent)", paddingBlock: "6px" },
  "&.cm-focused": { outline: "2px solid var(--focus)", outlineOffset: "-2px" },
  ".cm-cursor": { borderLeftColor: "var(--accent)", borderLeftWidth: "2px" },
  ".cm-gutters": { backgroundColor: "var(--surface)", color: "var(--faint)", border: "none", borderRight: "1px solid var(--border)" },
  ".cm-activeLine, .cm-activeLineGutter": { backgroundColor: "var(--line)" },
  "&.cm-focused > .cm-scroller > .cm-selectionLayer .cm-selectionBackground, .cm-selectionBackground": {
    background: "var(--selection)",
  },
  ".cm-selectionMatch": { backgroundColor: "transparent" },
  ".cm-tooltip": { backgroundColor: "transparent", border: "none" },
  ".cm-panels": { backgroundColor: "var(--raised)", color: "var(--text)", borderColor: "var(--border)" },
  ".cm-textfield": { backgroundColor: "var(--surface)", border: "1px solid var(--border-strong)", color: "var(--text)" },
  ".cm-button": { backgroundImage: "none", backgroundColor: "var(--surface)", border: "1px solid var(--border-strong)" },
  ".cm-specialChar": { color: "var(--error)" },
});

export function makeEditor(parent: HTMLElement, settings: EditorSettings): EditorView {
  const { events, isReadOnly } = settings;
  const listener = EditorView.updateListener.of((update) => {
    const isOurs = update.transactions.some((transaction) => transaction.annotation(byProgram) === true);
    if (update.docChanged && !isOurs) {
      events.onEdit?.();
    }
    if (update.selectionSet && !isOurs) {
      const { from, to } = update.state.selection.main;
      events.onSelect?.({ begin: from, end: to });
    }
  });
  const attributes: Record<string, string> = { "aria-label": settings.label, tabindex: "0" };
  if (isReadOnly) {
    attributes["aria-readonly"] = "true";
  }
  return new EditorView({
    parent,
    state: EditorState.create({
      extensions: [
        EditorView.cspNonce.of(settings.nonce),
        EditorState.readOnly.of(isReadOnly),
        EditorState.lineSeparator.of("\n"),
        EditorState.tabSize.of(4),
        EditorView.contentAttributes.of({ ...attributes, spellcheck: "false", autocorrect: "off" }),
        settings.hasLineNumbers === false ? [] : [lineNumbers(), highlightActiveLineGutter()],
        isReadOnly ? [] : history(),
        highlightSpecialChars(),
        highlightActiveLine(),
        highlightSelectionMatches(),
        drawSelection(),
        keymap.of([...defaultKeymap, ...historyKeymap, ...searchKeymap]),
        theme,
        listener,
        ...settings.extensions,
      ],
    }),
  });
}

/** Replaces the text of an editor: only the part that differs, so that the view stays where it is. */
export function setText(view: EditorView, text: string): void {
  const old = view.state.doc.toString();
  if (old === text) {
    return;
  }
  const shortest = Math.min(old.length, text.length);
  let start = 0;
  while (start < shortest && old.charCodeAt(start) === text.charCodeAt(start)) {
    start += 1;
  }
  let tail = 0;
  while (tail < shortest - start && old.charCodeAt(old.length - 1 - tail) === text.charCodeAt(text.length - 1 - tail)) {
    tail += 1;
  }
  view.dispatch({
    changes: { from: start, to: old.length - tail, insert: text.slice(start, text.length - tail) },
    annotations: byProgram.of(true),
  });
}

/** Brings a place into view without moving the cursor. */
export function reveal(view: EditorView, offset: number): void {
  const place = Math.min(offset, view.state.doc.length);
  view.dispatch({ effects: EditorView.scrollIntoView(place, { y: "nearest", yMargin: 40 }) });
}

/** Moves the cursor to a place, as the user would. */
export function goTo(view: EditorView, begin: number, end = begin): void {
  const { length } = view.state.doc;
  view.dispatch({
    selection: { anchor: Math.min(begin, length), head: Math.min(end, length) },
    scrollIntoView: true,
  });
  view.focus();
}

