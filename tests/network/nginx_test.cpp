// SPDX-License-Identifier: MIT
#include <array>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include <gtest/gtest.h>
#include <netinet/in.h>

#include "tavrin/images/web_image_cache.h"
#include "tavrin/platform/foundation/net/url_session.h"
#include "tavrin/platform/foundation/threads/main_queue.h"
#include "tests/network/listener.h"
#include "tests/network/web_server.h"

namespace tavrin {
namespace {

using std::filesystem::path;

constexpr const char* program = "/usr/sbin/nginx";

int freePort() {
    const int probe = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in place{};
    place.sin_family = AF_INET;
    place.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof place;
    static_cast<void>(::bind(probe, reinterpret_cast<sockaddr*>(&place), size));
    ::getsockname(probe, reinterpret_cast<sockaddr*>(&place), &size);
    ::close(probe);
    return ntohs(place.sin_port);
}

/// A real web server in a folder of its own.
class Nginx {
public:
    Nginx() : port_(freePort()) {
        std::string name = (std::filesystem::temp_directory_path() / "tavrin-nginx-XXXXXX").string();
        folder_ = ::mkdtemp(name.data());
        std::filesystem::permissions(folder_, std::filesystem::perms::all);
        for (int i = 0; i < 20; ++i) std::ofstream(folder_ / ("picture" + std::to_string(i))) << smallPicture();
        std::ofstream(folder_ / "nginx.conf") << configuration();
        process_ = ::fork();
        if (process_ == 0) {
            ::execl(program, program, "-p", folder_.c_str(), "-c", (folder_ / "nginx.conf").c_str(), "-e",
                    (folder_ / "error.log").c_str(), nullptr);
            ::_exit(127);
        }
    }
    Nginx(const Nginx&) = delete;
    Nginx& operator=(const Nginx&) = delete;
    ~Nginx() {
        ::kill(process_, SIGQUIT);
        ::waitpid(process_, nullptr, 0);
        std::filesystem::remove_all(folder_);
    }

    [[nodiscard]] URL at(const std::string& name) const {
        return *URL::parse("http://127.0.0.1:" + std::to_string(port_) + "/" + name);
    }

    /// Whether it answers before long.
    [[nodiscard]] bool isUp() const {
        for (int i = 0; i < 500; ++i) {
            const int probe = ::socket(AF_INET, SOCK_STREAM, 0);
            sockaddr_in place{};
            place.sin_family = AF_INET;
            place.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
            place.sin_port = htons(static_cast<std::uint16_t>(port_));
            const bool isOpen = ::connect(probe, reinterpret_cast<sockaddr*>(&place), sizeof place) == 0;
            ::close(probe);
            if (isOpen) return true;
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return false;
    }

    /// The words of the access log: "CONNECTION STATUS ADDRESS" for each request.
    [[nodiscard]] std::vector<std::array<std::string, 3>> requests() const {
        std::ifstream log(folder_ / "access.log");
        std::vector<std::array<std::string, 3>> list;
        for (std::array<std::string, 3> line; log >> line[0] >> line[1] >> line[2];) list.push_back(line);
        return list;
    }

private:
    [[nodiscard]] std::string configuration() const {
        const std::string here = folder_.string();
        return "daemon off; pid " + here +
               "/pid; worker_processes 1;\n"
               "events { worker_connections 256; }\n"
               "http {\n"
               "  log_format short '$connection $status $uri'; access_log " +
               here +
               "/access.log short;\n"
               "  client_body_temp_path " +
               here + "/t1; proxy_temp_path " + here + "/t2; fastcgi_temp_path " + here + "/t3; uwsgi_temp_path " +
               here + "/t4; scgi_temp_path " + here +
               "/t5;\n"
               "  gzip on; gzip_min_length 1; gzip_types *;\n"
               "  server {\n"
               "    listen 127.0.0.1:" +
               std::to_string(port_) + "; root " + here +
               ";\n"
               "    location /moved { return 301 /picture0; }\n"
               "    location /missing { error_page 404 /picture1; return 404; }\n"
               "  }\n"
               "}\n";
    }

    int port_;
    path folder_;
    pid_t process_ = -1;
};

TEST(NginxWebImages, LoadOverConnectionsThatAreUsedAgain) {
    if (::access(program, X_OK) != 0) GTEST_SKIP() << "no nginx here";
    useNoProxy();
    const Nginx nginx;
    ASSERT_TRUE(nginx.isUp());
    URLSession session;
    WebImageCache cache(session);
    Listener listener;
    for (int i = 0; i < 20; ++i)
        EXPECT_NE(cache.loadImageSync(nginx.at("picture" + std::to_string(i)), &listener), nullptr) << i;
    EXPECT_NE(cache.loadImageSync(nginx.at("moved"), &listener), nullptr);
    EXPECT_NE(cache.loadImageSync(nginx.at("missing"), &listener), nullptr) << "the status does not matter";
    EXPECT_TRUE(listener.errors().empty());
    EXPECT_EQ(cache.loadImageSync(nginx.at("nginx.conf"), &listener), nullptr);
    EXPECT_EQ(cache.loadImageSync(nginx.at("nothing"), &listener), nullptr);
    EXPECT_EQ(listener.errors().size(), 2U);

    // The log is written after the answer is sent.
    for (int i = 0; i < 500 && nginx.requests().size() < 25; ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    const auto requests = nginx.requests();
    EXPECT_EQ(requests.size(), 25U);
    std::set<std::string> connections;
    for (const auto& [connection, status, address] : requests) connections.insert(connection);
    EXPECT_EQ(connections.size(), 1U);
}

TEST(NginxWebImages, Prefetch) {
    if (::access(program, X_OK) != 0) GTEST_SKIP() << "no nginx here";
    useNoProxy();
    const Nginx nginx;
    ASSERT_TRUE(nginx.isUp());
    URLSession session;
    WebImageCache cache(session);
    std::vector<URL> urls;
    for (int i = 0; i < 2000; ++i)
        urls.push_back(nginx.at("picture" + std::to_string(i % 20) + "?" + std::to_string(i)));
    bool isComplete = false;
    cache.cacheImages(urls, [&] { isComplete = true; });
    while (!isComplete) MainQueue::shared().runFor(0.01);
    for (const URL& url : urls) EXPECT_TRUE(cache.holds(url)) << url.string();
}

}  // namespace
}  // namespace tavrin
