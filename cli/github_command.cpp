// SPDX-License-Identifier: MIT
#include "cli/github_command.h"

#include "tavrin/platform/foundation/net/percent_encoding.h"

namespace tavrin::cli {
namespace {

std::string withoutSpecial(std::string_view text, std::string_view special) {
    return percentEncoded(text, [&](char c) { return special.find(c) == std::string_view::npos; });
}

}  // namespace

std::string githubProperty(std::string_view text) { return withoutSpecial(text, "%\r\n:,"); }

std::string githubCommand(std::string_view command, const std::string& properties, std::string_view message) {
    return "::" + std::string(command) + " " + properties + "::" + withoutSpecial(message, "%\r\n") + "\n";
}

}  // namespace tavrin::cli
