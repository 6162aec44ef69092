// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <utility>
#include <vector>

#include "tavrin/json/json.h"

namespace tavrin::cli {

/// What a run of the program left.
struct Finished {
    int status = 0;  ///< the exit status, or minus the signal that ended it
    std::string out = {};
    std::string err = {};
};

/// A file that a test begins with.
struct PlacedFile {
    std::string name;
    std::string text;
};

/// An empty folder with the built program beside it, so to say: each test works in one of its own.
class Workplace {
public:
    Workplace();
    Workplace(const Workplace&) = delete;
    Workplace& operator=(const Workplace&) = delete;
    ~Workplace();

    /// Runs the program in the folder with `input` as its standard input.
    [[nodiscard]] Finished run(const std::vector<std::string>& words, std::string_view input = {}) const;

    /// The same with one of the folder's files as standard input.
    [[nodiscard]] Finished runFrom(const std::string& file, const std::vector<std::string>& words) const;

    /// Runs the program in a folder below.
    [[nodiscard]] Finished runIn(const std::string& folder, const std::vector<std::string>& words) const;

    /// Starts the program in the folder and returns its process; what it prints is lost. Descriptors below 0 are
    /// /dev/null.
    [[nodiscard]] pid_t start(const std::vector<std::string>& words, int in = -1, int out = -1, int err = -1) const;

    void write(const std::string& name, std::string_view text) const;
    void write(const std::vector<PlacedFile>& files) const;
    [[nodiscard]] std::string read(const std::string& name) const;
    [[nodiscard]] bool has(const std::string& name) const { return std::filesystem::exists(path(name)); }
    /// The names of all files in the folder and below, sorted; hidden ones too.
    [[nodiscard]] std::vector<std::string> files() const;
    [[nodiscard]] std::filesystem::path path(const std::string& name) const { return folder_ / name; }

private:
    Workplace(std::filesystem::path folder, bool isTemporary) : folder_(std::move(folder)), isTemporary_(isTemporary) {}

    std::filesystem::path folder_;
    bool isTemporary_ = true;
};

/// A command's words and those behind them.
[[nodiscard]] std::vector<std::string> joined(std::vector<std::string> words, const std::vector<std::string>& more);

/// The lines of a text, without their ends.
[[nodiscard]] std::vector<std::string> linesOf(std::string_view text);

/// Waits for a process; see `Finished::status`.
[[nodiscard]] int waitFor(pid_t process);

/// A document that draws "Hello".
inline constexpr std::string_view hello =
    R"({"version": "1.0", "nodes": {"main": {"type": "text", "content": "Hello"}}})";
/// A document that draws the model's "a".
inline constexpr std::string_view greeting =
    R"({"version": "1.0", "nodes": {"main": {"type": "text", "content": "{{initServerParam.a}}"}}})";
/// A document whose one fault stands in line 4, column 13.
inline constexpr std::string_view broken =
    "{\n  \"version\": \"1.0\",\n  \"nodes\": {\n\t\"main\": {\"type\": \"text\", \"content\": 1.5e}\n  }\n}\n";

/// What every PNG file starts with.
inline constexpr std::string_view pngStart = "\x89PNG\r\n\x1a\n";

/// The member of the error object that the program printed as the last line; null where there is none.
[[nodiscard]] JSON errorMember(const Finished& finished, std::string_view key);
[[nodiscard]] std::string errorText(const Finished& finished, std::string_view key);

}  // namespace tavrin::cli
