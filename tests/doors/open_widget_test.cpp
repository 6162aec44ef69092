// SPDX-License-Identifier: MIT
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tavrin/doors/media_type.h"
#include "tavrin/doors/open_document.h"

namespace tavrin {
namespace {

/// The kind of the error that `call` ends with; empty for none.
template <class Call>
std::string kindOfFailure(const Call& call) {
    try {
        call();
        return "";
    } catch (const CallError& error) {
        return error.description.kind;
    }
}

OpenDocument documentOf(const std::string& content) {
    return OpenDocument(R"({"version": "1.0", "nodes": {"main": {"type": "text", "content": ")" + content + "\"}}}");
}

TEST(OpenWidget, AViolatedPreconditionIsAnError) {
    const OpenDocument document = documentOf("{{initServerParam.a]0[}}");
    EXPECT_EQ(kindOfFailure([&] { (void)document.widget("{}", {}); }), "Precondition");
}

TEST(OpenWidget, ATokenIsThatOfItsCopyOnly) {
    const CancelToken cancelled;
    cancelled.cancel();
    const OpenWidget widget = documentOf("Ada").widget(std::nullopt, {});
    EXPECT_EQ(kindOfFailure([&] { (void)widget.with(cancelled).encode(); }), "Budget");
    EXPECT_EQ(kindOfFailure([&] { (void)widget.with(cancelled).layoutText(); }), "Budget");
    EXPECT_EQ(kindOfFailure([&] { (void)widget.with(cancelled).explanation(std::nullopt); }), "Budget");
    EXPECT_EQ(kindOfFailure([&] { (void)widget.with(cancelled).with(std::nullopt).encode(); }), "");
    EXPECT_EQ(kindOfFailure([&] { (void)widget.with(CancelToken()).encode(); }), "");
    EXPECT_EQ(widget.with(CancelToken()).encode(), widget.encode());
}

TEST(MediaTypes, EachFormatHasItsOwn) {
    EXPECT_EQ(mediaTypes[PictureFormat::png], "image/png");
    EXPECT_THAT(mediaTypes.values(), testing::Each(testing::HasSubstr("/")));
}

}  // namespace
}  // namespace tavrin
