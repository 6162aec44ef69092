// SPDX-License-Identifier: MIT
#include "cli/preview/end_deadline.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <unistd.h>
#include <utility>

#include <semaphore.h>

namespace tavrin::cli {
namespace {

// What a signal may touch: the thread that waits is told which one came, or 0 that the end has come in time.
sem_t news;
std::atomic<int> signalThatCame = 0;

void tell(int signal) {
    signalThatCame = signal;
    ::sem_post(&news);
}

timespec momentAfter(std::chrono::milliseconds wait) {
    timespec moment{};
    ::clock_gettime(CLOCK_MONOTONIC, &moment);
    const auto total = std::chrono::nanoseconds(moment.tv_nsec) + wait;
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(total);
    return {moment.tv_sec + seconds.count(), (total - seconds).count()};
}

}  // namespace

EndDeadline::EndDeadline(std::chrono::milliseconds patience, std::function<void()> finish)
    : patience_(patience), finish_(std::move(finish)) {}

EndDeadline::~EndDeadline() {
    if (!thread_.joinable()) return;
    tell(0);
    thread_.join();
}

void EndDeadline::start() {
    ::sem_init(&news, 0, 0);
    struct sigaction action {};
    action.sa_handler = tell;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);  // one more ends the process whatever it does
    for (const int signal : {SIGINT, SIGTERM}) ::sigaction(signal, &action, nullptr);
    thread_ = std::thread([this, end = momentAfter(patience_)] {
        int result = 0;
        while ((result = ::sem_clockwait(&news, CLOCK_MONOTONIC, &end)) != 0 && errno == EINTR) continue;
        if (result == 0 && signalThatCame == 0) return;
        finish_();
        if (result != 0) std::_Exit(0);
        std::signal(signalThatCame, SIG_DFL);
        ::kill(::getpid(), signalThatCame);
    });
}

}  // namespace tavrin::cli
