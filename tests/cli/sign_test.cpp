// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/cli/program.h"

namespace tavrin::cli {
namespace {

using ::testing::HasSubstr;

constexpr std::string_view signedWeather =
    "/v1/widgets/weather.png?expires=1795600000&s=twjts80QoHalf8Dy2_QQO00ByyEP8Bz4q7tdP5MgjeE\n";

TEST(Sign, PrintsSignedPaths) {
    const Workplace place;
    place.write("keys", "secret\nolder\n");
    const std::string path = "/v1/widgets/weather.png";
    const struct {
        const char* why;
        std::vector<std::string> words;
        std::string out;
    } rows[] = {
        {"that never expires", {path}, "/v1/widgets/weather.png?s=3k3aRkJwL6P5DAxVgBjH6hu0Cx8OV-swQwDXTMOAFVQ\n"},
        {"that expires some seconds after 1970", {path, "--expires", "1795600000"}, std::string(signedWeather)},
        {"that expires at a moment", {path, "--expires", "2026-11-25T09:46:40Z"}, std::string(signedWeather)},
        {"that expires within a second", {path, "--expires", "2026-11-25T09:46:39.5Z"}, std::string(signedWeather)},
        {"several", {path, path, "--expires", "1795600000"}, std::string(signedWeather) + std::string(signedWeather)},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const Finished finished = place.run(joined({"sign", "--key-file", "keys"}, row.words));
        EXPECT_EQ(finished.status, 0) << finished.err;
        EXPECT_EQ(finished.out, row.out);
    }
    const Finished piped = place.run({"sign", path, "--key-file", "-", "--expires", "1795600000"}, "secret");
    EXPECT_EQ(piped.out, signedWeather);
}

TEST(Sign, RefusesWhatItCannotSign) {
    const Workplace place;
    place.write("keys", "secret\n");
    place.write("none", "\n");
    const std::string path = "/v1/widgets/weather.png";
    const struct {
        const char* why;
        std::vector<std::string> words;
        int status;
        const char* message;
    } rows[] = {
        {"no path", {"--key-file", "keys"}, 2, "which path?"},
        {"no key", {path}, 2, "wants --key-file FILE"},
        {"no such file", {path, "--key-file", "gone"}, 1, "cannot read 'gone'"},
        {"no key in it", {path, "--key-file", "none"}, 1, "there is no key in 'none'"},
        {"a whole address", {"http://a.test" + path, "--key-file", "keys"}, 2, "a path begins with '/'"},
        {"no moment", {path, "--key-file", "keys", "--expires", "soon"}, 2, "--expires takes a date and time such as"},
        {"a moment before 1970",
         {path, "--key-file", "keys", "--expires", "1969-12-31T23:59:59Z"},
         2,
         "--expires takes a date and time such as"},
        {"none of several where one is wrong", {path, "a", "--key-file", "keys"}, 2, "cannot sign 'a'"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const Finished finished = place.run(joined({"sign"}, row.words));
        EXPECT_EQ(finished.status, row.status);
        EXPECT_EQ(finished.out, "");
        EXPECT_THAT(finished.err, HasSubstr(row.message));
    }
}

}  // namespace
}  // namespace tavrin::cli
