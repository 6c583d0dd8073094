// What the page shows and what is kept of it: in the tab for a reload, and in a link for others.

import type { Engine, Stage } from "./api";

export type ResultView = "result" | "diff";

/** All that a link restores. */
export interface Shared {
  name: string;
  text: string;
  engine: Engine;
  options: string; // the text of an options file
  stage: Stage;
  view: ResultView;
}

const storageKey = "explorer";
const maximalLength = 4 << 20;

export const stages: { name: Stage; label: string }[] = [
  { name: "tokens", label: "Tokens" },
  { name: "syntax", label: "Syntax tree" },
  { name: "leaves", label: "Leaves" },
  { name: "text-tree", label: "Text tree" },
  { name: "indent-tree", label: "Indent tree" },
  { name: "decisions", label: "Decisions" },
];

/** What is right in a value from elsewhere; null if it is none. */
function readShared(json: string): Partial<Shared> | null {
  let value: unknown;
  try {
    value = JSON.parse(json);
  } catch {
    return null;
  }
  if (typeof value !== "object" || value === null) {
    return null;
  }
  const fields = value as Record<string, unknown>;
  const shared: Partial<Shared> = {};
  for (const key of ["name", "text", "options"] as const) {
    const text = fields[key];
    if (typeof text === "string") {
      shared[key] = text;
    }
  }
  if (fields.engine === "line" || fields.engine === "tree") {
    shared.engine = fields.engine;
  }
  if (fields.view === "result" || fields.view === "diff") {
    shared.view = fields.view;
  }
  const stage = stages.find(({ name }) => name === fields.stage);
  if (stage !== undefined) {
    shared.stage = stage.name;
  }
  return shared;
}

export function keepInTab(shared: Shared): void {
  try {
    sessionStorage.setItem(storageKey, JSON.stringify(shared));
  } catch {
    sessionStorage.removeItem(storageKey); // too long to be kept
  }
}

export function getFromTab(): Partial<Shared> | null {
  const json = sessionStorage.getItem(storageKey);
  return json === null ? null : readShared(json);
}

/** Bytes as they can be in a fragment. */
function encodeBytes(bytes: Uint8Array): string {
  let text = "";
  for (const byte of bytes) {
    text += String.fromCharCode(byte);
  }
  return btoa(text).replaceAll("+", "-").replaceAll("/", "_").replaceAll("=", "");
}

function decodeBytes(text: string): Uint8Array<ArrayBuffer> {
  const bytes = atob(text.replaceAll("-", "+").replaceAll("_", "/"));
  return Uint8Array.from(bytes, (byte) => byte.charCodeAt(0));
}

export async function packState(shared: Shared): Promise<string> {
  const stream = new Blob([JSON.stringify(shared)]).stream().pipeThrough(new CompressionStream("deflate-raw"));
  return encodeBytes(new Uint8Array(await new Response(stream).arrayBuffer()));
}

/** Null if the text is nothing that packState() made, or is too long when it is unpacked. */
export async function unpackState(packed: string): Promise<Partial<Shared> | null> {
  try {
    const stream = new Blob([decodeBytes(packed)]).stream().pipeThrough(new DecompressionStream("deflate-raw"));
    const reader = stream.getReader();
    const decoder = new TextDecoder();
    let json = "";
    for (let part = await reader.read(); !part.done; part = await reader.read()) {
      json += decoder.decode(part.value, { stream: true });
      if (json.length > maximalLength) {
        await reader.cancel();
        return null;
      }
    }
    return readShared(json + decoder.decode());
  } catch {
    return null;
  }
}

/** The token and the packed state of a fragment, "#TOKEN" or "#TOKEN/STATE". */
export function splitFragment(fragment: string): { token: string; packed: string } {
  const [token = "", packed = ""] = fragment.replace(/^#/, "").split("/");
  return { token, packed };
}
