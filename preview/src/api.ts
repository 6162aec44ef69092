// SPDX-License-Identifier: MIT

// What the server can be asked; cli/preview/routes.h has the same list. Addresses are relative: the page's own has the
// secret without which nothing is answered. What is drawn can be given up, and then the server stops drawing it.

export interface Family {
    name: string;
    width: number;
    height: number;
}
export interface Screen {
    name: string;
    families: Family[];
}
export interface Project {
    name: string;
    version: string;
    timeZone: string;
    screens: Screen[];
}
export interface ProjectFile {
    path: string;
    revision: string;
    kind: "document" | "model" | "settings";
    /** Of a document: the path of the model that belongs to it, as every verb pairs them. */
    model?: string | null;
    settings?: Settings;
    /** The paths of models that families have instead, by the families' names. */
    models?: Record<string, string>;
    /** What is wrong with its settings. */
    fault?: string | null;
}
/** What settings say; what they leave out is null or empty. */
export interface Settings {
    /** The families that the widget is meant for; of none all. */
    families: string[];
    screens: string[];
    /** The moment, in seconds since 1970. */
    date: number | null;
    timeZone: string | null;
    appearance: Appearance | null;
    background: string | null;
}
/** What a widget can begin with. */
export interface Template {
    name: string;
    summary: string;
    document: string;
    model: string;
    settings: Settings;
}
export type MadeFile = Pick<ProjectFile, "path" | "revision">;
export interface FileText {
    text: string;
    revision: string;
    /** Whether the text is all of the file; one that is not is never saved. */
    isUtf8: boolean;
}
export type Appearance = "light" | "dark";

export interface Drawing {
    path: string | null;
    document: string;
    model: string | null;
    family: string;
    width: number;
    height: number;
    scale: number;
    appearance: Appearance;
    date: number;
    timeZone: string;
    rounded: boolean;
    /** "auto", "none" or a colour; null is "auto". */
    background: string | null;
}
export type Step = string | number;

/** A failure as `tavrin check --errors json` writes it. */
export interface Failure {
    type: string;
    message: string;
    file?: string;
    line?: number;
    column?: number;
    codingPath?: Step[];
    key?: string;
}
export interface Drawn {
    failure: Failure | null;
    milliseconds: number;
    /** The moment at which the picture changes; absent where it never does. */
    validUntil?: number;
    notes: string[];
    picture: Uint8Array<ArrayBuffer> | null;
}

/** A view of the laid-out tree: a "view" or a "modifier" with its members. */
export interface LayoutView {
    view?: string;
    modifier?: string;
    frame?: [number, number, number, number] | null;
    [member: string]: unknown;
}

/** What is known of a view; the views of a tree come in the order in which the layout has them. */
export interface ViewExplanation {
    view: string;
    origin: string | null;
    /** Why it has its size and place, in sentences. */
    because?: string[];
}
export interface Explained {
    layout: LayoutView;
    explanation: { views: ViewExplanation[] };
}

async function failureOf(response: Response): Promise<Error> {
    const text = await response.text();
    try {
        return new Error((JSON.parse(text) as { message: string }).message);
    } catch {
        return new Error(text || `status ${response.status}`);
    }
}

async function get<T>(path: string): Promise<T> {
    const response = await fetch(path);
    if (!response.ok) throw await failureOf(response);
    return (await response.json()) as T;
}

async function post(path: string, body: unknown, signal: AbortSignal | null = null): Promise<Response> {
    const response = await fetch(path, {
        method: "POST",
        headers: { "Content-Type": "application/json" },
        body: JSON.stringify(body),
        signal,
    });
    if (!response.ok) throw await failureOf(response);
    return response;
}

export const fetchProject = () => get<Project>("api/project");
export const fetchFiles = async () => (await get<{ files: ProjectFile[] }>("api/files")).files;
export const fetchFile = (path: string) => get<FileText>(`api/file?path=${encodeURIComponent(path)}`);

export const fetchTemplates = async () => (await get<{ templates: Template[] }>("api/templates")).templates;

async function made(path: string, body: unknown): Promise<MadeFile[]> {
    return ((await (await post(path, body)).json()) as { files: MadeFile[] }).files;
}

/** Makes NAME.json, its model and its settings; overwrites nothing. */
export const beginWidget = (name: string, template: string) => made("api/new", { name, template });

/** Makes NAME.json, NAME.model.json or both; overwrites nothing. */
export const createFiles = (name: string, texts: { document: string | null; model: string | null }) =>
    made("api/create", { name, ...texts });

export async function saveFile(path: string, text: string, revision: string): Promise<string> {
    const response = await post("api/save", { path, text, revision });
    return ((await response.json()) as { revision: string }).revision;
}

export async function draw(drawing: Drawing, signal: AbortSignal): Promise<Drawn> {
    const response = await post("api/render", drawing, signal);
    const bytes = new Uint8Array(await response.arrayBuffer());
    const isFailure = response.headers.get("Content-Type") === "application/json";
    return isFailure ? failed(bytes) : succeeded(bytes);
}

function failed(bytes: Uint8Array): Drawn {
    const { error } = JSON.parse(new TextDecoder().decode(bytes)) as { error: Failure };
    return { failure: error, milliseconds: 0, notes: [], picture: null };
}

/** A line of JSON and the picture's bytes. */
function succeeded(bytes: Uint8Array<ArrayBuffer>): Drawn {
    const end = bytes.indexOf(0x0a);
    const head = JSON.parse(new TextDecoder().decode(bytes.subarray(0, end))) as Omit<Drawn, "failure" | "picture">;
    return { failure: null, ...head, picture: bytes.subarray(end + 1) };
}

/** Nothing for a document that cannot be drawn. */
export async function explain(drawing: Drawing, signal: AbortSignal): Promise<Explained | null> {
    const response = await post("api/explain", drawing, signal);
    const answer = (await response.json()) as Explained | { error: Failure };
    return "error" in answer ? null : answer;
}

/** A stretch of a text; lines and columns from 1, columns in code points. */
export interface TextRange {
    line: number;
    column: number;
    endLine: number;
    endColumn: number;
}
/** What `tavrin check --format json` finds. */
export interface Finding {
    severity: "error" | "warning" | "note";
    code: string;
    message: string;
    role: "document" | "model";
    path?: unknown;
    range?: TextRange;
    fix?: (TextRange & { text: string })[];
}

/** What is looked at besides a drawing: lists with commas. */
export interface CheckedLooks {
    screen: string;
    families: string;
    appearances: string;
}

/** What is wrong or doubtful in any of these looks. */
export async function check(drawing: Drawing, looks: CheckedLooks, signal: AbortSignal): Promise<Finding[]> {
    return (await (await post("api/check", { ...drawing, ...looks }, signal)).json()) as Finding[];
}
