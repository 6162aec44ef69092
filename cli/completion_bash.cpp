// SPDX-License-Identifier: MIT
#include <algorithm>

#include "cli/completion.h"
#include "cli/options.h"

namespace tavrin::cli {
namespace {

std::string names(const OptionInfo& option, std::string_view separator) {
    return std::string(option.name) +
           (option.shortName.empty() ? "" : std::string(separator) + std::string(option.shortName));
}

std::string compgen(const std::string& what) { return "COMPREPLY=($(compgen " + what + " -- \"$current\"))"; }

/// What "VERB OPTION" must match where an option's value is to be completed: of an option that several verbs take in
/// their own ways, the verb as well.
std::string pattern(const OptionInfo& option) {
    const auto namesakes = std::ranges::count(options(), option.name, &OptionInfo::name);
    std::vector<std::string> patterns;
    for (const std::string_view name : {std::string_view(option.name), option.shortName}) {
        if (name.empty()) continue;
        if (namesakes == 1) patterns.push_back("*\\ " + std::string(name));
        for (const Verb verb : enumerators<Verb>)
            if (namesakes > 1 && option.takers.contains(verb))
                patterns.push_back(std::string(tavrin::name(verb)) + "\\ " + std::string(name));
    }
    return joined(patterns, "|");
}

/// The branch of a `case` that completes the value behind an option.
std::string valueBranch(const OptionInfo& option) {
    std::string action;
    switch (option.completes) {
        case Completes::nothing: action = ":"; break;
        case Completes::words: action = compgen("-W '" + joined(option.words) + "'"); break;
        case Completes::file: action = "compopt -o default 2>/dev/null"; break;
        case Completes::folder: action = compgen("-d"); break;
    }
    return "        " + pattern(option) + ") " + action + "; return ;;\n";
}

std::string optionBranch(Verb verb) {
    std::vector<std::string> words{"--help"};
    for (const OptionInfo& option : options())
        if (option.takers.contains(verb)) words.push_back(names(option, " "));
    return "        " + std::string(name(verb)) + ") words='" + joined(words) + "' ;;\n";
}

}  // namespace

std::string bashCompletion() {
    std::string script =
        "# bash completion for tavrin\n"
        "_tavrin() {\n"
        "    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}\n"
        "    local verb='' words='' index\n"
        "    COMPREPLY=()\n"
        "    for ((index = 1; index < COMP_CWORD; index++)); do\n"
        "        case ${COMP_WORDS[index]} in\n"
        "        " +
        joined(verbNames(), "|") +
        ")\n"
        "            verb=${COMP_WORDS[index]}\n"
        "            break\n"
        "            ;;\n"
        "        esac\n"
        "    done\n"
        "    case \"$verb $previous\" in\n";
    for (const OptionInfo& option : options())
        if (!option.value.empty()) script += valueBranch(option);
    script +=
        "    esac\n"
        "    case $verb in\n"
        "        '') words='" +
        joined(verbNames()) + " --help";
    for (const InformationOption& option : informationOptions()) script += " " + std::string(option.name);
    script += "' ;;\n";
    for (const Verb verb : enumerators<Verb>) script += optionBranch(verb);
    return script +
           "    esac\n"
           "    if [[ -z $verb || $current == -* ]]; then\n"
           "        " +
           compgen("-W \"$words\"") +
           "\n"
           "    elif [[ $verb == completion ]]; then\n"
           "        " +
           compgen("-W '" + joined(shells) + "'") +
           "\n"
           "    elif [[ $verb == help ]]; then\n"
           "        " +
           compgen("-W '" + joined(verbNames()) + "'") +
           "\n"
           "    elif [[ $verb != schema ]]; then\n"
           "        compopt -o default 2>/dev/null\n"
           "    fi\n"
           "}\n"
           "complete -F _tavrin tavrin\n";
}

}  // namespace tavrin::cli
