// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/net/data_url.h"

#include <optional>
#include <string>

#include <gtest/gtest.h>

namespace tavrin {
namespace {

using namespace std::string_literals;

TEST(DataURL, HoldsBytes) {
    const struct {
        const char* why;
        const char* url;
        std::optional<std::string> bytes;
    } rows[] = {
        {"text", "data:text/plain,hello", "hello"},
        {"no type", "data:,hello", "hello"},
        {"nothing", "data:,", ""},
        {"escapes", "data:,%00a%20b", "\0a b"s},
        {"a comma in the data", "data:,a,b", "a,b"},
        {"a question mark is data, too", "data:,a?b", "a?b"},
        {"a fragment is not", "data:,a#b", "a"},
        {"letter case of the scheme", "DATA:,a", "a"},
        {"base64", "data:image/png;base64,aGVsbG8=", "hello"},
        {"bytes that are no text", "data:;base64,AP/+", "\0\xFF\xFE"s},
        {"two to fill up", "data:;base64,aA==", "h"},
        {"none to fill up", "data:;base64,aA", "h"},
        {"behind a parameter", "data:image/png;a=b;base64,aA==", "h"},
        {"letter case of the word", "data:;BASE64,aA==", "h"},
        {"blanks around the word", "data:; base64 ,aA==", "h"},
        {"blanks and line breaks between the digits", "data:;base64, a\nA\t=\r\n=", "h"},
        {"escaped digits", "data:;base64,%61A%3D%3D", "h"},
        {"bits that are left over", "data:;base64,aB==", "h"},
        {"no base64 before a parameter", "data:;base64;a=b,aA==", "aA=="},
        {"no base64 without a semicolon", "data:base64,aA==", "aA=="},
        {"a digit alone", "data:;base64,aGVsb", std::nullopt},
        {"a digit of another alphabet", "data:;base64,aG-_", std::nullopt},
        {"one to fill up where two are needed", "data:;base64,aA=", std::nullopt},
        {"three to fill up", "data:;base64,a===", std::nullopt},
        {"filled up in the middle", "data:;base64,aA==aA==", std::nullopt},
        {"no comma", "data:image/png;base64", std::nullopt},
        {"the comma in the fragment", "data:a#,b", std::nullopt},
        {"another URL", "http://h/,a", std::nullopt},
        {"a relative one", "data,a", std::nullopt},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(dataOf(URL::parse(row.url).value()), row.bytes);
    }
}

TEST(DataURL, MayBeLong) {
    std::string text = "data:;base64,";
    for (int i = 0; i < 1'000'000; ++i) text += "AAAA\n";
    EXPECT_EQ(dataOf(URL::parse(text).value()), std::string(3'000'000, '\0'));
}

}  // namespace
}  // namespace tavrin
