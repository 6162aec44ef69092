// SPDX-License-Identifier: MIT
#include "cli/completion.h"
#include "cli/options.h"

namespace tavrin::cli {
namespace {

std::string inFishQuotes(std::string_view text) {
    std::string safe = "'";
    for (const char c : text) {
        if (c == '\'' || c == '\\') safe += '\\';
        safe += c;
    }
    return safe + "'";
}

/// What fish is told about the value behind an option.
std::string value(const OptionInfo& option) {
    if (option.value.empty()) return "";
    switch (option.completes) {
        case Completes::words: return " -x -a " + inFishQuotes(joined(option.words));
        case Completes::file: return " -r -F";
        case Completes::folder: return " -x -a '(__fish_complete_directories)'";
        case Completes::nothing: break;
    }
    return " -x";
}

std::string seen(const std::string& verbNames) {
    return "complete -c tavrin -n '__fish_seen_subcommand_from " + verbNames + "'";
}

std::string completeLine(const OptionInfo& option) {
    std::vector<std::string_view> takers;
    for (const Verb verb : enumerators<Verb>)
        if (option.takers.contains(verb)) takers.push_back(name(verb));
    const std::string shortName = option.shortName.empty() ? "" : " -s " + std::string(option.shortName.substr(1));
    return seen(joined(takers)) + shortName + " -l " + std::string(option.name.substr(2)) + value(option) + " -d " +
           inFishQuotes(option.help) + "\n";
}

}  // namespace

std::string fishCompletion() {
    std::string script =
        "# fish completion for tavrin\n"
        "complete -c tavrin -n __fish_use_subcommand -f\n"
        "complete -c tavrin -s h -l help -d 'Print help'\n";
    for (const InformationOption& option : informationOptions())
        script += "complete -c tavrin -n __fish_use_subcommand -l " + std::string(option.name.substr(2)) + " -d " +
                  inFishQuotes(option.help) + "\n";
    for (const VerbInfo& verb : verbs())
        script += "complete -c tavrin -n __fish_use_subcommand -a " + std::string(verb.name) + " -d " +
                  inFishQuotes(verb.summary) + "\n";
    for (const OptionInfo& option : options()) script += completeLine(option);
    script += seen("schema") + " -f\n";
    script += seen("help") + " -f -a " + inFishQuotes(joined(verbNames())) + "\n";
    return script + seen("completion") + " -f -a " + inFishQuotes(joined(shells)) + "\n";
}

}  // namespace tavrin::cli
