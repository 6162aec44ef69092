// What the server can be asked; cli/preview/routes.h has the same list.

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
    kind: "document" | "model";
}
export interface FileText {
    text: string;
    revision: string;
}
export type Appearance = "light" | "dark";

export interface Drawing {
    path: string | null;
    document: string;
    model: string | null;
    width: number;
    height: number;
    scale: number;
    appearance: Appearance;
    date: number;
    timeZone: string;
    rounded: boolean;
    layout: boolean;
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
    notes: string[];
    layout: LayoutView | null;
    picture: Uint8Array<ArrayBuffer> | null;
}

/** A view of the laid-out tree: a "view" or a "modifier" with its members. */
export interface LayoutView {
    view?: string;
    modifier?: string;
    frame?: [number, number, number, number] | null;
    [member: string]: unknown;
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

async function post(path: string, body: unknown): Promise<Response> {
    const response = await fetch(path, {
        method: "POST",
        headers: { "Content-Type": "application/json" },
        body: JSON.stringify(body),
    });
    if (!response.ok) throw await failureOf(response);
    return response;
}

export const fetchProject = () => get<Project>("/api/project");
export const fetchFiles = async () => (await get<{ files: ProjectFile[] }>("/api/files")).files;
export const fetchFile = (path: string) => get<FileText>(`/api/file?path=${encodeURIComponent(path)}`);

export async function saveFile(path: string, text: string, revision: string): Promise<string> {
    const response = await post("/api/save", { path, text, revision });
    return ((await response.json()) as { revision: string }).revision;
}

export async function draw(drawing: Drawing): Promise<Drawn> {
    const response = await post("/api/render", drawing);
    const bytes = new Uint8Array(await response.arrayBuffer());
    const isFailure = response.headers.get("Content-Type") === "application/json";
    return isFailure ? failed(bytes) : succeeded(bytes);
}

function failed(bytes: Uint8Array): Drawn {
    const { error } = JSON.parse(new TextDecoder().decode(bytes)) as { error: Failure };
    return { failure: error, milliseconds: 0, notes: [], layout: null, picture: null };
}

/** A line of JSON, the layout's bytes and the picture's. */
function succeeded(bytes: Uint8Array<ArrayBuffer>): Drawn {
    const decoder = new TextDecoder();
    const end = bytes.indexOf(0x0a);
    const head = JSON.parse(decoder.decode(bytes.subarray(0, end))) as {
        milliseconds: number;
        notes: string[];
        layoutBytes: number;
    };
    const layoutEnd = end + 1 + head.layoutBytes;
    const layout = head.layoutBytes > 0 ? decoder.decode(bytes.subarray(end + 1, layoutEnd)) : null;
    return {
        failure: null,
        milliseconds: head.milliseconds,
        notes: head.notes,
        layout: layout ? (JSON.parse(layout) as LayoutView) : null,
        picture: bytes.subarray(layoutEnd),
    };
}
