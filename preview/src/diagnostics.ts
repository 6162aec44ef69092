// SPDX-License-Identifier: MIT

// Where in the editors a failure is shown.
import type { Diagnostic } from "@codemirror/lint";
import type { EditorState } from "@codemirror/state";
import type { Failure, Finding, TextRange } from "./api";
import { nodeAt, pathText } from "./json_places";

const longest = 200;

/** The offset of a line and column, both from 1, in code points as the program counts them. */
function offsetOf(state: EditorState, line: number, column: number): number {
    const found = state.doc.line(Math.min(Math.max(line, 1), state.doc.lines));
    const before = [...found.text].slice(0, column - 1).join("").length;
    return found.from + Math.min(before, found.length);
}

/** At least a character, so that it can be seen, and not beyond its line. */
function visible(state: EditorState, from: number, to: number): { from: number; to: number } {
    const line = state.doc.lineAt(from);
    const end = Math.min(Math.max(to, from + 1), line.to, from + longest);
    return end > from ? { from, to: end } : { from: Math.max(line.from, from - 1), to: Math.max(end, from) };
}

export function sentenceOf(failure: Failure): string {
    const path = failure.codingPath?.length ? `\nat ${pathText(failure.codingPath)}` : "";
    return failure.message + path;
}

export function diagnosticOf(state: EditorState, failure: Failure): Diagnostic {
    const node = failure.codingPath ? nodeAt(state, failure.codingPath) : null;
    const from = failure.line ? offsetOf(state, failure.line, failure.column ?? 1) : (node?.from ?? 0);
    const to = node && node.from === from ? node.to : from + 1;
    return { ...visible(state, from, to), severity: "error", message: sentenceOf(failure) };
}

function rangeOf(state: EditorState, range: TextRange): { from: number; to: number } {
    return { from: offsetOf(state, range.line, range.column), to: offsetOf(state, range.endLine, range.endColumn) };
}

/** What was found, where it stands, with a button that mends it where that is safe. */
export function diagnosticOfFinding(state: EditorState, finding: Finding): Diagnostic {
    const { from, to } = finding.range ? rangeOf(state, finding.range) : { from: 0, to: 1 };
    const changes = finding.fix?.map((edit) => ({ ...rangeOf(state, edit), insert: edit.text })) ?? [];
    return {
        ...visible(state, from, to),
        severity: finding.severity === "note" ? "info" : finding.severity,
        message: finding.message,
        source: finding.code,
        actions: changes.length > 0 ? [{ name: "Mend", apply: (view) => view.dispatch({ changes }) }] : [],
    };
}
