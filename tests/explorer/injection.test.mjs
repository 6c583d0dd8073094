// Hostile texts in sources, options, file names and links stay texts: no element, script, dialog or request comes of them.
import assert from "node:assert/strict";
import { after, before, test } from "node:test";
import { chromium } from "playwright-core";
import { Explorer } from "./support.mjs";

const payloads = [
  "<script>hit()</script>", "<img src=x onerror=hit()>", "<svg onload=hit()>", "<svg><script>hit()</script></svg>", "<iframe src=javascript:hit()></iframe>",
  "<iframe srcdoc='<script>parent.hit()</script>'></iframe>", "<body onload=hit()>", "<details open ontoggle=hit()>", "<input autofocus onfocus=hit()>", "<video><source onerror=hit()></video>",
  "<math><mi//xlink:href='javascript:hit()'>", "<a href=javascript:hit()>x</a>", "javascript:hit()", "<object data=javascript:hit()>", "<embed src=javascript:hit()>",
  "<link rel=stylesheet href=//evil.example/x.css>", "<style>@import'//evil.example/x.css'</style>", "<base href=//evil.example/>", "<meta http-equiv=refresh content='0;url=//evil.example'>", "<form action=//evil.example><button>x</button></form>",
  "</script><script>hit()</script>", "</style><script>hit()</script>", "</textarea><script>hit()</script>", "</title><script>hit()</script>", "--><script>hit()</script>",
  "\"><script>hit()</script>", "'><script>hit()</script>", "\" onmouseover=hit() x=\"", "' onfocus=hit() autofocus '", "`onmouseover=hit()`",
  "${hit()}", "{{constructor.constructor('hit()')()}}", "<%= hit() %>", "#{hit()}", "%3Cscript%3Ehit()%3C/script%3E",
  "&lt;script&gt;hit()&lt;/script&gt;", "\u003cscript\u003ehit()\u003c/script\u003e", "\\u003cscript\\u003ehit()", "<scr\0ipt>hit()</scr\0ipt>", "<ScRiPt>hit()</sCrIpT>",
  "<noscript><p title='</noscript><img src=x onerror=hit()>'>", "<template><script>hit()</script></template>", "<table background=javascript:hit()>", "<marquee onstart=hit()>", "<x onclick=hit() contenteditable>",
  "\u202e<script>hit()</script>\u202c", "\ufeff<script>hit()</script>", "\u2028<script>hit()</script>\u2029", "```\n<script>hit()</script>\n```", "__proto__", "constructor", "<img src=//evil.example/x.png>",
];
const kinds = ["source", "string", "options", "optionName", "fileName", "link"];

let explorer;
let browser;
let page;
const faults = [];

before(async () => {
  explorer = await Explorer.start();
  browser = await chromium.launch({ executablePath: process.env.CHROMIUM ?? "/usr/bin/chromium", args: process.getuid() === 0 ? ["--no-sandbox"] : [] });
  const context = await browser.newContext();
  await context.exposeFunction("hit", () => faults.push("a script ran"));
  page = await context.newPage();
  page.on("dialog", (dialog) => { faults.push("a dialog"); void dialog.dismiss(); });
  page.on("pageerror", (error) => faults.push(String(error)));
  page.on("console", (message) => message.type() === "error" && faults.push(message.text()));
  page.on("request", (request) => new URL(request.url()).origin !== explorer.origin && faults.push(`request to ${request.url()}`));
  await open(explorer.url);
});
after(async () => {
  await browser?.close();
  await explorer?.stop();
});

async function open(url) {
  await page.goto("about:blank");
  await page.goto(url);
  await page.waitForSelector("body[data-state=ready]");
}

/** Brings a text into the page: in a file that is dropped, or as a link. */
async function bring(kind, payload) {
  switch (kind) {
    case "source": return drop("x.omb", payload);
    case "string": return drop("x.omb", `x = '${payload.replaceAll("'", "''").replaceAll(/[\0\n\u2028\u2029]/g, " ")}'; % ${payload}\n`);
    case "options": return drop("x.json", JSON.stringify({ formatting: { indentCharacter: payload, lineBreakBehavior: { [payload]: payload } } }));
    case "optionName": return drop("x.json", JSON.stringify({ [payload]: { [payload]: payload } }, null, 2));
    case "fileName": return drop(payload, "x = 1;\n");
    default: return open(`${explorer.url}/${await pack(JSON.stringify({ name: payload, text: payload, options: payload, engine: payload, stage: payload, view: payload }))}`);
  }
}

async function drop(name, text) {
  await page.evaluate(([fileName, content]) => {
    document.body.dataset.state = "busy";
    const dataTransfer = new DataTransfer();
    dataTransfer.items.add(new File([content], fileName));
    document.querySelector(".source .cm-content").dispatchEvent(new DragEvent("drop", { dataTransfer, bubbles: true, cancelable: true }));
  }, [name, text]);
  await page.waitForSelector("body[data-state=ready], body[data-state=failed]");
}

/** A text as the page packs its state into a link. */
const pack = (text) => page.evaluate(async (value) => {
  const stream = new Blob([value]).stream().pipeThrough(new CompressionStream("deflate-raw"));
  const bytes = new Uint8Array(await new Response(stream).arrayBuffer());
  return btoa(String.fromCharCode(...bytes)).replaceAll("+", "-").replaceAll("/", "_").replaceAll("=", "");
}, text);

/** The elements that could do something. The editor has images of its own, without a source, beside its marks. */
const countElements = () => page.evaluate(() => [...document.querySelectorAll("script, iframe, object, embed, img:not(.cm-widgetBuffer:not([src])), svg, link, style, base, meta, form, video, marquee, math, template, [onerror], [onload], [onclick], [onfocus], [srcdoc]")]
  .map((element) => `${element.localName} ${element.getAttribute("src") ?? element.getAttribute("href") ?? ""}`.trim()).sort().join());

for (const kind of kinds) {
  test(`${payloads.length} hostile texts as ${kind}`, { timeout: 120_000 }, async () => {
    const expected = await countElements();
    for (const payload of payloads) {
      await bring(kind, payload);
      assert.equal(await countElements(), expected, payload);
      assert.deepEqual(faults.splice(0), [], payload);
    }
  });
}

test("hostile fragments", async () => {
  const bodies = ['{"__proto__": {"text": "x"}}', "[]", "null", "1", `"${payloads[0].replaceAll('"', "")}"`, "{".repeat(5000), "x".repeat(5 << 20)];
  const fragments = [...(await Promise.all(bodies.map(pack))), ...payloads.slice(0, 6).map(encodeURIComponent), "AAAA", "%00", "/../../", "a".repeat(5000)];
  for (const fragment of fragments) {
    await open(`${explorer.url}/${fragment}`);
    assert.equal(await page.evaluate(() => document.querySelectorAll("script").length), 1, fragment.slice(0, 60));
    assert.deepEqual(faults.splice(0), [], fragment.slice(0, 60));
  }
});
