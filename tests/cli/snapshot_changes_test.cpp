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

TEST(SnapshotChanges, SayOnlyWhatHasComeOrGone) {
    const std::string rowView = R"({"type": "node", "name": "row"})";
    std::vector<std::string> ten;
    for (int i = 0; i < 10; ++i) ten.push_back(textView("t" + std::to_string(i)));
    const auto with = [](std::vector<std::string> list, std::ptrdiff_t at, const std::string& view) {
        list.insert(list.begin() + at, view);
        return list;
    };
    const struct {
        const char* why;
        std::vector<std::string> before;
        std::vector<std::string> after;
        const char* message;
    } rows[] = {
        {"a view in front", ten, with(ten, 0, textView("new")),
         "w.json:2:1: error: 1 snapshot differs: the VStack: children[0] is new, a Text\n"},
        {"a view in between", ten, with(ten, 4, textView("new")),
         "w.json:6:1: error: 1 snapshot differs: the VStack: children[4] is new, a Text\n"},
        {"a view less in front", with(ten, 0, textView("old")), ten,
         "w.json:1:38: error: 1 snapshot differs: the VStack: children[0] was removed, a Text\n"},
        {"a title above shared rows",
         {textView("title"), rowView, rowView},
         {rowView, rowView},
         "w.json:1:38: error: 1 snapshot differs: the VStack: children[0] was removed, a Text\n"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const Workplace place;
        place.write("w.json", stackOf(row.before));
        ASSERT_EQ(place.run({"snapshot", "w.json", "--dir", "kept"}).status, 0);
        place.write("w.json", stackOf(row.after));
        const Finished finished = place.run({"snapshot", "w.json", "--dir", "kept"});
        EXPECT_THAT(finished.err, HasSubstr(row.message));
        EXPECT_EQ(finished.err.find("error: "), finished.err.rfind("error: ")) << finished.err;
    }
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
                AllOf(HasSubstr("the VStack: children[1] was removed, a Spacer, and 999 more differences\n"),
                      HasSubstr("error: 1 snapshot differs: more views have changed than are told one by one\n")));
}

}  // namespace
}  // namespace tavrin::cli
