// SPDX-License-Identifier: MIT
#include "cli/serve/service_manager.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "cli/file_descriptor.h"
#include "tavrin/platform/foundation/strings/number_text.h"

// The protocols are a few lines each; a library for them would be loaded by every start of the program.

namespace tavrin::cli {

std::vector<int> handedOverSockets() {
    constexpr int firstSocket = 3;
    constexpr int mostSockets = 16;
    const char* const process = std::getenv("LISTEN_PID");
    const char* const count = std::getenv("LISTEN_FDS");
    if (process == nullptr || count == nullptr) return {};
    if (intFromText<pid_t>(process) != ::getpid()) return {};  // they were meant for another
    const std::optional<int> sockets = intFromText<int>(count);
    std::vector<int> descriptors;
    for (int i = 0; sockets && i < *sockets && i < mostSockets; ++i) {
        const int descriptor = firstSocket + i;
        if (::fcntl(descriptor, F_SETFD, FD_CLOEXEC) == 0) descriptors.push_back(descriptor);
    }
    return descriptors;
}

void notifyManager(std::string_view state) {
    const char* const path = std::getenv("NOTIFY_SOCKET");
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path == nullptr || (*path != '/' && *path != '@') || std::strlen(path) >= sizeof address.sun_path) return;
    const std::size_t length = std::strlen(path);
    std::memcpy(address.sun_path, path, length);
    if (*path == '@') address.sun_path[0] = '\0';  // no file, but a name of its own kind
    const FileDescriptor socket(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    if (!socket.isOpen()) return;
    // NOLINTNEXTLINE: the interface of sockets
    const auto* const target = reinterpret_cast<const sockaddr*>(&address);
    const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + length);
    static_cast<void>(::sendto(socket.number(), state.data(), state.size(), MSG_NOSIGNAL, target, size));
}

void notifyReloading() {
    timespec now{};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    const std::int64_t microseconds = std::int64_t{now.tv_sec} * 1'000'000 + now.tv_nsec / 1000;
    notifyManager("RELOADING=1\nMONOTONIC_USEC=" + std::to_string(microseconds));
}

}  // namespace tavrin::cli
