// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tavrin/doors/option.h"
#include "tavrin/doors/option_words.h"
#include "tavrin/doors/words.h"
#include "tavrin/platform/foundation/enumerators.h"

namespace tavrin::cli {

/// What the program can be asked to do.
enum class Verb : unsigned char {
    newWidget,  ///< "new", which is a word of C++, too
    render,
    tree,
    layout,
    targets,
    explain,
    check,
    snapshot,
    fetch,
    schema,
    preview,
    serve,
    sign,
    completion,
    help
};

}  // namespace tavrin::cli

template <>
inline constexpr auto tavrin::enumeratorNames<tavrin::cli::Verb> = [
]<std::size_t... index>(std::index_sequence<index...>) {
    using tavrin::cli::Verb;
    std::array names{detail::spelledEnumerator<static_cast<Verb>(index)>()...};
    names[indexOf(Verb::newWidget)] = "new";
    return names;
}
(std::make_index_sequence<enumeratorCount<tavrin::cli::Verb>>());

namespace tavrin::cli {

/// For whom something is written: people or programs.
enum class TextFormat : unsigned char { text, json };

/// How `tavrin check` writes what it finds.
enum class CheckFormat : unsigned char { text, json, sarif, github };

/// How `tavrin snapshot` tells what came of it.
enum class SnapshotFormat : unsigned char { text, github, junit, json };

/// How a verb is explained.
struct VerbInfo {
    std::string_view name;
    std::string_view operands;
    std::string_view summary;
    std::string_view examples;
};

/// All verbs, in the order of `Verb`.
[[nodiscard]] std::span<const VerbInfo> verbs();
/// Their names, in that order.
[[nodiscard]] inline std::vector<std::string_view> verbNames() {
    return {enumeratorNames<Verb>.begin(), enumeratorNames<Verb>.end()};
}

/// Some of the verbs.
class VerbSet {
public:
    template <class... Verbs>
    constexpr explicit VerbSet(Verbs... verbs) : bits_((0U | ... | bit(verbs))) {}

    [[nodiscard]] constexpr bool contains(Verb verb) const { return (bits_ & bit(verb)) != 0; }
    [[nodiscard]] constexpr VerbSet with(Verb verb) const {
        VerbSet more = *this;
        more.bits_ |= bit(verb);
        return more;
    }

private:
    static constexpr unsigned bit(Verb verb) { return 1U << static_cast<unsigned>(verb); }

    unsigned bits_;
};

/// What a shell offers behind an option.
enum class Completes : unsigned char { nothing, words, file, folder };

/// One option: how it is written, explained and completed. Parsing, help and completion scripts all read this list.
struct OptionInfo {
    std::string name;        ///< "--family"
    std::string_view value;  ///< what stands behind it, "NAME"; empty for a flag
    VerbSet takers;          ///< the verbs that take it
    std::string help;
    Completes completes = Completes::nothing;
    std::vector<std::string> words = {};  ///< the values it takes, or the usual ones
    std::string_view shortName = {};      ///< "-o"
};

[[nodiscard]] const std::vector<OptionInfo>& options();

/// An option that stands instead of a verb: the program prints a text and exits.
struct InformationOption {
    std::string_view name;  ///< with dashes
    std::string_view help;
    std::string_view text;
};

[[nodiscard]] std::span<const InformationOption> informationOptions();

/// The shells that completion scripts are written for.
inline constexpr std::array<std::string_view, 3> shells{"bash", "zsh", "fish"};

/// The words of an option that takes nothing else.
inline constexpr const auto& textFormatWords = enumeratorNames<TextFormat>;
/// Of pictures behind `--frames`.
inline constexpr std::array<std::string_view, 3> frameFormatWords{"png", "apng", "webp"};
inline constexpr const auto& checkFormatWords = enumeratorNames<CheckFormat>;
inline constexpr const auto& snapshotFormatWords = enumeratorNames<SnapshotFormat>;

}  // namespace tavrin::cli
