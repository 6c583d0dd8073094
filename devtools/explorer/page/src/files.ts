// Texts from files that are chosen or dropped.

import { el } from "./dom";

/** A text with LF only and without a byte-order mark, as the editor has it. */
export function normalize(text: string): string {
  return text.replace(/^\uFEFF/, "").replace(/\r\n?/g, "\n");
}

/** Fails with a sentence. */
export async function readText(file: File, maximalLength: number): Promise<string> {
  if (file.size > maximalLength) {
    throw new Error(`${file.name} is too long: ${maximalLength.toLocaleString("en")} bytes is the limit`);
  }
  const bytes = await file.arrayBuffer();
  try {
    return new TextDecoder("utf-8", { fatal: true, ignoreBOM: true }).decode(bytes);
  } catch {
    throw new Error(`${file.name} isn't text in UTF-8`);
  }
}

/** A field that is never seen: a button clicks it. */
export function makeFileField(onFile: (file: File) => void): HTMLInputElement {
  const field = el("input", { type: "file", class: "unseen", accept: ".omb,.json,text/plain", tabindex: "-1", "aria-hidden": "true" });
  field.addEventListener("change", () => {
    const file = field.files?.[0];
    if (file !== undefined) {
      onFile(file);
    }
    field.value = "";
  });
  return field;
}

/** Files may be dropped anywhere on the page. */
export function acceptDrops(onFile: (file: File) => void): void {
  const { body } = document;
  const isFile = (event: DragEvent) => event.dataTransfer?.types.includes("Files") === true;
  body.addEventListener("dragover", (event) => {
    if (isFile(event)) {
      event.preventDefault();
      body.classList.add("drop");
    }
  });
  body.addEventListener("dragleave", (event) => body.classList.toggle("drop", event.relatedTarget !== null));
  const drop = (event: DragEvent) => {
    body.classList.remove("drop");
    const file = isFile(event) ? event.dataTransfer?.files[0] : undefined;
    if (file !== undefined) {
      event.preventDefault();
      event.stopPropagation(); // or the editor inserts its text
      onFile(file);
    }
  };
  document.addEventListener("drop", drop, true);
}
