import { execFile } from 'node:child_process';
import * as path from 'node:path';
import { promisify } from 'node:util';
import * as vscode from 'vscode';

import { findFormatter, findServer } from './serverProgram';
import { readSettings } from './settings';

const scheme = 'ombrel-options';
const run = promisify(execFile);

/** Whatever a failed program said. */
function describe(error: unknown): string {
    const { stderr, message } = error as { stderr?: string; message?: string };
    return stderr?.trim() ?? message ?? String(error);
}

/** Shows the options of a file and where each comes from, in a read-only document beside it. */
export class EffectiveOptions implements vscode.TextDocumentContentProvider, vscode.Disposable {
    readonly #registration = vscode.workspace.registerTextDocumentContentProvider(scheme, this);
    readonly #changes = new vscode.EventEmitter<vscode.Uri>();
    readonly onDidChange = this.#changes.event;

    async show(): Promise<void> {
        const document = vscode.window.activeTextEditor?.document;
        if (document?.languageId !== 'ombrel' || document.uri.scheme !== 'file') {
            void vscode.window.showInformationMessage('Ombrel: open an Ombrel file to see its options.');
            return;
        }
        const uri = document.uri.with({ scheme, path: `${document.uri.path}.options` });
        this.#changes.fire(uri);
        const shown = await vscode.workspace.openTextDocument(uri);
        await vscode.window.showTextDocument(shown, { viewColumn: vscode.ViewColumn.Beside, preview: true });
    }

    async provideTextDocumentContent(uri: vscode.Uri): Promise<string> {
        const file = uri.with({ scheme: 'file', path: uri.path.slice(0, -'.options'.length) }).fsPath;
        try {
            return await this.#print(file);
        } catch (error) {
            return `The options of ${file} can't be shown.\n\n${describe(error)}\n`;
        }
    }

    dispose(): void {
        this.#registration.dispose();
        this.#changes.dispose();
    }

    async #print(file: string): Promise<string> {
        const settings = readSettings();
        const formatter = findFormatter(findServer(settings.serverPath));
        if (formatter === undefined) {
            throw new Error("ombrel-format is neither beside the server nor on the PATH.");
        }
        const { stdout } = await run(formatter, ['--print-config', '--', file], { cwd: path.dirname(file) });
        const { engine, options } = settings.server;
        const own = JSON.stringify({ ...(engine !== '' && { engine }), ...options });
        return own === '{}' ? stdout : `${stdout}\nSettings of the editor, which replace what is "default" above: ${own}\n`;
    }
}
