// Where a place of the source is in the result, and the other way round.

import type { Edit } from "./api";

export interface Range {
  begin: number;
  end: number;
}

/** An edit with its place in the result. */
export interface Change {
  source: Range;
  result: Range;
}

export function makeChanges(edits: Edit[]): Change[] {
  let shift = 0;
  return edits.map(({ offset, length, text }) => {
    const begin = offset + shift;
    shift += text.length - length;
    return { source: { begin: offset, end: offset + length }, result: { begin, end: begin + text.length } };
  });
}

type Side = "source" | "result";

/** The last change that starts before a place or at it. */
function findChange(changes: Change[], side: Side, offset: number): Change | null {
  let low = 0;
  let high = changes.length;
  while (low < high) {
    const middle = (low + high) >> 1;
    const change = changes[middle];
    if (change !== undefined && change[side].begin <= offset) {
      low = middle + 1;
    } else {
      high = middle;
    }
  }
  return changes[low - 1] ?? null;
}

/** A place in a changed gap is as far from its start on the other side, as far as that reaches. */
function mapOffset(changes: Change[], from: Side, offset: number): number {
  const to = from === "source" ? "result" : "source";
  const change = findChange(changes, from, offset);
  if (change === null) {
    return offset;
  }
  return offset >= change[from].end
    ? change[to].end + (offset - change[from].end)
    : Math.min(change[to].end, change[to].begin + (offset - change[from].begin));
}

export function mapRange(changes: Change[], from: Side, range: Range): Range {
  const to = from === "source" ? "result" : "source";
  const change = findChange(changes, from, range.begin);
  if (change !== null && change[from].begin === range.begin && change[from].end === range.end) {
    return change[to];
  }
  return { begin: mapOffset(changes, from, range.begin), end: mapOffset(changes, from, range.end) };
}
