// SPDX-License-Identifier: MIT
#include "tavrin/images/image_loads.h"

#include <exception>
#include <utility>

#include "tavrin/images/decoders.h"

namespace tavrin {

/// A load that is under way. The lock guards all of it but `stop`.
struct ImageLoads::Load {
    std::condition_variable ended;
    bool isOver = false;
    Outcome outcome;

    std::size_t waiting = 0;
    std::vector<Prefetch> prefetches;

    std::shared_ptr<URLSession::Task> task = nullptr;
    std::stop_source stop;
};

ImageLoads::Outcome ImageLoads::decoded(const URLResponse& response, const std::stop_token& stop) noexcept {
    try {
        if (response.error) return {nullptr, response.error};
        return {images::decodeImage(response.data, {}, stop)};
    } catch (const std::exception&) {  // there is not enough memory for it
        return {};
    }
}

ImageLoads::Outcome ImageLoads::wait(const Key& key, URLSession& session,
                                     std::optional<std::chrono::steady_clock::time_point> end) {
    std::unique_lock lock(mutex_);
    if (std::shared_ptr<const Bitmap> known = memory.find(key.url)) return {std::move(known)};
    const auto [load, isNew] = join(key);
    ++load->waiting;
    const std::shared_ptr<URLSession::Task> task = load->task;
    lock.unlock();
    if (isNew) request(key, load, session);
    if (task) task->hurry();

    lock.lock();
    const auto isOver = [&load = *load] { return load.isOver; };
    if (end)
        load->ended.wait_until(lock, *end, isOver);
    else
        load->ended.wait(lock, isOver);
    --load->waiting;
    if (load->isOver) return load->outcome;
    leave(key, load, std::move(lock));
    return {.isInTime = false};
}

ImageLoads::Outcome ImageLoads::make(const Key& key, const std::function<Outcome()>& make) {
    std::unique_lock lock(mutex_);
    if (std::shared_ptr<const Bitmap> known = memory.find(key.url)) return {std::move(known)};
    const auto [load, isNew] = join(key);
    ++load->waiting;
    if (isNew) {
        lock.unlock();
        finish(key, *load, make());
        lock.lock();
    }
    load->ended.wait(lock, [&load = *load] { return load.isOver; });
    --load->waiting;
    return load->outcome;
}

void ImageLoads::begin(const Key& key, URLSession& session, const Prefetch& prefetch) {
    std::unique_lock lock(mutex_);
    if (memory.holds(key.url)) return;
    const auto [load, isNew] = join(key);
    load->prefetches.push_back(prefetch);
    lock.unlock();
    if (isNew) request(key, load, session);
}

ImageLoads::Joined ImageLoads::join(const Key& key) {
    LoadPtr& load = underWay_[key];
    const bool isNew = load == nullptr;
    if (isNew) load = std::make_shared<Load>();
    return {load, isNew};
}

void ImageLoads::request(const Key& key, const LoadPtr& load, URLSession& session) {
    std::unique_lock lock(mutex_);
    const bool isUrgent = load->waiting > 0;
    lock.unlock();
    // The cache may be gone when the load ends.
    const auto end = [loads = weak_from_this(), key, load](const URLResponse& response) {
        Outcome outcome = decoded(response, load->stop.get_token());
        if (const auto alive = loads.lock()) alive->finish(key, *load, std::move(outcome));
    };
    try {
        const std::shared_ptr<URLSession::Task> task = session.dataTask({key.url, key.policy, isUrgent}, end);
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
    prefetches.swap(load.prefetches);
    task.swap(load.task);
    load.ended.notify_all();
    // One that no one waits for any more has been taken out, and what it comes to is dropped.
    const auto found = underWay_.find(key);
    if (found == underWay_.end() || found->second.get() != &load) return;
    underWay_.erase(found);
    if (load.outcome.image) memory.keep(key.url, load.outcome.image);
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
