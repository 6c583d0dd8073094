import * as vscode from 'vscode';

const scheme = 'ombrel-options';
const suffix = '.options';

/** What the server is asked with: a file that is open, and what the editor would send to format it. */
export interface OptionsRequest {
    textDocument: { uri: string };
    options: { tabSize: number; insertSpaces: boolean };
}

/** Shows the options of a file and where each comes from, in a read-only document beside it. */
export class EffectiveOptions implements vscode.TextDocumentContentProvider, vscode.Disposable {
    readonly #explain: (request: OptionsRequest) => Promise<string>;
    readonly #registration = vscode.workspace.registerTextDocumentContentProvider(scheme, this);
    readonly #changes = new vscode.EventEmitter<vscode.Uri>();
    /** By what is shown: the questions that were asked last. */
    readonly #requests = new Map<string, OptionsRequest>();
    readonly onDidChange = this.#changes.event;

    constructor(explain: (request: OptionsRequest) => Promise<string>) {
        this.#explain = explain;
    }

    async show(): Promise<void> {
        const editor = vscode.window.activeTextEditor;
        if (editor?.document.languageId !== 'ombrel') {
            void vscode.window.showInformationMessage('Ombrel: open an Ombrel file to see its options.');
            return;
        }
        const source = editor.document.uri;
        const uri = source.with({ scheme, path: source.path + suffix });
        const { tabSize, insertSpaces } = editor.options;
        this.#requests.set(uri.toString(), {
            textDocument: { uri: source.toString() },
            options: { tabSize: Number(tabSize ?? 4), insertSpaces: insertSpaces !== false },
        });
        this.#changes.fire(uri);
        const shown = await vscode.workspace.openTextDocument(uri);
        await vscode.window.showTextDocument(shown, { viewColumn: vscode.ViewColumn.Beside, preview: true });
    }

    async provideTextDocumentContent(uri: vscode.Uri): Promise<string> {
        const request = this.#requests.get(uri.toString());
        if (!request) {
            return 'Run "Ombrel: Show the Options That Apply to This File" again.\n';
        }
        try {
            return await this.#explain(request);
        } catch (error) {
            return `The options can't be shown: ${error instanceof Error ? error.message : String(error)}\n`;
        }
    }

    dispose(): void {
        this.#registration.dispose();
        this.#changes.dispose();
    }
}
