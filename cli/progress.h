// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

namespace tavrin::cli {

/// One line on a terminal that says how far the work is: "[###-----------------] 3/20 agenda.json". Nothing where
/// standard error is no terminal or there is but one thing to do.
class Progress {
public:
    explicit Progress(std::size_t total);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress() { hide(); }

    /// Shows that one thing more is done.
    void advance(const std::string& name);
    /// Takes the line away, so that other lines may be written.
    void hide();

private:
    std::size_t total_;
    std::size_t done_ = 0;
    std::size_t shownStep_ = 0;
    bool isOn_;
    bool isShown_ = false;
};

}  // namespace tavrin::cli
