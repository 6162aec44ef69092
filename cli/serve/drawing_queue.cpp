// SPDX-License-Identifier: MIT
#include "cli/serve/drawing_queue.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "cli/http/http_status.h"
#include "tavrin/platform/foundation/threads/blocked_signals.h"

namespace tavrin::cli {
namespace {

/// Not even what is to be said of it could be made.
WorkOutcome withoutMemory() { return {.response = {.status = http_status::unavailable}}; }

}  // namespace

DrawingQueue::DrawingQueue(unsigned workers, std::size_t capacity) : capacity_(capacity) {
    const BlockedSignals blocked;
    for (unsigned i = 0; i < workers; ++i) threads_.emplace_back([this] { run(); });
}

void DrawingQueue::stop() {
    {
        const std::lock_guard lock(mutex_);
        isEnding_ = true;
        for (const FlightPtr& flight : underWay_) flight->cancel.cancel();
    }
    news_.notify_all();
    for (std::thread& thread : threads_)
        if (thread.joinable()) thread.join();
}

DrawingQueue::Admission DrawingQueue::admit(const std::string& key, const std::function<ServedPicturePtr()>& find,
                                            Work work, const Waiter& waiter) {
    FlightPtr flight;
    ServedPicturePtr picture;
    {
        const std::lock_guard lock(mutex_);
        if (const auto found = byKey_.find(key); found != byKey_.end()) {
            flight = found->second;
        } else if (picture = find ? find() : nullptr; !picture) {
            if (waiting_.size() >= capacity_) return Admission::refused;
            flight = std::make_shared<Flight>(Flight{key, std::move(work), Clock::now()});
            if (!key.empty()) byKey_.emplace(key, flight);
            waiting_.push_back(flight);
        }
        if (flight) flight->waiters.push_back(waiter);
    }
    if (picture) {
        waiter.exchange->answer(waiter.present({.picture = std::move(picture)}));
        return Admission::known;
    }
    news_.notify_one();
    join(flight, waiter);
    return Admission::taken;
}

void DrawingQueue::join(const FlightPtr& flight, const Waiter& waiter) {
    waiter.exchange->whenGone([this, flight = std::weak_ptr(flight), exchange = waiter.exchange.get()] {
        if (const FlightPtr alive = flight.lock()) leave(alive, exchange);
    });
}

void DrawingQueue::leave(const FlightPtr& flight, const HTTPExchange* exchange) {
    std::vector<Waiter> gone;  // whose last traces go outside the lock
    const std::lock_guard lock(mutex_);
    const auto waiter =
        std::ranges::find_if(flight->waiters, [&](const Waiter& w) { return w.exchange.get() == exchange; });
    if (waiter == flight->waiters.end()) return;
    gone.push_back(std::move(*waiter));
    flight->waiters.erase(waiter);
    if (!flight->waiters.empty()) return;
    flight->cancel.cancel();
    forget(flight);
    std::erase(waiting_, flight);
}

/// Whoever comes from now on begins anew.
void DrawingQueue::forget(const FlightPtr& flight) {
    const auto found = byKey_.find(flight->key);
    if (found != byKey_.end() && found->second == flight) byKey_.erase(found);
}

WorkOutcome DrawingQueue::outcomeOf(const Flight& flight, const Limits& limits) {
    try {
        return flight.work(limits);
    } catch (...) {
        return withoutMemory();
    }
}

HTTPResponse DrawingQueue::answerTo(const Waiter& waiter, const WorkOutcome& outcome) {
    try {
        return waiter.present(outcome);
    } catch (...) {
        return withoutMemory().response;
    }
}

void DrawingQueue::run() {
    for (;;) {
        FlightPtr flight;
        Limits limits;
        {
            std::unique_lock lock(mutex_);
            news_.wait(lock, [this] { return isEnding_ || !waiting_.empty(); });
            if (isEnding_) return;
            flight = std::move(waiting_.front());
            waiting_.pop_front();
            underWay_.push_back(flight);
            limits = {flight->since, flight->waiters.front().end, flight->cancel};
        }
        finish(flight, outcomeOf(*flight, limits));
    }
}

void DrawingQueue::finish(const FlightPtr& flight, const WorkOutcome& outcome) {
    std::vector<Waiter> answered;
    {
        const std::lock_guard lock(mutex_);
        std::erase(underWay_, flight);
        answered = std::exchange(flight->waiters, {});
        if (outcome.isOutOfTime) {
            const auto now = Clock::now();
            const auto patient = std::stable_partition(answered.begin(), answered.end(),
                                                       [&](const Waiter& waiter) { return waiter.end <= now; });
            flight->waiters.assign(std::make_move_iterator(patient), std::make_move_iterator(answered.end()));
            answered.erase(patient, answered.end());
        }
        if (flight->waiters.empty())
            forget(flight);
        else
            waiting_.push_front(flight);
    }
    news_.notify_one();
    for (const Waiter& waiter : answered) waiter.exchange->answer(answerTo(waiter, outcome));
}

std::size_t DrawingQueue::waiting() const {
    const std::lock_guard lock(mutex_);
    return waiting_.size();
}

std::size_t DrawingQueue::underWay() const {
    const std::lock_guard lock(mutex_);
    return underWay_.size();
}

}  // namespace tavrin::cli
