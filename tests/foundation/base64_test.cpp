// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/strings/base64.h"

#include <gtest/gtest.h>

namespace tavrin {
namespace {

TEST(Base64, HasTheTextsOfItsDefinition) {
    const struct {
        std::string_view bytes;
        const char* text;
    } rows[] = {{"", ""},
                {"f", "Zg=="},
                {"fo", "Zm8="},
                {"foo", "Zm9v"},
                {"foob", "Zm9vYg=="},
                {"fooba", "Zm9vYmE="},
                {"foobar", "Zm9vYmFy"},
                {"\xFF\xFE\xFD", "//79"}};
    for (const auto& row : rows) EXPECT_EQ(base64(row.bytes), row.text);
}

}  // namespace
}  // namespace tavrin
