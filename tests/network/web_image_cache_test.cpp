// SPDX-License-Identifier: MIT
#include "tavrin/images/web_image_cache.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <future>
#include <optional>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tavrin/platform/foundation/budget/metering_elsewhere.h"
#include "tavrin/platform/foundation/net/percent_encoding.h"
#include "tavrin/platform/foundation/net/url_session.h"
#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/platform/foundation/threads/main_queue.h"
#include "tavrin/platform/foundation/threads/parallel_loop.h"
#include "tests/network/listener.h"
#include "tests/network/web_server.h"

namespace tavrin {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

URL urlOf(const std::string& text) { return *URL::parse(text); }

class WebImageCaches : public ::testing::Test {
protected:
    WebImageCaches() { useNoProxy(); }

    /// Waits until a prefetch is complete; its completion comes over the main queue.
    void prefetch(const std::vector<URL>& urls, FetchPolicy policy = FetchPolicy::all) {
        bool isComplete = false;
        cache.cacheImages(
            urls, [&] { isComplete = true; }, policy);
        while (!isComplete) MainQueue::shared().runFor(0.01);
    }

    WebServer server;
    URLSession session;
    WebImageCache cache{session};
};
using WebImageCacheThreads = WebImageCaches;

struct LoadRow {
    const char* why;
    std::string path;
    bool isPicture;
    /// The codes that are logged, in their order.
    std::vector<std::string> codes;
    double atLeast;
};

struct Loaded {
    bool isPicture;
    std::vector<std::string> errors;
    double seconds;
};

Loaded load(WebImageCache& cache, const URL& url) {
    Listener listener;
    const auto begin = std::chrono::steady_clock::now();
    const bool isPicture = cache.loadImageSync(url, &listener) != nullptr;
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
    return {isPicture, listener.errors(), taken.count()};
}

std::string message(const std::string& code, const std::string& url) {
    return code + (code == "LoadImageTimeOut" ? ": Load Image Timeout: " : ": Load Image Failed: ") + url;
}

// The slow ones are slow at the same time.
TEST_F(WebImageCacheThreads, EachLoadHasItsOwnTwoSeconds) {
    const std::vector<std::string> failed{"LoadImageError"};
    const std::vector<std::string> timedOut{"LoadImageTimeOut", "LoadImageError"};
    const std::vector<LoadRow> rows{
        {"a picture", "/ok", true, {}, 0},
        {"whatever the status", "/status/404", true, {}, 0},
        {"behind a redirect", "/to/" + server.at("/ok/2"), true, {}, 0},
        {"late", "/late/1000", true, {}, 1},
        {"slow", "/stall/1000", true, {}, 1},
        {"too late", "/late/2100/a", false, timedOut, 2},
        {"too slow", "/stall/2100/a", false, timedOut, 2},
        {"far too late", "/late/10000", false, timedOut, 2},
        {"no picture", "/text", false, failed, 0},
        {"no body", "/none", false, failed, 0},
        {"less than announced", "/short", false, failed, 0},
        {"a reset connection", "/reset", false, failed, 0},
        {"redirects without end", "/loop", false, failed, 0},
        {"more announced than may come", "/announced", false, failed, 0},
    };
    std::vector<std::future<Loaded>> loads;
    for (const LoadRow& row : rows)
        loads.push_back(std::async(std::launch::async, [&] { return load(cache, urlOf(server.at(row.path))); }));
    for (std::size_t i = 0; i < rows.size(); ++i) {
        SCOPED_TRACE(rows[i].why);
        const std::string url = server.at(rows[i].path);
        const Loaded loaded = loads[i].get();
        EXPECT_EQ(loaded.isPicture, rows[i].isPicture);
        EXPECT_GE(loaded.seconds, rows[i].atLeast);
        EXPECT_LT(loaded.seconds, 4) << "each waits for itself alone";
        std::vector<std::string> errors;
        for (const std::string& code : rows[i].codes) errors.push_back(message(code, url));
        EXPECT_EQ(loaded.errors, errors);
        EXPECT_EQ(cache.holds(urlOf(url)), rows[i].isPicture);
    }
    std::this_thread::sleep_for(400ms);
    EXPECT_FALSE(cache.holds(urlOf(server.at("/late/2100/a")))) << "what arrives late is dropped";
    EXPECT_FALSE(cache.holds(urlOf(server.at("/stall/2100/a"))));
    EXPECT_EQ(load(cache, urlOf(server.at("/late/1000"))).errors, std::vector<std::string>());
    EXPECT_EQ(server.requests("/late/1000"), 1) << "the second time it is in memory";
}

TEST_F(WebImageCaches, WaitNearlyTwoSeconds) {
    // A busy machine may be late by itself.
    bool isInTime = false;
    for (int attempt = 0; attempt < 3 && !isInTime; ++attempt)
        isInTime = load(cache, urlOf(server.at("/stall/1900/" + std::to_string(attempt)))).isPicture;
    EXPECT_TRUE(isInTime);
}

TEST_F(WebImageCaches, AskOnlyForWhatTheyDoNotHold) {
    const URL url = urlOf(server.at("/ok/a"));
    const auto first = cache.loadImageSync(url, nullptr);
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->width(), 8);
    EXPECT_EQ(cache.loadImageSync(url, nullptr), first);
    EXPECT_EQ(cache.loadImageFromFile(url, nullptr), first) << "memory comes first, whatever the loader";
    prefetch({url, url});
    EXPECT_EQ(server.requests("/ok/a"), 1);
    EXPECT_NE(cache.loadImageSync(urlOf(server.at("/ok/a#b")), nullptr), nullptr);
    EXPECT_EQ(server.requests("/ok/a"), 2) << "another address, though the same resource";
}

TEST_F(WebImageCaches, DrawWhatTheyHoldUnderEveryPolicy) {
    const URL url = urlOf(server.at("/ok/a"));
    Listener listener;
    EXPECT_EQ(cache.loadImageSync(url, &listener, FetchPolicy::none), nullptr);
    EXPECT_EQ(cache.loadImageSync(url, &listener, FetchPolicy::publicOnly), nullptr);
    const std::string failed = "LoadImageError: Load Image Failed: " + url.string();
    EXPECT_THAT(
        listener.errors(),
        ElementsAre("LoadImageRefused: Load Image Refused: " + url.string() + ": nothing may be fetched", failed,
                    "LoadImageRefused: Load Image Refused: " + url.string() + ": the address 127.0.0.1 is not public",
                    failed));
    prefetch({url}, FetchPolicy::none);
    prefetch({url}, FetchPolicy::publicOnly);
    EXPECT_EQ(server.requests(), 0);
    const auto image = cache.loadImageSync(url, nullptr);
    EXPECT_NE(image, nullptr);
    for (const FetchPolicy policy : {FetchPolicy::none, FetchPolicy::publicOnly})
        EXPECT_EQ(cache.loadImageSync(url, nullptr, policy), image);
}

TEST_F(WebImageCaches, ReadFiles) {
    std::string name = (std::filesystem::temp_directory_path() / "tavrin-cache-XXXXXX").string();
    const std::filesystem::path folder = ::mkdtemp(name.data());
    std::ofstream(folder / "picture") << smallPicture();
    std::ofstream(folder / "text") << "hello";
    Listener listener;
    const URL picture = URL::fileURL(folder / "picture");
    const auto image = cache.loadImageFromFile(picture, &listener);
    EXPECT_NE(image, nullptr);
    EXPECT_EQ(cache.loadImageFromFile(URL::fileURL(folder / "text"), &listener), nullptr);
    EXPECT_THAT(listener.errors(), ElementsAre()) << "a file that is no picture is not worth a word";
    EXPECT_EQ(cache.loadImageFromFile(URL::fileURL(folder / "none"), &listener), nullptr);
    EXPECT_EQ(cache.loadImageFromFile(URL::fileURL(folder), &listener), nullptr);
    ASSERT_EQ(listener.errors().size(), 2U);
    EXPECT_EQ(listener.errors()[0], "LoadImageError: Load local file error: cannot read '" +
                                        (folder / "none").string() + "': No such file or directory");
    EXPECT_THAT(listener.errors()[1], HasSubstr("Is a directory"));
    EXPECT_EQ(cache.loadImageFromFile(URL::fileURL(folder / "none"), nullptr), nullptr) << "no one to tell";
    std::filesystem::remove_all(folder);
    EXPECT_EQ(cache.loadImageFromFile(picture, &listener), image) << "from memory";
}

TEST_F(WebImageCaches, ReadWhatStandsInTheAddress) {
    const std::string escaped = percentEncoded(smallPicture(), [](char) { return false; });
    const struct {
        const char* why;
        std::string url;
        bool isPicture;
    } rows[] = {
        {"a picture", "data:image/png," + escaped, true},
        {"whatever it says that it is", "data:text/plain," + escaped, true},
        {"in base64", "data:image/gif;base64,R0lGODlhAQABAIAAAP///wAAACH5BAAAAAAALAAAAAABAAEAAAICRAEAOw==", true},
        {"no picture", "data:image/png,hello", false},
        {"digits that are none", "data:image/png;base64,!", false},
        {"no comma", "data:image/png", false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        for (const FetchPolicy policy : {FetchPolicy::none, FetchPolicy::publicOnly, FetchPolicy::all}) {
            Listener listener;
            cache.setMaximumBytes(0);
            cache.setMaximumBytes(1'000'000);
            EXPECT_EQ(cache.loadImageSync(urlOf(row.url), &listener, policy) != nullptr, row.isPicture);
            const std::vector<std::string> failed{"LoadImageError: Load Image Failed: " + urlOf(row.url).string()};
            EXPECT_EQ(listener.errors(), row.isPicture ? std::vector<std::string>() : failed);
            EXPECT_EQ(cache.holds(urlOf(row.url)), row.isPicture);
        }
    }
    cache.setMaximumBytes(0);
    cache.setMaximumBytes(1'000'000);
    prefetch({urlOf(rows[0].url), urlOf(rows[3].url)}, FetchPolicy::none);
    EXPECT_TRUE(cache.holds(urlOf(rows[0].url)));
    EXPECT_FALSE(cache.holds(urlOf(rows[3].url)));
}

TEST_F(WebImageCaches, PrefetchWithoutAWord) {
    const std::vector<URL> urls{urlOf(server.at("/ok/1")), urlOf(server.at("/text")), urlOf(server.at("/reset")),
                                urlOf("ftp://a/b"),        urlOf(server.at("/ok/1")), urlOf(server.at("/late/300"))};
    prefetch(urls);
    EXPECT_EQ(server.requests("/ok/1"), 1) << "an address that is listed twice is fetched once";
    const std::vector<bool> held{true, false, false, false, true, true};
    for (std::size_t i = 0; i < urls.size(); ++i) EXPECT_EQ(cache.holds(urls[i]), bool{held[i]}) << urls[i].string();
    prefetch({});
    prefetch(urls);
    EXPECT_EQ(server.requests("/ok/1"), 1);
    EXPECT_EQ(server.requests("/text"), 2);
}

TEST_F(WebImageCaches, CompletionsWaitForTheMainQueue) {
    bool isComplete = false;
    cache.cacheImages({urlOf(server.at("/ok/1"))}, [&] { isComplete = true; });
    while (!cache.holds(urlOf(server.at("/ok/1")))) std::this_thread::sleep_for(1ms);
    std::this_thread::sleep_for(50ms);
    EXPECT_FALSE(isComplete) << "nobody has run the queue";
    MainQueue::shared().runPending();
    EXPECT_TRUE(isComplete);
}

/// What a budget has to say of the work; empty when nothing.
std::string refusalOf(const RenderBudget& budget, const std::function<void()>& work) {
    try {
        Cost cost;
        const Metering metering(budget, cost);
        work();
    } catch (const TavrinError& error) {
        return error.kind + ": " + error.message;
    }
    return {};
}

TEST_F(WebImageCaches, PicturesCostTheSameFromWhereverTheyCome) {
    const std::string file = ::testing::TempDir() + "counted.png";
    std::ofstream(file, std::ios::binary) << smallPicture();
    const URL remote = urlOf(server.at("/ok/counted"));
    const std::string escaped = percentEncoded(smallPicture(), [](char) { return false; });
    const URL inItself = urlOf("data:image/png," + escaped);
    const struct {
        const char* why;
        std::function<std::shared_ptr<const Bitmap>()> load;
    } rows[] = {{"from the network", [&] { return cache.loadImageSync(remote, nullptr); }},
                {"from a file", [&] { return cache.loadImageFromFile(URL::fileURL(file), nullptr); }},
                {"from a file's address", [&] { return cache.loadImageSync(URL::fileURL(file), nullptr); }},
                {"from its own address", [&] { return cache.loadImageSync(inItself, nullptr); }}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const auto load = [&] { EXPECT_NE(row.load(), nullptr); };
        constexpr std::uint64_t pixels = 32;
        const std::uint64_t bytes = 4 * pixels + smallPicture().size();  // the file is held until it is decoded
        const std::string tooFewBytes = fmt::format("Budget: more than {} bytes are held at once", bytes - 1);
        const std::string tooFewPixels = "Budget: more than 31 pixels are painted";
        EXPECT_EQ(refusalOf({.bytes = 10}, load), "Budget: more than 10 bytes are held at once") << "it is not read";
        EXPECT_EQ(refusalOf({.bytes = bytes - 1}, load), tooFewBytes) << "it is not decoded";
        EXPECT_EQ(refusalOf({.pixels = pixels - 1}, load), tooFewPixels);
        EXPECT_EQ(refusalOf({.pixels = pixels, .bytes = bytes}, load), "") << "now it is in memory";
        EXPECT_EQ(refusalOf({.pixels = pixels, .bytes = bytes}, load), "");
        EXPECT_EQ(refusalOf({.bytes = bytes - 1}, load), tooFewBytes);
        EXPECT_EQ(refusalOf({.pixels = pixels - 1}, load), tooFewPixels);
    }
}

TEST_F(WebImageCaches, ADownloadEndsWhereNobodyMayHoldItsFile) {
    const URL url = urlOf(server.at("/endless"));
    const auto load = [&] { cache.loadImageSync(url, nullptr); };
    EXPECT_EQ(refusalOf({.bytes = 500'000}, load), "Budget: more than 500000 bytes are held at once");
}

TEST_F(WebImageCacheThreads, WaitingEndsWithTheBudget) {
    const URL url = urlOf(server.at("/late/1500/budget"));
    const auto begin = std::chrono::steady_clock::now();
    const auto load = [&] { cache.loadImageSync(url, nullptr); };
    EXPECT_EQ(refusalOf({.seconds = 1}, [&] { EXPECT_EQ(cache.loadImageSync(url, nullptr), nullptr); }), "")
        << "half of the time is left to draw without it";
    const auto waited = std::chrono::steady_clock::now() - begin;
    EXPECT_GE(waited, 480ms);
    EXPECT_LT(waited, 1000ms);
    const CancelToken token;
    std::jthread other([&] {
        std::this_thread::sleep_for(100ms);
        token.cancel();
    });
    EXPECT_EQ(refusalOf({.cancel = token}, load), "Budget: the call was cancelled");
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 1400ms);
    EXPECT_NE(cache.loadImageSync(url, nullptr), nullptr) << "others wait as long as they may";
}

TEST_F(WebImageCacheThreads, WhoHasMoreBudgetGetsThePicture) {
    const URL url = urlOf(server.at("/late/300/more"));
    std::jthread poor([&] { EXPECT_NE(refusalOf({.bytes = 100}, [&] { cache.loadImageSync(url, nullptr); }), ""); });
    EXPECT_NE(cache.loadImageSync(url, nullptr), nullptr);
}

TEST_F(WebImageCacheThreads, PicturesOfOneCallAreDecodedAsFarAsItsBytesReach) {
    constexpr std::size_t count = 16;
    constexpr std::size_t pictureBytes = 128;
    for (const bool isLocal : {false, true}) {
        SCOPED_TRACE(isLocal);
        std::vector<URL> urls;
        for (std::size_t i = 0; i < count; ++i) {
            const std::string file = fmt::format("{}shared-{}.png", ::testing::TempDir(), i);
            std::ofstream(file, std::ios::binary) << smallPicture();
            urls.push_back(isLocal ? URL::fileURL(file) : urlOf(server.at(fmt::format("/ok/shared/{}", i))));
        }
        Cost cost;
        const Metering metering({.bytes = 3 * pictureBytes + smallPicture().size() + 100}, cost);
        const MeteringElsewhere elsewhere;
        std::atomic<int> loaded = 0;
        parallelLoop(count, count, [&](std::size_t i) {
            const std::optional<Cost> spent = elsewhere.of([&] {
                try {
                    const auto picture =
                        isLocal ? cache.loadImageFromFile(urls[i], nullptr) : cache.loadImageSync(urls[i], nullptr);
                    EXPECT_NE(picture, nullptr);
                } catch (const TavrinError& error) {
                    EXPECT_EQ(error.kind, "Budget");
                }
            });
            if (spent) ++loaded;
        });
        EXPECT_GE(loaded, 1) << "while they are decoded, files are held, too";
        EXPECT_LE(loaded, 3);
        EXPECT_EQ(std::count_if(urls.begin(), urls.end(), [&](const URL& url) { return cache.holds(url); }), loaded)
            << "no other was decoded";
    }
}

TEST_F(WebImageCacheThreads, TenThousandAddressesAtOnce) {
    std::vector<URL> urls;
    for (int i = 0; i < 10'000; ++i) urls.push_back(urlOf(server.at("/ok/" + std::to_string(i))));
    prefetch(urls);
    EXPECT_EQ(server.requests(), 10'000);
    EXPECT_LE(server.mostConnections(), 32);
    std::size_t held = 0;
    for (const URL& url : urls) held += cache.holds(url) ? 1U : 0U;
    EXPECT_EQ(held, urls.size());
}

TEST_F(WebImageCacheThreads, OneAddressFromSixteenThreads) {
    const URL url = urlOf(server.at("/late/50"));
    std::vector<std::future<bool>> loads;
    for (int i = 0; i < 16; ++i)
        loads.push_back(std::async(std::launch::async, [&] {
            bool areAll = true;
            for (int time = 0; time < 50; ++time) areAll = areAll && cache.loadImageSync(url, nullptr) != nullptr;
            return areAll;
        }));
    for (auto& done : loads) EXPECT_TRUE(done.get());
    EXPECT_EQ(server.requests(), 1) << "all wait for one";
}

TEST_F(WebImageCacheThreads, OneFileFromSixteenThreads) {
    const URL url = URL::fileURL(TAVRIN_SOURCE_DIR "/tests/images/pictures/large.jpg");
    std::vector<std::future<std::shared_ptr<const Bitmap>>> loads;
    for (int i = 0; i < 16; ++i)
        loads.push_back(std::async(std::launch::async, [&] { return cache.loadImageFromFile(url, nullptr); }));
    const auto first = loads[0].get();
    ASSERT_NE(first, nullptr);
    for (std::size_t i = 1; i < loads.size(); ++i) EXPECT_EQ(loads[i].get(), first);
    Listener listener;
    EXPECT_EQ(cache.loadImageFromFile(URL::fileURL("/none"), &listener), nullptr);
    EXPECT_EQ(listener.errors().size(), 1U);
}

TEST_F(WebImageCacheThreads, WhoFailsTogetherIsToldAlike) {
    const URL bad = urlOf(server.at("/text"));
    std::vector<std::future<Loaded>> loads;
    for (int i = 0; i < 4; ++i) loads.push_back(std::async(std::launch::async, [&] { return load(cache, bad); }));
    for (auto& done : loads)
        EXPECT_THAT(done.get().errors, ElementsAre("LoadImageError: Load Image Failed: " + bad.string()));
    EXPECT_FALSE(cache.holds(bad));
}

// Each has two seconds of its own, also for a load that another one has begun.
TEST_F(WebImageCacheThreads, ALateComerWaitsLonger) {
    const URL url = urlOf(server.at("/late/2600"));
    auto early = std::async(std::launch::async, [&] { return load(cache, url); });
    std::this_thread::sleep_for(1200ms);
    const Loaded late = load(cache, url);
    EXPECT_TRUE(late.isPicture);
    EXPECT_LT(late.seconds, 2) << "it did not begin anew";
    EXPECT_FALSE(early.get().isPicture);
    EXPECT_EQ(server.requests(), 1);
    EXPECT_TRUE(cache.holds(url)) << "somebody got it in time";
}

TEST_F(WebImageCacheThreads, WhoComesAfterALoadWasGivenUpBeginsAnew) {
    const URL url = urlOf(server.at("/late/2300"));
    EXPECT_FALSE(load(cache, url).isPicture);
    EXPECT_FALSE(load(cache, url).isPicture);
    EXPECT_EQ(server.requests(), 2);
}

TEST_F(WebImageCacheThreads, APrefetchServesWhoWaitsForItsPicture) {
    std::vector<URL> urls;
    for (int i = 0; i < 200; ++i) urls.push_back(urlOf(server.at("/late/300/" + std::to_string(i))));
    bool isComplete = false;
    cache.cacheImages(urls, [&] { isComplete = true; });
    const Loaded last = load(cache, urls.back());
    EXPECT_TRUE(last.isPicture) << "though it stood behind all others";
    EXPECT_LT(last.seconds, 1.5);
    while (!isComplete) MainQueue::shared().runFor(0.01);
    EXPECT_EQ(server.requests(), 200) << "each once";
}

TEST_F(WebImageCacheThreads, WhoGivesUpLeavesAPrefetchAlone) {
    const URL url = urlOf(server.at("/late/2300"));
    bool isComplete = false;
    cache.cacheImages({url}, [&] { isComplete = true; });
    EXPECT_FALSE(load(cache, url).isPicture);
    while (!isComplete) MainQueue::shared().runFor(0.01);
    EXPECT_TRUE(cache.holds(url));
    EXPECT_EQ(server.requests(), 1);
}

TEST_F(WebImageCacheThreads, ACacheMayGoBeforeItsLoads) {
    {
        WebImageCache brief(session);
        brief.cacheImages({urlOf(server.at("/late/100"))}, nullptr);
    }
    EXPECT_TRUE(load(cache, urlOf(server.at("/late/200"))).isPicture);
}

TEST_F(WebImageCacheThreads, OverlappingPrefetchesShareTheirDownloads) {
    std::vector<URL> urls;
    for (int i = 0; i < 8; ++i) urls.push_back(urlOf(server.at("/late/200/" + std::to_string(i))));
    int complete = 0;
    for (int time = 0; time < 5; ++time) cache.cacheImages(urls, [&] { ++complete; });
    while (complete < 5) MainQueue::shared().runFor(0.01);
    EXPECT_EQ(server.requests(), 8);
}

TEST(ProcessWideImageCache, EndsWithTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    useNoProxy();
    const auto leave = [] {
        const WebServer& server = *new WebServer;  // goes on answering to the very end
        WebImageCache& cache = WebImageCache::shared();
        cache.cacheImages({urlOf(server.at("/late/20000")), urlOf(server.at("/ok"))}, [] {});
        while (server.requests() < 2) std::this_thread::sleep_for(1ms);
        std::exit(cache.maximumBytes() == std::size_t{256} << 20 ? 7 : 1);
    };
    EXPECT_EXIT(leave(), ::testing::ExitedWithCode(7), "");
}

TEST(ProcessWideImageCache, BeginsAnewInAForkedChild) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    useNoProxy();
    const auto forkAndLoad = [] {
        const WebServer server;
        WebImageCache& cache = WebImageCache::shared();
        const URL known = urlOf(server.at("/ok/1"));
        const URL underWay = urlOf(server.at("/late/1000"));
        if (!load(cache, known).isPicture) std::_Exit(1);
        cache.cacheImages({underWay}, nullptr);
        while (server.requests() < 2) std::this_thread::sleep_for(1ms);
        const pid_t child = ::fork();
        if (child == 0) {
            for (const URL& url : {known, underWay, urlOf(server.at("/ok/2"))})
                if (!load(cache, url).isPicture) std::_Exit(2);
            std::exit(7);  // waits for its own threads, not for its parent's
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        std::_Exit(WIFEXITED(status) ? WEXITSTATUS(status) : 3);
    };
    EXPECT_EXIT(forkAndLoad(), ::testing::ExitedWithCode(7), "");
}

}  // namespace
}  // namespace tavrin
