// What is served: a fixed table of paths, and answers that are made of nothing but their requests.
import assert from "node:assert/strict";
import { existsSync, readFileSync, readdirSync, writeFileSync, mkdtempSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { after, before, describe, test } from "node:test";
import { spawnSync } from "node:child_process";
import { Explorer, project } from "./support.mjs";

let explorer;
before(async () => (explorer = await Explorer.start()));
after(() => explorer.stop());

describe("Paths", () => {
  for (const [path, type] of [["/", "text/html; charset=utf-8"], ["/app.js", "text/javascript; charset=utf-8"], ["/style.css", "text/css; charset=utf-8"], ["/icon.svg", "image/svg+xml"]]) {
    test(`${path} is there`, async () => {
      const answer = await explorer.get(path);
      assert.equal(answer.status, 200);
      assert.equal(answer.headers.get("content-type"), type);
      assert.ok(answer.body.length > 100);
    });
  }
  const ups = ["..", "%2e%2e", "%2E%2E", ".%2e", "%252e%252e", "..%00", "....", "..;", "%c0%ae%c0%ae", "\u2025", ".."];
  const slashes = ["/", "%2f", "\\", "%5c", "//", "%252f"];
  const paths = ups.flatMap((up) => slashes.map((slash) => `/${`${up}${slash}`.repeat(8)}etc${slash}passwd`));
  paths.push("/etc/passwd", "//etc/passwd", "/file:///etc/passwd", "/app.js/../../etc/passwd", "/app.js%00.html", "/app.js/", "/app.js?x", "/./app.js", "/%61pp.js",
    "/APP.JS", "/index.html", "/api/", "/api/format/", "/api//format", "/api/file?path=/etc/passwd", "/proc/self/environ", "/.git/config", "/?/../etc/passwd");
  for (const path of paths) {
    test(`${path} is nothing`, async () => {
      const answer = await explorer.get(path);
      assert.ok([400, 404].includes(answer.status), `status ${answer.status}`);
      assert.doesNotMatch(answer.body, /root:|PATH=/);
    });
  }
  test("the page has no script but the file, and nothing from elsewhere", async () => {
    const { body } = await explorer.get("/");
    assert.deepEqual(body.match(/<script[^>]*>/g), ['<script src="/app.js" defer>']);
    assert.doesNotMatch(body, /https?:| on\w+=|style=/);
  });
});

const examples = readdirSync(`${project}examples`).filter((name) => name.endsWith(".omb"))
  .map((name) => ({ name, text: readFileSync(`${project}examples/${name}`, "utf8").replace(/^\uFEFF/, "") }));
const layout = { formatting: { trimUnnecessaryWhitespace: true, indentationEnabled: true, lineBreakingEnabled: true } };

function applyEdits(text, edits) {
  return edits.reduceRight((result, { offset, length, text: added }) => result.slice(0, offset) + added + result.slice(offset + length), text);
}

describe("Formatting", () => {
  for (const { name, text } of examples) {
    for (const [engine, options] of [["line", {}], ["tree", layout]]) {
      test(`${name} as ombrel-format does it, ${engine} engine`, async () => {
        const { json } = await explorer.call("/api/format", { text, engine, options });
        assert.deepEqual(json.errors, []);
        assert.equal(applyEdits(text, json.edits), json.text);
        assert.ok(json.milliseconds > 0);
        const file = join(mkdtempSync(join(tmpdir(), "explorer-")), "options.json");
        writeFileSync(file, JSON.stringify(options));
        const tool = (input) => spawnSync(`${project}build/release/bin/ombrel-format`, ["--config", file, "--engine", engine], { input }).stdout.toString();
        assert.equal(json.text, tool(text));
        assert.equal(json.isStable, tool(json.text) === json.text);
      });
    }
  }
  test("errors have places in the source and in the options, and nothing is changed then", async () => {
    const { json } = await explorer.call("/api/format", { text: "if a\n", engine: "tree", options: '{\n "line": {"tabSize": 0}}' });
    const places = json.errors.map((error) => [error.in, error.line, error.column, error.code]);
    assert.deepEqual(places, [["options", 2, 22, "invalid-value"]]);
    const broken = await explorer.call("/api/format", { text: "x = 1;\nif a\n", engine: "tree" });
    assert.deepEqual(broken.json.errors.map((error) => [error.in, error.line, error.column, error.code]), [["source", 3, 1, "unclosed-block"]]);
    assert.equal(broken.json.text, "x = 1;\nif a\n");
    assert.equal(broken.json.isStable, null);
  });
  test("files that options extend aren't read", async () => {
    const { json } = await explorer.call("/api/format", { text: "", options: { extends: "/etc/passwd" } });
    assert.deepEqual(json.errors.map((error) => error.code), ["invalid-extends"]);
    assert.doesNotMatch(JSON.stringify(json), /root:/);
  });
  test("ranges of lines, also where the lines move", async () => {
    const text = "if a\n    b = 1;\nc = 2;\n  end\nif d, e, end\n";
    const { json } = await explorer.call("/api/format", { text, lines: [[3, 3]] });
    assert.equal(json.text, "if a\n    b = 1;\n    c = 2;\n  end\nif d, e, end\n");
    assert.equal(json.isStable, true);
    const options = { formatting: { indentationEnabled: true, lineBreakingEnabled: true, lineBreakBehavior: "SeparateLines" } };
    const tree = await explorer.call("/api/format", { text, lines: [[5, 5]], engine: "tree", options });
    assert.equal(tree.json.text, "if a\n    b = 1;\nc = 2;\n  end\nif d\n    e\nend\n");
    assert.equal(tree.json.isStable, true);
    const late = await explorer.call("/api/format", { text, lines: [[9, 9]] });
    assert.deepEqual(late.json.errors.map((error) => error.code), ["range-after-end"]);
  });
  test("gaps whose text keeps the program's meaning are named", async () => {
    const { json } = await explorer.call("/api/format", { text: "x = [1; 2];\n", engine: "tree", options: layout });
    assert.deepEqual(json.kept, [{ begin: 6, end: 8, kind: "repaired" }, { begin: 9, end: 9, kind: "kept" }]);
    assert.equal(json.text, "x=[1;2];\n");
  });
  test("a byte-order mark and characters beyond 16 bits count in offsets", async () => {
    const text = "\uFEFFs = '\u{1F600}';\n  t = 1;\n";
    const { json } = await explorer.call("/api/format", { text });
    assert.equal(applyEdits(text, json.edits), "\uFEFFs = '\u{1F600}';\nt = 1;\n");
    const { json: dump } = await explorer.call("/api/dump", { text, stage: "tokens" });
    assert.equal(dump.rows.map(({ begin, end }) => text.slice(begin, end)).join(""), text.slice(1));
  });
});

describe("Stages", () => {
  const dump = async (text, stage, more = {}) => (await explorer.call("/api/dump", { text, stage, engine: "tree", options: layout, ...more })).json;
  for (const { name, text } of examples) {
    test(`rows of ${name} lead back to its text`, async () => {
      for (const stage of ["tokens", "leaves"]) {
        const { rows } = await dump(text, stage);
        assert.equal(rows.map(({ begin, end }) => text.slice(begin, end)).join(""), text, stage);
      }
      for (const stage of ["syntax", "text-tree", "indent-tree"]) {
        const open = [];
        const { rows, total, first } = await dump(text, stage);
        assert.deepEqual([first, total], [0, rows.length]);
        for (const row of rows) {
          open.length = row.depth;
          const parent = open.at(-1);
          assert.ok(row.begin <= row.end && row.end <= text.length, `${stage}: ${JSON.stringify(row)}`);
          assert.ok(parent === undefined || (parent.begin <= row.begin && row.end <= parent.end), `${stage}: ${JSON.stringify([parent, row])}`);
          open.push(row);
        }
      }
    });
    test(`the decisions on ${name} are what becomes of it`, async () => {
      const { rows } = await dump(text, "decisions");
      for (const { begin, end, gap } of rows) {
        assert.equal(text.slice(begin, end), gap.before);
        assert.ok(gap.reason !== "" && gap.options.length > 0);
      }
      const result = applyEdits(text, rows.map(({ begin, end, gap }) => ({ offset: begin, length: end - begin, text: gap.after })));
      const { json } = await explorer.call("/api/format", { text, engine: "tree", options: layout });
      if (json.kept.length === 0) {
        assert.equal(result, json.text.replaceAll("\r\n", "\n"));
      }
    });
  }
  test("nodes reach to the brackets and words that close them", async () => {
    const text = "if a\n x = f(1, [b c])';\n y = g();\nend\nfunction h\nend\n";
    const { rows } = await dump(text, "syntax");
    const parts = Object.fromEntries(rows.map(({ label, begin, end }) => [label, text.slice(begin, end)]).reverse());
    assert.equal(parts.IfStatement, "if a\n x = f(1, [b c])';\n y = g();\nend");
    assert.equal(parts.UnaryOperation, "f(1, [b c])'");
    assert.equal(parts.MatrixLiteral, "[b c]");
    assert.equal(parts.Function, "function h\nend");
    assert.ok(rows.some(({ label, begin, end }) => label === "ParenthesisIndexing" && text.slice(begin, end) === "g()"));
  });
  test("a decision names its option: the operator's side of the line", async () => {
    const text = "ok = isempty(a) || numel(a) > 10 || isempty(b);\n";
    const options = { formatting: { lineBreakingEnabled: true, columnLimit: 30, separatorPlacement: "EndOfLine" } };
    const { rows } = await dump(text, "decisions", { options });
    const gap = rows.find(({ begin }) => begin === text.indexOf(" numel")).gap;
    assert.deepEqual([gap.class, gap.construct, gap.decision, gap.isCandidate], ["BinaryOperationWhitespace", "Logical", "LineBreak", true]);
    assert.deepEqual(gap.options, [
      { name: "formatting.lineBreakBehavior.Expressions.Logical", value: "AllowMultiplePerLine" },
      { name: "formatting.columnLimit", value: 30 },
      { name: "formatting.separatorPlacement.Expressions.Logical", value: "EndOfLine" },
    ]);
    const before = rows.find(({ begin }) => begin === text.indexOf(" ||")).gap;
    assert.equal(before.decision, "NoLineBreak");
    assert.deepEqual(before.options.map(({ name }) => name), ["formatting.separatorPlacement.Expressions.Logical"]);
  });
  test("a part of the rows is around the place that is asked for", async () => {
    const text = "x = 1;\n".repeat(100);
    const whole = (await dump(text, "tokens")).rows;
    for (const around of [0, 3, 350, 699, 700, 10_000]) {
      const { first, rows, total } = await dump(text, "tokens", { around, limit: 20 });
      assert.equal(total, whole.length);
      assert.deepEqual(rows, whole.slice(first, first + rows.length));
      assert.ok(rows.length >= 10 && rows.length <= 20);
      assert.ok(rows[0].begin <= Math.min(around, 700) && rows.at(-1).end >= Math.min(around, 700), `around ${around}`);
    }
  });
});

test("the schema is that of the options files", async () => {
  const { status, body } = await explorer.get("/api/schema");
  assert.equal(status, 200);
  assert.equal(body.trim(), JSON.stringify(JSON.parse(readFileSync(`${project}docs/ombrel-format.schema.json`, "utf8")), null, 2));
});

describe("The program", { concurrency: 3 }, () => {
  const run = (...args) => spawnSync(`${project}build/release/bin/ombrel-explorer`, args, { encoding: "utf8", timeout: 5000 });
  test("starts with a file", async () => {
    const own = await Explorer.start(`${project}examples/bits.omb`);
    const { body } = await own.get("/api/start");
    assert.deepEqual([JSON.parse(body).name, JSON.parse(body).text], ["bits.omb", readFileSync(`${project}examples/bits.omb`, "utf8")]);
    assert.equal(await own.stop(), 0);
  });
  test("ends when it is stopped right after its start", { timeout: 30_000 }, async (t) => {
    const started = [];
    t.after(() => started.forEach((own) => own.process.kill("SIGKILL")));
    const startAndStop = async () => {
      for (let i = 0; i < 10; ++i) {
        const own = await Explorer.start();
        started.push(own);
        assert.equal(await own.stop(), 0);
      }
    };
    await Promise.all([startAndStop(), startAndStop(), startAndStop(), startAndStop()]);
  });
  test("refuses wrong arguments and unreadable files", () => {
    assert.equal(run("--port", "99999").status, 2);
    assert.equal(run("--nothing").status, 2);
    assert.equal(run("/nowhere/x.omb").status, 2);
    assert.equal(run("/dev/null").status, 2);
    assert.equal(run("--no-browser", "--port", String(explorer.port)).status, 2);
    assert.match(run("--version").stdout, /^ombrel-explorer \d/);
  });
  test("opens a browser and ends with its last page", { timeout: 60_000 }, async (t) => {
    const folder = mkdtempSync(join(tmpdir(), "explorer-"));
    writeFileSync(join(folder, "xdg-open"), `#!/bin/sh\necho "$1" > ${folder}/new\nmv ${folder}/new ${folder}/opened\n`, { mode: 0o755 });
    const own = await Explorer.run([], { ...process.env, PATH: `${folder}:${process.env.PATH}` });
    t.after(() => own.stop());
    const page = { page: "one", isOpen: true };
    assert.equal((await own.call("/api/presence", page)).status, 200);
    assert.equal((await own.call("/api/presence", { page: 1 })).status, 400);
    while (!existsSync(`${folder}/opened`)) await new Promise((resolve) => setTimeout(resolve, 20)); // nobody waits for a browser
    assert.equal(readFileSync(`${folder}/opened`, "utf8").trim(), own.url);
    await own.call("/api/presence", { ...page, isOpen: false });
    const closed = performance.now();
    assert.equal(await own.end(), 0);
    assert.ok(performance.now() - closed > 15_000, "a page that is reloaded is closed for a moment");
  });
});
