// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstddef>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace tavrin {

/// A picture of 8 x 4 pixels as a PNG file.
std::string_view smallPicture();

/// A web server on loopback that misbehaves on demand. What it does is the first part of a path; the rest tells
/// addresses apart.
///
/// | path | answer |
/// | --- | --- |
/// | `/ok/…` | a picture |
/// | `/late/MS/…`, `/stall/MS/…` | a picture after so many milliseconds; begun, the rest after so many |
/// | `/status/N/…` | a picture with status N |
/// | `/text/…`, `/none/…` | no picture; no body at all |
/// | `/short/…`, `/reset/…` | less than was announced; a connection that is reset |
/// | `/flaky/…` | status 503 without a picture twice, then a picture |
/// | `/loop/…`, `/to/URL` | a redirect to itself; to a URL |
/// | `/announced/…`, `/endless/…` | 1 GB is announced; a body without end |
class WebServer {
public:
    /// `address` is one of 127.0.0.0/8.
    explicit WebServer(const char* address = "127.0.0.1");
    WebServer(const WebServer&) = delete;
    WebServer& operator=(const WebServer&) = delete;
    ~WebServer();

    /// "http://127.0.0.1:PORT" and a path.
    [[nodiscard]] std::string at(std::string_view path) const;
    /// How many requests came for a path, or in all.
    [[nodiscard]] int requests(const std::string& path) const;
    [[nodiscard]] int requests() const;
    /// How many connections were open at once, at most.
    [[nodiscard]] int mostConnections() const { return mostOpen_; }

private:
    void accept();
    void serve(int connection);
    /// Answers one request; returns whether the connection stays open.
    bool answer(int connection, const std::string& path);
    bool misbehave(int connection, std::string_view kind, std::string_view rest);
    int count(const std::string& path);
    void sleep(int milliseconds) const;

    std::string base_;
    int listener_;
    std::atomic<bool> isClosing_ = false;
    mutable std::mutex mutex_;
    std::map<std::string, int> requests_;
    std::vector<int> open_;
    std::atomic<int> mostOpen_ = 0;
    std::vector<std::thread> servants_;
    std::thread acceptor_;
};

/// Lets no proxy of the environment come between; to be called before the first load.
void useNoProxy();

}  // namespace tavrin
