// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

#include "cli/http/http_message.h"

namespace tavrin::cli {

/// A line of JSON for a request, without its end: method, path, status, bytes, milliseconds, and `traceparent` where
/// one came.
[[nodiscard]] std::string logLine(const HTTPRecord& record);

/// Writes lines to a descriptor on a thread of its own, so that no one waits for who reads them. Where that one is too
/// slow lines are left out, and a line `{"dropped": N}` says how many. Thread-safe.
class RequestLog {
public:
    static constexpr std::size_t maximumBytes = std::size_t{1} << 20;  ///< that wait to be written

    explicit RequestLog(int descriptor);
    RequestLog(const RequestLog&) = delete;
    RequestLog& operator=(const RequestLog&) = delete;
    /// Writes what waits, unless no one reads it.
    ~RequestLog();

    void write(const HTTPRecord& record);

private:
    [[nodiscard]] bool writeInPieces(std::string_view text);
    void run();

    const int descriptor_;
    std::mutex mutex_;
    std::condition_variable news_;
    std::string unwritten_;
    std::uint64_t dropped_ = 0;
    std::atomic<bool> isEnding_ = false;
    bool isBroken_ = false;
    std::thread thread_;
};

}  // namespace tavrin::cli
