// Shows what a drawing said: squiggles in the editors and the list of problems.
import type { Diagnostic } from "@codemirror/lint";
import type { Drawn, Failure } from "./api";
import { diagnosticOf, sentenceOf } from "./diagnostics";
import type { Editor } from "./editor";
import type { Problem } from "./problems";
import { showProblems } from "./problems";
import type { Role } from "./sources";
import { showTab } from "./tabs";

type Editors = Record<Role, Editor>;

const roleOf = (failure: Failure): Role => (failure.file === "model" ? "model" : "document");

function problemOf(editors: Editors, role: Role, diagnostic: Diagnostic, message: string): Problem {
    const line = editors[role].view.state.doc.lineAt(diagnostic.from);
    return {
        severity: diagnostic.severity === "hint" ? "info" : diagnostic.severity,
        message,
        place: `${role} ${line.number}:${diagnostic.from - line.from + 1}`,
        goTo: () => {
            showTab(role);
            editors[role].goTo(diagnostic.from);
        },
    };
}

export function report(editors: Editors, drawn: Drawn): void {
    const found: Record<Role, Diagnostic[]> = { document: [], model: [] };
    const problems: Problem[] = [];
    const { failure } = drawn;
    if (failure) {
        const role = roleOf(failure);
        const diagnostic = diagnosticOf(editors[role].view.state, failure);
        found[role].push(diagnostic);
        problems.push(problemOf(editors, role, diagnostic, sentenceOf(failure)));
    }
    for (const message of new Set(drawn.notes))
        problems.push({ severity: "warning", message, place: "", goTo: () => undefined });
    editors.document.show(found.document);
    editors.model.show(found.model);
    showProblems(problems);
}
