// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "tavrin/platform/foundation/net/fetch_policy.h"
#include "tavrin/platform/foundation/net/public_address.h"
#include "tavrin/platform/foundation/net/url.h"

namespace tavrin {

/// Why nothing was loaded.
struct URLError {
    enum class Code : unsigned char {
        cancelled,
        timedOut,
        tooLarge,     ///< beyond the session's bound
        notAdmitted,  ///< by `URLRequest::mayTake`
        refused,      ///< by the fetch policy
        unsupported,  ///< another scheme than `http`, `https`, `file` and `data`, or a `data` URL that cannot be read
        failed,       ///< everything else: no such host, a reset connection, a file that cannot be read
    };
    Code code = Code::failed;
    std::string message = {};

    static URLError tooLarge(std::size_t maximumBytes) {
        return {Code::tooLarge, "larger than " + std::to_string(maximumBytes) + " bytes"};
    }
};

/// What a data task came to: a body, whatever the status, or an error.
struct URLResponse {
    std::string data = {};
    /// Of HTTP; 0 for a file, and where no answer came.
    int status = 0;
    std::optional<URLError> error = std::nullopt;
};

/// What a data task loads, and how.
struct URLRequest {
    URL url;
    FetchPolicy policy = FetchPolicy::all;
    /// Whether someone waits for it: such a request goes before those that are not urgent.
    bool isUrgent = false;
    /// Asked whether a body may take so many bytes in all, before it does, on a thread of the session; null: always.
    std::function<bool(std::size_t bytes)> mayTake = nullptr;
};

/// Why a policy refuses an address before any name is resolved; none when it does not. Under `publicOnly` the address
/// that a name resolves to may still be refused later. For a `data` URL nothing is fetched, and so none refuses it.
[[nodiscard]] std::optional<std::string> refusal(const URL& url, FetchPolicy policy);

/// Loads what URLs stand for: `http` and `https`, with HTTP/2 where the server offers it, at most 10 redirects, proxies
/// from the environment and connections that are used again; `file`, for regular files on this machine; and `data`.
/// After a fork the child's shared session begins anew, without the tasks of its parent; others can load nothing there,
/// since they have none of the threads.
///
/// One thread does all transfers, a few others call the completions; both start with the first task. At most 64
/// transfers are under way, 32 of them with one host; the others wait, hosts taking turns. Thread-safe.
class URLSession {
public:
    struct Configuration {
        /// The largest body; a larger one that is announced is refused at once.
        std::size_t maximumBytes = std::size_t{32} << 20;
        /// How long a transfer may take once it has begun.
        std::chrono::milliseconds timeout = std::chrono::seconds(60);
        std::size_t maximumTransfers = 64;
        std::size_t maximumTransfersPerHost = 32;
        /// Which numeric addresses count as public where only those may be asked.
        bool (*isPublic)(std::string_view address) = isPublicAddress;
    };
    using Completion = std::function<void(URLResponse)>;

    /// One load.
    class Task {
    public:
        Task() = default;
        Task(const Task&) = delete;
        Task& operator=(const Task&) = delete;
        virtual ~Task() = default;

        /// Ends the load soon, where it has not ended yet; its completion is then told so. Any thread.
        virtual void cancel() = 0;

        /// Makes the load urgent, also its completion: somebody waits for it from now on. Any thread; where the session
        /// has no threads, the completion may be called from here.
        virtual void hurry() = 0;
    };

    /// The process's session. It ends with the process: its tasks are then cancelled.
    static URLSession& shared();

    URLSession();
    explicit URLSession(Configuration configuration);
    URLSession(const URLSession&) = delete;
    URLSession& operator=(const URLSession&) = delete;
    /// Cancels all tasks and waits for their completions.
    ~URLSession();

    /// Starts to load a URL. `completion` is called exactly once, on a thread of the session, also for a task that
    /// fails or is cancelled; it must not throw. The next transfers wait for it, so it should do no more than it must.
    std::shared_ptr<Task> dataTask(URLRequest request, Completion completion);

    /// What the destructor does; tasks that begin later are cancelled at once.
    void stop();

private:
    class Loop;
    void beginAnew();

    std::shared_ptr<Loop> loop_;
};

}  // namespace tavrin
