// The operations of the server. Offsets count 16-bit characters from 0, lines and columns from 1.

export interface Edit {
  offset: number;
  length: number;
  text: string;
}

export interface Problem {
  code: string;
  severity: "note" | "warning" | "error";
  message: string;
  in: "source" | "options";
  line: number;
  column: number;
}

export interface KeptGap {
  begin: number;
  end: number;
  kind: "kept" | "repaired";
}

export interface FormatAnswer {
  text: string;
  edits: Edit[];
  errors: Problem[];
  problems: Problem[];
  kept: KeptGap[];
  isStable: boolean | null;
  milliseconds: number;
}

export interface GapDecision {
  class: string;
  construct: string;
  level: string;
  depth: number;
  decision: "Preserve" | "LineBreak" | "NoLineBreak";
  isCandidate: boolean;
  before: string;
  after: string;
  reason: string;
  options: { name: string; value: unknown }[];
}

export interface Row {
  begin: number;
  end: number;
  depth: number;
  label: string;
  detail: string;
  gap?: GapDecision;
}

export interface DumpAnswer {
  stage: string;
  first: number;
  total: number;
  rows: Row[];
  errors: Problem[];
}

export type Engine = "line" | "tree";
export type Stage = "tokens" | "syntax" | "leaves" | "text-tree" | "indent-tree" | "decisions";

export interface FormatRequest {
  text: string;
  engine: Engine;
  options: string;
}

export interface DumpRequest extends FormatRequest {
  stage: Stage;
  around?: number;
  limit?: number;
}

export interface StartAnswer {
  version: string;
  name: string;
  text: string;
}

/** The server refused a request, or is gone; the message is for people. */
export class ServerError extends Error {
  constructor(
    message: string,
    readonly status: number,
  ) {
    super(message);
  }
}

export class Api {
  constructor(private readonly token: string) {}

  format(request: FormatRequest, signal: AbortSignal): Promise<FormatAnswer> {
    return this.send<FormatAnswer>("/api/format", request, signal);
  }

  dump(request: DumpRequest, signal: AbortSignal): Promise<DumpAnswer> {
    return this.send<DumpAnswer>("/api/dump", request, signal);
  }

  schema(): Promise<unknown> {
    return this.send("/api/schema");
  }

  start(): Promise<StartAnswer> {
    return this.send<StartAnswer>("/api/start");
  }

  /** Tells the server that this page is open, or is being closed, so that it can end after the last one. */
  async reportPresence(page: string, isOpen: boolean): Promise<void> {
    try {
      await this.send("/api/presence", { page, isOpen }, undefined, true);
    } catch {
      // The next request of the user shows that the server is gone.
    }
  }

  private async send<Answer>(path: string, body?: unknown, signal?: AbortSignal, keepalive = false): Promise<Answer> {
    const headers: Record<string, string> = { "X-Ombrel-Token": this.token };
    const request: RequestInit = { headers, signal: signal ?? null, keepalive };
    if (body !== undefined) {
      headers["Content-Type"] = "application/json";
      request.method = "POST";
      request.body = JSON.stringify(body);
    }
    const response = await this.reach(path, request);
    const answer: unknown = await response.json();
    if (!response.ok) {
      throw new ServerError(getError(answer) ?? `the server answered ${response.status}`, response.status);
    }
    return answer as Answer;
  }

  private async reach(path: string, request: RequestInit): Promise<Response> {
    try {
      return await fetch(path, request);
    } catch (error) {
      if (error instanceof DOMException && error.name === "AbortError") {
        throw error;
      }
      throw new ServerError("ombrel-explorer doesn't answer: it has ended, or was restarted at another address", 0);
    }
  }
}

function getError(answer: unknown): string | null {
  return typeof answer === "object" && answer !== null && "error" in answer && typeof answer.error === "string"
    ? answer.error
    : null;
}
