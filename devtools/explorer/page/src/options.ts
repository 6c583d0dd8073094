// The values of options that aren't the defaults, as a text and as the words of a command line.

import type { Option, OptionValue, Section } from "./schema";

/** By the full names of the options; what isn't in it has its default. */
export type OptionValues = Record<string, OptionValue>;

export function isSameValue(a: OptionValue, b: OptionValue): boolean {
  return JSON.stringify(a) === JSON.stringify(b);
}

function isObject(value: unknown): value is Record<string, unknown> {
  return typeof value === "object" && value !== null && !Array.isArray(value);
}

/** The options file that says what the values say. */
export function makeOptionsFile(values: OptionValues, sections: Section[]): string {
  const file: Record<string, unknown> = {};
  for (const section of sections) {
    const own: Record<string, OptionValue> = {};
    for (const option of section.options) {
      const value = values[option.name];
      if (value !== undefined) {
        own[option.key] = value;
      }
    }
    if (section.name === "") {
      Object.assign(file, own);
    } else if (Object.keys(own).length > 0) {
      file[section.name] = own;
    }
  }
  return JSON.stringify(file, null, 4) + "\n";
}

/** What an options file says, as far as it is plain JSON; null if it isn't. What no option can be is left out. */
export function readOptionsFile(text: string, sections: Section[]): OptionValues | null {
  let file: unknown;
  try {
    file = JSON.parse(text);
  } catch {
    return null;
  }
  if (!isObject(file)) {
    return null;
  }
  const values: OptionValues = {};
  for (const section of sections) {
    const own = section.name === "" ? file : file[section.name];
    for (const option of section.options) {
      const value = isObject(own) ? own[option.key] : undefined;
      if (value !== undefined && isPossible(option, value) && !isSameValue(value, option.factory)) {
        values[option.name] = value;
      }
    }
  }
  return values;
}

function isPossible(option: Option, value: unknown): value is OptionValue {
  switch (option.type) {
    case "boolean":
      return typeof value === "boolean";
    case "number":
      return typeof value === "number" && Number.isInteger(value) && value >= option.low && value <= option.high;
    case "word":
      return typeof value === "string" && option.words.includes(value);
    case "construct":
      return isPossibleTree(option.words, value);
  }
}

function isPossibleTree(words: string[], value: unknown): boolean {
  return isObject(value)
    ? Object.values(value).every((inner) => isPossibleTree(words, inner))
    : typeof value === "string" && words.includes(value);
}

/** A word as a shell reads it. */
function quote(word: string): string {
  return /^[\w.,=:/-]+$/.test(word) ? word : `'${word.replaceAll("'", "'\\''")}'`;
}

/** The command that formats a file with these options. */
export function makeCommand(values: OptionValues, engine: string, file: string): string {
  const words = ["ombrel-format", "--no-config", "--engine", engine];
  for (const [name, value] of Object.entries(values)) {
    const isOfEngine = name.startsWith(engine === "tree" ? "formatting." : "line.");
    if (isOfEngine) {
      words.push("--set", quote(`${name}=${typeof value === "object" ? JSON.stringify(value) : String(value)}`));
    }
  }
  const safe = file.startsWith("-") ? `./${file}` : file;
  return [...words, quote(safe)].join(" ");
}
