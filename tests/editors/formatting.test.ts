// Answers against what the command line makes of the same file with the same options files, and answers to questions that
// can't be answered.

import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { mkdirSync, mkdtempSync, readdirSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import * as path from 'node:path';
import { after, test } from 'node:test';
import {
    DidChangeConfigurationNotification,
    DocumentRangeFormattingRequest,
    LSPErrorCodes,
    ResponseError,
    type Range,
    type TextEdit,
} from 'vscode-languageserver-protocol';

import { Client, killServers, programs, sources } from './client';

after(killServers);

const examples = path.join(sources, 'examples');
const format = { tabSize: 4, insertSpaces: true };

/** Each value of each option is in one of them. */
const optionSets: object[] = [
    {},
    { line: { functionStyle: 'classic', blankLines: 'indent' } },
    { line: { functionStyle: 'mixed', useTabs: true } },
    { line: { indentSize: 0, blankLines: 'ignore' } },
    { line: { indentSize: 3, tabSize: 8, useTabs: true } },
    { engine: 'tree', formatting: { indentationEnabled: true, functionIndentStyle: 'Classic', indentBlankLines: true } },
    { engine: 'tree', formatting: { indentationEnabled: true, functionIndentStyle: 'IndentNested', indentCaseBlocks: false } },
    { engine: 'tree', formatting: { trimUnnecessaryWhitespace: true, indentationEnabled: true, indentCharacter: 'Tab', indentWidth: 1 } },
    { engine: 'tree', formatting: { lineBreakingEnabled: true, lineBreakBehavior: 'SeparateLines', indentationEnabled: true, indentWidth: 2 } },
    { engine: 'tree', formatting: { lineBreakingEnabled: true, lineBreakBehavior: 'AllowSingleLine', columnLimit: 30 } },
    { engine: 'tree', formatting: { lineBreakingEnabled: true, columnLimit: 20, separatorPlacement: 'EndOfLine', trimUnnecessaryWhitespace: true } },
    { engine: 'tree', formatting: { enabled: false } },
];

function makeRoot(): string {
    return mkdtempSync(path.join(tmpdir(), 'ombrel-editor-'));
}

function runFormatter(root: string, args: string[], input: string): string {
    const run = spawnSync(path.join(programs, 'ombrel-format'), args, { cwd: root, input, maxBuffer: 1 << 28 });
    assert.equal(run.status, 0, `${args.join(' ')}: ${run.stderr.toString()}`);
    return run.stdout.toString();
}

function applyAnswer(client: Client, name: string, answer: TextEdit[] | ResponseError | null): string {
    assert(Array.isArray(answer), `${name}: ${JSON.stringify(answer)}`);
    assert.equal(client.get(name).findFault(answer), undefined, name);
    return client.get(name).apply(answer);
}

async function withClient(root: string, action: (client: Client) => Promise<void>, settings?: object): Promise<void> {
    const client = await Client.start({ root, ...(settings && { settings }) });
    try {
        await action(client);
        assert.equal(await client.stop(), 0);
    } finally {
        client.server.kill();
        rmSync(root, { recursive: true });
    }
}

/** The whole text, and parts of it, and then a text that has nothing to format any more. */
async function compareFile(client: Client, root: string, name: string, text: string): Promise<void> {
    await client.open(name, text);
    const document = client.get(name);
    const expected = runFormatter(root, ['--stdin-filename', name, '-'], text);
    assert.equal(applyAnswer(client, name, await client.format(name)), expected, name);
    const lines = document.getLines();
    for (const [from, wanted] of [[1, 3], [Math.ceil(lines.length / 3), Math.ceil(lines.length / 2)]] as const) {
        // A range that ends at the start of a line leaves that line out, so it can't end with an empty one.
        const to = 1 + lines.findIndex((line, index) => index >= wanted - 1 && line.text !== '');
        const range: Range = { start: { line: from - 1, character: 0 }, end: document.getPosition(to - 1, 10_000) };
        const formatted = runFormatter(root, ['--lines', `${from}:${to}`, '--stdin-filename', name, '-'], text);
        const textDocument = { uri: client.getUri(name) };
        const edits = await client.connection.sendRequest(DocumentRangeFormattingRequest.type, { textDocument, range, options: format });
        assert.equal(applyAnswer(client, name, edits), formatted, `${name}:${from}-${to}`);
    }
    await client.change(name, [{ text: expected }]);
    const isStable = runFormatter(root, ['--stdin-filename', name, '-'], expected) === expected;
    assert.equal(JSON.stringify(await client.format(name)) === '[]', isStable, name);
    await client.close(name);
}

for (const options of optionSets) {
    void test(`formats the examples as the command line does: ${JSON.stringify(options)}`, async () => {
        const root = makeRoot();
        writeFileSync(path.join(root, '.ombrel-format.json'), JSON.stringify(options));
        await withClient(root, async (client) => {
            const names = readdirSync(examples).filter((name) => name.endsWith('.omb'));
            assert(names.length > 10);
            for (const name of names) {
                await compareFile(client, root, name, readFileSync(path.join(examples, name)).toString());
            }
        });
    });
}

const slanted = '  if a\nx=1;\n end\n';

void test('applies every kind of options file, and settings only where there is none', async () => {
    const root = makeRoot();
    const files: Record<string, string> = {
        'json/.ombrel-format.json': '{"extends": "base.json", "overrides": [{"files": "b*", "line": {"indentSize": 1}}]}',
        'json/base.json': '{"line": {"indentSize": 7}}',
        'config/.editorconfig': 'root = true\n[*]\nindent_style = tab\ntab_width = 8\n',
        'ignored/.ombrel-format-ignore': 'a.omb\n',
    };
    for (const [name, text] of Object.entries(files)) {
        mkdirSync(path.join(root, path.dirname(name)), { recursive: true });
        writeFileSync(path.join(root, name), text);
    }
    const body = { 'json/a.omb': ' '.repeat(7), 'json/b.omb': ' ', 'config/a.omb': '\t', 'ignored/b.omb': '  ', 'c.omb': '  ' };
    await withClient(
        root,
        async (client) => {
            for (const [name, indentation] of Object.entries(body)) {
                await client.open(name, slanted);
                assert.equal(applyAnswer(client, name, await client.format(name)), `if a\n${indentation}x=1;\nend\n`, name);
            }
            await client.open('ignored/a.omb', slanted);
            assert.deepEqual(await client.format('ignored/a.omb'), []);
            await client.connection.sendNotification(DidChangeConfigurationNotification.type, {
                settings: { ombrel: { options: { line: { indentSize: 5 } } } },
            });
            assert.equal(applyAnswer(client, 'c.omb', await client.format('c.omb')), 'if a\n     x=1;\nend\n');
        },
        { options: { line: { indentSize: 2 } }, formatOnSave: true },
    );
});

void test('never answers for another text than the one it was asked about', async () => {
    await withClient(makeRoot(), async (client) => {
        const text = slanted.repeat(20_000);
        await client.open('a.omb', text);
        for (let round = 0; round < 10; ++round) {
            const answer = client.format('a.omb');
            const start = { line: round, character: 0 };
            await client.change('a.omb', [{ range: { start, end: start }, text: '\n' }]);
            const result = await answer;
            assert(result instanceof ResponseError && result.code === LSPErrorCodes.ContentModified, `round ${round}`);
        }
        const closed = client.format('a.omb');
        await client.close('a.omb');
        assert((await closed) instanceof ResponseError);
        assert((await client.format('a.omb')) instanceof ResponseError);
    });
});

