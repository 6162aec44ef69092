// SPDX-License-Identifier: MIT

// The list of what is wrong, below the editors.
import { byId, element } from "./dom";

export interface Problem {
    severity: "error" | "warning" | "info";
    message: string;
    /** Where it stands: "document 12:8"; empty where it is about no place. */
    place: string;
    goTo: () => void;
}

let shown: Problem[] = [];
let last = -1;

function row(problem: Problem, index: number): HTMLElement {
    const button = element(
        "button",
        { type: "button", class: `problem ${problem.severity}` },
        element("span", { class: "mark", "aria-label": problem.severity, role: "img" }),
        element("span", { class: "message" }, problem.message),
        element("span", { class: "where" }, problem.place),
    );
    button.addEventListener("click", () => {
        last = index;
        problem.goTo();
    });
    return element("li", {}, button);
}

export function showProblems(problems: Problem[]): void {
    shown = problems;
    last = -1;
    const errors = problems.filter((problem) => problem.severity === "error").length;
    const counted = problems.length === 1 ? "1 problem" : `${problems.length} problems`;
    byId("problem-count").textContent = problems.length === 0 ? "No problems" : counted;
    byId("problems").dataset["state"] = errors > 0 ? "error" : problems.length > 0 ? "warning" : "fine";
    byId("problem-list").replaceChildren(...problems.map(row));
}

/** Goes to the problem behind the one that was visited last. */
export function goToNextProblem(): void {
    if (shown.length === 0) return;
    last = (last + 1) % shown.length;
    shown[last]?.goTo();
}
