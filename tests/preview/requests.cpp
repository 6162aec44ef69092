// SPDX-License-Identifier: MIT
#include "tests/preview/requests.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>
#include <utility>

#include <arpa/inet.h>
#include <netinet/in.h>

namespace tavrin::cli {
namespace {

std::filesystem::path newFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "tavrin-preview-XXXXXX").string();
    return ::mkdtemp(name.data());
}

FileDescriptor connected(std::uint16_t port) {
    FileDescriptor socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    // NOLINTNEXTLINE: the interface of sockets
    ::connect(socket.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address);
    return socket;
}

std::string replaced(std::string text, std::string_view word, std::string_view by) {
    for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + by.size()))
        text.replace(at, word.size(), by);
    return text;
}

}  // namespace

ScratchFolder::ScratchFolder() : path_(std::filesystem::canonical(newFolder())) {}

ScratchFolder::~ScratchFolder() { std::filesystem::remove_all(path_); }

void ScratchFolder::write(const std::string& name, std::string_view text) const {
    std::filesystem::create_directories((path_ / name).parent_path());
    std::ofstream(path_ / name) << text;
}

std::string ScratchFolder::read(const std::string& name) const {
    std::ifstream file(path_ / name);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string received(const FileDescriptor& socket, std::chrono::seconds patience) {
    const timeval time{.tv_sec = patience.count(), .tv_usec = 0};
    ::setsockopt(socket.number(), SOL_SOCKET, SO_RCVTIMEO, &time, sizeof time);
    std::string answer;
    std::array<char, 4096> part{};
    for (ssize_t count = 0; (count = ::read(socket.number(), part.data(), part.size())) > 0;)
        answer.append(part.data(), static_cast<std::size_t>(count));
    return answer;
}

RunningServer::RunningServer(PreviewServer::Handler handler, PreviewServer::Judge takesLong,
                             PreviewServer::Release release)
    : thread_([this, handler = std::move(handler), takesLong = std::move(takesLong),
               release = std::move(release)]() mutable {
          server_.run(std::move(handler), std::move(takesLong), std::move(release));
      }) {}

RunningServer::~RunningServer() {
    server_.stop();
    thread_.join();
}

std::string RunningServer::addressed(std::string bytes) const {
    const std::string address = server_.address();
    const std::size_t end = address.size() - 1;
    const std::size_t slash = address.rfind('/', end - 1);
    const std::size_t colon = address.rfind(':', slash);
    bytes = replaced(std::move(bytes), "PORT", address.substr(colon + 1, slash - colon - 1));
    return replaced(std::move(bytes), "SECRET", address.substr(slash + 1, end - slash - 1));
}

std::string RunningServer::send(std::string bytes) const {
    return received(begin(std::move(bytes)), std::chrono::seconds(2));
}

FileDescriptor RunningServer::begin(std::string bytes) const {
    FileDescriptor socket = connected(server_.port());
    static_cast<void>(writeAll(socket.number(), addressed(std::move(bytes))));
    return socket;
}

}  // namespace tavrin::cli
