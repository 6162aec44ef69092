// SPDX-License-Identifier: MIT
#pragma once

#include <clocale>
#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

namespace tavrin {

/// A locale with a decimal comma, which the tests' build makes, until the end of the scope.
class CommaLocale {
public:
    CommaLocale() {
        ::setenv("LOCPATH", TAVRIN_LOCALE_FOLDER, 1);
        EXPECT_NE(std::setlocale(LC_ALL, "de_DE.UTF-8"), nullptr);
        EXPECT_STREQ(std::localeconv()->decimal_point, ",");
    }
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;
    ~CommaLocale() { std::setlocale(LC_ALL, before_.c_str()); }

private:
    std::string before_ = std::setlocale(LC_ALL, nullptr);
};

}  // namespace tavrin
