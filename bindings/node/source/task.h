// SPDX-License-Identifier: MIT
#pragma once

#include <exception>
#include <optional>
#include <thread>
#include <type_traits>
#include <utility>

#include <napi.h>

#include "bindings/node/source/failure.h"

namespace tavrin::addon {

/// Work for one of the threads that Node keeps for such, and the promise of what comes of it. `Work` is called on that
/// thread; `Tell` makes a script's value of what it returned, on the script's own.
template <class Work, class Tell>
class Task final : public Napi::AsyncWorker {
public:
    static Napi::Value start(Napi::Env env, Work work, Tell tell) {
        auto* const task = new Task(env, std::move(work), std::move(tell));  // ends its own life
        const Napi::Promise promise = task->promise_.Promise();
        task->Queue();
        return promise;
    }

private:
    Task(Napi::Env env, Work work, Tell tell)
        : AsyncWorker(env, "tavrin"), promise_(env), work_(std::move(work)), tell_(std::move(tell)) {}

    void Execute() override {
        std::this_thread::yield();  // scripts go first: what they do is short
        try {
            result_.emplace(work_());
        } catch (...) {
            failure_ = failureOf(std::current_exception());
        }
    }

    void OnOK() override {
        if (failure_) return promise_.Reject(toValue(Env(), *failure_));
        try {
            promise_.Resolve(tell_(Env(), *std::move(result_)));
        } catch (const Napi::Error& error) {  // more than a script's value can hold, or the script is being ended
            promise_.Reject(error.Value());
        }
    }

    void OnError(const Napi::Error& error) override { promise_.Reject(error.Value()); }

    Napi::Promise::Deferred promise_;
    Work work_;
    Tell tell_;
    std::optional<std::invoke_result_t<Work&>> result_;
    std::optional<Failure> failure_;
};

template <class Work, class Tell>
Napi::Value startTask(Napi::Env env, Work work, Tell tell) {
    return Task<Work, Tell>::start(env, std::move(work), std::move(tell));
}

}  // namespace tavrin::addon
