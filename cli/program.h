// SPDX-License-Identifier: MIT
#pragma once

namespace tavrin::cli {

/// The whole program; returns its exit status and lets no exception out.
[[nodiscard]] int runProgram(int argc, char** argv) noexcept;

}  // namespace tavrin::cli
