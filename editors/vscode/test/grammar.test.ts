// The TextMate grammar, character by character, against what the tokenizer says.

import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { readdirSync, readFileSync } from 'node:fs';
import * as path from 'node:path';
import { test } from 'node:test';
import { loadWASM, OnigScanner, OnigString } from 'vscode-oniguruma';
import { INITIAL, parseRawGrammar, Registry, type IGrammar } from 'vscode-textmate';

const root = path.resolve(process.cwd(), '../..');
const programs = path.join(root, 'build/release/bin');

/** What a reader tells apart by its color. */
type Kind = 'comment' | 'string' | 'word' | 'keyword' | 'index' | 'number' | 'continuation' | 'code';

interface Token {
    type: number;
    lexeme: string;
}

const kindsOfTypes: [Kind, number[]][] = [
    ['comment', [78, 79, 80, 81, 82, 83]],
    ['string', [31, 32, 33]],
    ['word', [85]],
    ['keyword', Array.from({ length: 26 }, (_, index) => index + 1)],
    ['index', [86]],
    ['number', [29, 30, 99, 100]],
    ['continuation', [84]],
];

const kindsOfScopes: [Kind, RegExp][] = [
    ['continuation', /^punctuation\.separator\.continuation/],
    ['comment', /^comment/],
    ['word', /^(string\.unquoted\.argument|meta\.command .*string|entity\.name\.namespace)/],
    ['string', /^string/],
    ['keyword', /^(keyword\.(control|declaration)|storage)/],
    ['index', /^constant\.language/],
    ['number', /^constant\.numeric/],
];

function getKind(scopes: string[]): Kind {
    const inCommand = scopes.includes('meta.command.ombrel') ? 'meta.command ' : '';
    for (const scope of scopes.slice().reverse()) {
        const found = kindsOfScopes.find(([, pattern]) => pattern.test(scope) || pattern.test(inCommand + scope));
        if (found) {
            return found[0];
        }
    }
    return 'code';
}

/** The kind of every character as the tokenizer has it. */
function readTokens(source: string): Kind[] {
    const output = execFileSync(path.join(programs, 'ombrel-dump'), ['tokens', '-'], { input: source, maxBuffer: 1 << 27 });
    const tokens = JSON.parse(output.toString()) as Token[];
    return tokens.flatMap(({ type, lexeme }) => {
        const kind = kindsOfTypes.find(([, types]) => types.includes(type))?.[0] ?? 'code';
        return Array<Kind>(lexeme.length).fill(kind);
    });
}

function readScopes(grammar: IGrammar, source: string): Kind[] {
    let state = INITIAL;
    return source.split('\n').flatMap((line) => {
        const { tokens, ruleStack } = grammar.tokenizeLine(line, state);
        state = ruleStack;
        const kinds = Array<Kind>(line.length + 1).fill('code');
        for (const { startIndex, endIndex, scopes } of tokens) {
            kinds.fill(getKind(scopes), startIndex, endIndex);
        }
        return kinds;
    });
}

/** One entry for each line where the two differ. */
function compare(name: string, bytes: string, grammar: IGrammar): string[] {
    const source = bytes.replace(/^\uFEFF/, '').replace(/\r\n?/g, '\n'); // as an editor has it
    const expected = readTokens(source);
    const actual = readScopes(grammar, source);
    const faults = new Map<number, string>();
    let line = 1;
    for (let at = 0; at < source.length; ++at) {
        if (/\S/.test(source.charAt(at)) && expected[at] !== actual[at] && !faults.has(line)) {
            const rest = source.slice(at).split('\n')[0] ?? '';
            faults.set(line, `${name}:${line}: ${String(expected[at])}, but colored as ${String(actual[at])}: ${rest}`);
        }
        line += source.charAt(at) === '\n' ? 1 : 0;
    }
    return [...faults.values()];
}

async function loadGrammar(): Promise<IGrammar> {
    await loadWASM(readFileSync(require.resolve('vscode-oniguruma/release/onig.wasm')));
    const registry = new Registry({
        onigLib: Promise.resolve({
            createOnigScanner: (patterns) => new OnigScanner(patterns),
            createOnigString: (text) => new OnigString(text),
        }),
        loadGrammar: () => {
            const file = 'syntaxes/ombrel.tmLanguage.json';
            return Promise.resolve(parseRawGrammar(readFileSync(file, 'utf8'), file));
        },
    });
    const grammar = await registry.loadGrammar('source.ombrel');
    assert(grammar);
    return grammar;
}

const slips = `\
x = a'*b' + [a' b'; a 'b'] + {'it''s', "say ""so"""}.';
if a'x', end, case'x'
y = [1 2 ... a comment
    x(end) % another
    ];
hold on, grid off; axis([0 1])
x = {
if a
    load data.mat -ascii
end
total = alpha + ...
    beta gamma
% ombrel-format off
%{
 text
  %{
  inner
  %}
%}
!ls -l | grep 'x'
x = 0xFFu8 + 0b11 + 1.5e-3 + .5i + 1./2 + s.end + 3';
cd ..
echo 'a, b' c % comment
a.if = 1; x.('end') = 2;
`;

void test('colors agree with the tokenizer', async () => {
    const grammar = await loadGrammar();
    const examples = path.join(root, 'examples');
    const files = readdirSync(examples).filter((name) => name.endsWith('.omb'));
    assert(files.length > 10);
    const faults = files.flatMap((name) => compare(name, readFileSync(path.join(examples, name), 'utf8'), grammar));
    assert.equal([...faults, ...compare('slips', slips, grammar)].join('\n'), '');
});
