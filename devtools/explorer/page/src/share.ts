// What can be copied: the options file, the command line, a link, the text of an issue.

import type { FormatAnswer } from "./api";
import { button, el } from "./dom";
import { makeCommand, type OptionValues } from "./options";
import { packState, type Shared } from "./state";

const maximalLinkLength = 1_000_000;

export interface CopySource {
  shared: Shared;
  values: OptionValues;
  answer: FormatAnswer | null;
  token: string;
}

/** A block of code whose fence is longer than any in it. */
function fence(text: string, language = ""): string {
  const longest = Math.max(2, ...[...text.matchAll(/`+/g)].map(([ticks]) => ticks.length));
  const ticks = "`".repeat(longest + 1);
  return `${ticks}${language}\n${text}${text.endsWith("\n") ? "" : "\n"}${ticks}`;
}

function describeAnswer(answer: FormatAnswer | null): string {
  if (answer === null) {
    return "No result.";
  }
  const problems = [...answer.errors, ...answer.problems].map(
    ({ in: place, line, column, severity, message, code }) => `${place}:${line}:${column}: ${severity}: ${message} [${code}]`,
  );
  const messages = problems.length === 0 ? "" : `${fence(problems.join("\n"))}\n\n`;
  const stable = answer.isStable === false ? "\n\nA second run changes the result again." : "";
  return answer.errors.length > 0 ? messages.trimEnd() : `${messages}${fence(answer.text)}${stable}`;
}

export function makeIssueText({ shared, values, answer }: CopySource): string {
  return [
    `ombrel-explorer ${VERSION}, ${shared.engine} engine`,
    fence(makeCommand(values, shared.engine, shared.name), "sh"),
    "### Source",
    fence(shared.text),
    "### Options",
    fence(shared.options, "json"),
    "### Result",
    describeAnswer(answer),
    "### Expected",
    "",
  ].join("\n\n");
}

async function makeLink({ shared, token }: CopySource): Promise<string> {
  return `${location.origin}/#${token}/${await packState(shared)}`;
}

/** The menu with everything that can be copied. `report` tells the user what has become of it. */
export class ShareMenu {
  readonly element: HTMLDetailsElement;
  private readonly dialogText = el("textarea", { rows: "8", "aria-label": "Text to copy" });
  private readonly dialog: HTMLDialogElement;

  constructor(
    private readonly getSource: () => CopySource,
    private readonly report: (text: string) => void,
    openLink: (link: string) => void,
  ) {
    this.dialog = this.makeDialog(openLink);
    const items = el(
      "div",
      { class: "menu-items" },
      button("Options file", () => void this.copy("The options file", (source) => source.shared.options)),
      button("Command line", () => void this.copy("The command line", makeCommandLine)),
      button("Link", () => void this.copy("The link", makeLink)),
      button("Issue text", () => void this.copy("The text for an issue", makeIssueText)),
      el("hr"),
      button("Open a link…", () => this.show("", false)),
    );
    this.element = el("details", { class: "menu", keydown: (event) => this.closeOnEscape(event) }, el("summary", {}, "Copy"), items);
    document.addEventListener("click", ({ target }) => {
      if (target instanceof Node && !this.element.contains(target)) {
        this.element.open = false;
      }
    });
    document.body.append(this.dialog);
  }

  private closeOnEscape(event: Event): void {
    if (event instanceof KeyboardEvent && event.key === "Escape") {
      this.close();
    }
  }

  private close(): void {
    this.element.open = false;
    this.element.querySelector("summary")?.focus();
  }

  private async copy(name: string, make: (source: CopySource) => string | Promise<string>): Promise<void> {
    this.close();
    const text = await make(this.getSource());
    if (name === "The link" && text.length > maximalLinkLength) {
      this.report("This text is too long for a link: copy it as the text of an issue");
      return;
    }
    try {
      await navigator.clipboard.writeText(text);
      this.report(`${name} is copied`);
    } catch {
      this.show(text, true);
    }
  }

  /** Without access to the clipboard the user copies the text; the same dialog accepts a link. */
  private show(text: string, isCopy: boolean): void {
    this.element.open = false;
    this.dialog.classList.toggle("copies", isCopy);
    this.dialogText.value = text;
    this.dialogText.readOnly = isCopy;
    this.dialogText.setAttribute("aria-label", isCopy ? "Text to copy" : "Link to open");
    this.dialog.showModal();
    this.dialogText.select();
  }

  private makeDialog(openLink: (link: string) => void): HTMLDialogElement {
    const dialog = el(
      "dialog",
      { "aria-label": "Text" },
      el("p", { class: "for-copy" }, "The browser doesn't let the page copy: copy it from here."),
      el("p", { class: "for-link" }, "Paste a link that was copied here or in another explorer."),
      this.dialogText,
      el(
        "div",
        { class: "dialog-buttons" },
        button("Close", () => dialog.close()),
        button("Open", () => {
          dialog.close();
          openLink(this.dialogText.value);
        }, { class: "for-link primary" }),
      ),
    );
    return dialog;
  }
}

function makeCommandLine({ values, shared }: CopySource): string {
  return makeCommand(values, shared.engine, shared.name);
}
