// SPDX-License-Identifier: MIT
#include "cli/terminal.h"

#include <cstdlib>
#include <string_view>
#include <sys/ioctl.h>
#include <unistd.h>

namespace tavrin::cli {
namespace {

std::string_view variable(const char* name) {
    const char* const value = std::getenv(name);
    return value ? value : "";
}

}  // namespace

bool standardErrorIsTerminal() { return ::isatty(STDERR_FILENO) == 1; }

bool standardErrorHasColor() {
    return standardErrorIsTerminal() && variable("NO_COLOR").empty() && variable("TERM") != "dumb";
}

std::size_t standardErrorColumns() {
    constexpr std::size_t usual = 80;
    winsize size{};
    if (::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return usual;
    return size.ws_col;
}

}  // namespace tavrin::cli
