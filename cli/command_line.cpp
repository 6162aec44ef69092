// SPDX-License-Identifier: MIT
#include "cli/command_line.h"

#include <algorithm>
#include <memory>
#include <utility>

#include <CLI/CLI.hpp>

#include "cli/usage_error.h"
#include "tavrin/doors/option_values.h"
#include "tavrin/doors/words.h"

namespace tavrin::cli {
namespace {

constexpr std::size_t helpColumns = 80;
constexpr std::size_t optionColumns = 28;

/// Help that begins with how a command is written.
class HelpFormatter : public CLI::Formatter {
public:
    explicit HelpFormatter(std::string usage) : usage_(std::move(usage)) { column_width(optionColumns); }

    std::string make_usage(const CLI::App*, std::string) const override { return "\nUsage: " + usage_ + "\n"; }

private:
    std::string usage_;
};

std::string optionNames(const OptionInfo& option) {
    return (option.shortName.empty() ? "" : std::string(option.shortName) + ",") + std::string(option.name);
}

/// A help text broken into lines of at most `width` columns.
std::string wrapped(std::string_view text, std::size_t width) {
    std::string lines;
    while (text.size() > width) {
        const std::size_t blank = text.rfind(' ', width);
        if (blank == std::string_view::npos) break;
        lines += std::string(text.substr(0, blank)) + "\n";
        text.remove_prefix(blank + 1);
    }
    return lines += text;
}

void addOption(CLI::App& app, const OptionInfo& option) {
    const std::string help = wrapped(option.help, helpColumns - optionColumns);
    if (option.value.empty())
        app.add_flag(optionNames(option), help);
    else
        app.add_option(optionNames(option), help)
            ->option_text(std::string(option.value))
            ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);  // `takeValues` refuses a second one
}

const OptionInfo& optionNamed(std::string_view name) { return *std::ranges::find(options(), name, &OptionInfo::name); }

/// The families and screens, of verbs that take them.
std::string sizesText(Verb verb) {
    if (!optionNamed("--family").takers.contains(verb)) return {};
    return wrapped("Families: " + joined(widgetFamilyNames, ", "), helpColumns) + "\n" +
           wrapped("Screens: " + joined(screenWords(knownScreens()), ", "), helpColumns) + "\n\n";
}

/// A verb that is not among the `words` is only listed: telling CLI11 of all options would take a twentieth of the time
/// in which a widget is drawn from scratch.
void addVerb(CLI::App& app, Verb verb, std::span<const std::string> words) {
    const VerbInfo& info = verbs()[indexOf(verb)];
    CLI::App& sub = *app.add_subcommand(std::string(info.name), std::string(info.summary));
    sub.allow_extras();
    sub.group("Verbs");
    if (std::ranges::find(words, info.name) == words.end()) return;
    sub.formatter(
        std::make_shared<HelpFormatter>("tavrin " + std::string(info.name) + " " + std::string(info.operands)));
    for (const OptionInfo& option : options())
        if (option.takers.contains(verb)) addOption(sub, option);
    sub.footer(sizesText(verb) + "Examples:\n" + std::string(info.examples));
}

void build(CLI::App& app, std::span<const std::string> words) {
    app.allow_extras();
    app.require_subcommand(0, 1);
    app.set_help_flag("-h,--help", "Print this help and exit");
    for (const InformationOption& option : informationOptions()) {
        const std::string help = std::string(option.help) + " and exit";
        addOption(app, {std::string(option.name), "", VerbSet(), help});
    }
    addOption(app, optionNamed("--errors"));
    app.formatter(std::make_shared<HelpFormatter>("tavrin VERB ... [options]"));
    for (const Verb verb : enumerators<Verb>) addVerb(app, verb, words);
    app.footer(
        "`tavrin help VERB` explains a verb. DOC is a file, or \"-\" for standard input.\n"
        "Exit status: 0 success, 1 a document, a model or the drawing failed, 2 the command line is wrong.\n\n"
        "Examples:\n"
        "  tavrin render weather.json --model today.json -o weather.png\n"
        "  tavrin check widgets/*.json");
}

[[noreturn]] void failUnknownOption(const std::string& word, std::span<const std::string_view> known) {
    const std::string_view name = std::string_view(word).substr(0, word.find('='));
    throw UsageError("there is no option " + std::string(name) + " here" + suggestion(name, known));
}

bool isOption(std::string_view word) { return word.size() > 1 && word.starts_with('-'); }

/// The words that CLI11 made nothing of must be operands.
void checkOperands(const std::vector<std::string>& operands, Verb verb) {
    const auto unknown = std::ranges::find_if(operands, isOption);
    if (unknown == operands.end()) return;
    std::vector<std::string_view> known{"--help"};
    for (const OptionInfo& option : options())
        if (option.takers.contains(verb)) known.push_back(option.name);
    failUnknownOption(*unknown, known);
}

void takeValues(const CLI::App& app, Command& command, Verb verb) {
    for (const OptionInfo& option : options()) {
        const CLI::Option* const given =
            option.takers.contains(verb) ? app.get_option_no_throw(std::string(option.name)) : nullptr;
        if (!given || given->count() == 0) continue;
        const bool isNew =
            command.values.emplace(option.name, option.value.empty() ? "" : given->results().front()).second;
        if (!isNew || (given->count() > 1 && !option.value.empty()))
            throw UsageError(std::string(option.name) + " is given twice");
    }
}

[[noreturn]] void failUnknownVerb(const std::string& word) {
    throw UsageError("there is no verb '" + word + "'" + suggestion(word, verbNames()));
}

/// What stands before the verb, or instead of it.
void checkBeforeVerb(const CLI::App& app) {
    const std::vector<std::string> unknown = app.remaining();
    if (unknown.empty()) return;
    std::vector<std::string_view> known{"--help"};
    for (const InformationOption& option : informationOptions()) known.push_back(option.name);
    known.emplace_back("--errors");
    if (isOption(unknown.front())) failUnknownOption(unknown.front(), known);
    failUnknownVerb(unknown.front());
}

/// Of `tavrin help`, the words that ask for the same.
std::vector<std::string> askedFor(const std::vector<std::string>& operands) {
    if (operands.empty()) return {"--help"};
    if (operands.size() > 1)
        throw UsageError("`tavrin help` explains one verb, not " + std::to_string(operands.size()));
    if (!enumeratorNamed<Verb>(operands.front())) failUnknownVerb(operands.front());
    return {operands.front(), "--help"};
}

}  // namespace

std::variant<Command, Information> parseCommandLine(std::span<const std::string> words) {
    CLI::App app("Renders home-screen widgets from small JSON documents.", "tavrin");
    build(app, words);
    // CLI11 takes words from the back, and has a meaning of its own for "--".
    const auto end = std::ranges::find(words, "--");
    std::vector<std::string> reversed(words.begin(), end);
    std::ranges::reverse(reversed);
    try {
        app.parse(std::move(reversed));
    } catch (const CLI::CallForHelp&) {
        checkBeforeVerb(app);  // no help is better than that of something else
        return Information{app.help()};
    } catch (const CLI::ArgumentMismatch&) {
        // Only the last word can lack what stands behind it.
        throw UsageError(*(end - 1) + " takes a value");
    } catch (const CLI::ParseError& error) {
        throw UsageError(error.what());
    }
    for (const InformationOption& option : informationOptions())
        if (app.count(std::string(option.name)) > 0) return Information{std::string(option.text)};
    checkBeforeVerb(app);
    if (app.get_subcommands().empty()) throw UsageError("a verb is missing: " + listed(verbNames()));

    const CLI::App& sub = *app.get_subcommands().front();
    const Verb verb = enumeratorNamed<Verb>(sub.get_name()).value();
    Command command{verb, sub.remaining(), {}};
    checkOperands(command.operands, verb);
    if (end != words.end()) command.operands.insert(command.operands.end(), end + 1, words.end());
    takeValues(app, command, verb);
    takeValues(sub, command, verb);
    if (verb == Verb::help) return parseCommandLine(askedFor(command.operands));
    return command;
}

}  // namespace tavrin::cli
