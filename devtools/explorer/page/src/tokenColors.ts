// Colors the source by the real tokenizer's tokens, and the result by the same tokens, which are only elsewhere there. Of
// a long text only the tokens around what is seen are asked for.

import type { DumpAnswer } from "./api";
import { makeTokenMarks, type Mark } from "./marks";
import { mapRange, type Change, type Range } from "./offsets";
import type { TextPane } from "./textPane";

const scrollPause = 150;

export class TokenColors {
  private marks: Mark[] = [];
  private colored: Range = { begin: 0, end: 0 };
  private timer = 0;

  /** `onMissing` is called when the text has been scrolled to where it has no colors. */
  constructor(
    private readonly source: TextPane,
    private readonly result: TextPane,
    onMissing: () => void,
  ) {
    source.view.scrollDOM.addEventListener("scroll", () => {
      window.clearTimeout(this.timer);
      this.timer = window.setTimeout(() => this.isMissing() && onMissing(), scrollPause);
    });
  }

  show({ rows, first, total }: DumpAnswer, changes: Change[]): void {
    const isWhole = first + rows.length === total;
    this.marks = makeTokenMarks(rows);
    this.colored = {
      begin: first === 0 ? 0 : (rows[0]?.begin ?? 0),
      end: isWhole ? Number.MAX_SAFE_INTEGER : (rows.at(-1)?.end ?? 0),
    };
    this.source.mark("tokens", this.marks);
    this.showResult(changes);
  }

  showResult(changes: Change[]): void {
    const mapped = this.marks.map((mark) => ({ ...mapRange(changes, "source", mark), className: mark.className }));
    this.result.mark("tokens", mapped.filter(({ begin, end }) => begin < end));
  }

  private isMissing(): boolean {
    const { from, to } = this.source.view.viewport;
    return from < this.colored.begin || to > this.colored.end;
  }
}
