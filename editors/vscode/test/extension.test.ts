// The whole extension with the client library and the real server, in an editor that is played by the test.

import assert from 'node:assert/strict';
import { mkdtempSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import * as path from 'node:path';
import { after, test } from 'node:test';
import * as vscode from 'vscode';
import { URI } from 'vscode-uri';

import { activate, deactivate } from '../src/extension';
import { findServer, ServerNotFound } from '../src/serverProgram';
import fakeVscode from './fakeVscode';

const { editor } = fakeVscode;
const programs = process.env['OMBREL_PROGRAMS'] ?? path.resolve(process.cwd(), '../../build/release/bin');
const server = path.join(programs, 'ombrel-lsp');
const folder = mkdtempSync(path.join(tmpdir(), 'ombrel-extension-'));
after(() => {
    rmSync(folder, { recursive: true });
});

class TextDocument {
    readonly languageId = 'ombrel';
    readonly isClosed = false;
    version = 1;
    readonly uri;

    constructor(
        name: string,
        public text: string,
    ) {
        this.uri = URI.file(path.join(folder, name));
        editor.open(this);
    }

    getText(): string {
        return this.text;
    }

    append(text: string): void {
        const lines = this.text.split('\n');
        const end = new vscode.Position(lines.length - 1, lines.at(-1)?.length ?? 0);
        this.text += text;
        ++this.version;
        const contentChanges = [{ range: new vscode.Range(end, end), text }];
        editor.getEvent('onDidChangeTextDocument').fire({ document: this, contentChanges });
    }
}

interface Edit {
    range: vscode.Range;
    newText: string;
}

function provide(provider: string, method: string, ...args: unknown[]): Promise<Edit[]> {
    const found = editor.providers.get(provider);
    assert(found, `${provider} has no provider`);
    return Promise.resolve(found[method]?.(...args, new vscode.CancellationTokenSource().token)) as Promise<Edit[]>;
}

/** The edits of lines that only change their indentation. */
function getIndentations(edits: Edit[]): [number, string][] {
    return edits.map(({ range, newText }) => [range.start.line, newText]);
}

async function waitFor(what: string, condition: () => boolean): Promise<void> {
    for (const deadline = Date.now() + 20_000; !condition(); ) {
        assert(Date.now() < deadline, `waited for ${what}: ${editor.status.text} ${editor.errors.join()}`);
        await new Promise((resolve) => setTimeout(resolve, 20));
    }
}

function change(settings: Record<string, unknown>, section: string): void {
    Object.assign(editor.settings, settings);
    editor.getEvent('onDidChangeConfiguration').fire({ affectsConfiguration: (name: string) => section.startsWith(name) });
}

const context = { subscriptions: [] } as unknown as vscode.ExtensionContext;
const format = { tabSize: 4, insertSpaces: true };

void test('finds the server in the setting or on the PATH, and nowhere else', () => {
    assert.equal(findServer(server, ''), server);
    assert.equal(findServer('', `/nowhere:${programs}`), server);
    for (const [setting, searchPath, expected] of [
        ['', '/nowhere', /isn't on the PATH/],
        ['', `.:${path.relative(process.cwd(), programs)}`, /isn't on the PATH/],
        ['bin/ombrel-lsp', programs, /has to be an absolute path/],
        [programs, '', /names no program/],
        [path.join(folder, 'missing'), programs, /names no program/],
    ] as const) {
        assert.throws(() => findServer(setting, searchPath), (error: unknown) => error instanceof ServerNotFound && expected.test(error.message));
    }
});

void test('says what to do without a server, and starts it when the setting is right', async () => {
    editor.settings['ombrel.server.path'] = path.join(folder, 'missing');
    await activate(context);
    assert.match(editor.errors.join(), /ombrel\.server\.path/);
    assert.match(editor.status.text, /names no program/);
    assert.equal(editor.status.severity, vscode.LanguageStatusSeverity.Error);

    change({ 'ombrel.server.path': server, 'ombrel.options': { line: { indentSize: 3 } } }, 'ombrel.server.path');
    await waitFor('the server', () => editor.status.text === 'ombrel-lsp');
    assert.equal(editor.status.severity, vscode.LanguageStatusSeverity.Information);
});

void test('formats, reports and explains', async () => {
    const document = new TextDocument('a.omb', 'if a\nx = (1;\nend');
    const uri = document.uri.toString();
    await waitFor('a diagnostic', () => editor.diagnostics.get(uri)?.length === 1);
    const edits = await provide('registerDocumentFormattingEditProvider', 'provideDocumentFormattingEdits', document, format);
    assert.deepEqual(getIndentations(edits), [[1, '   ']]);

    document.append('\n  y = 2;\n');
    const range = new vscode.Range(3, 0, 3, 5);
    const part = await provide('registerDocumentRangeFormattingEditProvider', 'provideDocumentRangeFormattingEdits', document, range, format);
    assert.deepEqual(getIndentations(part), [[3, '']]);

    editor.activeTextEditor = { document, options: format };
    await editor.commands.get('ombrel.showOptions')?.();
    assert.match(String(editor.shown), /line\.indentSize +3 /);

    writeFileSync(path.join(folder, '.ombrel-format.json'), '{"line": {"indentSize": 5}}');
    const again = await provide('registerDocumentFormattingEditProvider', 'provideDocumentFormattingEdits', document, format);
    assert.deepEqual(getIndentations(again), [[1, '     '], [3, '']]);
});

void test('starts the server again, and stops it', async () => {
    await editor.commands.get('ombrel.restartServer')?.();
    await waitFor('the server', () => editor.status.text === 'ombrel-lsp');
    await deactivate();
    assert.equal(editor.status.text, 'ombrel-lsp has stopped');
    assert.equal(editor.errors.length, 1, editor.errors.join('\n'));
});
