// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <arpa/inet.h>
#include <netinet/in.h>

#include "cli/file_descriptor.h"
#include "tavrin/platform/foundation/strings/ascii.h"

namespace tavrin::cli {

/// An answer as it came.
struct ClientAnswer {
    int status = 0;                              ///< 0: there was none
    std::map<std::string, std::string> headers;  ///< by their names in small letters
    std::string body;

    [[nodiscard]] std::string header(const std::string& name) const {
        const auto found = headers.find(name);
        return found == headers.end() ? "" : found->second;
    }
};

/// A connection to a port of this machine.
class ClientConnection {
public:
    explicit ClientConnection(std::uint16_t port) : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(port);
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        const timeval patience{.tv_sec = 10, .tv_usec = 0};
        ::setsockopt(socket_.number(), SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
        // NOLINTNEXTLINE: the interface of sockets
        isOpen_ = ::connect(socket_.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    }

    [[nodiscard]] bool isOpen() const { return isOpen_; }

    void send(std::string_view bytes) const {
        while (!bytes.empty()) {
            const ssize_t count = ::send(socket_.number(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
            if (count <= 0) return;
            bytes.remove_prefix(static_cast<std::size_t>(count));
        }
    }

    /// Tells that nothing more will be sent.
    void endSending() const { ::shutdown(socket_.number(), SHUT_WR); }

    /// The next answer; `isHead` where it has no body whatever its length says.
    ClientAnswer receive(bool isHead = false) {
        ClientAnswer answer;
        std::size_t end = std::string::npos;
        do {
            while ((end = buffer_.find("\r\n\r\n")) == std::string::npos)
                if (!readMore()) return answer;
            answer = parsed(buffer_.substr(0, end));
            buffer_.erase(0, end + 4);
        } while (answer.status == 100);
        const std::string length = answer.header("content-length");
        const std::size_t size = isHead || length.empty() ? 0 : std::strtoull(length.c_str(), nullptr, 10);
        while (buffer_.size() < size && readMore()) continue;
        answer.body = buffer_.substr(0, size);
        buffer_.erase(0, size);
        return answer;
    }

    /// Whether the other side closes the connection without sending anything more.
    bool isEnded() { return buffer_.empty() && !readMore(); }

private:
    bool readMore() {
        std::array<char, 16384> part{};
        const ssize_t count = ::read(socket_.number(), part.data(), part.size());
        if (count > 0) buffer_.append(part.data(), static_cast<std::size_t>(count));
        return count > 0;
    }

    static ClientAnswer parsed(std::string_view head) {
        ClientAnswer answer;
        answer.status = std::atoi(std::string(head.substr(std::min(head.size(), std::size_t{9}), 3)).c_str());
        for (std::size_t line = head.find("\r\n"); line != std::string_view::npos;) {
            const std::size_t next = head.find("\r\n", line + 2);
            const std::string_view field =
                head.substr(line + 2, next == std::string_view::npos ? next : next - line - 2);
            std::string name(field.substr(0, field.find(':')));
            for (char& letter : name) letter = lowerCase(letter);
            answer.headers[name] = field.substr(std::min(field.size(), name.size() + 2));
            line = next;
        }
        return answer;
    }

    FileDescriptor socket_;
    bool isOpen_ = false;
    std::string buffer_;
};

}  // namespace tavrin::cli
