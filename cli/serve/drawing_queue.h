// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <unordered_map>
#include <vector>

#include "cli/http/http_service.h"
#include "cli/serve/served_picture.h"

namespace tavrin::cli {

/// What came of a piece of work: a picture, or what is answered instead.
struct WorkOutcome {
    ServedPicturePtr picture = nullptr;
    HTTPResponse response = {};
    /// Whether there was none because its time had come to an end.
    bool isOutOfTime = false;
};

/// Requests that wait to be drawn, and the threads that draw.
///
/// Requests with the same key are worked on once: whoever comes while it is waited for or under way gets the same
/// outcome, also where the first has gone meanwhile. Work that nobody waits for any more is cancelled. It has until the
/// end of the first request's time; those who came later and have time left then get another try. Since requests are
/// worked on in the order in which they came, the work before one ends before its own time does: each is answered in
/// time, with no clock of its own. Thread-safe.
class DrawingQueue {
public:
    using Clock = std::chrono::steady_clock;

    /// What work has to keep to.
    struct Limits {
        Clock::time_point since;  ///< when the first request came
        Clock::time_point end;
        CancelToken cancel;
    };
    /// Called on a thread of the queue. What it throws becomes status 503: nothing but want of memory should be left.
    using Work = std::function<WorkOutcome(const Limits&)>;

    /// Someone who waits for an outcome.
    struct Waiter {
        std::shared_ptr<HTTPExchange> exchange;
        Clock::time_point end;
        /// What is answered.
        std::function<HTTPResponse(const WorkOutcome&)> present;
    };

    /// What became of a request.
    enum class Admission : unsigned char {
        known,   ///< what it asks for was there, and it is answered
        taken,   ///< it will be answered
        refused  ///< the queue is full
    };

    DrawingQueue(unsigned workers, std::size_t capacity);
    DrawingQueue(const DrawingQueue&) = delete;
    DrawingQueue& operator=(const DrawingQueue&) = delete;
    ~DrawingQueue() { stop(); }
    /// Cancels what is under way and waits for its end; nothing else is begun.
    void stop();

    /// Takes a request. `find` gives the picture where there is one by now; null: nothing is looked for. Requests with
    /// an empty key have nothing in common with others.
    Admission admit(const std::string& key, const std::function<ServedPicturePtr()>& find, Work work,
                    const Waiter& waiter);

    /// How many pieces of work may wait.
    [[nodiscard]] std::size_t capacity() const { return capacity_; }
    /// How many pieces of work wait, and how many are under way.
    [[nodiscard]] std::size_t waiting() const;
    [[nodiscard]] std::size_t underWay() const;

private:
    struct Flight {
        std::string key;
        Work work;
        Clock::time_point since;
        std::vector<Waiter> waiters = {};
        CancelToken cancel = {};
    };
    using FlightPtr = std::shared_ptr<Flight>;

    void join(const FlightPtr& flight, const Waiter& waiter);
    void leave(const FlightPtr& flight, const HTTPExchange* exchange);
    void forget(const FlightPtr& flight);
    [[nodiscard]] static WorkOutcome outcomeOf(const Flight& flight, const Limits& limits);
    [[nodiscard]] static HTTPResponse answerTo(const Waiter& waiter, const WorkOutcome& outcome);
    void run();
    void finish(const FlightPtr& flight, const WorkOutcome& outcome);

    const std::size_t capacity_;
    mutable std::mutex mutex_;
    std::condition_variable news_;
    std::deque<FlightPtr> waiting_;
    std::vector<FlightPtr> underWay_;
    std::unordered_map<std::string, FlightPtr> byKey_;  // those of both that have a key
    bool isEnding_ = false;
    std::vector<std::thread> threads_;
};

}  // namespace tavrin::cli
