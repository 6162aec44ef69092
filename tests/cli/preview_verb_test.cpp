// SPDX-License-Identifier: MIT
#include <csignal>
#include <fcntl.h>
#include <string>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/cli/program.h"

namespace tavrin::cli {
namespace {

using ::testing::ContainsRegex;

TEST(PreviewVerb, RefusesWhatItCannotShow) {
    const Workplace place;
    place.write("a.json", hello);
    const struct {
        const char* why;
        std::vector<std::string> words;
        int status;
        std::string type;
    } rows[] = {
        {"no such folder", {"preview", "gone", "--errors", "json"}, 1, "IOError"},
        {"a file", {"preview", "a.json", "--errors", "json"}, 1, "IOError"},
        {"two folders", {"preview", ".", ".", "--errors", "json"}, 2, "UsageError"},
        {"a port that is none", {"preview", ".", "--port", "70000", "--errors", "json"}, 2, "UsageError"},
        {"a port that is no number", {"preview", ".", "--port", "http", "--errors", "json"}, 2, "UsageError"},
        {"a budget that is none", {"preview", ".", "--budget", "none", "--errors", "json"}, 2, "UsageError"},
        {"a budget's count that is none",
         {"preview", ".", "--budget-steps", "-1", "--errors", "json"},
         2,
         "UsageError"},
        {"an option of others", {"preview", ".", "--family", "systemSmall", "--errors", "json"}, 2, "UsageError"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const Finished finished = place.run(row.words);
        EXPECT_EQ(finished.status, row.status);
        EXPECT_EQ(errorText(finished, "type"), row.type);
    }
}

TEST(PreviewVerb, SaysItsAddressAndEndsWhenInterrupted) {
    const Workplace place;
    int ends[2];
    ASSERT_EQ(::pipe2(ends, O_CLOEXEC), 0);
    const pid_t process = place.start({"preview", "."}, -1, ends[1]);
    ::close(ends[1]);
    std::string said(1000, '\0');
    const ssize_t count = ::read(ends[0], said.data(), said.size());
    ASSERT_GT(count, 0);
    said.resize(static_cast<std::size_t>(count));
    EXPECT_THAT(said, ContainsRegex("Showing '.' at http://127.0.0.1:[0-9]+/[0-9a-f]{32}/\n"));
    ::kill(process, SIGINT);
    EXPECT_EQ(waitFor(process), 0);
    ::close(ends[0]);
}

}  // namespace
}  // namespace tavrin::cli
