// SPDX-License-Identifier: MIT
#include "cli/serve/request_log.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cmath>
#include <unistd.h>
#include <utility>

#include <poll.h>

#include "tavrin/platform/foundation/strings/json_writer.h"
#include "tavrin/platform/foundation/threads/blocked_signals.h"

namespace tavrin::cli {
namespace {

/// What others' tools find traces by, and nothing that merely has its name.
bool isTraceparent(const std::string& text) {
    constexpr std::size_t longest = 128;
    return !text.empty() && text.size() <= longest && std::ranges::all_of(text, [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || c == '-';
    });
}

}  // namespace

std::string logLine(const HTTPRecord& record) {
    JSONWriter writer(JSONWriter::Style::compact);
    writer.beginObject();
    writer.key("method").value(record.method).key("path").value(record.path);
    writer.key("status").value(std::uint64_t{record.status}).key("bytes").value(std::uint64_t{record.bytes});
    writer.key("milliseconds").value(std::round(record.milliseconds * 1000) / 1000);
    if (isTraceparent(record.traceparent)) writer.key("traceparent").value(record.traceparent);
    writer.endObject();
    return std::move(writer).text();
}

RequestLog::RequestLog(int descriptor) : descriptor_(descriptor) {
    const BlockedSignals blocked;
    thread_ = std::thread([this] { run(); });
}

RequestLog::~RequestLog() {
    {
        const std::lock_guard lock(mutex_);
        isEnding_ = true;
    }
    news_.notify_one();
    thread_.join();
}

void RequestLog::write(const HTTPRecord& record) {
    const std::string line = logLine(record);
    {
        const std::lock_guard lock(mutex_);
        if (isBroken_) return;
        if (unwritten_.size() + line.size() > maximumBytes) {
            ++dropped_;
            return;
        }
        if (const std::uint64_t count = std::exchange(dropped_, 0); count > 0)
            unwritten_ += "{\"dropped\":" + std::to_string(count) + "}\n";
        unwritten_.append(line).append("\n");
    }
    news_.notify_one();
}

/// Never waits in the middle of writing, so that the end need not wait for a reader that has stopped: what a pipe takes
/// at once is written at once.
bool RequestLog::writeInPieces(std::string_view text) {
    constexpr int slice = 100;  // milliseconds
    constexpr int patience = 10;
    int waited = 0;  // slices since the end began
    while (!text.empty()) {
        pollfd asked{.fd = descriptor_, .events = POLLOUT, .revents = 0};
        if (::poll(&asked, 1, slice) <= 0) {
            if (isEnding_ && ++waited > patience) return false;
            continue;
        }
        waited = 0;
        const ssize_t count = ::write(descriptor_, text.data(), std::min<std::size_t>(text.size(), PIPE_BUF));
        if (count < 0 && errno != EINTR && errno != EAGAIN) return false;
        text.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
    return true;
}

void RequestLog::run() {
    std::unique_lock lock(mutex_);
    for (;;) {
        news_.wait(lock, [this] { return isEnding_ || !unwritten_.empty(); });
        if (unwritten_.empty()) return;
        const std::string text = std::exchange(unwritten_, {});
        lock.unlock();
        const bool isWritten = writeInPieces(text);
        lock.lock();
        isBroken_ = !isWritten;
        if (isBroken_) unwritten_.clear();
    }
}

}  // namespace tavrin::cli
