// SPDX-License-Identifier: MIT
#include "tavrin/images/web_image.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <limits>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tavrin/dsl/render_state.h"
#include "tavrin/images/web_image_cache.h"
#include "tavrin/images/web_image_hasher.h"
#include "tavrin/images/web_image_node.h"
#include "tavrin/platform/layout/layout_tree.h"
#include "tavrin/platform/text/text_engine.h"
#include "tavrin/platform/ui/views.h"
#include "tests/dsl/rendered.h"
#include "tests/network/listener.h"
#include "tests/network/web_server.h"

namespace tavrin {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

AnyView load(Context& context, const std::string& main, std::optional<std::string_view> model = std::nullopt) {
    return TavrinEngine().loadView(documentOf(main), model, context);
}

/// The pictures that a tree draws, in document order; null for each that is missing.
std::vector<std::shared_ptr<const Bitmap>> picturesOf(const AnyView& view) {
    const auto tree = layout::layOut(view, {300, 100}, {}, text::TextEngine::ofThisThread());
    std::vector<std::shared_ptr<const Bitmap>> pictures;
    for (const layout::LayoutNode& node : tree.nodes())
        if (const auto* image = node.view->as<Image>()) pictures.push_back(image->bitmap);
    return pictures;
}

std::string nodeOf(const std::string& url, const std::string& more = {}) {
    return R"({"type": "webImage", "url": ")" + url + "\"" + more + "}";
}
std::string stackOf(const std::vector<std::string>& children) {
    std::string text = R"({"type": "hstack", "children": [)";
    for (const std::string& child : children) text += (text.ends_with('[') ? "" : ", ") + child;
    return text + "]}";
}
std::string timeout(const std::string& url) { return "LoadImageTimeOut: Load Image Timeout: " + url; }
std::string failure(const std::string& url) { return "LoadImageError: Load Image Failed: " + url; }

class WebImages : public ::testing::Test {
protected:
    WebImages() { useNoProxy(); }

    /// Lays out and measures how long that takes, in seconds.
    double layOut(const AnyView& view) {
        const auto begin = std::chrono::steady_clock::now();
        pictures = picturesOf(view);
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    }

    WebServer server;
    std::shared_ptr<Listener> listener = std::make_shared<Listener>();
    Context context{listener};
    std::vector<std::shared_ptr<const Bitmap>> pictures;
};
using WebImageThreads = WebImages;

TEST(WebImageHashers, NameFiles) {
    const struct {
        const char* url;
        const char* name;
    } rows[] = {{"a", "2b606"},
                {"b", "2b607"},
                {"", "1505"},
                {"https://example.com/\xC3\xA9", "be12f5c4"},
                {"https://example.com/a.png", nullptr}};
    for (const auto& row : rows) {
        if (row.name) {
            EXPECT_EQ(WebImageHasher(row.url), row.name);
        } else {
            EXPECT_EQ(WebImageHasher(row.url).find_first_not_of("0123456789abcdef"), std::string::npos);
        }
    }
}

TEST_F(WebImages, NodesKeepTheirKeys) {
    const Node node = nodeFrom(R"({"type": "webImage", "url": 5, "alt": true})");
    const auto* record = node.as<WebImageNode>();
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(record->url.wrappedValue(), "5");
    EXPECT_EQ(record->alt.wrappedValue(), "true");
    EXPECT_EQ(node.version(), DSLVersion::v1);
    EXPECT_EQ(failureOf([] { return nodeFrom(R"({"type": "webImage"})"); }),
              "keyNotFound at : the key \"url\" is missing");
}

TEST_F(WebImages, ViewsKnowWherePicturesAre) {
    context.maxImageSize = Size{50, 40};
    const AnyView remote =
        load(context, nodeOf("{{initServerParam.a}}", R"(, "alt": "not a url:")"), R"({"a": "x/y"})");
    const auto* image = remote.as<WebImage>();
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->url->string(), "x/y");
    EXPECT_EQ(image->alt, std::nullopt);
    EXPECT_EQ(image->placeholder, "");
    EXPECT_EQ(image->local, false);
    EXPECT_EQ(image->maxImageSize, (Size{50, 40}));
    EXPECT_EQ(image->logger, listener);

    context.imageCacheDir = URL::fileURL("/pictures");
    const AnyView local = load(context, nodeOf("not a url:", R"(, "alt": "a")"));
    image = local.as<WebImage>();
    EXPECT_EQ(image->url->string(), "file:///pictures/" + WebImageHasher("not a url:"));
    EXPECT_EQ(image->alt->string(), "file:///pictures/2b606");
    EXPECT_EQ(image->local, true);
}

TEST_F(WebImages, AnExpressionThatNothingResolvesIsNoAddress) {
    const AnyView view = load(context, nodeOf("{{initServerParam.a}}", R"(, "alt": "{{initServerParam.b}}")"));
    EXPECT_EQ(view.as<WebImage>()->url, std::nullopt);
    EXPECT_EQ(view.as<WebImage>()->alt, std::nullopt);
    EXPECT_TRUE(RenderState::of(context).webImageURLs.empty());
}

TEST_F(WebImages, EachRenderRecordsTheFirstAddress) {
    context.fetchPolicy = FetchPolicy::none;
    const std::string main = stackOf({nodeOf("http://a/1", R"(, "alt": "http://a/2")"), nodeOf("not a url:")});
    load(context, main);
    load(context, main);
    EXPECT_EQ(RenderState::of(context).webImageURLs,
              (std::vector<URL>{*URL::parse("http://a/1"), *URL::parse("http://a/1")}));
}

TEST_F(WebImages, FallBack) {
    const std::string good = server.at("/ok/fallback"), bad = server.at("/text/fallback"),
                      worse = server.at("/none/fallback");
    const struct {
        const char* why;
        std::string main;
        bool isPicture;
        std::vector<std::string> errors;
    } rows[] = {
        {"the first", nodeOf(good, R"(, "alt": ")" + bad + "\""), true, {}},
        {"the second", nodeOf(bad, R"(, "alt": ")" + good + "\""), true, {failure(bad)}},
        {"neither", nodeOf(bad, R"(, "alt": ")" + worse + "\""), false, {failure(bad), failure(worse)}},
        {"only the second is an address", nodeOf("not a url:", R"(, "alt": ")" + good + "\""), true, {}},
        {"no address at all", nodeOf("not a url:"), false, {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const auto heard = std::make_shared<Listener>();
        Context fresh(heard);
        const auto drawn = picturesOf(load(fresh, row.main));
        ASSERT_EQ(drawn.size(), 1U);
        EXPECT_EQ(drawn[0] != nullptr, row.isPicture);
        EXPECT_EQ(heard->errors(), row.errors);
    }
}

TEST_F(WebImages, ScaleDownToTheGreatestSize) {
    context.maxImageSize = Size{4, 4};
    const auto scaled = picturesOf(load(context, nodeOf(server.at("/ok/scaled"))));
    ASSERT_NE(scaled.at(0), nullptr);
    EXPECT_EQ(scaled[0]->width(), 4);
    EXPECT_EQ(scaled[0]->height(), 2);
    Context unbounded;
    EXPECT_EQ(picturesOf(load(unbounded, nodeOf(server.at("/ok/scaled")))).at(0)->width(), 8);
    EXPECT_EQ(server.requests("/ok/scaled"), 1) << "memory has it as it came";
}

using Pixels = std::vector<std::uint32_t>;

/// The width, then the pixels.
Pixels pixelsOf(const Bitmap& picture) {
    Pixels pixels{static_cast<std::uint32_t>(picture.width())};
    pixels.insert(pixels.end(), picture.row(0), picture.row(0) + picture.byteCount() / sizeof(std::uint32_t));
    return pixels;
}

/// Empties the process's cache.
void forgetPictures() {
    WebImageCache& cache = WebImageCache::shared();
    const std::size_t room = cache.maximumBytes();
    cache.setMaximumBytes(0);
    cache.setMaximumBytes(room);
}

// Whatever was drawn before, and at what size.
TEST_F(WebImages, AreTheSamePixelsInAnyOrder) {
    constexpr double infinite = std::numeric_limits<double>::infinity();
    const std::optional<Size> sizes[] = {std::nullopt,   Size{60, 40},  Size{61, 1000}, Size{120, 80},
                                         Size{240, 160}, Size{479, 77}, Size{480, 320}, Size{infinite, infinite},
                                         Size{1, 1},     Size{0, 40}};
    const std::string picture = URL::fileURL(TAVRIN_SOURCE_DIR "/tests/images/pictures/large.jpg").string();
    const auto drawn = [&](const std::optional<Size>& size) {
        Context sized;
        sized.maxImageSize = size;
        const auto found = picturesOf(load(sized, nodeOf(picture))).at(0);
        return found ? pixelsOf(*found) : Pixels();
    };
    std::vector<Pixels> alone;
    for (const auto& size : sizes) {
        forgetPictures();
        alone.push_back(drawn(size));
        ASSERT_GT(alone.back().size(), 1U);
    }
    std::mt19937 random(7);
    for (int i = 0; i < 200; ++i) {
        if (random() % 10 == 0) forgetPictures();
        const std::size_t which = random() % std::size(sizes);
        ASSERT_EQ(drawn(sizes[which]), alone[which]) << "draw " << i << ", size " << which;
    }
}

/// A picture of one pixel.
const std::string pixelInAddress = "data:image/gif;base64,R0lGODlhAQABAIAAAP///wAAACH5BAAAAAAALAAAAAABAAEAAAICRAEAOw==";

TEST_F(WebImages, DrawWhatStandsInTheirAddress) {
    context.fetchPolicy = FetchPolicy::none;
    const std::string cutOff = "data:image/gif;base64,R0lGODlh";
    const std::string main = stackOf({nodeOf(pixelInAddress), nodeOf(cutOff, R"(, "alt": ")" + pixelInAddress + "\"")});
    const auto drawn = picturesOf(load(context, main));
    ASSERT_EQ(drawn.size(), 2U);
    EXPECT_NE(drawn[0], nullptr);
    EXPECT_EQ(drawn[1], drawn[0]);
    EXPECT_THAT(listener->errors(), ElementsAre(failure(cutOff)));
    EXPECT_EQ(picturesOf(load(context, main)).at(0), drawn[0]) << "from memory";

    context.imageCacheDir = URL::fileURL("/pictures");
    const AnyView local = load(context, nodeOf(pixelInAddress));
    EXPECT_EQ(local.as<WebImage>()->url->string(), "file:///pictures/" + WebImageHasher(pixelInAddress));
}

TEST_F(WebImages, NameFilesByTheAddressAsItIsWritten) {
    const std::string main = nodeOf("http://a/b c", R"(, "alt": "http://a/%zz")");
    EXPECT_EQ(load(context, main).as<WebImage>()->url->string(), "http://a/b%20c");
    EXPECT_EQ(load(context, main).as<WebImage>()->alt->string(), "http://a/%25zz");
    context.imageCacheDir = URL::fileURL("/pictures");
    EXPECT_EQ(load(context, main).as<WebImage>()->url->string(), "file:///pictures/" + WebImageHasher("http://a/b c"));
    EXPECT_EQ(load(context, main).as<WebImage>()->alt->string(), "file:///pictures/" + WebImageHasher("http://a/%zz"));
}

TEST_F(WebImageThreads, AnAddressThatStandsFirstAndSecondLoadsOnce) {
    const std::string good = server.at("/late/300/shared"), bad = server.at("/text/shared");
    const std::string second = R"(, "alt": ")" + good + "\"";
    layOut(load(context, stackOf({nodeOf(good), nodeOf("not a url:", second), nodeOf(bad, second)})));
    ASSERT_EQ(pictures.size(), 3U);
    for (const auto& picture : pictures) EXPECT_EQ(picture, pictures[0]);
    EXPECT_NE(pictures[0], nullptr);
    EXPECT_EQ(server.requests("/late/300/shared"), 1);
}

TEST_F(WebImageThreads, AllPicturesOfATreeLoadAtOnce) {
    std::vector<std::string> children;
    std::vector<std::string> errors;
    for (int i = 0; i < 12; ++i) {
        // The later ones are there earlier.
        const std::string url =
            server.at((i % 3 == 0 ? "/late/9000/at-once-" : "/late/" + std::to_string(900 - 60 * i) + "/at-once-") +
                      std::to_string(i));
        children.push_back(nodeOf(url));
        if (i % 3 == 0) errors.insert(errors.end(), {timeout(url), failure(url)});
    }
    const double seconds = layOut(load(context, stackOf(children)));
    EXPECT_GE(seconds, 2.0);
    EXPECT_LT(seconds, 5.0) << "one after the other would take 12 seconds";
    ASSERT_EQ(pictures.size(), 12U);
    for (std::size_t i = 0; i < 12; ++i) EXPECT_EQ(pictures[i] != nullptr, i % 3 != 0) << i;
    EXPECT_THAT(listener->errors(), ElementsAreArray(errors)) << "in document order, each address's own in theirs";
    EXPECT_FALSE(listener->wasCalledElsewhere());
}

TEST_F(WebImageThreads, OnePictureThatStandsInManyPlacesLoadsOnce) {
    const std::string good = server.at("/late/100/often"), bad = server.at("/text/often");
    layOut(load(context, stackOf({nodeOf(good), nodeOf(bad), nodeOf(good), nodeOf(bad), nodeOf(good)})));
    ASSERT_EQ(pictures.size(), 5U);
    EXPECT_NE(pictures[0], nullptr);
    EXPECT_EQ(pictures[2], pictures[0]);
    EXPECT_EQ(pictures[4], pictures[0]);
    EXPECT_EQ(pictures[1], nullptr);
    EXPECT_EQ(server.requests("/late/100/often"), 1);
    EXPECT_EQ(server.requests("/text/often"), 1);
    EXPECT_THAT(listener->errors(), ElementsAre(failure(bad), failure(bad))) << "each place tells of it";
}

TEST_F(WebImageThreads, TheNextCallFindsWhatWasPrefetched) {
    const std::string main = nodeOf(server.at("/late/300/prefetched"));
    load(context, main);  // is never laid out
    EXPECT_EQ(server.requests(), 0) << "a view loads nothing before it is laid out";
    const AnyView view = load(context, main);
    const URL url = *URL::parse(server.at("/late/300/prefetched"));
    while (!WebImageCache::shared().holds(url)) std::this_thread::sleep_for(std::chrono::milliseconds(5));
    layOut(view);
    EXPECT_NE(pictures.at(0), nullptr);
    EXPECT_EQ(server.requests(), 1);
}

}  // namespace
}  // namespace tavrin
