import * as vscode from 'vscode';
import { State } from 'vscode-languageclient/node';

/** The entry of the language's icon in the status bar: whether the server runs, and what to click if it doesn't. */
export class ServerStatus implements vscode.Disposable {
    readonly #item: vscode.LanguageStatusItem;

    constructor(selector: vscode.DocumentSelector) {
        this.#item = vscode.languages.createLanguageStatusItem('ombrel.server', selector);
        this.#item.name = 'Ombrel';
    }

    showState(state: State): void {
        this.#item.busy = state === State.Starting;
        const isStopped = state === State.Stopped;
        this.#item.severity = vscode.LanguageStatusSeverity[isStopped ? 'Error' : 'Information'];
        this.#item.text = isStopped ? 'ombrel-lsp has stopped' : 'ombrel-lsp';
        this.#item.command = isStopped
            ? { title: 'Restart', command: 'ombrel.restartServer' }
            : { title: 'Show output', command: 'ombrel.showOutput' };
    }

    showFault(message: string): void {
        this.#item.busy = false;
        this.#item.severity = vscode.LanguageStatusSeverity.Error;
        this.#item.text = message;
        this.#item.command = {
            title: 'Open settings',
            command: 'workbench.action.openSettings',
            arguments: ['ombrel.server.path'],
        };
    }

    dispose(): void {
        this.#item.dispose();
    }
}
