// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace tavrin::cli {

/// A value of a workflow command's property.
[[nodiscard]] std::string githubProperty(std::string_view text);

/// A workflow command, which GitHub shows beside a text: "::error file=a.json,line=3::…" and a line's end. `properties`
/// are written out, their values by `githubProperty`.
[[nodiscard]] std::string githubCommand(std::string_view command, const std::string& properties,
                                        std::string_view message);

}  // namespace tavrin::cli
