// Random edits to three documents. After each of them the server has to have the model's text, and its formatting of it,
// applied by the model, has to be what the command line makes of that text, byte for byte. The texts of a batch are
// formatted by one run of the command line.
//
//     node dist/sync.test.js [SCRIPTS [FIRST]]      a script has 20 edits; script N is the same in each run

import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { mkdirSync, mkdtempSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import * as path from 'node:path';
import { ResponseError, type TextDocumentContentChangeEvent } from 'vscode-languageserver-protocol';

import { Client, programs } from './client';
import { DocumentModel, type Encoding } from './documentModel';

const editsPerScript = 20;
const scriptsPerBatch = 50;

const folders = {
    line: { engine: 'line', line: { blankLines: 'indent', indentSize: 3 } },
    tree: {
        engine: 'tree',
        formatting: { indentationEnabled: true, trimUnnecessaryWhitespace: true, lineBreakingEnabled: true, columnLimit: 40 },
    },
};
type Folder = keyof typeof folders;

/** The same numbers for the same seed, from 0 to below 1. */
function makeRandom(seed: number): () => number {
    let state = seed + 1;
    return () => {
        state = (Math.imul(state, 1_664_525) + 1_013_904_223) >>> 0;
        let mixed = Math.imul(state ^ (state >>> 15), state | 1);
        mixed ^= mixed + Math.imul(mixed ^ (mixed >>> 7), mixed | 61);
        return ((mixed ^ (mixed >>> 14)) >>> 0) / 4_294_967_296;
    };
}

class Script {
    readonly #random: () => number;
    readonly #lineEnds: string[];
    /** Then most changes put statements between statements, so that the tree engine gets texts that parse. */
    readonly #isTidy: boolean;

    constructor(seed: number) {
        this.#random = makeRandom(seed);
        this.#isTidy = this.below(3) > 0;
        this.#lineEnds = this.choose([['\n'], ['\r\n'], ['\r'], ['\n', '\r\n', '\r']]);
    }

    below(limit: number): number {
        return Math.floor(this.#random() * limit);
    }

    choose<T>(items: readonly T[]): T {
        return items[this.below(items.length)] as T;
    }

    makeText(lines: number): string {
        const pieces = Array.from({ length: lines }, () => this.#makeLine() + this.choose(this.#lineEnds));
        return (this.below(this.#isTidy ? 100 : 8) === 0 ? '\uFEFF' : '') + pieces.join('') + this.choose(['', '', 'x = 1;']);
    }

    makeChange(document: DocumentModel): TextDocumentContentChangeEvent {
        if (this.below(25) === 0) {
            return { text: this.makeText(this.below(6)) };
        }
        if (this.#isTidy && this.below(8) > 0) {
            const line = this.below(document.getLines().length);
            const lines = this.below(3) === 0 ? 1 : 0;
            return { range: { start: { line, character: 0 }, end: { line: line + lines, character: 0 } }, text: this.makeText(2 - lines) };
        }
        const [start, end] = [this.#makePosition(document), this.#makePosition(document)].sort(
            (left, right) => left.line - right.line || left.character - right.character,
        );
        assert(start && end);
        const isInsertion = this.below(2) === 0;
        return { range: { start, end: isInsertion ? start : end }, text: this.#makeInsertion() };
    }

    /** Now and then past an end. */
    #makePosition(document: DocumentModel) {
        const lines = document.getLines();
        const line = this.below(lines.length);
        if (this.below(20) === 0) {
            return this.choose([
                { line, character: 1000 },
                { line: lines.length + this.below(3), character: this.below(5) },
            ]);
        }
        return document.getPosition(line, this.below([...(lines[line]?.text ?? '')].length + 1));
    }

    #makeInsertion(): string {
        const wild = ['', ' ', '\t', '\r', '\n', '\r\n', '𝄞', 'e\u0301', '\u{1F469}\u200D\u{1F680}', '\uFEFF', "'", '%', '...', '('];
        return this.choose([this.choose(wild), this.choose(wild), this.#makeLine(), this.makeText(2)]);
    }

    #makeLine(): string {
        const code = ['x=1;', 'if a', 'else', 'end', 'end', 'y = [1 2', '3 4];', "s = 'ä𝄞';", 'for k=1:3,f(k),end', 'hold on'];
        const other = ['', '', '% 日本語 e\u0301', '%{', '%}', 'z = f(a, ...', 'b);', '% ombrel-format off', '% ombrel-format on'];
        const program = ['if a, b=1; else, c  = 2; end', "disp( 'x' )", 'for k=1:3,f(k),end', 'hold on', 'v = {1,"𝄞", 3};   % note'];
        const choices = this.#isTidy ? program : [program, code, other].flat();
        return ' '.repeat(this.below(6)) + this.choose(choices) + this.choose(['', ' ', '\t']);
    }
}

/** What the command line has to make of a text, in the words of the server. */
interface Answer {
    name: string;
    result: string | undefined;
    where: string;
}

/** What the server has formatted, and then the command line. */
class Batch {
    readonly root = mkdtempSync(path.join(tmpdir(), 'ombrel-sync-'));
    readonly #answers: Answer[] = [];

    constructor() {
        for (const [folder, options] of Object.entries(folders)) {
            mkdirSync(path.join(this.root, folder));
            writeFileSync(path.join(this.root, folder, '.ombrel-format.json'), JSON.stringify(options));
        }
    }

    add(folder: Folder, text: string, result: string | undefined, where: string): void {
        const name = `${folder}/${this.#answers.length}.omb`;
        writeFileSync(path.join(this.root, name), text);
        this.#answers.push({ name, result, where });
    }

    /** How many of them the command line refused, as the server did. */
    compare(): number {
        const args = ['-i', '--no-gitignore', '--reporter', 'json', ...Object.keys(folders)];
        const run = spawnSync(path.join(programs, 'ombrel-format'), args, { cwd: this.root, maxBuffer: 1 << 28 });
        const report = JSON.parse(run.stdout.toString()) as { files: { path: string; status: string }[] };
        const refused = new Set(report.files.filter(({ status }) => status === 'failed').map((file) => file.path));
        assert.equal(report.files.length, this.#answers.length);
        for (const { name, result, where } of this.#answers) {
            const bytes = readFileSync(path.join(this.root, name)).toString();
            assert.equal(JSON.stringify(result), JSON.stringify(refused.has(name) ? undefined : bytes), where);
        }
        return refused.size;
    }

    remove(): void {
        rmSync(this.root, { recursive: true });
    }
}

async function compareFormatting(client: Client, batch: Batch, folder: Folder, name: string, where: string): Promise<void> {
    const document = client.get(name);
    const edits = await client.format(name);
    if (edits instanceof ResponseError || edits === null) {
        batch.add(folder, document.text, undefined, where);
        return;
    }
    assert.equal(document.findFault(edits), undefined, where);
    batch.add(folder, document.text, document.apply(edits), where);
}

async function runScript(client: Client, batch: Batch, seed: number): Promise<void> {
    const script = new Script(seed);
    const names = (['line', 'tree', 'tree'] as const).map((folder, index) => ({ folder, name: `${folder}/open${index}.omb` }));
    const shared = script.makeText(8); // the same text under several names is formatted for each name
    for (const { name } of names) {
        await client.open(name, script.below(2) === 0 ? shared : script.makeText(8));
    }
    for (let edit = 0; edit < editsPerScript; ++edit) {
        const { folder, name } = script.choose(names);
        const where = `script ${seed}, edit ${edit}, ${name}`;
        if (script.below(40) === 0) {
            await client.close(name);
            await client.open(name, script.makeText(3));
        }
        const document = client.get(name);
        const draft = new DocumentModel(document.text, document.encoding);
        const changes = Array.from({ length: 1 + (script.below(3) === 0 ? script.below(4) : 0) }, () => {
            const change = script.makeChange(draft);
            draft.change([change]);
            return change;
        });
        await client.change(name, changes);
        assert.equal(JSON.stringify(await client.getServerText(name)), JSON.stringify(document.text), where);
        await compareFormatting(client, batch, folder, name, where);
    }
    for (const { name } of names) {
        await client.close(name);
    }
}

async function runBatch(first: number, count: number): Promise<number> {
    const batch = new Batch();
    try {
        const encoding = (['utf-16', 'utf-16', 'utf-8', 'utf-32'] as const)[Math.floor(first / scriptsPerBatch) % 4] as Encoding;
        const client = await Client.start({ root: batch.root, encoding });
        assert.equal(client.initialized.capabilities.positionEncoding ?? 'utf-16', encoding);
        for (let seed = first; seed < first + count; ++seed) {
            await runScript(client, batch, seed);
        }
        assert.equal(await client.stop(), 0);
        return batch.compare();
    } finally {
        batch.remove();
    }
}

async function main(scripts: number, start: number): Promise<void> {
    let refused = 0;
    for (let first = start; first < start + scripts; first += scriptsPerBatch) {
        refused += await runBatch(first, Math.min(scriptsPerBatch, start + scripts - first));
    }
    const edits = scripts * editsPerScript;
    console.log(`${edits} edits in ${scripts} scripts: the same text and the same formatting (${refused} refused by both)`);
    console.log(`# pass ${scripts}`);
}

void main(Number(process.argv[2] ?? 100), Number(process.argv[3] ?? 0));
