// The page in a real browser, against the real program.
import assert from "node:assert/strict";
import { mkdirSync, readFileSync } from "node:fs";
import { createRequire } from "node:module";
import { after, afterEach, before, describe, test } from "node:test";
import { chromium } from "playwright-core";
import { Explorer, project } from "./support.mjs";

const axe = readFileSync(createRequire(import.meta.url).resolve("axe-core/axe.min.js"), "utf8");
const shots = `${project}build/explorer/`;
const wide = { width: 1280, height: 800 };
const chain = "ok = isempty(a) || numel(a) > 10 || isempty(b) || numel(b) > 10;\n";

let explorer;
let browser;
const open = [];
const faults = [];

before(async () => {
  mkdirSync(shots, { recursive: true });
  explorer = await Explorer.start();
  const executablePath = process.env.CHROMIUM ?? "/usr/bin/chromium";
  browser = await chromium.launch({ executablePath, args: process.getuid() === 0 ? ["--no-sandbox"] : [] });
});
after(async () => {
  await browser?.close();
  await explorer?.stop();
});

/** Everything that a page reports, and each request that leaves it, is a fault unless a test expects it. */
afterEach(async () => {
  await Promise.all(open.splice(0).map((context) => context.close()));
  assert.deepEqual(faults.splice(0), []);
});

async function openPage({ url = explorer.url, waits = true, permissions = [], ...settings } = {}) {
  const context = await browser.newContext({ viewport: wide, reducedMotion: "reduce", ...settings }); // or colors are measured while they change
  open.push(context);
  context.setDefaultTimeout(5000);
  await context.grantPermissions(permissions, { origin: explorer.origin });
  const page = await context.newPage();
  page.on("pageerror", (error) => faults.push(String(error)));
  page.on("console", (message) => ["error", "warning"].includes(message.type()) && faults.push(message.text()));
  page.on("request", (request) => new URL(request.url()).origin !== explorer.origin && faults.push(`request to ${request.url()}`));
  await page.goto(url);
  if (waits) {
    await ready(page);
  }
  return page;
}

const ready = (page) => page.waitForSelector("body[data-state=ready]");
const source = (page) => page.getByRole("textbox", { name: "Source", exact: true });
const result = (page) => page.getByRole("textbox", { name: "Result" });
const stage = (page) => page.getByRole("textbox", { name: "Rows of the stage" });
const textOf = (editor) => editor.evaluate((element) => [...element.querySelectorAll(".cm-line")].map((line) => line.textContent).join("\n"));

async function write(page, text) {
  await source(page).click();
  await page.keyboard.press("Control+a");
  await page.keyboard.insertText(text);
}

async function waitForText(editor, expected) {
  const isExpected = async () => {
    const text = await textOf(editor);
    return expected instanceof RegExp ? expected.test(text) : text === expected;
  };
  for (let i = 0; i < 60 && !(await isExpected()); ++i) {
    await new Promise((resolve) => setTimeout(resolve, 50));
  }
  assert.ok(await isExpected(), `${await textOf(editor)}\nis not\n${expected}`);
}

/** The marked parts of an editor. */
const marked = (editor, name = "linked") => editor.evaluate((element, own) => [...element.querySelectorAll(`.${own}`)].map((mark) => mark.textContent).join(""), name);

async function checkAccessible(page, what) {
  await page.evaluate(axe);
  const { violations } = await page.evaluate(() => globalThis.axe.run());
  const found = violations.map(({ id, help, nodes }) => `${id}: ${help}: ${nodes.slice(0, 3).map((node) => `${node.target} ${node.any[0]?.message ?? ""}`).join("; ")}`);
  assert.deepEqual(found, [], what);
}

const shoot = (page, name) => page.screenshot({ path: `${shots}${name}.png` });

describe("Editing", () => {
  test("what is typed is formatted", async () => {
    const page = await openPage();
    await write(page, "if a\nb = 1;\nend");
    await waitForText(result(page), "if a, b = 1;, end");
    await page.getByLabel("Line engine").check();
    await waitForText(result(page), "if a\n    b = 1;\nend");
    assert.match(await page.getByRole("status").textContent(), /1 gap changed/);
    await page.getByRole("textbox", { name: "Source", exact: true }).press("Control+z");
  });
  test("an outdated answer is never shown", async () => {
    const page = await openPage();
    let isFirst = true;
    await page.route("**/api/format", async (route) => {
      if (isFirst) {
        isFirst = false;
        await new Promise((resolve) => setTimeout(resolve, 1500));
      }
      await route.continue().catch(() => {});
    });
    await write(page, "first = 1;");
    await page.waitForTimeout(200);
    await write(page, "second = 2;");
    await waitForText(result(page), "second = 2;");
    await page.waitForTimeout(1600);
    assert.equal(await textOf(result(page)), "second = 2;");
  });
  test("errors of syntax and of options lead to their places", async () => {
    const page = await openPage();
    await write(page, "x = 1;\nif a\n");
    await page.getByRole("button", { name: /source 3:1: error: .*\[unclosed-block\]/ }).click();
    assert.equal(await source(page).locator(".problem").count(), 1);
    await shoot(page, "errors");
    await page.getByRole("button", { name: "File" }).click();
    const file = page.getByRole("textbox", { name: "Options file" });
    await file.click();
    await page.keyboard.press("Control+a");
    await page.keyboard.insertText('{"formatting": {"indentWidth": "wide"}}');
    await page.getByRole("button", { name: /options 1:32: error/ }).click();
    assert.equal(await marked(file, "problem"), '"');
  });
  test("files can be dropped, and examples opened", async () => {
    const page = await openPage();
    const drop = (name, text) => page.evaluate(([fileName, content]) => {
      const dataTransfer = new DataTransfer();
      dataTransfer.items.add(new File([content], fileName));
      document.querySelector(".source .cm-content").dispatchEvent(new DragEvent("drop", { dataTransfer, bubbles: true, cancelable: true }));
    }, [name, text]);
    await drop("dropped.omb", "a\r\nb\r\n");
    await waitForText(source(page), "a\nb\n");
    await drop("options.json", '{"line": {"indentSize": 7}}');
    await page.getByLabel("Line engine").check();
    assert.equal(await page.getByLabel("Indent size", { exact: true }).inputValue(), "7");
    await page.getByLabel("Open an example").selectOption("bits.omb");
    assert.equal(await page.locator(".file-name").textContent(), "bits.omb");
    await drop("bytes.omb", new Uint8Array([0xff]));
    await page.getByText("isn't text in UTF-8").waitFor().catch(() => {});
  });
  test("a text of 1 MB: typing stays smooth", { timeout: 60_000 }, async () => {
    const page = await openPage();
    await page.getByLabel("Line engine").check();
    const text = "if ready(k)\n  total = total + price(k) * count(k); % and so on\nend\n".repeat(15_000);
    await page.evaluate((content) => {
      const dataTransfer = new DataTransfer();
      dataTransfer.items.add(new File([content], "large.omb"));
      document.querySelector(".source .cm-content").dispatchEvent(new DragEvent("drop", { dataTransfer, bubbles: true, cancelable: true }));
    }, text);
    await page.getByText("15,000 gaps changed").waitFor({ timeout: 30_000 });
    await source(page).click();
    await page.evaluate(() => {
      globalThis.longest = 0;
      let last = performance.now();
      const step = () => {
        const now = performance.now();
        globalThis.longest = Math.max(globalThis.longest, now - last);
        last = now;
        requestAnimationFrame(step);
      };
      requestAnimationFrame(step);
    });
    const start = performance.now();
    await page.keyboard.type("value = 12345;", { delay: 30 });
    const typed = performance.now() - start;
    await page.waitForTimeout(1500);
    const longest = await page.evaluate(() => globalThis.longest);
    console.log(`1 MB: 14 keys in ${typed.toFixed(0)} ms, longest frame ${longest.toFixed(0)} ms`);
    assert.ok(typed < 5000 && longest < 1500, `${typed} ms, ${longest} ms`);
  });
});

describe("Options", () => {
  test("a visitor finds what separatorPlacement.Expressions.Logical does", async () => {
    const page = await openPage();
    await write(page, chain);
    await page.getByLabel("Column limit", { exact: true }).fill("40");
    await waitForText(result(page), "ok = isempty(a) || numel(a) > 10 ...\n    || isempty(b) || numel(b) > 10;\n");
    const option = page.locator("[data-option='formatting.separatorPlacement']");
    await option.getByText("What it does").click();
    await option.getByText("On which side of a break the operator is").waitFor();
    await option.getByLabel("Separator placement", { exact: true }).selectOption("separately…");
    await option.getByLabel("Expressions").selectOption("separately…");
    await option.getByLabel("Logical").selectOption("EndOfLine");
    await waitForText(result(page), "ok = isempty(a) || numel(a) > 10 || ...\n    isempty(b) || numel(b) > 10;\n");
    await source(page).click();
    await page.keyboard.press("Control+Home");
    await page.mouse.move(...(await placeOf(page, 0, chain.indexOf("|| isempty(b)") + 2.5)));
    const card = page.locator(".cm-tooltip .gap-card");
    await card.getByText('formatting.separatorPlacement.Expressions.Logical = "EndOfLine"').waitFor();
    assert.match(await card.textContent(), /binary operation whitespace of Logical.*Level.*Decision.*a line break/s);
    await shoot(page, "gap");
  });
  test("changed values are marked and reset one by one", async () => {
    const page = await openPage();
    const option = page.locator("[data-option='formatting.indentWidth']");
    assert.equal(await option.getByRole("button").count(), 0, "nothing to reset");
    await page.getByLabel("Indent width", { exact: true }).fill("2");
    assert.match(await option.getAttribute("class"), /changed/);
    await option.getByRole("button", { name: "Reset Indent width to its default" }).click();
    assert.equal(await page.getByLabel("Indent width", { exact: true }).inputValue(), "4");
    assert.doesNotMatch(await option.getAttribute("class"), /changed/);
    await page.getByRole("button", { name: "Reset all" }).click();
    await page.getByRole("button", { name: "File" }).click();
    await waitForText(page.getByRole("textbox", { name: "Options file" }), "{}\n");
  });
  test("the form has every option of the schema, for both engines", async () => {
    const page = await openPage();
    const { $defs } = JSON.parse((await explorer.get("/api/schema")).body);
    const names = ["line", "formatting"].flatMap((section) => Object.keys($defs[section].properties).map((key) => `${section}.${key}`));
    assert.deepEqual(await page.locator(".option").evaluateAll((all) => all.map((one) => one.dataset.option)), names);
    const without = await page.locator(".option").evaluateAll((all) => all.filter((one) => one.dataset.option.startsWith("formatting") && !one.querySelector("details p")).map((one) => one.dataset.option));
    assert.deepEqual(without, [], "options of the tree engine that nothing explains");
  });
});

/** The middle of a column of a line of the source, on the screen. */
async function placeOf(page, line, column) {
  const box = await source(page).locator(".cm-line").nth(line).boundingBox();
  const width = await page.evaluate(() => {
    const range = document.createRange();
    const text = document.createTreeWalker(document.querySelector(".source .cm-line"), NodeFilter.SHOW_TEXT).nextNode();
    range.setStart(text, 0);
    range.setEnd(text, 1);
    return range.getBoundingClientRect().width;
  });
  return [box.x + 6 + width * column, box.y + box.height / 2];
}

describe("Selections", () => {
  test("go from the source to every pane, and back", async () => {
    const page = await openPage();
    await page.getByRole("combobox", { name: "Stage" }).selectOption("tokens");
    await write(page, "if a\nb = cde;\nend\n");
    await waitForText(stage(page), /cde/);
    await page.mouse.dblclick(...(await placeOf(page, 1, 5)));
    assert.match(await marked(stage(page)), /NameToken27\s+"cde"/);
    assert.equal(await marked(result(page)), "cde");
    await stage(page).getByText("Assign").click();
    assert.equal(await marked(source(page)), "=");
    assert.equal(await marked(result(page)), "=");
    await result(page).focus();
    await page.keyboard.press("Control+Home");
    for (let i = 0; i < 10; ++i) {
      await page.keyboard.press("ArrowRight");
    }
    await page.keyboard.press("Shift+ArrowRight");
    assert.equal(await marked(source(page)), "c");
    assert.match(await marked(stage(page)), /"cde"/);
    for (const [name, row, text] of [["syntax", /IfStatement/, "if a\nb = cde;\nend"], ["leaves", /"cde"/, "cde"], ["text-tree", /Container If/, "if a\nb = cde;\nend"], ["indent-tree", /StatementBlock/, null], ["decisions", /LineSeparator/, null]]) {
      await page.getByRole("combobox", { name: "Stage" }).selectOption(name);
      await waitForText(stage(page), row);
      await stage(page).getByText(row).first().click();
      const shown = await source(page).evaluate((element) => [...element.querySelectorAll(".cm-line")].flatMap((line) => [...line.querySelectorAll(".linked")].map((mark) => mark.textContent).join("") || []).join("\n"));
      assert.ok(text === null ? (await source(page).locator(".linked").count()) > 0 : shown === text, `${name}: ${JSON.stringify(shown)}`);
    }
    await shoot(page, "selection");
  });
  test("changes are marked on both sides", async () => {
    const page = await openPage();
    await write(page, "if a\nb = 1;\nend\nx = 2;\n");
    await waitForText(result(page), "if a, b = 1;, end\nx = 2;\n");
    await page.getByRole("button", { name: "Changes" }).click();
    assert.equal(await source(page).locator(".removed").count() > 0, true);
    assert.equal(await marked(result(page), "added"), ", , ");
    assert.equal(await result(page).locator(".spacer").count(), 1);
    const tops = await page.evaluate(() => ["source", "result"].map((pane) => [...document.querySelectorAll(`.${pane} .cm-line`)].find((line) => line.textContent === "x = 2;").getBoundingClientRect().top));
    assert.ok(Math.abs(tops[0] - tops[1]) < 2, `the lines are beside each other: ${tops}`);
    await shoot(page, "changes");
  });
  test("kept and repaired gaps are listed, and whether a second run changes something", async () => {
    const page = await openPage();
    await write(page, "x = [1; 2];\n");
    await page.getByLabel("Trim unnecessary whitespace", { exact: true }).check();
    await page.getByRole("button", { name: /source 1:7: gap repaired/ }).click();
    assert.equal(await page.locator(".badge").textContent(), "stable");
    assert.match(await page.locator(".facts").textContent(), /\d kept, 1 repaired.*ms/);
  });
});

describe("Sharing", () => {
  const permissions = ["clipboard-read", "clipboard-write"];
  const copy = async (page, name) => {
    await page.getByText("Copy", { exact: true }).click();
    await page.getByRole("button", { name, exact: true }).click();
    await page.getByText("is copied").waitFor();
    return page.evaluate(() => navigator.clipboard.readText());
  };
  test("a link restores everything in another tab, and a reload in this one", async () => {
    const page = await openPage({ permissions });
    await write(page, "shared = 'ä\u{1F600}';\n");
    await page.getByLabel("Indent width", { exact: true }).fill("3");
    await page.getByRole("combobox", { name: "Stage" }).selectOption("leaves");
    await page.getByRole("button", { name: "Changes" }).click();
    const link = await copy(page, "Link");
    assert.ok(link.startsWith(`${explorer.url}/`));
    for (const other of [await openPage({ url: link }), page]) {
      if (other === page) {
        await page.reload();
        await ready(page);
      }
      await waitForText(source(other), "shared = 'ä\u{1F600}';\n");
      assert.equal(await other.getByLabel("Indent width", { exact: true }).inputValue(), "3");
      assert.equal(await other.getByRole("combobox", { name: "Stage" }).inputValue(), "leaves");
      assert.equal(await other.getByRole("button", { name: "Changes" }).getAttribute("aria-pressed"), "true");
    }
  });
  test("options file, command line and issue text", async () => {
    const page = await openPage({ permissions });
    await write(page, "x = 1;\n");
    await page.getByLabel("Indent width", { exact: true }).fill("3");
    assert.deepEqual(JSON.parse(await copy(page, "Options file")), { formatting: { indentWidth: 3, lineBreakingEnabled: true } });
    assert.match(await copy(page, "Command line"), /^ombrel-format --no-config --engine tree .*--set formatting\.indentWidth=3 demo\.omb$/);
    const issue = await copy(page, "Issue text");
    for (const part of ["ombrel-explorer 0.1.0", "x = 1;", '"indentWidth": 3', "### Result"]) {
      assert.ok(issue.includes(part), part);
    }
  });
  test("links that are damaged, and a wrong token, are told", async () => {
    const page = await openPage({ url: `${explorer.url}/damaged` });
    assert.match(await page.getByRole("status").textContent(), /link/);
    const refused = await openPage({ url: `${explorer.origin}/#wrong`, waits: false });
    await refused.getByRole("alert").getByText("token").waitFor();
    assert.ok(faults.splice(0).every((fault) => /403/.test(fault)));
  });
});

describe("Appearance", () => {
  const layouts = [["phone", { viewport: { width: 360, height: 740 }, deviceScaleFactor: 2 }], ["tablet", { viewport: { width: 900, height: 900 } }], ["wide", { viewport: wide }],
    ["huge", { viewport: { width: 2560, height: 1300 } }], ["zoomed", { viewport: { width: 640, height: 400 }, deviceScaleFactor: 2 }]];
  for (const [name, settings] of layouts) {
    for (const colorScheme of ["light", "dark"]) {
      test(`${name}, ${colorScheme}: accessible, nothing beside the screen`, async () => {
        const page = await openPage({ ...settings, colorScheme });
        await checkAccessible(page, `${name} ${colorScheme}`);
        const tabs = page.getByRole("navigation", { name: "Panes" });
        const names = colorScheme === "light" && (await tabs.isVisible()) ? ["Options", "Result", "Stage", "Source"] : [];
        for (const tab of names) {
          await tabs.getByRole("button", { name: tab }).click();
          await checkAccessible(page, `${name} ${colorScheme} ${tab}`);
        }
        assert.ok(await page.evaluate(() => document.documentElement.scrollWidth <= innerWidth && document.documentElement.scrollHeight <= innerHeight), "the page scrolls");
        await shoot(page, `${name}-${colorScheme}`);
      });
    }
  }
  test("the theme can be chosen", async () => {
    const page = await openPage({ colorScheme: "light" });
    const color = () => page.evaluate(() => getComputedStyle(document.body).backgroundColor);
    const light = await color();
    await page.getByLabel("Theme").selectOption("dark");
    assert.notEqual(await color(), light);
    await page.reload();
    await ready(page);
    assert.notEqual(await color(), light);
  });
  test("nothing jumps while the page loads and options change", async () => {
    const page = await openPage();
    await page.getByLabel("Column limit", { exact: true }).fill("40");
    await page.waitForTimeout(500);
    const shift = await page.evaluate(() => new Promise((resolve) => {
      let sum = 0;
      new PerformanceObserver((list) => list.getEntries().forEach((entry) => (sum += entry.value))).observe({ type: "layout-shift", buffered: true });
      setTimeout(() => resolve(sum), 200);
    }));
    assert.ok(shift < 0.02, `layout shift ${shift}`);
  });
});

test("the keyboard alone is enough", async () => {
  const page = await openPage();
  const focused = () => page.evaluate(() => document.activeElement.getAttribute("aria-label") ?? document.activeElement.textContent);
  const seen = new Set();
  for (let i = 0; i < 80 && !seen.has("Rows of the stage"); ++i) {
    await page.keyboard.press("Tab");
    seen.add(await focused());
  }
  for (const name of ["Open an example", "Open…", "Theme", "Source", "Result", "Changes", "Rows of the stage"]) {
    assert.ok(seen.has(name), `${name} is never reached: ${[...seen]}`);
  }
  const panes = [];
  for (let i = 0; i < 4; ++i) {
    await page.keyboard.press("F6");
    panes.push(await page.evaluate(() => document.activeElement.closest(".pane").id));
  }
  assert.equal(new Set(panes).size, 4);
  await source(page).focus();
  await page.keyboard.press("Control+a");
  await page.keyboard.type("total = a + b;");
  await waitForText(result(page), "total = a + b;");
  await page.keyboard.press("Control+Home");
  await page.keyboard.press("Control+ArrowRight");
  await page.locator(".place .gap-card").getByText("Class").waitFor();
  await stage(page).focus();
  await page.keyboard.press("ArrowDown");
  await page.waitForFunction(() => document.querySelector(".source .linked, .source .point") !== null);
  await page.getByText("Copy", { exact: true }).focus();
  await page.keyboard.press("Enter");
  assert.ok(await page.getByRole("button", { name: "Issue text" }).isVisible());
  await page.keyboard.press("Escape");
  assert.ok(!(await page.getByRole("button", { name: "Issue text" }).isVisible()));
});

test("the first format is there soon", async () => {
  const page = await openPage({ waits: false });
  await ready(page);
  const { formatted, size } = await page.evaluate(() => ({
    formatted: performance.getEntriesByName("formatted")[0].startTime,
    size: performance.getEntriesByName(`${location.origin}/app.js`)[0].decodedBodySize,
  }));
  console.log(`first format after ${formatted.toFixed(0)} ms; script of ${size.toLocaleString("en")} bytes`);
  assert.ok(formatted < 5000 && size < 700_000);
});
