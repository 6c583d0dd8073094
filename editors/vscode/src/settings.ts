import * as vscode from 'vscode';

/** What the server gets when it starts. It asks for the rest, and hears of changes, by the section `ombrel`. */
export interface ServerSettings {
    /** Null: the server's default. */
    readonly engine: string | null;
    readonly options: object;
}

export interface Settings {
    /** Empty: look the server up on the PATH. */
    readonly serverPath: string;
    /** Empty: no log. */
    readonly logFile: string;
    readonly server: ServerSettings;
}

export function readSettings(): Settings {
    const section = vscode.workspace.getConfiguration('ombrel');
    return {
        serverPath: section.get('server.path', ''),
        logFile: section.get('server.log', ''),
        server: { engine: section.get<string | null>('engine', null), options: section.get('options', {}) },
    };
}

/** Whether a change of the settings needs a new server process. */
export function needsRestart(event: vscode.ConfigurationChangeEvent): boolean {
    return event.affectsConfiguration('ombrel.server');
}
