// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/precondition.h"

#include <stdexcept>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "tavrin/platform/foundation/tavrin_error.h"

namespace tavrin {
namespace {

/// What a violated precondition throws here.
std::string thrownNow() {
    try {
        preconditionFailure("violated");
    } catch (const TavrinError& error) {
        return error.kind + ": " + error.message;
    } catch (const std::logic_error& error) {
        return error.what();
    }
}

TEST(Preconditions, CallTheHandlerOfTheirThreadOrElseOfTheProcess) {
    const auto before = setPreconditionHandler([](std::string_view m) { throw std::logic_error(std::string(m)); });
    EXPECT_EQ(thrownNow(), "violated");
    {
        const ThrowingPreconditions outer;
        { const ThrowingPreconditions inner; }
        EXPECT_EQ(thrownNow(), "Precondition: violated") << "the inner one gives the outer one's back";
        std::string elsewhere;
        std::thread([&] { elsewhere = thrownNow(); }).join();
        EXPECT_EQ(elsewhere, "violated");
    }
    EXPECT_EQ(thrownNow(), "violated");
    setPreconditionHandler(throwPreconditionError);
    EXPECT_EQ(thrownNow(), "Precondition: violated");
    setPreconditionHandler(before);
}

}  // namespace
}  // namespace tavrin
