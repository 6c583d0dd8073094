import assert from 'node:assert/strict';

import { startServer } from './client';

export interface Message {
    id?: number | string | null;
    result?: unknown;
    error?: { code: number; message: string };
    method?: string;
    params?: unknown;
}

export function frame(body: string | object): Buffer {
    const bytes = Buffer.from(typeof body === 'string' ? body : JSON.stringify({ jsonrpc: '2.0', ...body }));
    return Buffer.concat([Buffer.from(`Content-Length: ${bytes.length}\r\n\r\n`), bytes]);
}

export const initialize = (processId: number | null = null) =>
    frame({ id: 0, method: 'initialize', params: { processId, rootUri: null, capabilities: {} } });

/** A server that gets bytes. What it answers has to consist of nothing but frames. */
export class RawSession {
    readonly server = startServer();
    readonly messages: Message[] = [];
    readonly ended: Promise<number | null>;
    #buffer = Buffer.alloc(0);
    #wake: () => void = () => undefined;
    #isOver = false;

    constructor() {
        this.server.stdout.on('data', (bytes: Buffer) => {
            this.#buffer = Buffer.concat([this.#buffer, bytes]);
            this.#readFrames();
            this.#wake();
        });
        this.server.stdin.on('error', () => undefined); // the server may end while it is written to
        this.ended = new Promise((resolve) => {
            this.server.once('close', (code) => {
                this.#isOver = true;
                this.#wake();
                resolve(code);
            });
        });
    }

    /** Whether all of the server's output was frames. */
    get isClean(): boolean {
        return this.#buffer.length === 0;
    }

    send(...pieces: Buffer[]): void {
        for (const piece of pieces) {
            this.server.stdin.write(piece);
        }
    }

    /** The first answer with this id, or undefined if the server ends without one. */
    async waitFor(id: number | string | null): Promise<Message | undefined> {
        return (await this.waitForAll(id, 1))[0];
    }

    /** As many answers with this id, or fewer if the server ends. */
    async waitForAll(id: number | string | null, count: number): Promise<Message[]> {
        const deadline = Date.now() + 20_000;
        for (;;) {
            const found = this.messages.filter((message) => message.id === id && message.method === undefined);
            if (found.length >= count || this.#isOver) {
                return found;
            }
            assert(Date.now() < deadline, `no answer to ${String(id)}`);
            await new Promise<void>((resolve) => {
                this.#wake = resolve;
                setTimeout(resolve, 1000);
            });
        }
    }

    /** Milliseconds until the server has ended; fails after 10 seconds. */
    async waitForEnd(): Promise<number> {
        const start = Date.now();
        const timeout = new Promise((_, reject) => {
            setTimeout(() => {
                reject(new Error('the server goes on'));
            }, 10_000).unref();
        });
        await Promise.race([this.ended, timeout]);
        return Date.now() - start;
    }

    #readFrames(): void {
        for (;;) {
            const header = /^Content-Length: (\d+)\r\n(?:Content-Type: [^\r\n]*\r\n)?\r\n/.exec(this.#buffer.toString('latin1'));
            const end = header ? header[0].length + Number(header[1]) : Infinity;
            if (this.#buffer.length < end) {
                return;
            }
            const body = this.#buffer.subarray(header?.[0].length, end).toString();
            this.messages.push(JSON.parse(body) as Message);
            this.#buffer = this.#buffer.subarray(end);
        }
    }
}
