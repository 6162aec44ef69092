// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/net/url_session.h"

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <future>
#include <mutex>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/network/web_server.h"

namespace tavrin {
namespace {

using namespace std::chrono_literals;
using ::testing::HasSubstr;
using Code = URLError::Code;

class URLSessions : public ::testing::Test {
protected:
    URLSessions() { useNoProxy(); }
};
using URLSessionThreads = URLSessions;

URLRequest requestOf(const std::string& url, FetchPolicy policy = FetchPolicy::all) {
    return {*URL::parse(url), policy, false};
}

std::future<URLResponse> begin(URLSession& session, const URLRequest& request) {
    const auto promise = std::make_shared<std::promise<URLResponse>>();
    session.dataTask(request, [promise](URLResponse response) { promise->set_value(std::move(response)); });
    return promise->get_future();
}

std::string textOf(const URLResponse& response) {
    constexpr const char* codes[] = {"cancelled", "timedOut",    "tooLarge", "notAdmitted",
                                     "refused",   "unsupported", "failed"};
    if (!response.error) return std::to_string(response.status) + (response.data == smallPicture() ? " picture" : "");
    return codes[static_cast<std::size_t>(response.error->code)];
}

/// 127.0.0.1 stands for the Internet, the rest of the machine for a private network.
bool isFirstLoopback(std::string_view address) { return address == "127.0.0.1"; }

TEST_F(URLSessions, LoadOrFail) {
    const WebServer server;
    URLSession session(URLSession::Configuration{.maximumBytes = 1'000'000, .timeout = 1500ms});
    const struct {
        const char* why;
        std::string url;
        const char* outcome;
        const char* message;
    } rows[] = {
        {"a picture", server.at("/ok/1"), "200 picture", ""},
        {"whatever the status", server.at("/status/404"), "404 picture", ""},
        {"an empty body", server.at("/none"), "200", ""},
        {"behind a redirect", server.at("/to/" + server.at("/ok/2")), "200 picture", ""},
        {"redirects without end", server.at("/loop"), "failed", "redirects"},
        {"a redirect to a file", server.at("/to/file:///etc/hostname"), "failed", "not supported"},
        {"a redirect to another protocol", server.at("/to/ftp://127.0.0.1/a"), "failed", "not supported"},
        {"less than announced", server.at("/short"), "failed", ""},
        {"a reset connection", server.at("/reset"), "failed", ""},
        {"nobody listens", "http://127.0.0.1:9/", "failed", "connect"},
        {"no such host", "http://nowhere.invalid/", "failed", ""},
        {"more is announced than may come", server.at("/announced"), "tooLarge", "1000000 bytes"},
        {"more comes than may", server.at("/endless"), "tooLarge", "1000000 bytes"},
        {"too late", server.at("/late/5000"), "timedOut", ""},
        {"too slow", server.at("/stall/5000"), "timedOut", ""},
        {"no scheme", "a.png", "unsupported", "unsupported URL"},
        {"another scheme", "ftp://127.0.0.1/a.png", "unsupported", "unsupported URL"},
        {"data in the address", "data:,picture", "0", ""},
        {"data that are none", "data:;base64,?", "unsupported", "cannot be read"},
        {"more data than may come", "data:," + std::string(1'000'001, '.'), "tooLarge", "1000000 bytes"},
    };
    std::vector<std::future<URLResponse>> responses;
    for (const auto& row : rows) responses.push_back(begin(session, requestOf(row.url)));
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        SCOPED_TRACE(rows[i].why);
        const URLResponse response = responses[i].get();
        EXPECT_EQ(textOf(response), rows[i].outcome);
        if (response.error) {
            EXPECT_THAT(response.error->message, HasSubstr(rows[i].message));
            EXPECT_FALSE(response.error->message.empty());
            EXPECT_EQ(response.data, "");
        }
    }
}

TEST_F(URLSessions, BodiesTakeNoMoreThanTheyMay) {
    const WebServer server;
    URLSession session;
    const std::string folder = ::testing::TempDir();
    std::ofstream(folder + "admitted") << std::string(2000, '.');
    const std::string file = URL::fileURL(folder + "admitted").string();
    const struct {
        const char* why;
        std::string url;
        std::size_t most;
        const char* outcome;
        std::size_t asked;  // for more than it may take: for at most so many bytes
    } rows[] = {
        {"a download", server.at("/ok/1"), smallPicture().size(), "200 picture", 0},
        {"a byte less", server.at("/ok/1"), smallPicture().size() - 1, "notAdmitted", smallPicture().size()},
        {"a download without end", server.at("/endless"), 200'000, "notAdmitted", 300'000},
        {"a file", file, 2000, "0", 0},
        {"a larger file", file, 1999, "notAdmitted", 2000},
        {"data in the address", "data:,picture", 7, "0", 0},
        {"more data", "data:,picture", 6, "notAdmitted", 7},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        std::atomic<std::size_t> asked = 0;
        URLRequest request = requestOf(row.url);
        request.mayTake = [&](std::size_t bytes) {
            if (bytes > row.most) asked = std::max(asked.load(), bytes);
            return bytes <= row.most;
        };
        EXPECT_EQ(textOf(begin(session, request).get()), row.outcome);
        EXPECT_LE(asked, row.asked);
    }
}

TEST_F(URLSessions, ReadRegularFilesOnly) {
    std::string name = (std::filesystem::temp_directory_path() / "tavrin-files-XXXXXX").string();
    const std::filesystem::path folder = ::mkdtemp(name.data());
    std::ofstream(folder / "a b") << smallPicture();
    std::ofstream(folder / "large") << std::string(2000, '.');
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    URLSession session(URLSession::Configuration{.maximumBytes = 1000});
    const struct {
        const char* why;
        std::filesystem::path path;
        const char* outcome;
        const char* message;
    } rows[] = {
        {"a file", folder / "a b", "0 picture", ""},
        {"none", folder / "c", "failed", "No such file or directory"},
        {"a folder", folder, "failed", "Is a directory"},
        {"a pipe that no one writes to", folder / "pipe", "failed", "Not a regular file"},
        {"a device", "/dev/zero", "failed", "Not a regular file"},
        {"a large file", folder / "large", "failed", "Larger than 1000 bytes"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const URLResponse response = begin(session, {URL::fileURL(row.path)}).get();
        EXPECT_EQ(textOf(response), row.outcome);
        if (response.error) {
            EXPECT_THAT(response.error->message, HasSubstr(row.message));
        }
    }
    EXPECT_EQ(textOf(begin(session, requestOf("file://elsewhere/a")).get()), "failed");
    std::filesystem::remove_all(folder);
}

TEST_F(URLSessions, ReachOnlyWhatThePolicyAllows) {
    const WebServer server;
    const WebServer behind("127.0.0.2");
    URLSession session(URLSession::Configuration{.isPublic = isFirstLoopback});
    const struct {
        const char* why;
        std::string url;
        FetchPolicy policy;
        const char* outcome;
        const char* message;
    } rows[] = {
        {"everything", behind.at("/ok/all"), FetchPolicy::all, "200 picture", ""},
        {"nothing", server.at("/ok/none"), FetchPolicy::none, "refused", "nothing may be fetched"},
        {"no file either", "file:///etc/hostname", FetchPolicy::none, "refused", "nothing may be fetched"},
        {"a public address", server.at("/ok/public"), FetchPolicy::publicOnly, "200 picture", ""},
        {"another", behind.at("/ok/private"), FetchPolicy::publicOnly, "refused", "127.0.0.2 is not public"},
        {"another behind a redirect", server.at("/to/" + behind.at("/ok/redirected")), FetchPolicy::publicOnly,
         "refused", "127.0.0.2 is not public"},
        {"another by its IPv6 form", "http://[::ffff:127.0.0.2]/", FetchPolicy::publicOnly, "refused", "is not public"},
        {"another as one number", "http://2130706434/ok/number", FetchPolicy::publicOnly, "refused", "127.0.0.2"},
        {"a file", "file:///etc/hostname", FetchPolicy::publicOnly, "refused", "files are not public"},
        {"data in the address, which are not fetched", "data:,a", FetchPolicy::none, "0", ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const URLResponse response = begin(session, requestOf(row.url, row.policy)).get();
        EXPECT_EQ(textOf(response), row.outcome);
        if (response.error) {
            EXPECT_THAT(response.error->message, HasSubstr(row.message));
        }
    }
    EXPECT_EQ(server.requests("/ok/none"), 0);
    EXPECT_EQ(behind.requests(), 1) << "what is refused is not even asked for";
}

TEST_F(URLSessions, RefuseAlsoOnAConnectionThatIsOpenAlready) {
    const WebServer server;
    URLSession session;
    EXPECT_EQ(textOf(begin(session, requestOf(server.at("/ok/1"))).get()), "200 picture");
    const URLResponse refused = begin(session, requestOf(server.at("/ok/2"), FetchPolicy::publicOnly)).get();
    EXPECT_EQ(textOf(refused), "refused");
    EXPECT_EQ(server.requests("/ok/2"), 0);
    EXPECT_EQ(server.mostConnections(), 1);
}

TEST_F(URLSessions, UseNoProxyForPublicAddresses) {
    const WebServer proxy;
    ::setenv("no_proxy", "", 1);
    ::setenv("http_proxy", proxy.at("").c_str(), 1);
    {
        URLSession session;
        const URLResponse proxied = begin(session, requestOf("http://pictures.invalid/ok/a")).get();
        EXPECT_EQ(proxied.status, 200) << "the proxy was asked";
        EXPECT_EQ(proxy.requests("http://pictures.invalid/ok/a"), 1);
        EXPECT_EQ(textOf(begin(session, requestOf("http://pictures.invalid/b", FetchPolicy::publicOnly)).get()),
                  "failed");
    }
    ::unsetenv("http_proxy");
    useNoProxy();
    EXPECT_EQ(proxy.requests("http://pictures.invalid/b"), 0);
}

TEST_F(URLSessionThreads, CancelledTasksAreTold) {
    const WebServer server;
    URLSession session;
    std::promise<URLResponse> ended;
    const auto task = session.dataTask(requestOf(server.at("/late/20000")),
                                       [&](URLResponse response) { ended.set_value(std::move(response)); });
    while (server.requests() == 0) std::this_thread::sleep_for(1ms);
    task->cancel();
    EXPECT_EQ(textOf(ended.get_future().get()), "cancelled");
    task->cancel();
}

TEST_F(URLSessionThreads, EndingASessionEndsItsTasks) {
    const WebServer server;
    std::atomic<int> cancelled = 0;
    {
        URLSession session(URLSession::Configuration{.maximumTransfers = 8});
        for (int i = 0; i < 100; ++i)
            session.dataTask(requestOf(server.at("/late/20000/" + std::to_string(i))),
                             [&](const URLResponse& response) { cancelled += textOf(response) == "cancelled"; });
        while (server.requests() == 0) std::this_thread::sleep_for(1ms);
    }
    EXPECT_EQ(cancelled, 100);
    URLSession stopped;
    stopped.stop();
    EXPECT_EQ(textOf(begin(stopped, requestOf(server.at("/ok"))).get()), "cancelled");
}

TEST_F(URLSessionThreads, ManyRequestsTakeFewConnections) {
    const WebServer server;
    URLSession session(URLSession::Configuration{.maximumTransfers = 16, .maximumTransfersPerHost = 8});
    std::vector<std::future<URLResponse>> responses;
    for (int i = 0; i < 500; ++i) responses.push_back(begin(session, requestOf(server.at("/ok/" + std::to_string(i)))));
    for (auto& response : responses) EXPECT_EQ(textOf(response.get()), "200 picture");
    EXPECT_LE(server.mostConnections(), 8);
}

TEST_F(URLSessionThreads, ThoseThatBecomeUrgentGoFirst) {
    const WebServer server;
    std::mutex mutex;
    std::vector<int> order;
    URLSession session(URLSession::Configuration{.maximumTransfersPerHost = 1});
    std::vector<std::shared_ptr<URLSession::Task>> tasks;
    std::vector<std::future<void>> ended;
    for (int i = 0; i < 5; ++i) {
        const auto promise = std::make_shared<std::promise<void>>();
        ended.push_back(promise->get_future());
        tasks.push_back(session.dataTask(requestOf(server.at("/late/100/" + std::to_string(i))),
                                         [&, i, promise](const URLResponse& response) {
                                             EXPECT_EQ(textOf(response), "200 picture");
                                             const std::lock_guard lock(mutex);
                                             order.push_back(i);
                                             promise->set_value();
                                         }));
    }
    while (server.requests() == 0) std::this_thread::sleep_for(1ms);
    tasks[4]->hurry();
    tasks[4]->hurry();
    for (const auto& end : ended) end.wait();
    EXPECT_THAT(order, ::testing::ElementsAre(0, 4, 1, 2, 3));
    tasks[2]->hurry();
    EXPECT_EQ(server.requests(), 5) << "each is loaded once";
}

TEST_F(URLSessionThreads, UrgentCompletionsDoNotWaitForTheOthers) {
    std::promise<void> go;
    const std::shared_future<void> until = go.get_future().share();
    URLSession session;
    std::vector<std::future<void>> ended;
    const auto begin = [&](bool waits) {
        const auto promise = std::make_shared<std::promise<void>>();
        ended.push_back(promise->get_future());
        return session.dataTask(requestOf("data:,a"), [until, waits, promise](const URLResponse&) {
            if (waits) until.wait();
            promise->set_value();
        });
    };
    for (int i = 0; i < 100; ++i) begin(true);  // more than there are threads
    const auto last = begin(false);
    EXPECT_EQ(ended.back().wait_for(100ms), std::future_status::timeout) << "it stands behind the others";
    last->hurry();
    ended.back().wait();
    go.set_value();
    for (const auto& end : ended) end.wait();
}

TEST_F(URLSessionThreads, UrgentOnesDoNotWaitForTheOthers) {
    const WebServer server;
    URLSession session;
    for (int i = 0; i < 200; ++i)
        session.dataTask(requestOf(server.at("/late/30000/" + std::to_string(i))), [](const URLResponse&) {});
    URLRequest urgent = requestOf(server.at("/ok/urgent"));
    urgent.isUrgent = true;
    EXPECT_EQ(textOf(begin(session, urgent).get()), "200 picture");
}

}  // namespace
}  // namespace tavrin
