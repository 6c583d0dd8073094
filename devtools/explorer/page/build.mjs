// Bundles the page and writes it as a C++ source file: build.mjs PROJECT_FOLDER OUTPUT VERSION
import * as esbuild from "esbuild";
import { readFileSync, readdirSync, writeFileSync } from "node:fs";
import { join } from "node:path";

const [project, output, version] = process.argv.slice(2);

/** The project's example programs, the one to start with first. */
function readExamples() {
  const folder = join(project, "examples");
  const names = readdirSync(folder).filter((name) => name.endsWith(".omb"));
  names.sort((a, b) => Number(b === "demo.omb") - Number(a === "demo.omb") || a.localeCompare(b));
  return names.map((name) => ({ name, text: readFileSync(join(folder, name), "utf8") }));
}

/** The modules "project:examples" and "project:options", made of files of the project. */
const projectFiles = {
  name: "project-files",
  setup(build) {
    build.onResolve({ filter: /^project:/ }, ({ path }) => ({ path, namespace: "project" }));
    build.onLoad({ filter: /examples$/, namespace: "project" }, () => ({
      contents: JSON.stringify(readExamples()),
      loader: "json",
    }));
    build.onLoad({ filter: /options$/, namespace: "project" }, () => ({
      contents: readFileSync(join(project, "docs/options.md"), "utf8"),
      loader: "text",
    }));
  },
};

const bundle = await esbuild.build({
  entryPoints: ["src/app.ts", "src/style.css"],
  bundle: true,
  minify: true,
  write: false,
  outdir: ".",
  target: ["es2022"],
  format: "iife",
  charset: "utf8",
  legalComments: "none",
  define: { VERSION: JSON.stringify(version) },
  plugins: [projectFiles],
});

const files = bundle.outputFiles.map((file) => ({
  path: file.path.endsWith(".css") ? "/style.css" : "/app.js",
  type: file.path.endsWith(".css") ? "text/css; charset=utf-8" : "text/javascript; charset=utf-8",
  content: file.text,
}));
files.push({ path: "/", type: "text/html; charset=utf-8", content: readFileSync("src/index.html", "utf8") });
files.push({ path: "/icon.svg", type: "image/svg+xml", content: readFileSync("src/icon.svg", "utf8") });

/** A text as C++ string literals, none of which is too long for a compiler. */
function makeLiteral(text) {
  const bytes = Buffer.from(text, "utf8");
  const parts = [];
  for (let start = 0; start < bytes.length; start += 8000) {
    const part = [...bytes.subarray(start, start + 8000)];
    parts.push(`"${part.map(escapeByte).join("")}"`);
  }
  return parts.join("\n        ") || `""`;
}

function escapeByte(byte) {
  const isPlain = byte >= 0x20 && byte < 0x7f && byte !== 0x22 && byte !== 0x5c && byte !== 0x3f;
  return isPlain ? String.fromCharCode(byte) : `\\${byte.toString(8).padStart(3, "0")}`;
}

const entries = files.map(({ path, type, content }) => {
  const size = Buffer.byteLength(content, "utf8");
  return `    {"${path}", "${type}", std::string_view(\n        ${makeLiteral(content)}, ${size})},\n`;
});
writeFileSync(
  output,
  `#include "explorer/server/Assets.h"

namespace ombrel {

static constexpr Asset assets[] = {
${entries.join("")}};

std::span<const Asset> getAssets() {
    return assets;
}

} // namespace ombrel
`,
);
