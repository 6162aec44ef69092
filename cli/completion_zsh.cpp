// SPDX-License-Identifier: MIT
#include "cli/completion.h"
#include "cli/options.h"

namespace tavrin::cli {
namespace {

/// Text that may stand within '…' in an `_arguments` line.
std::string escaped(std::string_view text) {
    std::string safe;
    for (const char c : text) {
        if (c == '\'') {
            safe += "'\\''";
            continue;
        }
        if (std::string_view("[]:\\").find(c) != std::string_view::npos) safe += '\\';
        safe += c;
    }
    return safe;
}

std::string action(const OptionInfo& option) {
    switch (option.completes) {
        case Completes::words: return "(" + joined(option.words) + ")";
        case Completes::file: return "_files";
        case Completes::folder: return "_files -/";
        case Completes::nothing: break;
    }
    return "";
}

/// The line of `_arguments` for one option.
std::string argumentLine(const OptionInfo& option) {
    const std::string help = "[" + escaped(option.help) + "]";
    const std::string value = option.value.empty() ? "" : ":" + escaped(option.value) + ":" + action(option);
    const std::string name(option.name);
    if (option.shortName.empty()) return " \\\n                '" + name + help + value + "'";
    const std::string both = std::string(option.shortName) + "," + name;
    const std::string exclusive = "(" + std::string(option.shortName) + " " + name + ")";
    return " \\\n                '" + exclusive + "'{" + both + "}'" + help + value + "'";
}

std::string branch(Verb verb) {
    std::string text = "            " + std::string(name(verb)) +
                       ")\n                _arguments '(-h --help)'{-h,--help}'[Print help]'";
    for (const OptionInfo& option : options())
        if (option.takers.contains(verb)) text += argumentLine(option);
    if (verb == Verb::schema) return text + "\n                ;;\n";
    const std::string operand = verb == Verb::help         ? "1:verb:(" + joined(verbNames()) + ")"
                                : verb == Verb::completion ? "1:shell:(" + joined(shells) + ")"
                                : verb == Verb::tree || verb == Verb::layout || verb == Verb::explain
                                    ? "1:document:_files"
                                    : "*:document:_files";
    return text + " \\\n                '" + operand + "'\n                ;;\n";
}

}  // namespace

std::string zshCompletion() {
    std::string script =
        "#compdef tavrin\n"
        "_tavrin() {\n"
        "    local context state state_descr line\n"
        "    typeset -A opt_args\n"
        "    local -a verbs=(\n";
    for (const VerbInfo& verb : verbs())
        script += "        '" + std::string(verb.name) + ":" + escaped(verb.summary) + "'\n";
    script +=
        "    )\n"
        "    _arguments -C '(-h --help)'{-h,--help}'[Print help]'";
    for (const InformationOption& option : informationOptions())
        script += " '" + std::string(option.name) + "[" + escaped(option.help) + "]'";
    script +=
        " '1:verb:->verb' '*::argument:->argument'\n"
        "    case $state in\n"
        "    verb)\n"
        "        _describe verb verbs\n"
        "        ;;\n"
        "    argument)\n"
        "        case $words[1] in\n";
    for (const Verb verb : enumerators<Verb>) script += branch(verb);
    return script +
           "        esac\n"
           "        ;;\n"
           "    esac\n"
           "}\n"
           "compdef _tavrin tavrin\n"
           "[ \"$funcstack[1]\" != _tavrin ] || _tavrin \"$@\"\n";
}

}  // namespace tavrin::cli
