// How the server ends, and what memory remains after many documents.

import assert from 'node:assert/strict';
import { spawn } from 'node:child_process';
import { readFileSync } from 'node:fs';
import { after, test } from 'node:test';

import { Client, killServers } from './client';
import { frame, initialize, RawSession } from './rawSession';

after(killServers);

const exit = frame({ method: 'exit' });
const shutdown = frame({ id: 1, method: 'shutdown' });

const endings: [string, (session: RawSession) => void, number][] = [
    ['shutdown and exit', (session) => { session.send(initialize(), shutdown, exit); }, 0],
    ['exit without shutdown', (session) => { session.send(initialize(), exit); }, 1],
    ['exit before initialize', (session) => { session.send(exit); }, 1],
    ['the end of the stream', (session) => { session.server.stdin.end(); }, 1],
    ['the end of the stream after shutdown', (session) => { session.send(initialize(), shutdown); session.server.stdin.end(); }, 1],
    ['the end of the stream in a message', (session) => { session.send(shutdown.subarray(0, 30)); session.server.stdin.end(); }, 1],
    ['a reader that is gone', (session) => { session.server.stdout.destroy(); session.send(initialize(), initialize(), initialize()); }, 1],
];

for (const [name, finish, status] of endings) {
    void test(`ends with ${status} after ${name}`, async () => {
        const session = new RawSession();
        finish(session);
        assert((await session.waitForEnd()) < 2000);
        assert.equal(await session.ended, status);
    });
}

void test('ends within two seconds of its client', async () => {
    const parent = spawn('sleep', ['1000']);
    const session = new RawSession();
    session.send(initialize(parent.pid));
    await session.waitFor(0);
    parent.kill();
    assert((await session.waitForEnd()) < 2500);
});

function readMemory(pid: number): number {
    return Number(/VmRSS:\s+(\d+) kB/.exec(readFileSync(`/proc/${pid}/status`, 'latin1'))?.[1]);
}

void test('gives the memory of 1,000 closed documents back', async () => {
    const client = await Client.start({ root: '/nowhere' });
    const text = 'if a\nx = [1 2 3];\nend\n'.repeat(1000);
    const work = async (count: number) => {
        for (let index = 0; index < count; ++index) {
            await client.open(`${index}.omb`, text);
            if (index % 10 === 0) {
                await client.format(`${index}.omb`);
            }
        }
        const full = readMemory(client.server.pid ?? 0);
        for (let index = 0; index < count; ++index) {
            await client.close(`${index}.omb`);
        }
        await client.format('none.omb'); // an error, after everything before it
        return full;
    };
    await work(100);
    const before = readMemory(client.server.pid ?? 0);
    const full = await work(1000);
    const getKept = () => readMemory(client.server.pid ?? 0) - before;
    for (const deadline = Date.now() + 10_000; getKept() > (full - before) / 10 && Date.now() < deadline; ) {
        await new Promise((resolve) => setTimeout(resolve, 100));
    }
    assert(full > before + 40_000, `the documents took only ${full - before} kB`);
    assert(getKept() <= (full - before) / 10, `${getKept()} kB of ${full - before} kB are left`);
    assert.equal(await client.stop(), 0);
});
