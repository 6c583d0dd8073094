// Requests that are too long, too slow, malformed or expensive get an error in time, and nobody else notices.
import assert from "node:assert/strict";
import { connect } from "node:net";
import { after, before, describe, test } from "node:test";
import { Explorer } from "./support.mjs";

const bodyLimit = 4 << 20;
let explorer;
before(async () => (explorer = await Explorer.start()));
after(async () => assert.equal(await explorer.stop(), 0, "the server ended by itself"));

async function measure(action) {
  const start = performance.now();
  const result = await action();
  return { result, seconds: (performance.now() - start) / 1000 };
}

/** A request of the page is answered within a second. */
async function checkAnswering(what) {
  const { result, seconds } = await measure(() => explorer.call("/api/format", { text: " x = 1;\n", engine: "tree" }));
  assert.equal(result.status, 200, what);
  assert.ok(seconds < 1, `${what}: a normal request took ${seconds.toFixed(2)} s`);
}

const pad = (length) => `{"text": "${"x".repeat(length - 12)}"}`;

describe("Length of a body", () => {
  const rows = [
    ["none", "", 400],
    ["the limit", pad(bodyLimit), 200],
    ["one byte more", pad(bodyLimit + 1), 413],
  ];
  for (const [name, body, status] of rows) {
    test(`${name} gets ${status}`, async () => assert.equal((await explorer.request({ body })).status, status));
  }
});

describe("Framing", () => {
  const body = '{"text": "x"}';
  const good = `Content-Length: ${body.length}`;
  const smuggled = "GET / HTTP/1.1\r\n\r\n";
  const rows = {
    "chunked without an end": ["Transfer-Encoding: chunked", "5\r\nhello\r\n"],
    "chunked and a length": [`Transfer-Encoding: chunked\r\n${good}`, `0\r\n\r\n${smuggled}`],
    "an encoding after a tab": [`Transfer-Encoding:\tchunked\r\n${good}`, body],
    "an encoding that isn't one": [`Transfer-Encoding: identity\r\n${good}`, body],
    "a space before the colon": [`Transfer-Encoding : chunked\r\n${good}`, body],
    "two lengths": [`${good}\r\nContent-Length: 0`, body],
    "the same length twice": [`${good}\r\n${good}`, body],
    "a list of lengths": ["Content-Length: 13, 13", body],
    "a length with a sign": ["Content-Length: +13", body],
    "a negative length": ["Content-Length: -1", body],
    "a hexadecimal length": ["Content-Length: 0xd", body],
    "an empty length": ["Content-Length:", body],
    "a length beyond 64 bits": ["Content-Length: 99999999999999999999999", body],
    "no length": ["X: y", body],
    "a line that goes on": [`${good}\r\n X: y`, body],
    "a line feed alone": [`${good}\nX: y`, body],
    "a carriage return alone": [`${good}\rX: y`, body],
    "a NUL": [`${good}\r\nX: \0`, body],
    "a control character": [`${good}\r\nX: \x01`, body],
    "no colon": [`${good}\r\nX`, body],
    "no name": [`${good}\r\n: x`, body],
    "a name with a space": [`${good}\r\nX Y: z`, body],
    "100 fields more": [`${good}\r\n${"X: y\r\n".repeat(100).trimEnd()}`, body, 431],
    "10,000 fields": [`${good}\r\n${"X: y\r\n".repeat(10_000).trimEnd()}`, body, 431],
    "a field of 64 kB": [`${good}\r\nX: ${"y".repeat(65536)}`, body, 431],
    "a head without an end": [`X: ${"y".repeat(1 << 20)}`, "", 431],
  };
  for (const [name, [fields, rest, status]] of Object.entries(rows)) {
    test(name, async () => {
      const own = Object.entries(explorer.fields).map(([key, value]) => `${key}: ${value}`).join("\r\n");
      const answer = await explorer.send(`POST /api/format HTTP/1.1\r\n${own}\r\n${fields}\r\n\r\n${rest}`);
      assert.ok(status ? answer.status === status : [400, 413].includes(answer.status), `status ${answer.status}`);
    });
  }
  for (const line of ["", "GET", "GET /", "GET / HTTP/2.0", "GET / HTTP/1.1 x", "GET  / HTTP/1.1", " GET / HTTP/1.1", "GET /\t HTTP/1.1", "G\x01T / HTTP/1.1",
    "GET / http/1.1", "\x16\x03\x01\x02\x00", `GET /${"x".repeat(3000)} HTTP/1.1`]) {
    test(`the request line ${JSON.stringify(line.slice(0, 30))}`, async () => {
      const { status } = await explorer.send(`${line}\r\nHost: ${explorer.fields.Host}\r\n\r\n`);
      assert.ok([400, 414].includes(status), `status ${status}`);
    });
  }
  test("bytes after a body are the next request, and are refused as one", async () => {
    const own = Object.entries(explorer.fields).map(([key, value]) => `${key}: ${value}`).join("\r\n");
    const answer = await explorer.send(`POST /api/format HTTP/1.1\r\n${own}\r\n${good}\r\n\r\n${body}GET /secret HTTP/1.1\r\n\r\n`);
    assert.equal(answer.status, 200);
    assert.match(answer.body, /HTTP\/1\.1 400 /);
    assert.equal(answer.body.match(/HTTP\/1\.1/g).length, 1);
  });
});

describe("Malformed bodies", { concurrency: 4 }, () => {
  const deep = (open, close) => open.repeat(100_000) + close.repeat(100_000);
  const rows = {
    "no JSON": "text", "an array": "[]", "no text": "{}", "a text that is a number": '{"text": 1}', "half a surrogate pair": '{"text": "\\ud800"}',
    "an unknown engine": '{"text": "", "engine": "x"}', "an engine that is a list": '{"text": "", "engine": ["tree"]}', "options that are a list": '{"text": "", "options": []}',
    "lines from 0": '{"text": "", "lines": [[0, 1]]}', "lines backwards": '{"text": "", "lines": [[3, 2]]}', "lines that are fractions": '{"text": "", "lines": [[1.5, 2]]}',
    "a list 10^5 deep": deep("[", "]"), "an object 10^5 deep": `{"text": "", "options": ${deep('{"a":', "}").replace(":}", ":1}")}}`, "a list without an end": "[".repeat(100_000),
  };
  for (const [name, body] of Object.entries(rows)) {
    test(name, async () => assert.equal((await explorer.call("/api/format", body)).status, 400));
  }
  test("an unknown stage", async () => assert.equal((await explorer.call("/api/dump", { text: "", stage: "x" })).status, 400));
  test("bytes that aren't UTF-8", async () => {
    const fields = { ...explorer.fields, "Content-Length": 13, Connection: "close" };
    const head = Object.entries(fields).map(([name, value]) => `${name}: ${value}\r\n`).join("");
    const answer = await explorer.send([`POST /api/format HTTP/1.1\r\n${head}\r\n`, Buffer.from('{"text": "\xff"}', "latin1")]);
    assert.equal(answer.status, 400);
  });
});

describe("Expensive texts", { concurrency: 3 }, () => {
  const half = 1 << 21;
  const texts = {
    "nested 10^5 deep": "(".repeat(100_000),
    "blocks 10^5 deep": "if a\n".repeat(100_000),
    "one long line": "x = 1 + ".repeat(half / 8),
    "only line ends": "\n".repeat(half / 2),
    "unclosed strings": "x = 'a\n".repeat(half / 7),
    "block comments in each other": "%{\n".repeat(half / 3),
    "many small statements": "a=1;".repeat(half / 4),
  };
  for (const [name, text] of Object.entries(texts)) {
    test(`${name}: an answer or an error within 6 seconds`, async () => {
      const options = { formatting: { trimUnnecessaryWhitespace: true, indentationEnabled: true, lineBreakingEnabled: true } };
      for (const [path, request] of [["/api/format", { text, engine: "tree", options }], ["/api/dump", { text, stage: "decisions", options, limit: 10 }]]) {
        const { result, seconds } = await measure(() => explorer.call(path, request));
        assert.ok([200, 503].includes(result.status), `${path}: status ${result.status} ${JSON.stringify(result.json).slice(0, 200)}`);
        assert.ok(seconds < 6, `${path} took ${seconds.toFixed(1)} s`);
      }
    });
  }
  test("options 10^5 deep are a problem with a place", async () => {
    const { status, json } = await explorer.call("/api/format", { text: "", options: '{"a":'.repeat(100_000) });
    assert.equal(status, 200);
    assert.equal(json.errors[0].in, "options");
    assert.ok(json.errors[0].line > 0);
  });
});

describe("Slow and idle clients", { concurrency: 4 }, () => {
  const head = () => `POST /api/format HTTP/1.1\r\n${Object.entries(explorer.fields).map(([name, value]) => `${name}: ${value}\r\n`).join("")}`;
  const slowly = async (bytes) => {
    const { result, seconds } = await measure(() => explorer.send([...bytes], { pause: 900 }));
    assert.ok(seconds < 12, `closed after ${seconds.toFixed(1)} s`);
    assert.ok([400, 408, 0].includes(result.status), `status ${result.status}`);
  };
  test("a head of one byte a second", () => slowly("GET / HTTP/1.1"));
  test("a body of one byte a second", () => slowly([`${head()}Content-Length: 100\r\n\r\n`, ..."{\"text\": \"x"]));
  test("a body that never comes", () => slowly([`${head()}Content-Length: 100\r\n\r\n`]));
  test("500 idle connections keep nobody out", async () => {
    const sockets = Array.from({ length: 500 }, () => connect({ host: "127.0.0.1", port: explorer.port }).on("error", () => {}));
    await new Promise((resolve) => setTimeout(resolve, 300));
    for (let i = 0; i < 5; ++i) {
      await checkAnswering("with 500 idle connections");
    }
    for (const socket of sockets) {
      socket.destroy();
    }
    await checkAnswering("afterwards");
  });
});

test("requests that nobody waits for any more are given up", async () => {
  const text = "x = f(a, b) + 1;\n".repeat(60_000);
  for (let i = 0; i < 20; ++i) {
    const controller = new AbortController();
    const request = fetch(`${explorer.origin}/api/dump`, {
      method: "POST", signal: controller.signal, headers: { ...explorer.fields }, body: JSON.stringify({ text, stage: "decisions" }),
    }).catch(() => {});
    await new Promise((resolve) => setTimeout(resolve, 30));
    controller.abort();
    await request;
  }
  await checkAnswering("after 20 requests that were given up");
});
