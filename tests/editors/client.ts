// A running server with a client connected to it.

import { spawn, type ChildProcessWithoutNullStreams } from 'node:child_process';
import * as path from 'node:path';
import { pathToFileURL } from 'node:url';
import {
    createProtocolConnection,
    DidChangeTextDocumentNotification,
    DidCloseTextDocumentNotification,
    DidOpenTextDocumentNotification,
    DocumentFormattingRequest,
    ExitNotification,
    InitializedNotification,
    InitializeRequest,
    RegistrationRequest,
    ResponseError,
    ShutdownRequest,
    StreamMessageReader,
    StreamMessageWriter,
    type ClientCapabilities,
    type InitializeResult,
    type ProtocolConnection,
    type TextDocumentContentChangeEvent,
    type TextEdit,
} from 'vscode-languageserver-protocol/node';

import { DocumentModel, type Encoding } from './documentModel';

export const sources = path.resolve(__dirname, '../../..');
export const programs = process.env['OMBREL_PROGRAMS'] ?? path.join(sources, 'build/release/bin');

const servers: ChildProcessWithoutNullStreams[] = [];

export function startServer(args: string[] = []): ChildProcessWithoutNullStreams {
    const server = spawn(path.join(programs, 'ombrel-lsp'), args);
    servers.push(server);
    return server;
}

/** Ends what failed tests have left running, which would keep the test program alive. */
export function killServers(): void {
    for (const server of servers) {
        server.kill('SIGKILL');
    }
}

export interface ClientOptions {
    root: string;
    encoding?: Encoding;
    capabilities?: ClientCapabilities;
    settings?: object;
}

export class Client {
    readonly documents = new Map<string, DocumentModel>();
    initialized!: InitializeResult;

    private constructor(
        readonly server: ChildProcessWithoutNullStreams,
        readonly connection: ProtocolConnection,
        readonly options: ClientOptions,
    ) {}

    static async start(options: ClientOptions): Promise<Client> {
        const server = startServer();
        const connection = createProtocolConnection(
            new StreamMessageReader(server.stdout),
            new StreamMessageWriter(server.stdin),
        );
        const client = new Client(server, connection, options);
        connection.onError(([error]) => {
            throw error;
        });
        connection.onRequest(RegistrationRequest.type, () => undefined);
        connection.listen();
        client.initialized = await connection.sendRequest(InitializeRequest.type, {
            processId: process.pid,
            rootUri: pathToFileURL(options.root).href,
            workspaceFolders: null,
            initializationOptions: options.settings,
            capabilities: {
                ...options.capabilities,
                general: { positionEncodings: [options.encoding ?? 'utf-16'] },
            },
        });
        await connection.sendNotification(InitializedNotification.type, {});
        return client;
    }

    /** Ends the server as the protocol wants it and gives its exit status. */
    async stop(): Promise<number | null> {
        await this.connection.sendRequest(ShutdownRequest.type);
        const ended = new Promise<number | null>((resolve) => this.server.once('exit', resolve));
        await this.connection.sendNotification(ExitNotification.type);
        return ended;
    }

    getUri(name: string): string {
        return pathToFileURL(path.join(this.options.root, name)).href;
    }

    get(name: string): DocumentModel {
        const document = this.documents.get(name);
        if (!document) {
            throw new Error(`not open: ${name}`);
        }
        return document;
    }

    async open(name: string, text: string): Promise<void> {
        const document = new DocumentModel(text, this.options.encoding ?? 'utf-16');
        this.documents.set(name, document);
        await this.connection.sendNotification(DidOpenTextDocumentNotification.type, {
            textDocument: { uri: this.getUri(name), languageId: 'ombrel', version: document.version, text },
        });
    }

    async change(name: string, changes: TextDocumentContentChangeEvent[]): Promise<void> {
        const document = this.get(name);
        document.change(changes);
        await this.connection.sendNotification(DidChangeTextDocumentNotification.type, {
            textDocument: { uri: this.getUri(name), version: document.version },
            contentChanges: changes,
        });
    }

    async close(name: string): Promise<void> {
        this.documents.delete(name);
        await this.connection.sendNotification(DidCloseTextDocumentNotification.type, {
            textDocument: { uri: this.getUri(name) },
        });
    }

    /** The text as the server has it. */
    async getServerText(name: string): Promise<string> {
        const textDocument = { uri: this.getUri(name) };
        const answer = await this.connection.sendRequest<{ text: string }>('ombrel/text', { textDocument });
        return answer.text;
    }

    /** The edits, or the error that the server answers with. */
    format(name: string, options = { tabSize: 4, insertSpaces: true }): Promise<TextEdit[] | ResponseError | null> {
        return this.connection
            .sendRequest(DocumentFormattingRequest.type, { textDocument: { uri: this.getUri(name) }, options })
            .catch((error: unknown) => {
                if (error instanceof ResponseError) {
                    return error;
                }
                throw error;
            });
    }
}
