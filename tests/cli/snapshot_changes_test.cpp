// SPDX-License-Identifier: MIT
#include <cstddef>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/cli/program.h"

namespace tavrin::cli {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;

/// A document whose stack holds these children, each in a line of its own from line 2 on, and a node "row".
std::string stackOf(const std::vector<std::string>& children) {
    std::string text = R"({"version": "1.0", "nodes": {"main": {"type": "vstack", "children": [)";
    for (std::size_t i = 0; i < children.size(); ++i) text += (i == 0 ? "\n" : ",\n") + children[i];
    return text + "\n]}, \"row\": {\"type\": \"hstack\", \"children\": [{\"type\": \"text\", \"content\": \"row\"}]}}}";
}

std::string textView(const std::string& content, int size = 1) {
    return R"({"type": "text", "content": ")" + content + R"(", "fontSize": )" + std::to_string(size) + "}";
}

TEST(SnapshotChanges, SayWhatDiffersBehindVeryManyViewsThatMove) {
    const Workplace place;
    std::string texts;
    for (int i = 0; i < 10; ++i) texts += (i == 0 ? "" : ", ") + textView("a");
    std::vector<std::string> views(120, R"({"type": "hstack", "children": [)" + texts + "]}");
    views.push_back(textView("b", 2));
    place.write("w.json", stackOf(views));
    ASSERT_EQ(place.run({"snapshot", "w.json", "--dir", "kept"}).err, "");
    views.back() = textView("b", 4);
    place.write("w.json", stackOf(views));
    EXPECT_THAT(place.run({"snapshot", "w.json", "--dir", "kept"}).err,
                AllOf(HasSubstr("w.json:122:1: error: 1 snapshot differs: the Text: font.system was 2 and is 4\n"),
                      ::testing::Not(HasSubstr("no view has changed"))));

    views.assign(1100, R"({"type": "spacer"})");
    place.write("w.json", stackOf(views));
    ASSERT_EQ(place.run({"snapshot", "w.json", "--dir", "kept", "--update"}).err, "");
    place.write("w.json", stackOf({views.front()}));
    EXPECT_THAT(place.run({"snapshot", "w.json", "--dir", "kept"}).err,
                AllOf(HasSubstr("the VStack: children[1] is gone, a Spacer, and 999 more differences\n"),
                      HasSubstr("error: 1 snapshot differs: more views have changed than are told one by one\n")));
}

}  // namespace
}  // namespace tavrin::cli
