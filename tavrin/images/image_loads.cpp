// SPDX-License-Identifier: MIT
#include "tavrin/images/image_loads.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "tavrin/platform/foundation/budget/metering.h"

namespace tavrin {
namespace {

/// What the calling thread may still hold: exactly what it would not be refused.
ImageLoads::Allowance ofThisThread() {
    const Metering* const metering = Metering::ofThisThread();
    if (!metering) return {};
    return {metering->bytesLeft(), metering->shared()};
}

}  // namespace

/// What those who wait for a picture may hold of it. Thread-safe.
class ImageLoads::Allowances {
public:
    void add(const Allowance& allowance) {
        const std::lock_guard lock(mutex_);
        most_ = std::max(most_, allowance.bytes);
        if (allowance.shared && std::find(shared_.begin(), shared_.end(), allowance.shared) == shared_.end())
            shared_.push_back(allowance.shared);
    }
    /// Whether one of them may hold so many bytes; shared ones are taken for it.
    bool cover(std::size_t bytes) {
        const std::lock_guard lock(mutex_);
        if (bytes <= most_) return true;
        taken_ = {};  // those of a picture before
        const auto found = std::find_if(shared_.begin(), shared_.end(), [&](const auto& s) { return s->take(bytes); });
        if (found == shared_.end()) {
            refused_ = bytes;
            return false;
        }
        taken_ = TakenBytes(*found, bytes);
        return true;
    }
    /// The last that none of them could hold.
    std::size_t refused() {
        const std::lock_guard lock(mutex_);
        return refused_;
    }
    /// Hands the calling thread what was taken for it.
    void handOver() {
        const std::lock_guard lock(mutex_);
        if (Metering* const metering = Metering::ofThisThread()) metering->takeOver(taken_);
    }

private:
    std::mutex mutex_;
    std::size_t most_ = 0;
    std::vector<std::shared_ptr<SharedBytes>> shared_;
    std::size_t refused_ = 0;
    TakenBytes taken_;
};

/// A load that is under way. The lock guards all of it but `stop` and `allowances`.
struct ImageLoads::Load {
    /// What decodes its picture; only as long as the load is kept.
    images::Decoding decoding() {
        return {.stop = stop.get_token(), .mayBeHeld = [this](std::size_t bytes) { return allowances.cover(bytes); }};
    }

    std::condition_variable ended;
    bool isOver = false;
    Outcome outcome;

    std::size_t waiting = 0;
    std::vector<Prefetch> prefetches;

    std::shared_ptr<URLSession::Task> task = nullptr;
    std::stop_source stop;
    Allowances allowances;
};

ImageLoads::Outcome ImageLoads::decoded(const URLResponse& response, images::Decoding decoding) noexcept {
    try {
        if (response.error)
            return {.error = response.error, .isGivenUp = response.error->code == URLError::Code::notAdmitted};
        std::shared_ptr<const Bitmap> image = images::decodeImage(response.data, decoding);
        return {.image = std::move(image),
                .pixels = decoding.pixels,
                .meanwhile = static_cast<std::size_t>(decoding.meanwhile),
                .isGivenUp = decoding.isGivenUp};
    } catch (const std::exception&) {  // there is not enough memory for it
        return {};
    }
}

ImageLoads::Outcome ImageLoads::inMemory(const URL& url) {
    ImageMemory::Kept kept = memory.find(url);
    return {.image = std::move(kept.image), .meanwhile = kept.meanwhile};
}

ImageLoads::Outcome ImageLoads::wait(const Key& key, URLSession& session,
                                     std::optional<std::chrono::steady_clock::time_point> end) {
    std::unique_lock lock(mutex_);
    if (Outcome known = inMemory(key.url); known.image) return known;
    const auto [load, isNew] = join(key, ofThisThread());
    ++load->waiting;
    const std::shared_ptr<URLSession::Task> task = load->task;
    lock.unlock();
    if (isNew) request(key, load, session);
    if (task) task->hurry();

    lock.lock();
    std::exception_ptr budgetError;
    try {
        waitFor(*load, lock, end);
    } catch (...) {
        budgetError = std::current_exception();
    }
    --load->waiting;
    if (!budgetError && load->isOver) {
        load->allowances.handOver();
        return load->outcome;
    }
    if (!load->isOver) leave(key, load, std::move(lock));
    if (budgetError) std::rethrow_exception(budgetError);
    return {.isInTime = false};
}

void ImageLoads::waitFor(Load& load, std::unique_lock<std::mutex>& lock,
                         std::optional<std::chrono::steady_clock::time_point> end) {
    using Clock = std::chrono::steady_clock;
    constexpr auto betweenLooks = std::chrono::milliseconds(20);
    const auto isOver = [&load] { return load.isOver; };
    for (;;) {
        const Clock::time_point look = Clock::now() + betweenLooks;
        if (load.ended.wait_until(lock, end ? std::min(look, *end) : look, isOver)) return;
        if (end && Clock::now() >= *end) return;
        checkBudget();
    }
}

ImageLoads::Outcome ImageLoads::make(const Key& key, const Make& make) {
    std::unique_lock lock(mutex_);
    if (Outcome known = inMemory(key.url); known.image) return known;
    const auto [load, isNew] = join(key, ofThisThread());
    if (isNew) {
        lock.unlock();
        finish(key, *load, make(load->decoding()));
        lock.lock();
    }
    waitFor(*load, lock, std::nullopt);
    load->allowances.handOver();
    return load->outcome;
}

void ImageLoads::begin(const Key& key, URLSession& session, const Prefetch& prefetch) {
    std::unique_lock lock(mutex_);
    if (memory.holds(key.url)) return;
    const auto [load, isNew] = join(key, {});
    load->prefetches.push_back(prefetch);
    lock.unlock();
    if (isNew) request(key, load, session);
}

ImageLoads::Joined ImageLoads::join(const Key& key, const Allowance& allowance) {
    LoadPtr& load = underWay_[key];
    const bool isNew = load == nullptr;
    if (isNew) load = std::make_shared<Load>();
    load->allowances.add(allowance);
    return {load, isNew};
}

void ImageLoads::request(const Key& key, const LoadPtr& load, URLSession& session) {
    std::unique_lock lock(mutex_);
    const bool isUrgent = load->waiting > 0;
    lock.unlock();
    // The cache may be gone when the load ends.
    const auto end = [loads = weak_from_this(), key, load](const URLResponse& response) {
        Outcome outcome = decoded(response, load->decoding());
        if (const auto alive = loads.lock()) alive->finish(key, *load, std::move(outcome));
    };
    try {
        const auto mayTake = [load = std::weak_ptr(load)](std::size_t bytes) {
            const LoadPtr alive = load.lock();
            return !alive || alive->allowances.cover(bytes);
        };
        const std::shared_ptr<URLSession::Task> task = session.dataTask({key.url, key.policy, isUrgent, mayTake}, end);
        lock.lock();
        load->task = task;
        const bool isWaitedFor = load->waiting > 0;
        lock.unlock();
        if (isWaitedFor) task->hurry();      // for those who came before there was a task
    } catch (const std::exception& error) {  // nobody may wait for what never began
        finish(key, *load, {nullptr, URLError{URLError::Code::failed, error.what()}});
    }
}

void ImageLoads::finish(const Key& key, Load& load, Outcome outcome) {
    std::vector<Prefetch> prefetches;  // these end outside the lock
    std::shared_ptr<URLSession::Task> task;
    const std::lock_guard lock(mutex_);
    load.isOver = true;
    load.outcome = std::move(outcome);
    load.outcome.needed = load.allowances.refused();
    prefetches.swap(load.prefetches);
    task.swap(load.task);
    load.ended.notify_all();
    // One that no one waits for any more has been taken out, and what it comes to is dropped.
    const auto found = underWay_.find(key);
    if (found == underWay_.end() || found->second.get() != &load) return;
    underWay_.erase(found);
    if (load.outcome.image) memory.keep(key.url, load.outcome.image, load.outcome.meanwhile);
}

void ImageLoads::leave(const Key& key, const LoadPtr& load, std::unique_lock<std::mutex> lock) {
    if (load->waiting > 0 || !load->prefetches.empty()) return;
    underWay_.erase(key);
    const std::shared_ptr<URLSession::Task> task = load->task;
    lock.unlock();
    load->stop.request_stop();
    if (task) task->cancel();
}

}  // namespace tavrin
