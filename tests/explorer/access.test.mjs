// Who may talk to the server: everything but its own page is refused before anything is done.
import assert from "node:assert/strict";
import { readdirSync, readFileSync, readlinkSync } from "node:fs";
import { after, before, describe, test } from "node:test";
import { Explorer } from "./support.mjs";

let explorer;
before(async () => (explorer = await Explorer.start()));
after(() => explorer.stop());

/** P is the port, other port Q. */
const place = (text) => text?.replaceAll("P", String(explorer.port)).replaceAll("Q", String(explorer.port - 1));

const safeFields = {
  "x-content-type-options": "nosniff",
  "cross-origin-resource-policy": "same-origin",
  "cache-control": "no-store",
  "x-frame-options": "DENY",
};

function check(answer, status, what) {
  assert.ok([status].flat().includes(answer.status), `${what}: status ${answer.status} instead of ${status}: ${answer.body.slice(0, 200)}`);
  for (const [name, value] of Object.entries(safeFields)) {
    assert.equal(answer.headers.get(name), value, `${what}: ${name}`);
  }
  const policy = answer.headers.get("content-security-policy");
  assert.match(policy, /default-src 'none'; script-src 'self'; /, what);
  assert.match(policy, /frame-ancestors 'none'/, what);
  assert.doesNotMatch(policy, /unsafe/, what);
  const shared = [...answer.headers.keys()].filter((name) => name.startsWith("access-control"));
  assert.deepEqual(shared, [], what);
}

const foreignHosts = [
  "127.0.0.1", "localhost", "[::1]", "127.0.0.1:Q", "localhost:Q", "127.0.0.1:P.evil.example", "localhost.:P",
  "LOCALHOST:P", "Localhost:P", "evil.example", "evil.example:P", "localhost.evil.example:P", "xlocalhost:P",
  "localhostx:P", "evil-127.0.0.1:P", "127.0.0.1.:P", "127.1:P", "2130706433:P", "0x7f.0.0.1:P", "0177.0.0.1:P",
  "0.0.0.0:P", "127.0.0.2:P", "[::]:P", "::1:P", "[::ffff:127.0.0.1]:P", "[0:0:0:0:0:0:0:1]:P", "localhost:0P",
  "localhost:+P", "localhost:P/", "localhost:P#", "localhost:P@evil.example", "user@localhost:P", "localhost :P",
  "127.0.0.1:P,127.0.0.1:P", "127.0.0.1:P evil.example", "", ":P", "localhost:", "localhost%2e:P", "loc\u00e4lhost:P",
];

describe("Host", () => {
  for (const host of ["127.0.0.1:P", "localhost:P", "[::1]:P"]) {
    test(`answers to ${host}`, async () => {
      check(await explorer.get("/", { Host: place(host) }), 200, host);
      check(await explorer.request({ fields: { Host: place(host) } }), 200, host);
    });
  }
  for (const host of foreignHosts) {
    test(`refuses ${JSON.stringify(host)}`, async () => {
      check(await explorer.get("/", { Host: place(host) }), [400, 403], host);
      check(await explorer.get("/nothing", { Host: place(host) }), [400, 403], `${host}, before routing`);
      check(await explorer.request({ fields: { Host: place(host) } }), [400, 403], host);
    });
  }
  test("refuses a request without one or with two", async () => {
    check(await explorer.get("/", { Host: undefined }), 400, "none");
    check(await explorer.get("/", { Host: [place("localhost:P"), place("localhost:P")] }), 400, "two");
    check(await explorer.get("/", { Host: [place("localhost:P"), "evil.example"] }), 400, "two hosts");
  });
});

const foreignOrigins = [
  undefined, "", "null", "https://127.0.0.1:P", "http://127.0.0.1:Q", "http://127.0.0.1", "http://localhost",
  "http://localhost:P/", "http://localhost:P.evil.example", "http://localhost.evil.example:P", "http://evil.example",
  "http://evil.example:P", "HTTP://localhost:P", "http://LOCALHOST:P", "http://localhost.:P", "http:localhost:P",
  "http:///localhost:P", "http://user@localhost:P", "http://localhost:P@evil.example", "http://localhost:P evil.example",
  "http://localhost:P http://localhost:P", "http://localhost:P,http://localhost:P", "http://xlocalhost:P", "localhost:P",
  "//localhost:P", "ws://localhost:P", "file://", "file://localhost:P", "chrome-extension://localhost:P", "http://[::]:P",
  "data:text/plain,x", "http://0.0.0.0:P", "http://127.1:P",
];

describe("Origin", () => {
  for (const origin of ["http://127.0.0.1:P", "http://localhost:P", "http://[::1]:P"]) {
    test(`answers to ${origin}`, async () => check(await explorer.request({ fields: { Origin: place(origin) } }), 200, origin));
  }
  for (const origin of foreignOrigins) {
    test(`refuses ${JSON.stringify(origin)}`, async () => {
      check(await explorer.request({ fields: { Origin: place(origin) } }), 403, origin);
      if (origin !== undefined) {
        check(await explorer.get("/api/schema", { Origin: place(origin) }), 403, origin);
      }
    });
  }
  test("refuses two", async () =>
    check(await explorer.request({ fields: { Origin: [explorer.origin, explorer.origin] } }), 400, "two"));
});

describe("What another page can send", () => {
  for (const [site, status] of [["same-origin", 200], ["none", 200], ["cross-site", 403], ["same-site", 403], ["", 403], ["SAME-ORIGIN", 403], ["same-origin, none", 403]]) {
    test(`Sec-Fetch-Site ${JSON.stringify(site)} gets ${status}`, async () => {
      check(await explorer.request({ fields: { "Sec-Fetch-Site": site } }), status, site);
      check(await explorer.get("/", { "Sec-Fetch-Site": site }), status, site);
    });
  }
  for (const type of [undefined, "", "text/plain", "application/x-www-form-urlencoded", "multipart/form-data; boundary=x", "application/jsonx",
    "text/plain, application/json", "application/json, text/plain", "text/json", "application/json; charset=utf-16", "application/json;x=y"]) {
    test(`a body of the type ${type} is refused`, async () =>
      check(await explorer.request({ fields: { "Content-Type": type } }), 415, type));
  }
  test("two content types are refused", async () =>
    check(await explorer.request({ fields: { "Content-Type": ["application/json", "text/plain"] } }), 415, "two"));
  const tokens = [() => undefined, () => "", () => "0".repeat(32), (own) => own.slice(0, -1), (own) => `${own}0`, (own) => own.toUpperCase() + "X",
    (own) => [own, own], (own) => `${own},${own}`, (own) => `${own} x`, (own) => `"${own}"`];
  for (const [index, makeToken] of tokens.entries()) {
    test(`wrong token ${index} is refused`, async () => {
      const fields = { "X-Ombrel-Token": makeToken(explorer.token) };
      check(await explorer.request({ fields }), 403, "format");
      check(await explorer.request({ fields, target: "/api/presence" }), 403, "presence");
      check(await explorer.get("/api/schema", fields), 403, "schema");
      check(await explorer.get("/api/start", fields), 403, "start");
    });
  }
  for (const method of ["GET", "HEAD", "PUT", "DELETE", "PATCH", "OPTIONS", "TRACE", "CONNECT", "post"]) {
    test(`${method} is no way to format`, async () => {
      check(await explorer.request({ method, body: "", fields: { "Content-Length": undefined } }), 405, method);
    });
  }
  test("a preflight request gets no permission", async () => {
    const fields = { Origin: "http://evil.example", "Access-Control-Request-Method": "POST", "Access-Control-Request-Headers": "x-ombrel-token" };
    check(await explorer.request({ method: "OPTIONS", body: "", fields }), 403, "preflight");
  });
  test("there is no other protocol to change to", async () => {
    check(await explorer.get("/", { Connection: "Upgrade", Upgrade: "websocket" }), 400, "websocket");
    check(await explorer.get("/", { Upgrade: "h2c", "HTTP2-Settings": "" }), 400, "h2c");
  });
  for (const target of ["http://127.0.0.1:P/", "http://evil.example/", "127.0.0.1:P", "*", "", "\\", "index.html"]) {
    test(`the target ${JSON.stringify(target)} is refused`, async () => check(await explorer.get(place(target)), 400, target));
  }
});

test("two starts have different tokens", async () => {
  const other = await Explorer.start();
  assert.notEqual(other.token, explorer.token);
  assert.match(other.token, /^[0-9a-f]{32}$/);
  assert.equal((await other.request({ fields: { "X-Ombrel-Token": explorer.token } })).status, 403);
  assert.equal(await other.stop(), 0);
});

test("only loopback addresses are listened on", () => {
  const folder = `/proc/${explorer.process.pid}`;
  const sockets = new Set(readdirSync(`${folder}/fd`).map((name) => /^socket:\[(\d+)\]$/.exec(readlinkSync(`${folder}/fd/${name}`))?.[1]));
  const own = ["tcp", "tcp6"].flatMap((table) => readFileSync(`${folder}/net/${table}`, "utf8").split("\n").slice(1))
    .map((line) => line.trim().split(/\s+/)).filter((cells) => cells[3] === "0A" && sockets.has(cells[9])).map((cells) => cells[1]);
  const port = explorer.port.toString(16).toUpperCase().padStart(4, "0");
  assert.ok(own.length > 0);
  for (const address of own) {
    assert.ok([`0100007F:${port}`, `00000000000000000000000001000000:${port}`].includes(address), address);
  }
});
