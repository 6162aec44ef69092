// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <filesystem>
#include <string>
#include <string_view>
#include <thread>

#include "cli/file_descriptor.h"
#include "cli/preview/preview_server.h"

namespace tavrin::cli {

/// A folder of its own for each test, removed in the end.
class ScratchFolder {
public:
    ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    ~ScratchFolder();

    void write(const std::string& name, std::string_view text) const;
    [[nodiscard]] std::string read(const std::string& name) const;
    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

/// What comes from a connection until the other side closes it or has been silent for so long.
[[nodiscard]] std::string received(const FileDescriptor& socket, std::chrono::seconds patience);

/// A server on a free port, on a thread of its own until the end of the scope.
class RunningServer {
public:
    explicit RunningServer(
        PreviewServer::Handler handler, PreviewServer::Judge takesLong = [](const HTTPRequest&) { return false; },
        PreviewServer::Release release = [] {});
    RunningServer(const RunningServer&) = delete;
    RunningServer& operator=(const RunningServer&) = delete;
    ~RunningServer();

    [[nodiscard]] PreviewServer& server() { return server_; }
    /// Sends bytes and returns all that comes back until the server closes the connection or has been silent for a
    /// while. The bytes are `addressed`, like those of `begin`.
    [[nodiscard]] std::string send(std::string bytes) const;
    /// A connection on which these bytes were sent, and no more.
    [[nodiscard]] FileDescriptor begin(std::string bytes) const;

    /// A request in which "PORT" became the port and "SECRET" the secret.
    [[nodiscard]] std::string addressed(std::string bytes) const;

private:
    PreviewServer server_{0};
    std::thread thread_;
};

}  // namespace tavrin::cli
