// SPDX-License-Identifier: MIT

// One JSON editor.
import { autocompletion, closeBrackets, closeBracketsKeymap, completionKeymap } from "@codemirror/autocomplete";
import type { CompletionSource } from "@codemirror/autocomplete";
import { defaultKeymap, history, historyKeymap } from "@codemirror/commands";
import { json, jsonLanguage } from "@codemirror/lang-json";
import { bracketMatching, foldGutter, foldKeymap, indentOnInput, syntaxHighlighting } from "@codemirror/language";
import { lintGutter, lintKeymap, setDiagnostics } from "@codemirror/lint";
import type { Diagnostic } from "@codemirror/lint";
import { highlightSelectionMatches, searchKeymap } from "@codemirror/search";
import { EditorState, StateEffect, StateField } from "@codemirror/state";
import type { Extension } from "@codemirror/state";
import {
    Decoration,
    EditorView,
    drawSelection,
    highlightActiveLine,
    highlightActiveLineGutter,
    hoverTooltip,
    keymap,
    lineNumbers,
    placeholder,
} from "@codemirror/view";
import type { DecorationSet, HoverTooltipSource } from "@codemirror/view";
import { classHighlighter } from "@lezer/highlight";
import type { Step } from "./api";
import { nodeAt } from "./json_places";

export interface EditorOptions {
    label: string;
    /** What stands there while it is empty. */
    hint: string;
    parent: HTMLElement;
    completion: CompletionSource;
    hover?: HoverTooltipSource;
    changed: () => void;
    moved?: () => void;
}

const markPlace = StateEffect.define<{ from: number; to: number } | null>();

/** The place of the view that is looked at elsewhere. */
const markedPlace = StateField.define<DecorationSet>({
    create: () => Decoration.none,
    update(marks, transaction) {
        let marked = marks.map(transaction.changes);
        for (const effect of transaction.effects)
            if (effect.is(markPlace))
                marked =
                    effect.value && effect.value.from < effect.value.to
                        ? Decoration.set(
                              Decoration.mark({ class: "marked-place" }).range(effect.value.from, effect.value.to),
                          )
                        : Decoration.none;
        return marked;
    },
    provide: (field) => EditorView.decorations.from(field),
});

function extensions(options: EditorOptions): Extension[] {
    const nonce = document.querySelector<HTMLScriptElement>("script[nonce]")?.nonce ?? "";
    return [
        EditorView.cspNonce.of(nonce),
        lineNumbers(),
        foldGutter(),
        history(),
        drawSelection(),
        indentOnInput(),
        bracketMatching(),
        closeBrackets(),
        autocompletion({ activateOnTypingDelay: 0 }),
        highlightActiveLine(),
        highlightActiveLineGutter(),
        highlightSelectionMatches(),
        lintGutter(),
        markedPlace,
        placeholder(options.hint),
        json(),
        jsonLanguage.data.of({ autocomplete: options.completion }),
        options.hover ? hoverTooltip(options.hover, { hoverTime: 250 }) : [],
        syntaxHighlighting(classHighlighter),
        keymap.of([
            ...closeBracketsKeymap,
            ...defaultKeymap,
            ...searchKeymap,
            ...historyKeymap,
            ...foldKeymap,
            ...completionKeymap,
            ...lintKeymap,
        ]),
        EditorState.tabSize.of(2),
        EditorView.contentAttributes.of({ "aria-label": options.label }),
        EditorView.updateListener.of((update) => {
            if (update.docChanged) options.changed();
            if (update.selectionSet || update.docChanged) options.moved?.();
        }),
    ];
}

export class Editor {
    readonly view: EditorView;
    private readonly extensions: Extension[];

    constructor(options: EditorOptions) {
        this.extensions = extensions(options);
        this.view = new EditorView({ parent: options.parent, extensions: this.extensions });
    }

    get text(): string {
        return this.view.state.doc.toString();
    }

    /** Shows another text; its history begins anew. */
    open(text: string): void {
        this.view.setState(EditorState.create({ doc: text, extensions: this.extensions }));
    }

    /** Takes over a changed text and leaves the cursor, and what is the same, where it is. */
    replace(text: string): void {
        const old = this.text;
        let start = 0;
        const shorter = Math.min(old.length, text.length);
        while (start < shorter && old[start] === text[start]) start++;
        let end = 0;
        while (end < shorter - start && old[old.length - 1 - end] === text[text.length - 1 - end]) end++;
        this.view.dispatch({
            changes: { from: start, to: old.length - end, insert: text.slice(start, text.length - end) },
        });
    }

    show(diagnostics: Diagnostic[]): void {
        this.view.dispatch(setDiagnostics(this.view.state, diagnostics));
    }

    /** Marks the value that a path leads to, or nothing; scrolls to it where asked. */
    mark(path: Step[] | null, scrolls = false): void {
        const node = path ? nodeAt(this.view.state, path) : null;
        const effects: StateEffect<unknown>[] = [markPlace.of(node ? { from: node.from, to: node.to } : null)];
        if (node && scrolls) effects.push(EditorView.scrollIntoView(node.from, { y: "start", yMargin: 60 }));
        this.view.dispatch({ effects });
    }

    /** Puts the cursor at a place and the focus into the editor. */
    goTo(from: number): void {
        const at = Math.min(from, this.view.state.doc.length);
        this.view.dispatch({
            selection: { anchor: at },
            effects: EditorView.scrollIntoView(at, { y: "center" }),
        });
        this.view.focus();
    }
}
