// SPDX-License-Identifier: MIT

// Shows what drawing and checking found: squiggles in the editors and the list of problems.
import type { Diagnostic } from "@codemirror/lint";
import type { Drawing, Drawn, Failure, Finding } from "./api";
import { check } from "./api";
import { diagnosticOf, diagnosticOfFinding, sentenceOf } from "./diagnostics";
import { announce } from "./dom";
import type { Editor } from "./editor";
import type { Problem } from "./problems";
import { showProblems } from "./problems";
import type { Role } from "./source";
import type { Check, FamilyModel } from "./state";
import { showTab } from "./tabs";

type Editors = Record<Role, Editor>;
/** Without a diagnostic it stands in a text that no editor has. */
type Found = { problem: Problem; role: Role; diagnostic?: Diagnostic };
/** A finding, and the model it was found with where that is a family's own. */
type FoundWith = { finding: Finding; own: FamilyModel | null };

const quietMilliseconds = 200;

const roleOf = (failure: Failure): Role => (failure.file === "model" ? "model" : "document");

export class Reporting {
    private pending = 0;
    private asking = new AbortController();
    private failed = false;
    private notes: string[] = [];

    /** `checks` tells what is to be checked after a drawing, `ownModel` the model that only a family has. */
    constructor(
        private readonly editors: Editors,
        private readonly checks: (drawing: Drawing) => Check[],
        private readonly ownModel: (family: string) => FamilyModel | null,
    ) {}

    /** Shows at once what a drawing failed with; checks more, once nothing newer is drawn for a moment. */
    drawn(drawn: Drawn, drawing: Drawing): void {
        const { failure } = drawn;
        this.notes = drawn.notes;
        if (failure) this.show([this.foundBy(failure, this.ownModel(drawing.family))]);
        else if (this.failed) this.show([]);
        this.failed = failure !== null;
        clearTimeout(this.pending);
        this.asking.abort();
        if (failure) return;
        const { signal } = (this.asking = new AbortController());
        this.pending = window.setTimeout(async () => {
            const lists = await Promise.all(this.checks(drawing).map((each) => findingsOf(each, signal))).catch(
                () => null,
            );
            if (lists && !signal.aborted) this.checked(lists.flat());
        }, quietMilliseconds);
    }

    /** Nothing is drawn any more. */
    clear(): void {
        clearTimeout(this.pending);
        this.asking.abort();
        this.notes = [];
        this.show([]);
    }

    private checked(findings: FoundWith[]): void {
        const faults = withoutRepeated(findings).filter(({ finding }) => finding.severity !== "note");
        this.show(
            faults.map(({ finding, own }) => {
                const { role, severity, message, range } = finding;
                if (own && role === "model") return foundElsewhere(own, severity, message, range);
                const diagnostic = diagnosticOfFinding(this.editors[role].view.state, finding);
                return this.foundIn(role, diagnostic, message);
            }),
        );
    }

    private foundBy(failure: Failure, own: FamilyModel | null): Found {
        const role = roleOf(failure);
        const message = sentenceOf(failure);
        if (own && role === "model") return foundElsewhere(own, "error", message, failure);
        return this.foundIn(role, diagnosticOf(this.editors[role].view.state, failure), message);
    }

    private show(found: Found[]): void {
        const inOrder = (role: Role) =>
            found
                .flatMap((each) => (each.role === role && each.diagnostic ? [each.diagnostic] : []))
                .sort((a, b) => a.from - b.from);
        this.editors.document.show(inOrder("document"));
        this.editors.model.show(inOrder("model"));
        const placeless = [...new Set(this.notes)].map((message): Problem => ({
            severity: "warning",
            message,
            place: "",
            goTo: () => undefined,
        }));
        showProblems([...found.map(({ problem }) => problem), ...(found.length > 0 ? [] : placeless)]);
    }

    private foundIn(role: Role, diagnostic: Diagnostic, message: string): Found {
        const editor = this.editors[role];
        const line = editor.view.state.doc.lineAt(diagnostic.from);
        const problem: Problem = {
            severity: diagnostic.severity === "hint" ? "info" : diagnostic.severity,
            message,
            place: `${role} ${line.number}:${diagnostic.from - line.from + 1}`,
            goTo: () => {
                showTab(role);
                editor.goTo(diagnostic.from);
            },
        };
        return { role, diagnostic, problem };
    }
}

/** What is wrong in a family's own model. */
function foundElsewhere(
    { path }: FamilyModel,
    severity: "error" | "warning" | "note",
    message: string,
    at: { line?: number; column?: number } = {},
): Found {
    const place = at.line === undefined ? path : `${path} ${at.line}:${at.column ?? 1}`;
    const goTo = (): void => announce(`${path} is the model of some families only, and edited elsewhere`);
    return { role: "model", problem: { severity: severity === "error" ? "error" : "warning", message, place, goTo } };
}

async function findingsOf({ drawing, looks, own }: Check, signal: AbortSignal): Promise<FoundWith[]> {
    return (await check(drawing, looks, signal)).map((finding) => ({ finding, own }));
}

/** What is found in the document with one model is not told again with the next. */
function withoutRepeated(findings: FoundWith[]): FoundWith[] {
    const known = new Set<string>();
    return findings.filter(({ finding: { role, code, message, path, range } }) => {
        const key = JSON.stringify([code, message, path, range]);
        if (role === "document" && known.has(key)) return false;
        known.add(key);
        return true;
    });
}
