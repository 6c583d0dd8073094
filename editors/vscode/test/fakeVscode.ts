// As much of the editor's module as the client library and the extension ask for. What the library only mentions is an empty
// class; what they call is recorded, so that a test can play the editor.

import { URI } from 'vscode-uri';

type Listener = (event: unknown) => unknown;

class Disposable {
    constructor(readonly dispose: () => void = () => undefined) {}

    static from(...parts: Disposable[]): Disposable {
        return new Disposable(() => {
            parts.forEach((part) => {
                part.dispose();
            });
        });
    }
}

class EventEmitter {
    readonly #listeners = new Set<Listener>();

    readonly event = (listener: Listener, self?: unknown): Disposable => {
        const bound = listener.bind(self);
        this.#listeners.add(bound);
        return new Disposable(() => this.#listeners.delete(bound));
    };

    fire(event: unknown): void {
        for (const listener of this.#listeners) {
            listener(event);
        }
    }

    dispose(): void {
        this.#listeners.clear();
    }
}

class CancellationTokenSource {
    readonly token = { isCancellationRequested: false, onCancellationRequested: () => new Disposable() };
    cancel = () => undefined;
    dispose = () => undefined;
}

class Position {
    constructor(
        readonly line: number,
        readonly character: number,
    ) {}
}

class Range {
    readonly start: Position;
    readonly end: Position;

    constructor(...values: [Position, Position] | [number, number, number, number]) {
        [this.start, this.end] =
            values.length === 2 ? values : [new Position(values[0], values[1]), new Position(values[2], values[3])];
    }
}

class TextEdit {
    constructor(
        readonly range: Range,
        readonly newText: string,
    ) {}
}

class Diagnostic {
    constructor(
        readonly range: Range,
        readonly message: string,
        readonly severity: number,
    ) {}
}

class TabInputText {
    constructor(readonly uri: URI) {}
}

/** An object that has every member: events by their names, and functions that do nothing for the rest. */
function complete<T extends object>(known: T, getUnknown: (name: string) => unknown): T {
    return new Proxy(known, {
        get: (target, name) => {
            if (!(name in target) && typeof name === 'string') {
                Object.assign(target, { [name]: getUnknown(name) });
            }
            return target[name as keyof T];
        },
    });
}

interface FakeDocument {
    uri: URI;
    languageId: string;
}

/** What a test looks at, and what it fires. */
const editor = {
    settings: {} as Record<string, unknown>,
    tabs: [] as TabInputText[],
    documents: [] as FakeDocument[],
    events: new Map<string, EventEmitter>(),
    commands: new Map<string, (...args: unknown[]) => unknown>(),
    providers: new Map<string, Record<string, (...args: unknown[]) => unknown>>(),
    diagnostics: new Map<string, Diagnostic[]>(),
    errors: [] as string[],
    status: { text: '', severity: -1, dispose: () => undefined },
    shown: undefined as unknown,
    activeTextEditor: undefined as unknown,

    getEvent(name: string): EventEmitter {
        const event = this.events.get(name) ?? new EventEmitter();
        this.events.set(name, event);
        return event;
    },

    /** The order is the editor's: the tab is there first, and the client must not ask about a text that it hasn't sent. */
    open(document: FakeDocument): void {
        this.tabs.push(new TabInputText(document.uri));
        this.getEvent('onDidChangeTabs').fire({ closed: [], opened: [document] });
        this.documents.push(document);
        this.getEvent('onDidOpenTextDocument').fire(document);
    },
};

const inert = (name: string) =>
    name.startsWith('on') ? editor.getEvent(name).event : () => new Disposable();

const languages = complete(
    {
        match: (selector: { language?: string }[], document: FakeDocument) =>
            [selector].flat().some(({ language }) => language === document.languageId) ? 10 : 0,
        createDiagnosticCollection: () => ({
            set: (uri: URI, found: Diagnostic[]) => editor.diagnostics.set(uri.toString(), found),
            delete: (uri: URI) => editor.diagnostics.delete(uri.toString()),
            clear: () => {
                editor.diagnostics.clear();
            },
            dispose: () => undefined,
        }),
        createLanguageStatusItem: () => editor.status,
    },
    (name) =>
        name.startsWith('register')
            ? (_: unknown, provider: Record<string, (...args: unknown[]) => unknown>) => {
                  editor.providers.set(name, provider);
                  return new Disposable();
              }
            : inert(name),
);

const workspace = complete(
    {
        get textDocuments() {
            return editor.documents;
        },
        notebookDocuments: [],
        workspaceFolders: undefined,
        getConfiguration: (section?: string) => ({
            get: (name: string, fallback: unknown) => editor.settings[section ? `${section}.${name}` : name] ?? fallback,
            has: () => true,
        }),
        openTextDocument: (uri: URI) => editor.providers.get(uri.scheme)?.['provideTextDocumentContent']?.(uri),
        registerTextDocumentContentProvider: (scheme: string, provider: never) => {
            editor.providers.set(scheme, provider);
            return new Disposable();
        },
        createFileSystemWatcher: () => complete({ dispose: () => undefined }, inert),
    },
    inert,
);

const window = complete(
    {
        get activeTextEditor() {
            return editor.activeTextEditor;
        },
        visibleTextEditors: [],
        tabGroups: complete({ get all() { return [{ tabs: editor.tabs.map((input) => ({ input })) }]; } }, inert),
        createOutputChannel: () => complete({ append: () => undefined, appendLine: () => undefined, dispose: () => undefined }, inert),
        showErrorMessage: (message: string) => {
            editor.errors.push(message);
            return Promise.resolve(undefined);
        },
        showTextDocument: (document: unknown) => {
            editor.shown = document;
        },
    },
    inert,
);

const commands = {
    registerCommand: (name: string, action: (...args: unknown[]) => unknown) => {
        editor.commands.set(name, action);
        return new Disposable(() => editor.commands.delete(name));
    },
    executeCommand: (name: string, ...args: unknown[]) => editor.commands.get(name)?.(...args),
};

const fakeVscode = complete(
    {
        __esModule: false, // or else an import would look for `default`
        version: '1.82.0',
        env: { language: 'en', appName: 'test' },
        Uri: URI,
        Disposable,
        EventEmitter,
        CancellationTokenSource,
        CancellationError: Error,
        Position,
        Range,
        TextEdit,
        Diagnostic,
        TabInputText,
        DiagnosticSeverity: { Error: 0, Warning: 1, Information: 2, Hint: 3 },
        LanguageStatusSeverity: { Information: 0, Warning: 1, Error: 2 },
        ViewColumn: { Beside: -2 },
        languages,
        workspace,
        window,
        commands,
        editor,
    },
    () => Object.assign(function () { /* constructs nothing */ }, { Empty: { append: () => ({}) } }),
);

export = fakeVscode;
