// Bytes that no client should send, and what has to come back.

import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { after, test } from 'node:test';

import { killServers } from './client';
import { frame, initialize, RawSession, type Message } from './rawSession';

after(killServers);

const parseError = -32700;
const invalidRequest = -32600;
const methodNotFound = -32601;
const notInitialized = -32002;

const unknown = (id: number | string) => frame({ id, method: 'nobody/knows' });
const deep = (open: string, close: string) =>
    frame(`{"jsonrpc":"2.0","id":1,"method":"m","params":${open.repeat(100_000)}${close.repeat(100_000)}}`);

interface Case {
    name: string;
    bytes: Buffer[];
    /** Of the answer with this id. */
    code: number;
    id: number | string | null;
}

/** After these the server has to go on. */
const survivable: Case[] = [
    { name: 'an unknown method', bytes: [unknown(1)], code: methodNotFound, id: 1 },
    { name: 'an unknown method that may be ignored', bytes: [frame({ id: 1, method: '$/x' })], code: methodNotFound, id: 1 },
    { name: 'an id that is a string', bytes: [unknown('a')], code: methodNotFound, id: 'a' },
    { name: 'two messages in one piece', bytes: [Buffer.concat([unknown(1), unknown(2)])], code: methodNotFound, id: 2 },
    { name: 'single bytes', bytes: [...unknown(1)].map((byte) => Buffer.from([byte])), code: methodNotFound, id: 1 },
    { name: 'an unknown notification', bytes: [frame({ method: 'nobody/knows' }), unknown(1)], code: methodNotFound, id: 1 },
    {
        name: 'a header in lower case, and another one',
        bytes: [Buffer.from('content-length:  44\r\nContent-Type: x\r\n\r\n{"jsonrpc":"2.0","id":1,"method":"unheard"}  ')],
        code: methodNotFound,
        id: 1,
    },
    { name: 'an empty body', bytes: [frame('')], code: parseError, id: null },
    { name: 'a body that ends too early', bytes: [frame('{"jsonrpc":')], code: parseError, id: null },
    { name: 'invalid UTF-8', bytes: [Buffer.from('Content-Length: 4\r\n\r\n"\xff\xfe"', 'latin1')], code: parseError, id: null },
    { name: 'a batch', bytes: [frame('[{"jsonrpc":"2.0","id":1,"method":"m"}]')], code: invalidRequest, id: null },
    { name: 'a number', bytes: [frame('42')], code: invalidRequest, id: null },
    { name: 'an id that is an object', bytes: [frame({ id: {} as never, method: 'm' })], code: invalidRequest, id: null },
    { name: 'a method that is a number', bytes: [frame('{"jsonrpc":"2.0","id":1,"method":1}')], code: invalidRequest, id: 1 },
    { name: 'a second initialize', bytes: [initialize().subarray(0), frame({ id: 9, method: 'initialize', params: {} })], code: invalidRequest, id: 9 },
    {
        name: 'a body above the limit',
        bytes: [Buffer.from(`Content-Length: ${(64 << 20) + 1}\r\n\r\n`), Buffer.alloc((64 << 20) + 1, ' ')],
        code: invalidRequest,
        id: null,
    },
];

/** After these nobody knows where the next message starts. The server has to end by itself. */
const fatal: [string, Buffer][] = [
    ['no length', Buffer.from('Content-Type: x\r\n\r\n{}')],
    ['a negative length', Buffer.from('Content-Length: -1\r\n\r\n{}')],
    ['a length in words', Buffer.from('Content-Length: two\r\n\r\n{}')],
    ['a length of 30 digits', Buffer.from(`Content-Length: ${'9'.repeat(30)}\r\n\r\n{}`)],
    ['two lengths', Buffer.from('Content-Length: 2\r\nContent-Length: 3\r\n\r\n{}')],
    ['a header of 64 kB', Buffer.from(`X: ${'x'.repeat(64_000)}`)],
    ['no header', Buffer.from('GET / HTTP/1.1\r\n\r\n')],
];

function readPeakMemory(pid: number): number {
    return Number(/VmHWM:\s+(\d+) kB/.exec(readFileSync(`/proc/${pid}/status`, 'latin1'))?.[1]);
}

async function startInitialized(): Promise<RawSession> {
    const session = new RawSession();
    session.send(initialize());
    const answer = await session.waitFor(0);
    assert(answer?.result);
    return session;
}

/** The server still answers, and has written nothing but frames. */
async function expectAlive(session: RawSession): Promise<void> {
    session.send(unknown(4711));
    const answer = await session.waitFor(4711);
    assert.equal(answer?.error?.code, methodNotFound);
    assert(session.isClean);
}

async function end(session: RawSession): Promise<void> {
    session.server.stdin.end();
    await session.waitForEnd();
}

for (const { name, bytes, code, id } of survivable) {
    void test(`goes on after ${name}`, async () => {
        const session = await startInitialized();
        session.send(...bytes);
        const answer: Message | undefined = await session.waitFor(id);
        assert.equal(answer?.error?.code, code, JSON.stringify(answer));
        await expectAlive(session);
        await end(session);
    });
}

for (const [name, bytes] of fatal) {
    void test(`ends after ${name}`, async () => {
        const session = await startInitialized();
        session.send(bytes);
        assert((await session.waitForEnd()) < 2000);
        assert.equal(await session.ended, 1);
        assert(session.isClean);
        assert.equal(session.messages.at(-1)?.error?.code, parseError);
    });
}

void test('answers text that is nested 100,000 levels deep', async () => {
    for (const bytes of [deep('[', ']'), deep('{"a":', '}'), deep('[', '')]) {
        const session = await startInitialized();
        session.send(bytes);
        await expectAlive(session);
        await end(session);
    }
});

void test('allocates nothing for a body that is announced', async () => {
    const session = await startInitialized();
    const before = readPeakMemory(session.server.pid ?? 0);
    session.send(Buffer.from('Content-Length: 10000000000\r\n\r\n'), Buffer.alloc(1 << 20, ' '));
    session.send(Buffer.from(''));
    await new Promise((resolve) => setTimeout(resolve, 300));
    assert(readPeakMemory(session.server.pid ?? 0) < before + 8 * 1024);
    await end(session);
});

void test('refuses everything before initialize and after shutdown', async () => {
    const session = new RawSession();
    session.send(frame({ id: 1, method: 'textDocument/formatting', params: {} }), frame({ method: 'textDocument/didOpen' }));
    assert.equal((await session.waitFor(1))?.error?.code, notInitialized);
    session.send(initialize(), frame({ id: 2, method: 'shutdown' }));
    assert.equal((await session.waitFor(2))?.result, null);
    session.send(unknown(3));
    assert.equal((await session.waitFor(3))?.error?.code, invalidRequest);
    session.send(frame({ method: 'exit' }));
    assert.equal(await session.ended, 0);
});

void test('answers each of two requests with one id, and the second with an error if the first is pending', async () => {
    const session = await startInitialized();
    const text = 'x = [1 2 3];\n'.repeat(100_000);
    const textDocument = { uri: 'file:///nowhere/big.omb', languageId: 'ombrel', version: 1, text };
    const params = { textDocument: { uri: textDocument.uri }, options: { tabSize: 4, insertSpaces: true } };
    session.send(frame({ method: 'textDocument/didOpen', params: { textDocument } }));
    const request = frame({ id: 5, method: 'textDocument/formatting', params });
    session.send(request, request);
    const answers = await session.waitForAll(5, 2);
    assert(answers.some(({ error }) => error?.code === invalidRequest) || answers.every(({ result }) => result));
    await end(session);
});
