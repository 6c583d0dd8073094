import { Api } from "./api";
import { readSections } from "./schema";
import { getFromTab, splitFragment, unpackState, type Shared } from "./state";
import { el } from "./dom";
import { Explorer } from "./explorer";
import examples from "project:examples";

/** What most people want first, so that there is something to see. */
const startOptions = JSON.stringify({ formatting: { lineBreakingEnabled: true } }, null, 4) + "\n";

const reportInterval = 30_000;

/** Tells the server that the page is open for as long as it is. */
function keepPresent(api: Api): void {
  const page = crypto.randomUUID();
  const report = () => void api.reportPresence(page, true);
  report();
  setInterval(report, reportInterval);
  addEventListener("pageshow", report);
  addEventListener("pagehide", () => void api.reportPresence(page, false));
}

interface Start {
  shared: Shared;
  isLinkDamaged: boolean;
}

/** What the page starts with: a link's state, what the tab had, the file of the command line, or an example. */
async function findStart(api: Api, packed: string): Promise<Start> {
  const first = examples[0] ?? { name: "untitled.omb", text: "" };
  const start = await api.start();
  const file = start.name === "" ? first : start;
  const standard: Shared = {
    name: file.name,
    text: file.text,
    engine: "tree",
    options: startOptions,
    stage: "decisions",
    view: "result",
  };
  const restored = packed === "" ? getFromTab() : await unpackState(packed);
  return { shared: { ...standard, ...restored }, isLinkDamaged: packed !== "" && restored === null };
}

async function open(): Promise<void> {
  const { token, packed } = splitFragment(location.hash);
  const api = new Api(token);
  const nonce = document.querySelector<HTMLMetaElement>("meta[name=style-nonce]")?.content ?? "";
  const [start, schema] = await Promise.all([findStart(api, packed), api.schema()]);
  history.replaceState(null, "", `#${token}`);
  const notice = start.isLinkDamaged ? "This link is damaged: it can't be read" : "";
  new Explorer({ api, sections: readSections(schema), nonce, token }).start(start.shared, notice);
  keepPresent(api);
}

open().catch((error: unknown) => {
  const message = error instanceof Error ? error.message : String(error);
  document.body.append(el("main", { class: "failure", role: "alert" }, el("h1", {}, "Ombrel explorer"), el("p", {}, message)));
});

addEventListener("hashchange", () => location.reload());
