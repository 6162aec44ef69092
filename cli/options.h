#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tavrin::cli {

/// What the program can be asked to do.
enum class Verb : unsigned char { render, tree, layout, targets, check, fetch, completion };

/// How a verb is explained; `verbs()` has them in the order of `Verb`.
struct VerbInfo {
    std::string_view name;
    std::string_view operands;
    std::string_view summary;
    std::string_view examples;
};

[[nodiscard]] const std::array<VerbInfo, 7>& verbs();

/// What a shell offers behind an option.
enum class Completes : unsigned char { nothing, words, file, folder };

/// One option: how it is written, explained and completed. Parsing, help and completion scripts all read this list.
struct OptionInfo {
    std::string_view name;   ///< "--family"
    std::string_view value;  ///< what stands behind it, "NAME"; empty for a flag
    std::string_view help;
    Completes completes = Completes::nothing;
    std::vector<std::string> words = {};  ///< the values it takes, or the usual ones
    bool onlyRender = false;
    std::string_view shortName = {};  ///< "-o"
};

[[nodiscard]] const std::vector<OptionInfo>& options();

/// Whether a verb takes an option.
[[nodiscard]] bool takes(Verb verb, const OptionInfo& option);

/// The shells that completion scripts are written for.
inline constexpr std::array<std::string_view, 3> shells{"bash", "zsh", "fish"};

/// The words of an option that takes nothing else.
inline constexpr std::array<std::string_view, 2> appearanceWords{"light", "dark"};
inline constexpr std::array<std::string_view, 2> errorFormatWords{"text", "json"};
inline constexpr std::array<std::string_view, 3> pictureFormatWords{"png", "svg", "pdf"};
inline constexpr std::array<std::string_view, 2> compressionWords{"fast", "small"};
inline constexpr std::array<std::string_view, 3> fetchWords{"none", "public", "all"};  // in the order of `FetchPolicy`

}  // namespace tavrin::cli
