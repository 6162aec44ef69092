// SPDX-License-Identifier: MIT

// Shows what drawing and checking found: squiggles in the editors and the list of problems.
import type { Diagnostic } from "@codemirror/lint";
import type { CheckedLooks, Drawing, Drawn, Failure, Finding } from "./api";
import { check } from "./api";
import { diagnosticOf, diagnosticOfFinding, sentenceOf } from "./diagnostics";
import type { Editor } from "./editor";
import type { Problem } from "./problems";
import { showProblems } from "./problems";
import type { Role } from "./sources";
import { showTab } from "./tabs";

type Editors = Record<Role, Editor>;
type Found = { role: Role; diagnostic: Diagnostic; message: string };

const quietMilliseconds = 200;

const roleOf = (failure: Failure): Role => (failure.file === "model" ? "model" : "document");

export class Reporting {
    private pending = 0;
    private asking = new AbortController();
    private failed = false;
    private notes: string[] = [];

    constructor(
        private readonly editors: Editors,
        private readonly looks: () => CheckedLooks,
    ) {}

    /** Shows at once what a drawing failed with; checks more, once nothing newer is drawn for a moment. */
    drawn(drawn: Drawn, drawing: Drawing): void {
        const { failure } = drawn;
        this.notes = drawn.notes;
        if (failure) this.show([this.foundBy(failure)]);
        else if (this.failed) this.show([]);
        this.failed = failure !== null;
        clearTimeout(this.pending);
        this.asking.abort();
        if (failure) return;
        const { signal } = (this.asking = new AbortController());
        this.pending = window.setTimeout(async () => {
            const findings = await check(drawing, this.looks(), signal).catch(() => null);
            if (findings && !signal.aborted) this.checked(findings);
        }, quietMilliseconds);
    }

    private checked(findings: Finding[]): void {
        const faults = findings.filter((finding) => finding.severity !== "note");
        this.show(
            faults.map((finding) => ({
                role: finding.role,
                diagnostic: diagnosticOfFinding(this.editors[finding.role].view.state, finding),
                message: finding.message,
            })),
        );
    }

    private foundBy(failure: Failure): Found {
        const role = roleOf(failure);
        const message = sentenceOf(failure);
        return { role, diagnostic: diagnosticOf(this.editors[role].view.state, failure), message };
    }

    private show(found: Found[]): void {
        const inOrder = (role: Role) =>
            found
                .filter((each) => each.role === role)
                .map((each) => each.diagnostic)
                .sort((a, b) => a.from - b.from);
        this.editors.document.show(inOrder("document"));
        this.editors.model.show(inOrder("model"));
        const placeless = [...new Set(this.notes)].map((message): Problem => ({
            severity: "warning",
            message,
            place: "",
            goTo: () => undefined,
        }));
        showProblems([...found.map((each) => this.problemOf(each)), ...(found.length > 0 ? [] : placeless)]);
    }

    private problemOf({ role, diagnostic, message }: Found): Problem {
        const editor = this.editors[role];
        const line = editor.view.state.doc.lineAt(diagnostic.from);
        return {
            severity: diagnostic.severity === "hint" ? "info" : diagnostic.severity,
            message,
            place: `${role} ${line.number}:${diagnostic.from - line.from + 1}`,
            goTo: () => {
                showTab(role);
                editor.goTo(diagnostic.from);
            },
        };
    }
}
