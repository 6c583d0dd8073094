// Marks every change in the source and in the result, and keeps the lines of both beside each other.

import type { Mark } from "./marks";
import type { Change } from "./offsets";
import type { TextPane } from "./textPane";

export class ChangesView {
  private isShown = false;
  private isFollowing = false; // one text scrolls because the other one did

  constructor(
    private readonly source: TextPane,
    private readonly result: TextPane,
  ) {
    this.follow(source, result);
    this.follow(result, source);
  }

  /** Null shows none. */
  show(changes: Change[] | null): void {
    this.isShown = changes !== null;
    const shown = changes ?? [];
    this.source.mark("changes", shown.map(({ source }): Mark => ({ ...source, className: "removed" })));
    this.result.mark("changes", shown.map(({ result }): Mark => ({ ...result, className: "added" })));
    this.showSpacers(shown);
  }

  /** Empty lines on the side where a change leaves fewer of them. */
  private showSpacers(changes: Change[]): void {
    const inSource = new Map<number, number>();
    const inResult = new Map<number, number>();
    for (const { source, result } of changes) {
      const lastOfSource = this.source.findLine(source.end);
      const lastOfResult = this.result.findLine(result.end);
      const before = lastOfSource - this.source.findLine(source.begin);
      const added = lastOfResult - this.result.findLine(result.begin) - before;
      const [spacers, line] = added > 0 ? [inSource, lastOfSource] : [inResult, lastOfResult];
      if (added !== 0) {
        spacers.set(line, (spacers.get(line) ?? 0) + Math.abs(added));
      }
    }
    this.source.spacers.show(this.source.view, inSource);
    this.result.spacers.show(this.result.view, inResult);
  }

  private follow(leader: TextPane, follower: TextPane): void {
    leader.view.scrollDOM.addEventListener("scroll", () => {
      if (this.isShown && !this.isFollowing) {
        this.isFollowing = true;
        follower.view.scrollDOM.scrollTop = leader.view.scrollDOM.scrollTop;
        requestAnimationFrame(() => (this.isFollowing = false));
      }
    });
  }
}
