// Where the language server is. The path comes from the setting or from the PATH, never from the opened folder: opening a
// repository must not run a program that the repository names.

import { accessSync, constants, statSync } from 'node:fs';
import { homedir } from 'node:os';
import * as path from 'node:path';

export class ServerNotFound extends Error {}

const extension = process.platform === 'win32' ? '.exe' : '';

function isProgram(file: string): boolean {
    try {
        accessSync(file, constants.X_OK);
        return statSync(file).isFile();
    } catch {
        return false;
    }
}

function expandHome(file: string): string {
    return file.startsWith('~/') ? path.join(homedir(), file.slice(2)) : file;
}

function findOnPath(name: string, searchPath: string): string | undefined {
    return searchPath
        .split(path.delimiter)
        .filter((folder) => path.isAbsolute(folder))
        .map((folder) => path.join(folder, name + extension))
        .find(isProgram);
}

/**
 * The server's absolute path.
 * @param setting the path in the settings, empty for the first `ombrel-lsp` in `searchPath`
 * @throws ServerNotFound with a message that says what to do
 */
export function findServer(setting: string, searchPath: string = process.env['PATH'] ?? ''): string {
    const hint = 'Install ombrel-format, which comes with the server, or set "ombrel.server.path".';
    if (setting === '') {
        const found = findOnPath('ombrel-lsp', searchPath);
        if (found === undefined) {
            throw new ServerNotFound(`ombrel-lsp isn't on the PATH. ${hint}`);
        }
        return found;
    }
    const file = expandHome(setting);
    if (!path.isAbsolute(file)) {
        throw new ServerNotFound(`"ombrel.server.path" has to be an absolute path, but is "${setting}".`);
    }
    if (!isProgram(file)) {
        throw new ServerNotFound(`"ombrel.server.path" names no program: "${file}". ${hint}`);
    }
    return file;
}
