// SPDX-License-Identifier: MIT
#include "tavrin/dsl/dsl_root.h"

#include <gtest/gtest.h>

#include "tavrin/dsl/structure.h"
#include "tavrin/nodes/text_nodes.h"
#include "tests/dsl/rendered.h"

namespace tavrin {
namespace {

DSLRoot rootFrom(std::string_view json) { return JSONDecoder().decode<DSLRoot>(json); }

TEST(DSLVersion, IsOrderedByItsRawValue) {
    EXPECT_TRUE(DSLVersion::v1 < DSLVersion::v1_1);
    EXPECT_TRUE(DSLVersion::v1_1 < DSLVersion::v1_2);
    EXPECT_TRUE(DSLVersion::v1 < DSLVersion::v1_2);
    EXPECT_FALSE(DSLVersion::v1_2 < DSLVersion::v1_2);
    EXPECT_FALSE(DSLVersion::v1_2 < DSLVersion::v1_1);
    EXPECT_EQ(rawValue(DSLVersion::v1), "1.0");
    EXPECT_EQ(rawValue(DSLVersion::v1_1), "1.1");
    EXPECT_EQ(rawValue(DSLVersion::v1_2), "1.2");
    EXPECT_EQ(name(DSLVersion::v1_2), "v1_2");
    EXPECT_EQ(DSLJSONEncoder().encode(DSLVersion::v1_1), "\"1.1\"");
}

TEST(DSLRoot, Decodes) {
    const DSLRoot root =
        rootFrom(R"({"more": 1, "nodes": {"main": {"type": "spacer"}, "": {"type": "emptyView"}}, "version": "1.1"})");
    EXPECT_EQ(root.version, DSLVersion::v1_1);
    ASSERT_EQ(root.nodes.size(), 2u);
    EXPECT_EQ(root.nodes.at("main"), Node(SpacerNode{}));
    EXPECT_EQ(root.nodes.at(""), Node());
    EXPECT_TRUE(rootFrom(R"({"version": "1.0", "nodes": {}})").nodes.empty());
}

TEST(DSLRoot, TheFirstOfEqualNamesHolds) {
    const DSLRoot root =
        rootFrom(R"({"version": "1.0", "nodes": {"a": {"type": "spacer"}, "a": {"type": "no such type"}}})");
    ASSERT_EQ(root.nodes.size(), 1u);
    EXPECT_EQ(root.nodes.at("a"), Node(SpacerNode{}));
    EXPECT_EQ(rootFrom(R"({"version": "1.0", "version": "9", "nodes": {}})").version, DSLVersion::v1);
}

TEST(DSLRoot, FailsToDecode) {
    const struct {
        const char* why;
        const char* json;
        const char* failure;
    } rows[] = {
        {"no object", "[]", "typeMismatch at : expected an object, found an array"},
        {"no version", R"({"nodes": {}})", "keyNotFound at : the key \"version\" is missing"},
        {"no nodes", R"({"version": "1.0"})", "keyNotFound at : the key \"nodes\" is missing"},
        {"the version comes first", R"({"nodes": 1})", "keyNotFound at : the key \"version\" is missing"},
        {"a number as version", R"({"version": 1.0, "nodes": {}})",
         "typeMismatch at version: expected a string, found a number"},
        {"null as version", R"({"version": null, "nodes": {}})",
         "valueNotFound at version: expected a string, found null"},
        {"an unknown version", R"({"version": "2.0", "nodes": {}})", "dataCorrupted at version: "},
        {"a version cut short", R"({"version": "1", "nodes": {}})", "dataCorrupted at version: "},
        {"an expression", R"({"version": "{{initServerParam.v}}", "nodes": {}})", "dataCorrupted at version: "},
        {"nodes as a list", R"({"version": "1.0", "nodes": []})",
         "typeMismatch at nodes: expected an object, found an array"},
        {"null nodes", R"({"version": "1.0", "nodes": null})",
         "valueNotFound at nodes: expected an object, found null"},
        {"null as a node", R"({"version": "1.0", "nodes": {"a b": null}})",
         "valueNotFound at nodes[\"a b\"]: expected an object, found null"},
        {"a node that is never drawn",
         R"({"version": "1.0", "nodes": {"main": {"type": "spacer"}, "x": {"type": "text"}}})",
         "keyNotFound at nodes.x: the key \"content\" is missing"},
        {"the first node in the text", R"({"version": "1.0", "nodes": {"z": {"type": "text"}, "a": {}}})",
         "keyNotFound at nodes.z: the key \"content\" is missing"},
        {"a conversion",
         R"({"version": "1.0", "nodes": {"m": {"type": "spacer", "modifiers": [{"type": "zIndex", "zIndex": "abc"}]}}})",
         "conversion at nodes.m.modifiers[0].zIndex: cannot convert \"abc\" to Float"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const std::string failure = failureOf([&] { return rootFrom(row.json); });
        EXPECT_TRUE(failure.starts_with(row.failure)) << failure;
    }
}

TEST(DSLRoot, KeyNotFoundNamesItsKey) {
    try {
        static_cast<void>(rootFrom(R"({"version": "1.0"})"));
        FAIL();
    } catch (const DecodingError& error) {
        EXPECT_EQ(error.kind, DecodingError::Kind::keyNotFound);
        EXPECT_EQ(error.key, "nodes");
        EXPECT_EQ(error.offset, std::nullopt);
    }
}

}  // namespace
}  // namespace tavrin
