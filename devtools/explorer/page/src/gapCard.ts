// What is known of one gap, as text: its class, its level, the decision, and the options that led to it.

import type { GapDecision, KeptGap } from "./api";
import { el } from "./dom";

const decisions: Record<GapDecision["decision"], string> = {
  Preserve: "not decided by line breaking",
  LineBreak: "a line break",
  NoLineBreak: "no line break",
};

/** Whitespace that can be seen. */
export function showWhitespace(text: string): string {
  const visible = text.replaceAll(" ", "·").replaceAll("\t", "→").replaceAll("\n", "⏎");
  return visible === "" ? "nothing" : visible.length > 40 ? visible.slice(0, 39) + "…" : visible;
}

/** "LineSeparatorWhitespace" as words. */
function makeWords(name: string): string {
  return name.replace(/([a-z])([A-Z])/g, "$1 $2").toLowerCase();
}

export interface GapFacts {
  gap: GapDecision;
  kept: KeptGap | null;
}

export function makeGapCard({ gap, kept }: GapFacts): HTMLElement {
  const facts: [string, string][] = [
    ["Class", makeWords(gap.class) + (gap.construct === "" ? "" : ` of ${gap.construct}`)],
    ["Level", `${gap.depth} (${gap.level})`],
    ["Decision", decisions[gap.decision]],
    ["Text", `${showWhitespace(gap.before)} → ${showWhitespace(gap.after)}`],
  ];
  const list = el("dl", {});
  for (const [name, value] of facts) {
    list.append(el("dt", {}, name), el("dd", {}, value));
  }
  const options = el("ul", { class: "gap-options" });
  for (const { name, value } of gap.options) {
    options.append(el("li", {}, el("code", {}, `${name} = ${JSON.stringify(value)}`)));
  }
  const keptWords = kept?.kind === "kept" ? "kept its text" : "was repaired";
  const note = kept === null ? null : el("p", { class: "gap-kept" }, `The formatter's text would change the program: this gap ${keptWords}.`);
  return el("div", { class: "gap-card" }, el("p", { class: "gap-reason" }, `${gap.reason}.`), list, options, note);
}

/** What the line engine did to the edge of a line. */
export function makeEditCard(before: string, after: string, isAtStart: boolean): HTMLElement {
  const option = isAtStart ? "line.indentSize, line.tabSize, line.useTabs, line.functionStyle" : "line.blankLines";
  return el(
    "div",
    { class: "gap-card" },
    el("p", { class: "gap-reason" }, isAtStart ? "The line is indented by its level." : "Whitespace at the end of a line is removed."),
    el("dl", {}, el("dt", {}, "Text"), el("dd", {}, `${showWhitespace(before)} → ${showWhitespace(after)}`)),
    isAtStart ? el("p", {}, "By ", el("code", {}, option)) : null,
  );
}
