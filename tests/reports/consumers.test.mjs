// What others know of the formats of two reports, which have no schema that a machine could check: published types, and
// programs that write the same formats. Two of these are given our findings, and have to say of them what we say.
import assert from "node:assert/strict";
import { execFileSync, spawnSync } from "node:child_process";
import { createRequire } from "node:module";
import { mkdirSync, mkdtempSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { after, test } from "node:test";
import writeCodeClimate from "eslint-formatter-codeclimate";
import writeRdjson from "eslint-formatter-rdjson";
import ts from "typescript";

const program = join(process.env.OMBREL_PROGRAMS, "ombrel-format");
const biome = createRequire(import.meta.url).resolve(`@biomejs/cli-linux-${process.arch}/biome`);
const top = mkdtempSync(join(tmpdir(), "reports-"));
const folder = join(top, "sub");
after(() => rmSync(top, { recursive: true }));

mkdirSync(folder);
execFileSync("git", ["init", "-q"], { cwd: top });
const sources = {
  "broken.omb": "x\0\n",
  "ugly.omb": "if a\n  x\n  \n\ny\nend\n y  \n",
  "warned.omb": "x\n% ombrel-format on\n",
  "wide.omb": "if '\u{1f600}\u00e9'  \r\nx  \r\nend\r\n% \u{1f600} \u6f22   ",
};
for (const [name, text] of Object.entries(sources)) {
  writeFileSync(join(folder, name), text);
}
writeFileSync(join(folder, "a.js"), "let x=1;debugger\n  var y=1\n"); // with something for Biome to find

function report(reporter) {
  const run = spawnSync(program, ["--no-config", "--check", "-q", "--reporter", reporter, "."], { cwd: folder });
  return JSON.parse(run.stdout);
}

function askBiome(command, reporter) {
  const run = spawnSync(biome, [command, `--reporter=${reporter}`, "a.js"], { cwd: folder });
  return JSON.parse(run.stdout);
}

/** What our JSON report says, in the form in which ESLint passes its results to formatters. */
function makeResults() {
  const severities = { error: 2, warning: 1, note: 0 };
  return report("json").files.map((file) => ({
    filePath: file.path,
    source: sources[file.path],
    messages: [
      ...file.messages.map((message) => ({
        ruleId: message.code, message: message.text, severity: severities[message.severity], line: message.line,
      })),
      ...(file.changes ?? []).map(({ begin, end, what }) => ({
        ruleId: "not-formatted", message: what, severity: 2,
        line: begin.line, column: begin.column, endLine: end.line, endColumn: end.column,
      })),
    ],
  }));
}

/** The keys of a value, with the types of what they hold: "location.lines.begin: number". */
function listKeys(value, path = "") {
  if (value === null || typeof value !== "object") {
    return [`${path}: ${typeof value}`];
  }
  const isList = Array.isArray(value);
  return Object.entries(value).flatMap(([key, inner]) => listKeys(inner, isList ? `${path}[]` : `${path}.${key}`));
}

function expectOnlyKeysOf(theirs, ours) {
  const known = new Set(theirs.flatMap((finding) => listKeys(finding)));
  const unknown = ours.flatMap((finding) => listKeys(finding)).filter((key) => !known.has(key));
  assert.deepEqual(unknown, [], "keys that nobody else writes");
}

/** Every finding of ours needs the keys that each of theirs has. */
function expectAllKeysOf(theirs, ours) {
  const [first, ...lists] = theirs.map((finding) => listKeys(finding));
  const common = first.filter((key) => lists.every((list) => list.includes(key)));
  assert.ok(common.length > 0);
  for (const finding of ours) {
    const keys = listKeys(finding);
    assert.deepEqual(common.filter((key) => !keys.includes(key)), [], "keys that all others write");
  }
}

/** Whether the compiler accepts each value as one of a module's type. */
function haveType(values, type, module) {
  const name = new URL("values.ts", import.meta.url).pathname;
  const lines = values.map((value) => `(${JSON.stringify(value)}) satisfies ${type};`);
  const text = [`import type { ${type} } from "${module}";`, ...lines].join("\n");
  const options = { strict: true, noEmit: true, skipLibCheck: true, types: [], module: ts.ModuleKind.NodeNext };
  const host = ts.createCompilerHost(options);
  const { fileExists, readFile, getSourceFile } = host;
  host.fileExists = (path) => path === name || fileExists(path);
  host.readFile = (path) => (path === name ? text : readFile(path));
  host.getSourceFile = (path, ...rest) =>
    path === name ? ts.createSourceFile(name, text, ...rest) : getSourceFile(path, ...rest);
  const faults = ts.getPreEmitDiagnostics(ts.createProgram([name], options, host));
  const found = faults.map(({ file, start }) => file.getLineAndCharacterOfPosition(start).line);
  assert.ok(!found.includes(0), `${module} can't be used`);
  return values.map((_, index) => !found.includes(index + 1));
}

test("findings for GitLab have the published type of Code Climate", () => {
  const issues = report("gitlab");
  const wrong = [{ severity: "warning" }, { fingerprint: 1 }, { location: { path: "a" } }, { line: 1 }];
  const faulty = wrong.map((fault) => ({ ...issues[0], ...fault }));
  const verdicts = haveType([...issues, ...faulty], "Issue", "codeclimate-types");
  assert.deepEqual(verdicts, [...issues.map(() => true), ...faulty.map(() => false)]);
});

test("findings for GitLab are what others make of them", () => {
  const issues = report("gitlab");
  const results = makeResults().map((result) => ({ ...result, filePath: join(folder, result.filePath) }));
  const others = JSON.parse(writeCodeClimate(results, { rulesMeta: {}, cwd: top }));
  const describe = ({ fingerprint, location: { path, lines, positions }, ...issue }) => ({
    ...issue, path, line: lines?.begin ?? positions.begin.line,
  });
  assert.deepEqual(issues.map(describe), others.map(describe));
  assert.equal(new Set(issues.map((issue) => issue.fingerprint)).size, issues.length);
  expectAllKeysOf([...askBiome("format", "gitlab"), ...askBiome("lint", "gitlab")], issues);
});

test("diagnostics for Reviewdog have the keys and columns that others write", () => {
  const { source, diagnostics } = report("rdjson");
  const others = JSON.parse(writeRdjson(makeResults(), { rulesMeta: {} }));
  const biomes = [askBiome("format", "rdjson"), askBiome("lint", "rdjson")];
  assert.deepEqual(Object.keys(source), ["name"]); // the others have "url" too, and we no page on the web
  const theirs = [others, ...biomes].flatMap((document) => document.diagnostics);
  expectOnlyKeysOf(theirs, diagnostics);
  expectAllKeysOf(theirs, diagnostics);
  const isChange = (one) => one.code.value === "not-formatted";
  const describe = ({ message, location, severity, code }) => ({ message, location, severity, code: code.value });
  assert.deepEqual(diagnostics.filter(isChange).map(describe), others.diagnostics.filter(isChange).map(describe));
  assert.equal(diagnostics.filter((one) => !isChange(one)).length, 2);
});
