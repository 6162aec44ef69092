// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/net/percent_encoding.h"

#include <gtest/gtest.h>

namespace tavrin {
namespace {

TEST(PercentEncoding, DecodesEscapes) {
    const struct {
        const char* why;
        std::string_view text;
        std::string_view decoded;
    } rows[] = {
        {"nothing", "", ""},
        {"none", "a+b", "a+b"},
        {"both letter cases", "%4a%4A", "JJ"},
        {"bytes that are no text", "%FF%00", std::string_view("\xff\0", 2)},
        {"once only", "%2541", "%41"},
        {"no digits", "%zz%4z", "%zz%4z"},
        {"cut off", "a%4", "a%4"},
        {"a percent sign alone", "%", "%"},
        {"a sign is no digit", "%+1%-1", "%+1%-1"},
        {"an escape behind a percent sign", "%%41", "%A"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(percentDecoded(row.text), row.decoded);
    }
}

TEST(PercentEncoding, EncodesWhatIsNotKept) {
    const auto isLetter = [](char c) { return c >= 'a' && c <= 'z'; };
    EXPECT_EQ(percentEncoded("a/\xe9\x01", isLetter), "a%2F%E9%01");
    EXPECT_EQ(percentEncoded("", isLetter), "");
    EXPECT_EQ(percentEncoded("a-B._~0 @2x/ü", PlainInURL{"/"}), "a-B._~0%20%402x/%C3%BC");
    EXPECT_EQ(percentEncoded("a@2x/,", PlainInURL{"@", "/"}), "a@2x/%2C");
}

}  // namespace
}  // namespace tavrin
