// The document about the options, cut into sections that the form shows beside each option. It is a small part of
// Markdown that is read here: headings, paragraphs, lists, tables, blocks of code, `code`, **bold** and [links](#x).

import text from "project:options";
import { el, type Child } from "./dom";

interface DocumentSection {
  names: string[]; // of options: the code in its heading
  lines: string[];
}

function cutIntoSections(): DocumentSection[] {
  const sections: DocumentSection[] = [];
  for (const line of text.split("\n")) {
    if (line.startsWith("## ")) {
      sections.push({ names: [...line.matchAll(/`(\w+)`/g)].map((match) => match[1] ?? ""), lines: [] });
    } else {
      sections.at(-1)?.lines.push(line);
    }
  }
  return sections;
}

const sections = cutIntoSections();

function makeInline(line: string): Child[] {
  const parts = line.split(/(`[^`]+`|\*\*[^*]+\*\*|\[[^\]]+\]\([^)]+\))/);
  return parts.map((part) => {
    if (part.startsWith("`")) {
      return el("code", {}, part.slice(1, -1));
    }
    if (part.startsWith("**")) {
      return el("strong", {}, part.slice(2, -2));
    }
    return part.startsWith("[") ? part.slice(1, part.indexOf("]")) : part;
  });
}

/** What a block of code is about, from the comment before it that says which command prints it. */
function makeCaption(comment: string): string | null {
  const settings = [...comment.matchAll(/--set formatting\.(\S+)/g)].map((match) => match[1] ?? "");
  if (comment.includes("<!-- file:")) {
    return "Source";
  }
  return comment.includes("<!-- run:") ? `With ${settings.join(", ")}` : null;
}

class SectionReader {
  private readonly blocks: HTMLElement[] = [];
  private comment = "";

  constructor(private readonly lines: string[]) {}

  read(): HTMLElement[] {
    for (let line = this.lines.shift(); line !== undefined; line = this.lines.shift()) {
      this.readBlock(line);
    }
    return this.blocks;
  }

  private readBlock(line: string): void {
    if (line.startsWith("```")) {
      this.readCode();
    } else if (line.startsWith("<!--")) {
      this.comment = line;
    } else if (line.startsWith("### ")) {
      this.blocks.push(el("h4", {}, ...makeInline(line.slice(4))));
    } else if (line.startsWith("|")) {
      this.readTable(line);
    } else if (line.startsWith("- ")) {
      this.readList(line);
    } else if (line.trim() !== "") {
      this.blocks.push(el("p", {}, ...makeInline([line, ...this.takeWhile(isText)].join(" "))));
    }
  }

  private takeWhile(condition: (line: string) => boolean): string[] {
    const end = this.lines.findIndex((line) => !condition(line));
    return this.lines.splice(0, end === -1 ? this.lines.length : end);
  }

  private readCode(): void {
    const code = this.takeWhile((line) => !line.startsWith("```"));
    this.lines.shift();
    const caption = makeCaption(this.comment);
    this.comment = "";
    const block = el("pre", { tabindex: "0" }, el("code", {}, code.join("\n")));
    this.blocks.push(caption === null ? block : el("figure", {}, el("figcaption", {}, caption), block));
  }

  private readTable(first: string): void {
    const rows = [first, ...this.takeWhile((line) => line.startsWith("|"))]
      .filter((line) => !/^\|[-|]+\|$/.test(line))
      .map((line) => line.slice(1, -1).split(/(?<!\\)\|/));
    const makeRow = (name: "td" | "th", cells: string[]) =>
      el("tr", {}, ...cells.map((cell) => el(name, {}, ...makeInline(cell.trim()))));
    const [head = [], ...body] = rows;
    const table = el(
      "table",
      {},
      el("thead", {}, makeRow("th", head)),
      el("tbody", {}, ...body.map((cells) => makeRow("td", cells))),
    );
    this.blocks.push(el("div", { class: "table", tabindex: "0", role: "region", "aria-label": "Table" }, table));
  }

  private readList(first: string): void {
    const items = [first, ...this.takeWhile((line) => line.startsWith("- ") || line.startsWith("  "))];
    this.blocks.push(el("ul", {}, ...items.map((item) => el("li", {}, ...makeInline(item.slice(2))))));
  }
}

function isText(line: string): boolean {
  return line.trim() !== "" && !/^(```|<!--|#|\||- )/.test(line);
}

/** What the document says about an option of the tree engine; nothing for any other. */
export function explain(key: string): HTMLElement[] {
  const section = sections.find(({ names }) => names.includes(key));
  return section === undefined ? [] : new SectionReader([...section.lines]).read();
}
