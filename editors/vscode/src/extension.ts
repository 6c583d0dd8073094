// Starts the language server and connects it with the editor. Everything about Ombrel is in the server; the extension adds
// what only the editor can: settings, the server's place and state, and a few commands.

import * as vscode from 'vscode';
import { LanguageClient, type LanguageClientOptions } from 'vscode-languageclient/node';

import { EffectiveOptions, type OptionsRequest } from './effectiveOptions';
import { findServer, ServerNotFound } from './serverProgram';
import { needsRestart, readSettings } from './settings';
import { ServerStatus } from './status';

const selector = [
    { scheme: 'file', language: 'ombrel' },
    { scheme: 'untitled', language: 'ombrel' },
    { scheme: 'file', pattern: '**/.ombrel-format.json' },
];

/** The connection with at most one server process, which can be replaced. */
class Connection implements vscode.Disposable {
    readonly #output = vscode.window.createOutputChannel('Ombrel');
    readonly #status = new ServerStatus(selector);
    #client: LanguageClient | undefined;
    /** Starts and stops happen one after the other, however often somebody asks for them. */
    #queue: Promise<void> = Promise.resolve();

    restart(): Promise<void> {
        this.#queue = this.#queue.then(async () => {
            await this.#stop();
            await this.#start();
        });
        return this.#queue;
    }

    stop(): Promise<void> {
        this.#queue = this.#queue.then(() => this.#stop());
        return this.#queue;
    }

    showOutput(): void {
        this.#output.show();
    }

    /** The options that apply to a file, and where each comes from, as text. */
    async explainOptions(request: OptionsRequest): Promise<string> {
        await this.#queue;
        if (!this.#client?.isRunning()) {
            throw new Error('The language server is not running.');
        }
        const answer = await this.#client.sendRequest<{ text: string }>('ombrel/options', request);
        return answer.text;
    }

    dispose(): void {
        this.#status.dispose();
        this.#output.dispose();
    }

    async #start(): Promise<void> {
        try {
            await this.#startClient();
        } catch (error) {
            const message = error instanceof Error ? error.message : String(error);
            this.#status.showFault(message);
            this.#output.appendLine(message);
            await this.#stop();
            void this.#report(message, error instanceof ServerNotFound);
        }
    }

    async #startClient(): Promise<void> {
        const settings = readSettings();
        const command = findServer(settings.serverPath);
        const args = settings.logFile === '' ? [] : ['--log', settings.logFile];
        const options: LanguageClientOptions = {
            documentSelector: selector,
            outputChannel: this.#output,
            initializationOptions: settings.server,
            synchronize: { configurationSection: 'ombrel' },
        };
        const client = new LanguageClient('ombrel', 'Ombrel', { command, args }, options);
        this.#client = client;
        client.onDidChangeState((event) => {
            this.#status.showState(event.newState);
        });
        await client.start();
    }

    async #stop(): Promise<void> {
        const client = this.#client;
        this.#client = undefined;
        if (client?.isRunning()) {
            await client.stop();
        }
    }

    async #report(message: string, isNotFound: boolean): Promise<void> {
        const action = isNotFound ? 'Open Settings' : 'Show Output';
        const answer = await vscode.window.showErrorMessage(`Ombrel: ${message}`, action);
        if (answer === 'Open Settings') {
            await vscode.commands.executeCommand('workbench.action.openSettings', 'ombrel.server.path');
        } else if (answer === 'Show Output') {
            this.showOutput();
        }
    }
}

let connection: Connection | undefined;

export async function activate(context: vscode.ExtensionContext): Promise<void> {
    const started = new Connection();
    connection = started;
    const options = new EffectiveOptions((request) => started.explainOptions(request));
    context.subscriptions.push(
        started,
        options,
        vscode.commands.registerCommand('ombrel.restartServer', () => started.restart()),
        vscode.commands.registerCommand('ombrel.showOutput', () => {
            started.showOutput();
        }),
        vscode.commands.registerCommand('ombrel.showOptions', () => options.show()),
        vscode.workspace.onDidChangeConfiguration((event) => {
            if (needsRestart(event)) {
                void started.restart();
            }
        }),
    );
    await started.restart();
}

export async function deactivate(): Promise<void> {
    await connection?.stop();
    connection = undefined;
}
