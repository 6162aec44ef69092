// SPDX-License-Identifier: MIT
#include "tests/network/web_server.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdlib>
#include <sys/socket.h>
#include <unistd.h>

#include <arpa/inet.h>
#include <netinet/in.h>

namespace tavrin {
namespace {

using namespace std::string_literals;

const std::string servedPicture =
    "\x89\x50\x4E\x47\x0D\x0A\x1A\x0A\x00\x00\x00\x0D\x49\x48\x44\x52\x00\x00\x00\x08\x00\x00\x00\x04"
    "\x08\x02\x00\x00\x00\x3C\xAF\xE9\xA7\x00\x00\x00\x11\x49\x44\x41\x54\x78\xDA\x63\xF8\x3F\x95\x01"
    "\x2B\x62\xA0\x9E\x04\x00\xFD\xCB\x32\x81\x5A\xC0\x16\xBD\x00\x00\x00\x00\x49\x45\x4E\x44\xAE\x42"
    "\x60\x82"s;

bool send(int connection, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t sent = ::send(connection, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent <= 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

std::string head(std::string_view status, std::size_t length, const std::string& fields = {}) {
    return "HTTP/1.1 " + std::string(status) + "\r\nContent-Length: " + std::to_string(length) + "\r\n" + fields +
           "\r\n";
}

bool sendPicture(int connection, std::string_view status = "200 OK") {
    return send(connection, head(status, servedPicture.size()) + servedPicture);
}

bool redirect(int connection, const std::string& target) {
    return send(connection, head("302 Found", 0, "Location: " + target + "\r\n"));
}

/// The path of the next request; empty when the client has gone.
std::string readRequest(int connection) {
    std::string text;
    char buffer[4096];
    while (text.find("\r\n\r\n") == std::string::npos) {
        const ssize_t count = ::recv(connection, buffer, sizeof buffer, 0);
        if (count <= 0) return {};
        text.append(buffer, static_cast<std::size_t>(count));
    }
    const std::size_t begin = text.find(' ') + 1;
    return text.substr(begin, text.find(' ', begin) - begin);
}

int number(std::string_view text) {
    int value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

}  // namespace

std::string_view smallPicture() { return servedPicture; }

void useNoProxy() { ::setenv("no_proxy", "*", 1); }

WebServer::WebServer(const char* address) : listener_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in place{};
    place.sin_family = AF_INET;
    ::inet_pton(AF_INET, address, &place.sin_addr);
    socklen_t size = sizeof place;
    if (::bind(listener_, reinterpret_cast<sockaddr*>(&place), size) != 0 || ::listen(listener_, 1024) != 0)
        std::abort();
    ::getsockname(listener_, reinterpret_cast<sockaddr*>(&place), &size);
    base_ = "http://" + std::string(address) + ":" + std::to_string(ntohs(place.sin_port));
    acceptor_ = std::thread([this] { accept(); });
}

WebServer::~WebServer() {
    isClosing_ = true;
    ::shutdown(listener_, SHUT_RDWR);
    acceptor_.join();
    {
        const std::lock_guard lock(mutex_);
        for (const int connection : open_) ::shutdown(connection, SHUT_RDWR);
    }
    for (std::thread& servant : servants_) servant.join();
    ::close(listener_);
}

std::string WebServer::at(std::string_view path) const { return base_ + std::string(path); }

int WebServer::requests(const std::string& path) const {
    const std::lock_guard lock(mutex_);
    const auto found = requests_.find(path);
    return found == requests_.end() ? 0 : found->second;
}

int WebServer::requests() const {
    const std::lock_guard lock(mutex_);
    int sum = 0;
    for (const auto& [path, count] : requests_) sum += count;
    return sum;
}

void WebServer::accept() {
    for (;;) {
        const int connection = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        if (connection < 0 || isClosing_) {
            if (connection >= 0) ::close(connection);
            return;
        }
        const std::lock_guard lock(mutex_);
        open_.push_back(connection);
        mostOpen_ = std::max(mostOpen_.load(), static_cast<int>(open_.size()));
        servants_.emplace_back([this, connection] { serve(connection); });
    }
}

void WebServer::serve(int connection) {
    for (;;) {
        const std::string path = readRequest(connection);
        if (path.empty() || !answer(connection, path)) break;
    }
    const std::lock_guard lock(mutex_);
    open_.erase(std::find(open_.begin(), open_.end(), connection));
    ::close(connection);
}

int WebServer::count(const std::string& path) {
    const std::lock_guard lock(mutex_);
    return ++requests_[path];
}

void WebServer::sleep(int milliseconds) const {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
    while (!isClosing_ && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_until(std::min(end, std::chrono::steady_clock::now() + std::chrono::milliseconds(50)));
}

bool WebServer::answer(int connection, const std::string& path) {
    const int times = count(path);
    // As a proxy it is asked for whole addresses.
    if (path.starts_with("http://")) return answer(connection, path.substr(path.find('/', 7)));
    const std::size_t slash = std::min(path.find('/', 1), path.size());
    const std::string_view kind = std::string_view(path).substr(1, slash - 1);
    const std::string_view rest = std::string_view(path).substr(std::min(slash + 1, path.size()));
    if (kind == "ok") return sendPicture(connection);
    if (kind == "text") return send(connection, head("200 OK", 5) + "hello");
    if (kind == "none") return send(connection, head("200 OK", 0));
    if (kind == "status") return sendPicture(connection, std::string(rest.substr(0, 3)) + " Status");
    if (kind == "loop") return redirect(connection, path);
    if (kind == "to") return redirect(connection, std::string(rest));
    if (kind == "flaky" && times <= 2) return send(connection, head("503 Service Unavailable", 0));
    if (kind == "flaky") return sendPicture(connection);
    return misbehave(connection, kind, rest);
}

bool WebServer::misbehave(int connection, std::string_view kind, std::string_view rest) {
    if (kind == "late") {
        sleep(number(rest));
        return sendPicture(connection);
    }
    if (kind == "stall") {
        const std::size_t half = servedPicture.size() / 2;
        send(connection, head("200 OK", servedPicture.size()) + servedPicture.substr(0, half));
        sleep(number(rest));
        return send(connection, servedPicture.substr(half));
    }
    if (kind == "short") {
        send(connection, head("200 OK", servedPicture.size() + 10) + servedPicture);
        ::shutdown(connection, SHUT_RDWR);
    } else if (kind == "reset") {
        const linger now{1, 0};
        ::setsockopt(connection, SOL_SOCKET, SO_LINGER, &now, sizeof now);
    } else if (kind == "announced") {
        send(connection, head("200 OK", 1'000'000'000));
    } else if (kind == "endless") {
        const std::string block(64 * 1024, '.');
        if (send(connection, "HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n"))
            while (!isClosing_ && send(connection, block)) continue;
    }
    return false;
}

}  // namespace tavrin
