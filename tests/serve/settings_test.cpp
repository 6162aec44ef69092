// SPDX-License-Identifier: MIT
#include "cli/serve/settings.h"

#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <thread>
#include <unistd.h>
#include <variant>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/io_error.h"
#include "cli/usage_error.h"

namespace tavrin::cli {
namespace {

using ::testing::HasSubstr;
using Variables = std::map<std::string, std::string>;

/// A file of settings that goes away with the test.
class SettingsFile {
public:
    explicit SettingsFile(const std::string& text)
        : path_(std::filesystem::temp_directory_path() /
                ("tavrin-serve-" + std::to_string(::getpid()) + "-" + std::to_string(count++) + ".toml")) {
        std::ofstream(path_, std::ios::binary) << text;
    }
    SettingsFile(const SettingsFile&) = delete;
    SettingsFile& operator=(const SettingsFile&) = delete;
    ~SettingsFile() { std::filesystem::remove(path_); }

    [[nodiscard]] std::string path() const { return path_.string(); }

private:
    inline static int count = 0;
    std::filesystem::path path_;
};

/// What `tavrin serve` reads of words, an environment and a file.
ServeSettings settingsOf(std::vector<std::string> words, const Variables& variables = {},
                         const std::string& file = {}) {
    const SettingsFile config(file);
    words.insert(words.begin(), "serve");
    if (!file.empty()) words.insert(words.end(), {"--config", config.path()});
    return readServeSettings(std::get<Command>(parseCommandLine(words)), [&](const char* name) {
        const auto found = variables.find(name);
        return found == variables.end() ? nullptr : found->second.c_str();
    });
}

TEST(ServeSettings, HaveDefaults) {
    const ServeSettings settings = settingsOf({});
    EXPECT_FALSE(settings.folder);
    EXPECT_EQ(settings.listen, (ListenAddress{"127.0.0.1", 8080}));
    EXPECT_EQ(settings.workers, std::max(1U, std::thread::hardware_concurrency()));
    EXPECT_EQ(settings.queue, 64U);
    EXPECT_EQ(settings.maxBodyBytes, 1U << 20);
    EXPECT_EQ(settings.timeLimit, 2);
    EXPECT_EQ(settings.cacheBytes, 64U << 20);
    EXPECT_EQ(settings.corsOrigin, "");
    EXPECT_FALSE(settings.keyFile);
    EXPECT_FALSE(settings.opensPost);
    EXPECT_EQ(settings.drawing.widget.fetchPolicy, FetchPolicy::publicOnly);
    EXPECT_EQ(settings.drawing.widget.budget.seconds, RenderBudget::strangers().seconds);
    EXPECT_EQ(settings.drawing.widget.budget.steps, RenderBudget::strangers().steps);
    EXPECT_TRUE(settings.drawing.widget.timeZone);
}

TEST(ServeSettings, AreReadFromEverySource) {
    const struct {
        const char* option;
        const char* value;
        bool (*isRead)(const ServeSettings&);
    } rows[] = {
        {"listen", "[::1]:0",
         [](const ServeSettings& s) {
             return s.listen == ListenAddress{"::1", 0};
         }},
        {"listen", "0.0.0.0:65535",
         [](const ServeSettings& s) {
             return s.listen == ListenAddress{"0.0.0.0", 65535};
         }},
        {"workers", "3", [](const ServeSettings& s) { return s.workers == 3; }},
        {"queue", "1", [](const ServeSettings& s) { return s.queue == 1; }},
        {"max-body", "4096", [](const ServeSettings& s) { return s.maxBodyBytes == 4096; }},
        {"max-body", "16KiB", [](const ServeSettings& s) { return s.maxBodyBytes == 16384; }},
        {"max-body", "2 MiB", [](const ServeSettings& s) { return s.maxBodyBytes == 2U << 20; }},
        {"cache", "0", [](const ServeSettings& s) { return s.cacheBytes == 0; }},
        {"cache", "1GiB", [](const ServeSettings& s) { return s.cacheBytes == 1U << 30; }},
        {"time-limit", "0.5", [](const ServeSettings& s) { return s.timeLimit == 0.5; }},
        {"cors", "*", [](const ServeSettings& s) { return s.corsOrigin == "*"; }},
        {"cors", "https://example.com:8443",
         [](const ServeSettings& s) { return s.corsOrigin == "https://example.com:8443"; }},
        {"key-file", "keys", [](const ServeSettings& s) { return s.keyFile == "keys"; }},
        {"fetch", "none", [](const ServeSettings& s) { return s.drawing.widget.fetchPolicy == FetchPolicy::none; }},
        {"scale", "2", [](const ServeSettings& s) { return s.drawing.widget.scale == 2; }},
        {"budget", "usual", [](const ServeSettings& s) { return !s.drawing.widget.budget.seconds; }},
        {"budget-steps", "1000", [](const ServeSettings& s) { return s.drawing.widget.budget.steps == 1000; }},
        {"time-zone", "Europe/Madrid", [](const ServeSettings& s) { return s.drawing.widget.timeZone.has_value(); }},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.option) + " " + row.value);
        const std::string option = row.option;
        EXPECT_TRUE(row.isRead(settingsOf({"--" + option, row.value}))) << "on the command line";
        std::string variable = "TAVRIN_";
        for (const char letter : option)
            variable += letter == '-' ? '_' : static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
        EXPECT_TRUE(row.isRead(settingsOf({}, {{variable, row.value}}))) << variable;
        EXPECT_TRUE(row.isRead(settingsOf({}, {}, option + " = \"" + row.value + "\"\n"))) << "in a file";
    }
}

TEST(ServeSettings, OfAFileHaveTypes) {
    const ServeSettings settings = settingsOf(
        {}, {}, "# everything\nqueue = 9\ntime-limit = 0.25\nopen-post = true\nrounded = false\nscale = 2\n");
    EXPECT_EQ(settings.queue, 9U);
    EXPECT_EQ(settings.timeLimit, 0.25);
    EXPECT_TRUE(settings.opensPost);
    EXPECT_FALSE(settings.drawing.widget.rounded);
    EXPECT_EQ(settings.drawing.widget.scale, 2);
}

TEST(ServeSettings, OfTheCommandLineComeFirstThenTheEnvironments) {
    const std::string file = "queue = 1\nworkers = 1\ncors = \"https://file.test\"\nopen-post = true\n";
    const Variables variables{{"TAVRIN_QUEUE", "2"}, {"TAVRIN_WORKERS", "2"},      {"TAVRIN_OPEN_POST", "0"},
                              {"TAVRIN_CORS", ""},   {"TAVRIN_PORT", "no option"}, {"TAVRIN_ERRORS", "xml"},
                              {"QUEUE", "4"}};
    const ServeSettings settings = settingsOf({"--queue", "3"}, variables, file);
    EXPECT_EQ(settings.queue, 3U);
    EXPECT_EQ(settings.workers, 2U);
    EXPECT_EQ(settings.corsOrigin, "https://file.test") << "what is empty counts as not given";
    EXPECT_FALSE(settings.opensPost);
}

TEST(ServeSettings, OfTheFileThatTheEnvironmentNames) {
    const SettingsFile config("queue = 5\n");
    EXPECT_EQ(settingsOf({}, {{"TAVRIN_CONFIG", config.path()}}).queue, 5U);
}

/// The file that is installed says all defaults behind "#".
TEST(ServeSettings, OfThePackageAreTaken) {
    std::ifstream file(TAVRIN_SOURCE_DIR "/packaging/serve.toml");
    std::string text;
    int settings = 0;
    for (std::string line; std::getline(file, line);) {
        const bool isSetting = line.size() > 1 && line[0] == '#' && std::islower(static_cast<unsigned char>(line[1]));
        settings += isSetting ? 1 : 0;
        if (!line.starts_with("#image-cache-dir")) text += (isSetting ? line.substr(1) : line) + "\n";
    }
    EXPECT_GE(settings, 15);
    const ServeSettings read = settingsOf({}, {}, text);
    const ServeSettings usual = settingsOf({});
    EXPECT_EQ(read.listen, usual.listen);
    EXPECT_EQ(read.queue, usual.queue);
    EXPECT_EQ(read.maxBodyBytes, usual.maxBodyBytes);
    EXPECT_EQ(read.timeLimit, usual.timeLimit);
    EXPECT_EQ(read.cacheBytes, usual.cacheBytes);
    EXPECT_EQ(read.opensPost, usual.opensPost);
    EXPECT_EQ(read.drawing.widget.fetchPolicy, usual.drawing.widget.fetchPolicy);
    EXPECT_EQ(read.drawing.widget.scale, usual.drawing.widget.scale);
    EXPECT_EQ(read.drawing.widget.budget.bytes, usual.drawing.widget.budget.bytes);
}

TEST(ServeSettings, AreRefused) {
    const struct {
        const char* why;
        std::vector<std::string> words;
        Variables variables;
        std::string file;
        const char* message;
    } rows[] = {
        {"two folders", {"a", "b"}, {}, "", "`tavrin serve` takes one folder"},
        {"no port", {"--listen", "127.0.0.1"}, {}, "", "--listen takes an address in digits and a port, such as"},
        {"no address", {"--listen", ":8080"}, {}, "", "not ':8080'"},
        {"a name", {"--listen", "localhost:8080"}, {}, "", "not 'localhost:8080'"},
        {"a port that is none", {"--listen", "127.0.0.1:65536"}, {}, "", "not '127.0.0.1:65536'"},
        {"a port with a sign", {"--listen", "127.0.0.1:+1"}, {}, "", "not '127.0.0.1:+1'"},
        {"IPv6 without brackets", {"--listen", "::1:8080"}, {}, "", "not '::1:8080'"},
        {"no workers", {"--workers", "0"}, {}, "", "--workers takes a whole number from 1 to 1024, not '0'"},
        {"too many", {"--workers", "1025"}, {}, "", "not '1025'"},
        {"half a place", {"--queue", "1.5"}, {}, "", "--queue takes a whole number from 1 to 65536, not '1.5'"},
        {"no body", {"--max-body", "0"}, {}, "", "--max-body takes a number of bytes such as 1048576 or 1MiB"},
        {"an unknown unit", {"--max-body", "1MB"}, {}, "", "not '1MB'"},
        {"a body that is too large", {"--max-body", "257MiB"}, {}, "", "not '257MiB'"},
        {"a body beyond all numbers", {"--max-body", "18014398509481985KiB"}, {}, "", "not '18014398509481985KiB'"},
        {"no time", {"--time-limit", "0"}, {}, "", "--time-limit takes a number of seconds above 0 and up to 3600"},
        {"no number", {"--time-limit", "nan"}, {}, "", "not 'nan'"},
        {"an origin with a path", {"--cors", "https://a.test/"}, {}, "", "--cors takes an origin such as"},
        {"a host alone", {"--cors", "a.test"}, {}, "", "not 'a.test'"},
        {"two lines", {"--cors", "https://a.test\r\nX: y"}, {}, "", "--cors takes an origin such as"},
        {"a variable's", {}, {{"TAVRIN_QUEUE", "many"}}, "", "TAVRIN_QUEUE takes a whole number from 1 to 65536"},
        {"a drawing's variable", {}, {{"TAVRIN_SCALE", "0"}}, "", "TAVRIN_SCALE takes a number above 0 and up to 100"},
        {"a variable's flag", {}, {{"TAVRIN_OPEN_POST", "yes"}}, "", "TAVRIN_OPEN_POST takes true or false, not 'yes'"},
        {"a file's", {}, {}, "# one\nqueue = 0\n", ".toml:2:9: queue takes a whole number from 1 to 65536, not '0'"},
        {"a drawing's in a file", {}, {}, "scale = 101\n", ".toml:1:9: scale takes a number above 0 and up to 100"},
        {"unknown", {}, {}, "\n\nworker = 1\n", ".toml:3:1: there is no setting 'worker'; did you mean 'workers'?"},
        {"a file in a file", {}, {}, "config = \"a\"\n", ".toml:1:1: there is no setting 'config'"},
        {"with dashes", {}, {}, "--queue = 1\n", ".toml:1:1: there is no setting '--queue'"},
        {"a list", {}, {}, "queue = [1]\n", ".toml:1:9: queue takes a text, a number or a boolean"},
        {"a table", {}, {}, "[queue]\n", "queue takes a text, a number or a boolean"},
        {"no TOML", {}, {}, "queue = 1\ncors = https\n", ".toml:2:8: "},
        {"twice", {}, {}, "queue = 1\nqueue = 2\n", ".toml:2:"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        try {
            static_cast<void>(settingsOf(row.words, row.variables, row.file));
            ADD_FAILURE() << "it was taken";
        } catch (const UsageError& error) {
            EXPECT_THAT(error.what(), HasSubstr(row.message));
        }
    }
    EXPECT_THROW(static_cast<void>(settingsOf({"--config", "/nonexistent/serve.toml"})), IOError);
}

}  // namespace
}  // namespace tavrin::cli
