// SPDX-License-Identifier: MIT
#include "tavrin/values/mirror_key_path.h"

#include <gtest/gtest.h>

#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/platform/ui/views.h"

namespace tavrin {
namespace {

TEST(MirrorKeyPath, TakesTheConcreteViewOut) {
    const AnyView circle = Circle{};
    for (const char* path : {"storage.view", "storage..view", ".storage.view."}) {
        SCOPED_TRACE(path);
        EXPECT_NE(mirrorKeyPath(path, circle).as<Circle>(), nullptr);
        EXPECT_EQ(mirrorKeyPath(path, circle).as<Rectangle>(), nullptr);
    }
    EXPECT_NE(mirrorKeyPath("", circle).as<Circle>(), nullptr) << "no step leads to the view itself";
}

TEST(MirrorKeyPath, FailsWhereNoMemberIsCalledSo) {
    for (const std::string path :
         {"view", "storage.x", "storage.view.radius", "Storage.view", " storage.view", "storage"}) {
        SCOPED_TRACE(path);
        try {
            static_cast<void>(mirrorKeyPath(path, Circle{}));
            FAIL();
        } catch (const TavrinError& error) {
            EXPECT_EQ(error, TavrinError("Unwrap AnyView", "value not found for key path: " + path));
        }
    }
}

}  // namespace
}  // namespace tavrin
