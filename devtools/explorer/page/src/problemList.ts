// The problems and exceptional gaps below the source, each a button that leads to its place.

import type { FormatAnswer, KeptGap, Problem } from "./api";
import { button, el } from "./dom";
import { goTo } from "./editors";
import { getOffset } from "./marks";
import type { OptionsPane } from "./optionsPane";
import type { TextPane } from "./textPane";

const maximalCount = 100;

export class ProblemList {
  readonly element = el("ul", { class: "problems", "aria-label": "Problems", hidden: true });

  show({ errors, problems, kept }: FormatAnswer, source: TextPane, options: OptionsPane): void {
    const all = [...errors, ...problems];
    const find = (place: Problem["in"]) => all.filter((problem) => problem.in === place && problem.line > 0);
    source.markProblems(find("source"));
    options.showProblems(find("options"));
    const items = [
      ...all.map((problem) => makeProblem(problem, source, options)),
      ...kept.map((gap) => makeGap(gap, source)),
    ];
    this.element.hidden = items.length === 0;
    this.element.replaceChildren(...items.slice(0, maximalCount));
  }
}

function makeProblem(problem: Problem, source: TextPane, options: OptionsPane): HTMLElement {
  const { in: place, line, column, severity, message, code } = problem;
  const where = line === 0 ? place : `${place} ${line}:${column}`;
  const go = () => {
    if (place === "options") {
      options.goTo(line, column);
    } else {
      goTo(source.view, getOffset(source.view.state.doc, line, column));
    }
  };
  return el("li", { class: severity }, button(`${where}: ${severity}: ${message} [${code}]`, go));
}

function makeGap({ begin, end, kind }: KeptGap, source: TextPane): HTMLElement {
  const { doc } = source.view.state;
  const { number, from } = doc.lineAt(Math.min(begin, doc.length));
  const text = `source ${number}:${begin - from + 1}: gap ${kind}: the formatter's text would change the program`;
  return el("li", { class: "note" }, button(text, () => goTo(source.view, begin, end)));
}
