// SPDX-License-Identifier: MIT
#include "cli/options.h"

#include <algorithm>

#include "cli/embedded_file.h"
#include "cli/new/widget_template.h"
#include "tavrin/doors/option_values.h"
#include "tavrin/platform/ui/widget_family.h"

/// This project's licence and the notices of all that the program carries in itself.
TAVRIN_EMBEDDED_FILE(licenses, TAVRIN_LICENSES)

namespace tavrin::cli {
namespace {

template <class Words = std::initializer_list<std::string_view>>
std::vector<std::string> listOf(const Words& words) {
    return {words.begin(), words.end()};
}

/// An option that all doors have; `more` says what depends on the verb, or what there is none of elsewhere.
OptionInfo shared(OptionName name, std::string_view value, VerbSet takers, std::string_view usual = {},
                  Completes completes = Completes::nothing, std::vector<std::string> words = {}) {
    const Option& option = describe(name);
    std::string help(option.sentence);
    if (usual.empty()) usual = option.usual;
    if (!usual.empty()) help.append(" (").append(usual).append(")");
    if (words.empty()) words = listOf(option.words);
    if (completes == Completes::nothing && !words.empty()) completes = Completes::words;
    if (option.kind == OptionKind::folder) completes = Completes::folder;
    return {spelled(name, Spelling::kebab), value, takers, std::move(help), completes, std::move(words)};
}

std::vector<std::string> with(std::string_view word, std::vector<std::string> words) {
    words.emplace_back(word);
    return words;
}

std::vector<std::string> withAll(std::vector<std::string> words) { return with("all", std::move(words)); }

std::vector<std::string> templateNames() {
    std::vector<std::string> names;
    for (const WidgetTemplate& each : widgetTemplates()) names.emplace_back(each.name);
    return names;
}

}  // namespace

std::span<const VerbInfo> verbs() {
    static constexpr VerbInfo list[] = {
        {"new", "NAME [--template TEMPLATE]", "Make a document, a model and settings to begin with",
         "  tavrin new habits                                     habits.json, habits.model.json, habits.widget.toml\n"
         "  tavrin new --list                                     what to begin with\n"
         "  tavrin new widgets/train --template countdown"},
        {"render", "DOC... [-o OUT] [options]", "Draw widgets as PNG, SVG, PDF, WebP or JPEG",
         "  tavrin render weather.json --model today.json         writes weather.png\n"
         "  tavrin render weather.json -o dark.svg --appearance dark\n"
         "  tavrin render weather.json -o weather.jpg --quality 90\n"
         "  tavrin render examples/*.json -o out/ --family systemSmall --rounded\n"
         "  tavrin render clock.json -o clock.webp --frames 2026-03-01T09:41:00Z..2026-03-01T09:42:00Z\n"
         "  tavrin render widgets/*.json -o out/ --families all --appearances all --scales 2,3\n"
         "  tavrin render - -o - <weather.json >weather.png       pictures through pipes\n"
         "  tavrin render --jsonl <<<'{\"name\": \"weather.json\", \"output\": \"weather.png\"}'"},
        {"tree", "DOC [options]", "Print the view tree as JSON", "  tavrin tree weather.json --model today.json"},
        {"layout", "DOC [options]", "Print the view tree with every view's frame, in points, as JSON",
         "  tavrin layout weather.json --family systemLarge\n"
         "  tavrin layout weather.json --size 200x100"},
        {"targets", "DOC [options]", "Print where the widget can be tapped and what opens then, as JSON",
         "  tavrin targets shortcuts.json --model model.json"},
        {"explain", "DOC [PATH] [options]",
         "Say why each view, or those at a path of the document, have their size and place",
         "  tavrin explain weather.json                           every view in a line\n"
         "  tavrin explain weather.json 'nodes.main.children[0]'  one in sentences\n"
         "  tavrin explain weather.json --family systemSmall --format json"},
        {"check", "DOC... [options]", "Print what is wrong or doubtful in documents, without drawing them",
         "  tavrin check widgets --strict                         every document in a folder\n"
         "  tavrin check weather.json --fix                       mends what can be mended safely\n"
         "  tavrin check widgets/*.json --format sarif >check.sarif\n"
         "  tavrin check weather.json --model today.json --errors json"},
        {"snapshot", "DOC... --dir DIR [options]",
         "Compare pictures and trees with those recorded before, and record new ones",
         "  tavrin snapshot widgets/*.json --dir snapshots --families all --appearances all\n"
         "  tavrin snapshot widgets/*.json --dir snapshots --update   after looking at what differs"},
        {"fetch", "DOC... --image-cache-dir DIR [options]", "Download the pictures that documents name into a folder",
         "  tavrin fetch news.json --model today.json --image-cache-dir pictures\n"
         "  tavrin render news.json --model today.json --image-cache-dir pictures"},
        {"schema", "[options]", "Print a JSON Schema of documents, with which editors complete and check them",
         "  tavrin schema >widget.schema.json                     and in a document \"$schema\": "
         "\"widget.schema.json\""},
        {"preview", "[DIR] [options]", "Show a folder's documents in the browser and draw them while they are edited",
         "  tavrin preview widgets                                prints the address to open\n"
         "  tavrin preview widgets --port 8080"},
        {"serve", "[DIR] [options]", "Answer HTTP requests with pictures of a folder's documents, or of what is sent",
         "  tavrin serve widgets                                  http://127.0.0.1:8080/v1/widgets/weather.png\n"
         "  tavrin serve widgets --listen [::1]:9000 --key-file keys\n"
         "  tavrin serve --config serve.toml                      max-body = \"1MiB\", or in the environment\n"
         "                                                        TAVRIN_MAX_BODY=1MiB"},
        {"sign", "PATH... --key-file FILE [options]", "Print paths with the signature that a server of pictures wants",
         "  tavrin sign '/v1/widgets/weather.png?family=systemSmall' --key-file keys\n"
         "  tavrin sign /v1/widgets/weather.png --key-file keys --expires 2026-12-01T00:00:00Z"},
        {"completion", "bash|zsh|fish", "Print a script that completes commands in a shell",
         "  tavrin completion bash >~/.local/share/bash-completion/completions/tavrin\n"
         "  tavrin completion zsh >~/.zfunc/_tavrin               in a folder of $fpath\n"
         "  tavrin completion fish >~/.config/fish/completions/tavrin.fish"},
        {"help", "[VERB]", "Explain the program or a verb", "  tavrin help render"},
    };
    static_assert([] { return std::ranges::equal(list, enumeratorNames<Verb>, {}, &VerbInfo::name); }());
    return list;
}

std::span<const InformationOption> informationOptions() {
    static const InformationOption list[] = {
        {"--version", "Print the version", "tavrin " TAVRIN_VERSION "\n"},
        {"--licenses", "Print the licences of the program and its parts", licenses()},
    };
    return list;
}

const std::vector<OptionInfo>& options() {
    static constexpr VerbSet onlyRender{Verb::render};
    static constexpr VerbSet onlyCheck{Verb::check};
    static constexpr VerbSet onlySnapshot{Verb::snapshot};
    static constexpr VerbSet drawn = onlyRender.with(Verb::snapshot);
    static constexpr VerbSet looked = drawn.with(Verb::check);
    static constexpr VerbSet laidOut{Verb::render,  Verb::tree,  Verb::layout,  Verb::targets,
                                     Verb::explain, Verb::check, Verb::snapshot};
    static constexpr VerbSet onlyServe{Verb::serve};
    static constexpr VerbSet placed = laidOut.with(Verb::serve);
    static constexpr VerbSet loaded = laidOut.with(Verb::fetch);
    static constexpr VerbSet shown = placed.with(Verb::preview);
    static constexpr VerbSet budgeted = loaded.with(Verb::preview).with(Verb::serve);
    static constexpr VerbSet every =
        budgeted.with(Verb::newWidget).with(Verb::schema).with(Verb::sign).with(Verb::completion).with(Verb::help);
    static const std::vector<OptionInfo> all{
        {"--template", "TEMPLATE", VerbSet(Verb::newWidget), "What to begin with (number)", Completes::words,
         templateNames()},
        {"--list", "", VerbSet(Verb::newWidget), "Print the templates"},
        {"--output", "OUT", onlyRender,
         "The picture's file, in the format of its suffix; \"-\" is standard output. Of several documents the folder "
         "for all pictures; where several families, appearances, scales, models or dates are given, the folder for "
         "every combination, index.json and a contact sheet, index.html. Without it each document's name with the "
         "format's suffix, in the working directory",
         Completes::file, listOf({}), "-o"},
        {"--format", "FORMAT", onlyRender,
         "png, svg, pdf, webp or jpeg, or png, apng or webp of frames, where OUT's suffix does not tell (png)",
         Completes::words, listOf({"png", "svg", "pdf", "webp", "jpeg", "apng"})},
        {"--format", "FORMAT", onlyCheck,
         "How findings are written: text, on standard error, or json, sarif or github, on standard output (text)",
         Completes::words, listOf(checkFormatWords)},
        {"--fix", "", onlyCheck, "Mend what can be mended safely in the documents themselves"},
        {"--strict", "", onlyCheck, "Warnings, too, make the exit status 1"},
        {"--notes", "", onlyCheck, "Print notes, too: what is worth knowing, but no fault"},
        {"--format", "text|json", VerbSet(Verb::explain), "As text for people or as JSON for programs (text)",
         Completes::words, listOf(textFormatWords)},
        {"--dir", "DIR", onlySnapshot, "The folder that keeps NAME.png and NAME.json for each picture",
         Completes::folder},
        {"--output", "DIR", onlySnapshot,
         "The folder for pictures of what differs, before, after, and what differs in red, and a page of all of them, "
         "index.html (failures, in --dir)",
         Completes::folder, listOf({}), "-o"},
        {"--format", "FORMAT", onlySnapshot,
         "How standard output tells what came of it: text, github (workflow commands), junit (XML) or json (text)",
         Completes::words, listOf(snapshotFormatWords)},
        {"--update", "", onlySnapshot, "Replace the snapshots that differ"},
        {"--strict", "", onlySnapshot,
         "Fail where there is no snapshot yet, instead of recording it, and where one belongs to no picture"},
        {"--tolerance", "N", onlySnapshot, "How far a channel of a pixel may be off, up to 255 (0)"},
        {"--model", "FILE", loaded,
         "The model document; \"-\" is standard input (NAME.model.json or model.json beside NAME.json)",
         Completes::file},
        shared(OptionName::family, "NAME", placed),
        {"--families", "NAME,...|all|meant", looked,
         "Each of several families, all that the screen has, or those that a widget is meant for by its settings; so "
         "it is where several pictures are asked for, checked or compared",
         Completes::words, with("meant", withAll(listOf(widgetFamilyNames)))},
        {"--appearances", "light,dark|all", looked, "Each of several appearances; `check` looks at all",
         Completes::words, withAll(listOf(appearanceWords))},
        {"--scales", "N,...", drawn, "Draw at each of several scales, such as 2,3"},
        {"--models", "DIR|FILE", onlyRender,
         "Draw with each model document (*.json) in a folder, or with each line of a file (JSON Lines; \"-\" is "
         "standard "
         "input). Of a file's, however many, each picture is written as soon as it is drawn, whole or not at all",
         Completes::file},
        {"--key", "KEY", onlyRender,
         "With --models FILE: which member of a model, such as id or person.id, names its picture (the line's number)"},
        {"--models", "DIR", onlySnapshot, "Draw with each model document (*.json) in a folder", Completes::folder},
        {"--jsonl", "", onlyRender,
         "Draw what each line of standard input asks for, an object of document or name, model, options and output, "
         "and answer it with a line of JSON on standard output: one process for thousands of pictures. What else "
         "stands here holds where a line says nothing, and behind that what lies beside a document that it names"},
        {"--dates", "RFC3339,...", drawn, "Draw each of several moments"},
        shared(OptionName::hashes, "", onlyRender, "in index.json, where there is one"),
        shared(OptionName::screen, "WxH", placed, {}, Completes::words, screenWords(knownScreens())),
        shared(OptionName::size, "WxH", laidOut),
        shared(OptionName::scale, "N", placed, {}, Completes::words, {"1", "2", "3"}),
        shared(OptionName::appearance, "light|dark", placed),
        shared(OptionName::date, "RFC3339", laidOut,
               "now; of checks and snapshots that one, so that they can be repeated"),
        shared(OptionName::timeZone, "ID", placed, "the system's; of checks, snapshots and what is served UTC"),
        {"--image-cache-dir", "DIR", loaded.with(Verb::serve),
         "The folder in which pictures are looked for instead of on the network, and into which `tavrin fetch` puts "
         "them (pictures beside the document, where it is there)",
         Completes::folder},
        shared(OptionName::maxImageSize, "WxH", shown),
        shared(OptionName::fetch, "none|public|all", loaded.with(Verb::serve), "all; of what is served public"),
        {"--fail-on-missing", "", onlyRender.with(Verb::check),
         "A picture that cannot be had, or may not be fetched, is an error, and not only left out"},
        {"--offline", "", laidOut.with(Verb::preview), "Fetch nothing: short for --fetch none"},
        shared(OptionName::fontDir, "DIR", shown, "the system's"),
        shared(OptionName::budget, "usual|strangers", budgeted, "usual; of what is served strangers"),
        shared(OptionName::budgetSteps, "N", budgeted),
        shared(OptionName::budgetPixels, "N", budgeted),
        shared(OptionName::budgetBytes, "N", budgeted),
        shared(OptionName::budgetSeconds, "S", budgeted, "as long as it needs; in the preview 10, of what is served 2"),
        shared(OptionName::background, "COLOR|none|auto", drawn.with(Verb::check).with(Verb::serve), {},
               Completes::words, listOf({"auto", "none"})),
        shared(OptionName::rounded, "", drawn.with(Verb::serve)),
        {"--frames", "FROM..TO", onlyRender,
         "Draw the moments of a span, such as 2026-03-01T09:41:00Z..2026-03-01T09:42:00Z, instead of one: as an "
         "animation where OUT ends in .png, .apng or .webp, as numbered PNGs where it is a folder or has a place for "
         "the number, such as clock-%04d.png"},
        {"--every", "SECONDS", onlyRender, "With --frames: the step from moment to moment (1)"},
        {"--fps", "N", onlyRender,
         "With --frames: how many moments an animation shows in a second, up to 100 (as time passes)", Completes::words,
         listOf({"10", "25", "50"})},
        shared(OptionName::compression, "fast|balanced|small", onlyRender.with(Verb::serve)),
        shared(OptionName::quality, "N", onlyRender.with(Verb::serve), {}, Completes::words,
               listOf({"75", "85", "95"})),
        {"--port", "N", VerbSet(Verb::preview), "The port on 127.0.0.1 (any that is free)"},
        {"--listen", "ADDRESS", onlyServe,
         "The address and port that are listened to, such as [::1]:9000; port 0 is any that is free (127.0.0.1:8080)"},
        {"--workers", "N", onlyServe, "How many pictures are drawn at once (as many as there are processors)"},
        {"--queue", "N", onlyServe, "How many requests wait to be drawn; more are told to come again (64)"},
        {"--max-body", "SIZE", onlyServe, "How large the body of a request may be, in bytes or such as 256KiB (1MiB)"},
        {"--time-limit", "S", onlyServe, "How long a request may take, in seconds (2)"},
        {"--cache", "SIZE", onlyServe, "How many bytes of finished pictures are kept; 0 is none (64MiB)"},
        {"--cors", "ORIGIN", onlyServe,
         "Whose pages may read the answers, such as https://example.com; * is everybody's (nobody's)"},
        {"--open-post", "", onlyServe, "Draw documents that anybody sends, also with --key-file"},
        {"--config", "FILE", onlyServe,
         "A TOML file of these options without their dashes, such as max-body = \"1MiB\". What the command line says "
         "comes first, then the environment: TAVRIN_MAX_BODY",
         Completes::file},
        {"--key-file", "FILE", VerbSet(Verb::serve, Verb::sign),
         "The keys of signed addresses, one a line: `tavrin sign` takes the first, `tavrin serve` accepts each; \"-\" "
         "is standard input",
         Completes::file},
        {"--expires", "WHEN", VerbSet(Verb::sign),
         "When the address ceases to hold: a date and time such as 2026-12-01T00:00:00Z, or seconds since 1970 "
         "(never)"},
        {"--errors", "text|json", every,
         "How a failure is written on standard error (text). Of what is no failure json tells nothing; `check --format "
         "json` does",
         Completes::words, listOf(textFormatWords)},
    };
    return all;
}

}  // namespace tavrin::cli
