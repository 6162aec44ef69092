// SPDX-License-Identifier: MIT
#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/wait.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/cli/program.h"

namespace tavrin::cli {
namespace {

using ::testing::HasSubstr;

bool isInstalled(const std::string& program) {
    return std::system(("command -v " + program + " >/dev/null 2>&1").c_str()) == 0;
}

std::string outputOf(const std::string& command) {
    std::string text;
    std::FILE* const pipe = ::popen(command.c_str(), "r");
    if (!pipe) return text;
    for (int c = 0; (c = std::fgetc(pipe)) != EOF;) text += static_cast<char>(c);
    ::pclose(pipe);
    return text;
}

TEST(Completion, ScriptsAreWellFormed) {
    const Workplace place;
    const struct {
        const char* shell;
        const char* check;
    } rows[] = {{"bash", "bash -n "}, {"zsh", "zsh -n "}, {"fish", "fish --no-execute "}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.shell);
        const Finished finished = place.run({"completion", row.shell});
        EXPECT_EQ(finished.status, 0);
        EXPECT_EQ(finished.err, "");
        for (const char* word : {"render", "tree", "layout", "check", "fetch", "schema", "family", "systemMedium",
                                 "390x844", "light dark"})
            EXPECT_THAT(finished.out, HasSubstr(word));
        place.write("script", finished.out);
        if (isInstalled(row.shell)) {
            EXPECT_EQ(std::system((row.check + place.path("script").string()).c_str()), 0);
        }
    }
}

TEST(Completion, OfBash) {
    if (!isInstalled("bash")) GTEST_SKIP() << "no bash here";
    const Workplace place;
    place.write("script", place.run({"completion", "bash"}).out);
    const struct {
        const char* why;
        const char* words;
        const char* offered;
    } rows[] = {
        {"verbs", "tavrin re", "render"},
        {"a verb's own format", "tavrin explain a.json --format j", "json"},
        {"another verb's own format", "tavrin render a.json --format p", "png pdf"},
        {"options before a verb", "tavrin --v", "--version"},
        {"options", "tavrin tree a.json --ti", "--time-zone"},
        {"options of a verb alone", "tavrin tree a.json --rou", ""},
        {"options of render", "tavrin render a.json --rou", "--rounded"},
        {"values", "tavrin tree a.json --family systemS", "systemSmall"},
        {"formats of pictures", "tavrin render a.json --format s", "svg"},
        {"formats for the web", "tavrin render a.json --format j", "jpeg"},
        {"how true", "tavrin render a.json --qu", "--quality"},
        {"formats of findings", "tavrin check a.json --format s", "sarif"},
        {"policies", "tavrin render a.json --fetch p", "public"},
        {"options of fetch", "tavrin fetch a.json --f", "--fetch"},
        {"screens", "tavrin tree a.json --screen 97", "970x1389"},
        {"shells", "tavrin completion z", "zsh"},
        {"verbs to explain", "tavrin help re", "render"},
        {"no files where there is no document", "tavrin schema a", ""},
        {"files are bash's own", "tavrin tree a", ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const std::string command = "bash -c 'source " + place.path("script").string() + "; COMP_WORDS=(" + row.words +
                                    "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _tavrin; echo \"${COMPREPLY[@]}\"'";
        EXPECT_EQ(outputOf(command), std::string(row.offered) + "\n");
    }
}

}  // namespace
}  // namespace tavrin::cli
