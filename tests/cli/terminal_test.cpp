// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstdlib>
#include <string>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pty.h>

#include "tests/cli/program.h"

namespace tavrin::cli {
namespace {

using ::testing::HasSubstr;

/// What a run writes on standard error when that is a terminal.
std::string onTerminal(const Workplace& place, const std::vector<std::string>& words) {
    int terminal = -1;
    int inside = -1;
    if (::openpty(&terminal, &inside, nullptr, nullptr, nullptr) != 0) return {};
    const pid_t process = place.start(words, -1, -1, inside);
    ::close(inside);
    std::string text;
    char buffer[4096];
    for (ssize_t count = 0; (count = ::read(terminal, buffer, sizeof buffer)) > 0;)
        text.append(buffer, static_cast<std::size_t>(count));
    ::close(terminal);
    EXPECT_GE(waitFor(process), 0);
    return text;
}

TEST(Terminal, ErrorsAreColored) {
    ::setenv("TERM", "xterm", 1);
    ::unsetenv("NO_COLOR");
    const Workplace place;
    place.write("a.json", broken);
    EXPECT_THAT(onTerminal(place, {"check", "a.json"}), HasSubstr("\x1b[1;31merror:\x1b[0m"));
    EXPECT_THAT(onTerminal(place, {"check", "a.json", "--errors", "json"}), Not(HasSubstr("\x1b")));
    ::setenv("NO_COLOR", "1", 1);
    EXPECT_THAT(onTerminal(place, {"check", "a.json"}), Not(HasSubstr("\x1b")));
    ::unsetenv("NO_COLOR");
    ::setenv("TERM", "dumb", 1);
    EXPECT_THAT(onTerminal(place, {"check", "a.json"}), Not(HasSubstr("\x1b")));
}

TEST(Terminal, ProgressOfSeveralDocuments) {
    const Workplace place;
    place.write("a.json", hello);
    place.write("b.json", R"({"version": "1.0", "nodes": {}})");
    place.write("c.json", hello);
    ::setenv("NO_COLOR", "1", 1);
    EXPECT_EQ(onTerminal(place, {"render", "a.json", "b.json", "c.json"}),
              "\r\x1b[K[######--------------] 1/3 a.json"
              "\r\x1b[Kb.json: error: Engine: view must have main node\r\n"
              "\r\x1b[K[#############-------] 2/3 b.json"
              "\r\x1b[K[####################] 3/3 c.json"
              "\r\x1b[K");
    EXPECT_EQ(onTerminal(place, {"render", "a.json"}), "");
    EXPECT_EQ(onTerminal(place, {"check", "a.json", "c.json"}),
              "\r\x1b[K[##########----------] 1/2 a.json"
              "\r\x1b[K[####################] 2/2 c.json"
              "\r\x1b[K");
    EXPECT_EQ(onTerminal(place, {"check", "a.json"}), "");
}

TEST(Terminal, ProgressOfFrames) {
    const Workplace place;
    place.write("a.json", hello);
    const std::vector<std::string> four{"render",  "a.json", "--frames", "2026-03-01T09:41:00Z..2026-03-01T09:41:03Z",
                                        "--scale", "1"};
    EXPECT_EQ(onTerminal(place, four),
              "\r\x1b[K[#####---------------] 1/4 a.json"
              "\r\x1b[K[##########----------] 2/4 a.json"
              "\r\x1b[K[###############-----] 3/4 a.json"
              "\r\x1b[K[####################] 4/4 a.json"
              "\r\x1b[K");
    const std::string many = onTerminal(
        place, {"render", "a.json", "--frames", "2026-03-01T00:00:00Z..2026-03-01T03:00:00Z", "--scale", "1"});
    EXPECT_EQ(std::count(many.begin(), many.end(), '['), 1 + 2 * 1001) << "not each of very many";
    EXPECT_THAT(many, HasSubstr("[####################] 10801/10801 a.json"));
}

}  // namespace
}  // namespace tavrin::cli
