// Starts the real program and talks to it: through sockets, byte by byte, or through its operations.
import { spawn } from "node:child_process";
import { once } from "node:events";
import { connect } from "node:net";
import { createInterface } from "node:readline";
import { fileURLToPath } from "node:url";

export const project = fileURLToPath(new URL("../..", import.meta.url));
const program = process.env.OMBREL_EXPLORER ?? `${project}build/release/bin/ombrel-explorer`;

/** An answer of HTTP, cut into its parts; a status of 0 if the server only closed the connection. */
function readAnswer(bytes) {
  const text = bytes.toString("latin1");
  const end = text.indexOf("\r\n\r\n");
  const [first = "", ...lines] = text.slice(0, Math.max(end, 0)).split("\r\n");
  const headers = new Map(lines.map((line) => [line.split(":")[0].toLowerCase(), line.slice(line.indexOf(":") + 1).trim()]));
  return { status: Number(first.split(" ")[1] ?? 0), headers, body: bytes.subarray(end + 4).toString("utf8") };
}

export class Explorer {
  static start(...args) {
    return Explorer.run(["--no-browser", ...args], process.env);
  }

  static async run(args, env) {
    const process = spawn(program, args, { env, stdio: ["ignore", "pipe", "inherit"] });
    const [url] = await once(createInterface({ input: process.stdout }), "line");
    return new Explorer(process, url);
  }

  constructor(process, url) {
    this.process = process;
    this.url = url;
    [this.origin, this.token] = url.split("/#");
    this.port = Number(new URL(url).port);
  }

  /** The exit status, as soon as there is one. */
  async end() {
    const [status] = this.process.exitCode === null ? await once(this.process, "exit") : [this.process.exitCode];
    return status;
  }

  stop() {
    this.process.kill("SIGTERM");
    return this.end();
  }

  /** The fields of a request that is let through. */
  get fields() {
    return {
      Host: `127.0.0.1:${this.port}`,
      Origin: this.origin,
      "X-Ombrel-Token": this.token,
      "Content-Type": "application/json",
    };
  }

  /** Sends parts of bytes with a pause before each, and waits until the server has closed the connection. */
  async send(parts, { host = "127.0.0.1", pause = 0, limit = 15_000 } = {}) {
    const socket = connect({ host, port: this.port });
    const received = [];
    socket.on("data", (bytes) => received.push(bytes));
    socket.on("error", () => {});
    const closed = once(socket, "close");
    const timer = setTimeout(() => socket.destroy(), limit);
    for (const part of [parts].flat()) {
      if (pause > 0) {
        await Promise.race([closed, new Promise((resolve) => setTimeout(resolve, pause))]);
      }
      if (socket.writable) {
        socket.write(part);
      }
    }
    await closed;
    clearTimeout(timer);
    return readAnswer(Buffer.concat(received));
  }

  /** A request with these fields, names as given; a list of values is a field for each. */
  request({ method = "POST", target = "/api/format", fields = {}, body = '{"text": "x"}' } = {}) {
    const lines = [`${method} ${target} HTTP/1.1`];
    for (const [name, value] of Object.entries({ ...this.fields, "Content-Length": Buffer.byteLength(body), ...fields })) {
      if (value !== undefined) {
        lines.push(...[value].flat().map((one) => `${name}: ${one}`));
      }
    }
    return this.send([`${lines.join("\r\n")}\r\nConnection: close\r\n\r\n`, body]);
  }

  get(target, fields = {}) {
    return this.request({ method: "GET", target, body: "", fields: { "Content-Type": undefined, Origin: undefined, "Content-Length": undefined, ...fields } });
  }

  /** An operation as the page calls it. */
  async call(path, body) {
    const answer = await fetch(`${this.origin}${path}`, {
      method: "POST",
      headers: { Origin: this.origin, "X-Ombrel-Token": this.token, "Content-Type": "application/json" },
      body: typeof body === "string" ? body : JSON.stringify(body),
    });
    return { status: answer.status, json: await answer.json() };
  }
}
