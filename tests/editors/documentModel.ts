// A document as the text of the protocol defines it, without any thought of how the server does it.

import type { Position, Range, TextDocumentContentChangeEvent, TextEdit } from 'vscode-languageserver-protocol';

export type Encoding = 'utf-8' | 'utf-16' | 'utf-32';

function measure(text: string, encoding: Encoding): number {
    switch (encoding) {
        case 'utf-8':
            return Buffer.byteLength(text);
        case 'utf-16':
            return text.length;
        case 'utf-32':
            return [...text].length;
    }
}

export class DocumentModel {
    version = 1;

    constructor(
        public text: string,
        readonly encoding: Encoding,
    ) {}

    /** The lines without their ends, each with its offset. */
    getLines(): { start: number; text: string }[] {
        let start = 0;
        return this.text.split(/(\r\n|\r|\n)/).flatMap((part, index) => {
            const line = { start, text: part };
            start += part.length;
            return index % 2 === 0 ? [line] : [];
        });
    }

    /** What is after the end of a line is its end, what is after the last line is the end of the text. */
    getOffset(position: Position): number {
        const line = this.getLines()[position.line];
        if (!line) {
            return this.text.length;
        }
        let offset = line.start;
        let left = position.character;
        for (const character of line.text) {
            left -= measure(character, this.encoding);
            if (left < 0) {
                break;
            }
            offset += character.length;
        }
        return offset;
    }

    getPosition(line: number, characters: number): Position {
        const text = this.getLines()[line]?.text ?? '';
        return { line, character: measure([...text].slice(0, characters).join(''), this.encoding) };
    }

    /** One didChange: each change is meant for the text after the ones before it. */
    change(changes: TextDocumentContentChangeEvent[]): void {
        for (const change of changes) {
            this.text = 'range' in change ? this.#replace(change.range, change.text) : change.text;
        }
        ++this.version;
    }

    /** The text after an answer with edits, all of which are meant for the text as it is. */
    apply(edits: TextEdit[]): string {
        return edits
            .map(({ range, newText }) => ({
                start: this.getOffset(range.start),
                end: this.getOffset(range.end),
                newText,
            }))
            .sort((left, right) => right.start - left.start)
            .reduce((text, { start, end, newText }) => text.slice(0, start) + newText + text.slice(end), this.text);
    }

    /** What is wrong with the edits of an answer: order, overlaps, places that aren't in the text. */
    findFault(edits: TextEdit[]): string | undefined {
        if (edits.length > 10_000) {
            return `${edits.length} edits`;
        }
        const lines = this.getLines();
        let last = 0;
        for (const { range, newText } of edits) {
            for (const position of [range.start, range.end]) {
                const offset = this.getOffset(position);
                const line = lines[position.line];
                const isThere =
                    line && measure(this.text.slice(line.start, offset), this.encoding) === position.character;
                if (!isThere || offset < last) {
                    return `${isThere ? 'not in order' : 'not in the text'}: ${JSON.stringify(edits)}`;
                }
                last = offset;
            }
            if (this.text.slice(this.getOffset(range.start), this.getOffset(range.end)) === newText) {
                return `changes nothing: ${JSON.stringify({ range, newText })}`;
            }
        }
        return undefined;
    }

    #replace(range: Range, text: string): string {
        return this.text.slice(0, this.getOffset(range.start)) + text + this.text.slice(this.getOffset(range.end));
    }
}
