// SPDX-License-Identifier: MIT
#include "tavrin/nodes/link_node.h"

#include <gtest/gtest.h>

#include "tavrin/platform/ui/view_modifiers.h"
#include "tests/dsl/rendered.h"

namespace tavrin {
namespace {

constexpr const char* label = R"({"type": "circle"})";

std::string linkTo(std::string_view url) {
    return "{\"type\": \"link\", \"url\": \"" + std::string(url) + "\", \"view\": " + label + "}";
}

TEST(LinkNode, LeadsToAnAddress) {
    for (const char* url : {"https://example.com/a?b=c#d", "app:", "relative/path", "a"}) {
        const AnyView view = renderedNode(linkTo(url));
        ASSERT_NE(view.as<Link>(), nullptr) << url;
        EXPECT_EQ(view.as<Link>()->destination.string(), url);
        EXPECT_NE(view.as<Link>()->label.as<Circle>(), nullptr);
    }
}

TEST(LinkNode, EncodesWhatAnAddressMayNotHold) {
    const AnyView view = renderedNode(linkTo("https://m\u00fcnchen.de/a b"));
    ASSERT_NE(view.as<Link>(), nullptr);
    EXPECT_EQ(view.as<Link>()->destination.string(), "https://xn--mnchen-3ya.de/a%20b");
}

TEST(LinkNode, IsItsLabelWithoutAnAddress) {
    for (const char* url : {"", "not a url:", "https://a[b", "https://a:b/", "{{initServerParam.u}}"})
        EXPECT_NE(renderedNode(linkTo(url)).as<Circle>(), nullptr) << url;
    const AnyView modified =
        renderedNode(R"({"type": "link", "url": "", "view": {"type": "circle"}, "modifiers": [{"type": "clipped"}]})");
    ASSERT_NE(modified.as<Clipped>(), nullptr);
    EXPECT_NE(modified.as<Clipped>()->content.as<Circle>(), nullptr);
}

TEST(LinkNode, AsksTheHostsConverter) {
    Context context;
    context.linkConverter = [](const URL& url) { return url.appendingPathComponent("from-widget"); };
    const AnyView view = TavrinEngine().loadView(documentOf(linkTo("https://example.com/a")), std::nullopt, context);
    ASSERT_NE(view.as<Link>(), nullptr);
    EXPECT_EQ(view.as<Link>()->destination.string(), "https://example.com/a/from-widget");

    context.linkConverter = [](const URL&) -> URL { throw TavrinError("Host", "what is no address is not converted"); };
    EXPECT_NO_THROW(static_cast<void>(TavrinEngine().loadView(documentOf(linkTo("a b:")), std::nullopt, context)));
    EXPECT_EQ(failureOf([&] { return TavrinEngine().loadView(documentOf(linkTo("a")), std::nullopt, context); }),
              "Host: what is no address is not converted");
}

TEST(LinkNode, DrawsItsLabelFirst) {
    const std::string broken =
        R"({"type": "link", "url": "a", "view": {"type": "color", "value": "none"}, "modifiers": [
            {"type": "foregroundColor", "color": {"value": "nor this"}}]})";
    EXPECT_EQ(failureOf([&] { return renderedNode(broken); }), "ColorNode: invalid color: none");
}

TEST(LinkNode, BindsTheAddressAndThenTheLabel) {
    const std::string node =
        R"({"type": "link", "url": "{{initServerParam.u}}", "view": {"type": "text", "content": "{{initServerParam.t}}"}})";
    const auto failure = [&](std::string_view model) { return failureOf([&] { return renderedNode(node, model); }); };
    EXPECT_EQ(failure("{}"), "ResolveExpression: key path not found in model: [\"u\"]");
    EXPECT_EQ(failure(R"({"u": "a"})"), "ResolveExpression: key path not found in model: [\"t\"]");
    const AnyView view = renderedNode(node, R"({"u": "app:x", "t": "Hello"})");
    ASSERT_NE(view.as<Link>(), nullptr);
    EXPECT_EQ(view.as<Link>()->destination.string(), "app:x");
    EXPECT_EQ(std::get<SharedText>(view.as<Link>()->label.as<Text>()->content), "Hello");
}

}  // namespace
}  // namespace tavrin
