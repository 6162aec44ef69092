// SPDX-License-Identifier: MIT
// The server's smaller parts: the cache, the log, what a manager is told.
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/file_descriptor.h"
#include "cli/serve/picture_cache.h"
#include "cli/serve/request_log.h"
#include "cli/serve/service_manager.h"
#include "tavrin/json/json.h"

namespace tavrin::cli {
namespace {

using ::testing::HasSubstr;

ServedPicturePtr pictureOf(std::size_t bytes, ServedPicture picture = {}) {
    picture.bytes = std::make_shared<const std::string>(bytes, 'x');
    return std::make_shared<const ServedPicture>(std::move(picture));
}

TEST(PictureCache, KeepsWhatHolds) {
    const struct {
        const char* why;
        ServedPicture picture;
        double now;
        bool isFound;
    } rows[] = {
        {"of a moment that was asked for", {.moment = {100}, .validUntil = Date{101}}, 1000, true},
        {"that never changes", {.moment = {100}, .isNow = true}, 1000, true},
        {"that has not changed yet", {.moment = {100}, .isNow = true, .validUntil = Date{101}}, 100.5, true},
        {"that has changed", {.moment = {100}, .isNow = true, .validUntil = Date{101}}, 101, false},
        {"of the future, once the clock was set back", {.moment = {100}, .isNow = true}, 99, false},
        {"that lacks something", {.moment = {100}, .lacksPictures = true}, 100, false},
    };
    for (const auto& row : rows) {
        PictureCache cache(1000);
        cache.keep("a", pictureOf(10, row.picture), {100});
        EXPECT_EQ(cache.find("a", {row.now}) != nullptr, row.isFound) << row.why;
        EXPECT_EQ(cache.find("b", {row.now}), nullptr);
    }
}

TEST(PictureCache, IsBounded) {
    PictureCache cache(3000);
    for (const char* const key : {"a", "b", "c"}) cache.keep(key, pictureOf(600), {0});
    EXPECT_NE(cache.find("a", {0}), nullptr);
    cache.keep("d", pictureOf(600), {0});
    EXPECT_EQ(cache.find("b", {0}), nullptr) << "it was asked for longest ago";
    EXPECT_NE(cache.find("a", {0}), nullptr);
    EXPECT_LE(cache.bytes(), 3000U);
    cache.keep("large", pictureOf(3000), {0});
    EXPECT_EQ(cache.find("large", {0}), nullptr) << "it is too large";
    EXPECT_NE(cache.find("d", {0}), nullptr) << "and drives nothing out";
    cache.keep("a", pictureOf(600), {0});
    cache.keep("a", pictureOf(700), {0});
    EXPECT_EQ(cache.find("a", {0})->bytes->size(), 700U);
    EXPECT_LE(cache.bytes(), 3000U);
}

TEST(RequestLog, WritesALineOfJSON) {
    EXPECT_EQ(logLine({"GET", "/v1/widgets/a.png", 200, 12, 1.23456, ""}),
              R"({"method":"GET","path":"/v1/widgets/a.png","status":200,"bytes":12,"milliseconds":1.235})");
    EXPECT_THAT(logLine({.status = 200, .traceparent = "00-0af7-b7ad-01"}),
                HasSubstr(R"("traceparent":"00-0af7-b7ad-01")"));
    EXPECT_EQ(JSON::parse(logLine({.status = 200, .traceparent = "\" forged"})).find("traceparent"), nullptr);
}

TEST(RequestLogThreads, EndThoughNobodyReads) {
    int ends[2];
    ASSERT_EQ(::pipe2(ends, O_CLOEXEC), 0);
    const FileDescriptor reading(ends[0]);
    const FileDescriptor writing(ends[1]);
    RequestLog log(writing.number());
    const HTTPRecord record{.method = "GET", .path = "/" + std::string(1000, 'a'), .status = 200};
    for (int i = 0; i < 200; ++i) log.write(record);             // more than a pipe takes
    std::this_thread::sleep_for(std::chrono::milliseconds(50));  // by now it cannot go on
}

TEST(RequestLogThreads, WaitForNoReader) {
    int ends[2];
    ASSERT_EQ(::pipe2(ends, O_CLOEXEC), 0);
    const FileDescriptor reading(ends[0]);
    std::string text;
    std::thread reader;
    {
        FileDescriptor writing(ends[1]);
        {
            RequestLog log(writing.number());
            const HTTPRecord record{.method = "GET", .path = "/" + std::string(1000, 'a'), .status = 200};
            for (int i = 0; i < 5000; ++i) log.write(record);  // five times what it holds
            reader = std::thread([&] {
                std::string part(1 << 16, '\0');
                for (ssize_t count = 0; (count = ::read(reading.number(), part.data(), part.size())) > 0;)
                    text.append(part, 0, static_cast<std::size_t>(count));
            });
            std::this_thread::sleep_for(std::chrono::milliseconds(200));
            log.write(record);
        }
    }
    reader.join();
    EXPECT_THAT(text, HasSubstr("{\"dropped\":"));
    EXPECT_LT(text.size(), std::size_t{3} << 20);
    EXPECT_TRUE(text.ends_with("}\n"));
}

TEST(ServiceManager, IsTold) {
    std::string folder = ::testing::TempDir() + "tavrin-notify-XXXXXX";
    ASSERT_NE(::mkdtemp(folder.data()), nullptr);
    const std::string path = folder + "/socket";
    const FileDescriptor socket(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    // NOLINTNEXTLINE: the interface of sockets
    ASSERT_EQ(::bind(socket.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    const auto heard = [&] {
        std::string text(200, '\0');
        const ssize_t count = ::recv(socket.number(), text.data(), text.size(), MSG_DONTWAIT);
        text.resize(static_cast<std::size_t>(std::max<ssize_t>(0, count)));
        return text;
    };
    notifyManager("READY=1");
    EXPECT_EQ(heard(), "") << "who did not ask";
    ::setenv("NOTIFY_SOCKET", path.c_str(), 1);
    notifyManager("READY=1");
    EXPECT_EQ(heard(), "READY=1");
    notifyReloading();
    EXPECT_THAT(heard(), ::testing::MatchesRegex("RELOADING=1\nMONOTONIC_USEC=[0-9]+"));
    ::setenv("NOTIFY_SOCKET", (folder + "/gone").c_str(), 1);
    notifyManager("READY=1");
    ::unsetenv("NOTIFY_SOCKET");
    ::unlink(path.c_str());
    ::rmdir(folder.c_str());
}

TEST(ServiceManager, HandsSocketsOver) {
    EXPECT_TRUE(handedOverSockets().empty());
    ::setenv("LISTEN_FDS", "1", 1);
    ::setenv("LISTEN_PID", "1", 1);
    EXPECT_TRUE(handedOverSockets().empty()) << "they are another's";
    ::setenv("LISTEN_PID", std::to_string(::getpid()).c_str(), 1);
    ::setenv("LISTEN_FDS", "many", 1);
    EXPECT_TRUE(handedOverSockets().empty());
    ::unsetenv("LISTEN_FDS");
    ::unsetenv("LISTEN_PID");
}

}  // namespace
}  // namespace tavrin::cli
