// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/net/url_session.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <filesystem>
#include <mutex>
#include <system_error>
#include <thread>
#include <unordered_map>
#include <utility>
#include <vector>

#include "tavrin/platform/foundation/file_contents.h"
#include "tavrin/platform/foundation/net/data_url.h"
#include "tavrin/platform/foundation/net/transfer_queue.h"
#include "tavrin/platform/foundation/net/url_transfer.h"
#include "tavrin/platform/foundation/threads/blocked_signals.h"
#include "tavrin/platform/foundation/threads/forked_child.h"
#include "tavrin/platform/foundation/threads/work_queue.h"

namespace tavrin {
namespace {

constexpr int pollMilliseconds = 600'000;
constexpr long keptConnections = 64;

std::size_t completionThreads() { return std::max<std::size_t>(2, std::thread::hardware_concurrency()); }

bool isHTTP(const URL& url) {
    const std::string scheme = url.scheme();
    return scheme == "http" || scheme == "https";
}

URLResponse failed(URLError::Code code, std::string message) { return {{}, 0, URLError{code, std::move(message)}}; }

URLResponse notAdmitted() { return failed(URLError::Code::notAdmitted, "larger than it may be"); }

URLResponse readDataURL(const URLRequest& request, std::size_t maximumBytes) {
    std::optional<std::string> data = dataOf(request.url);
    if (!data) return failed(URLError::Code::unsupported, "its data cannot be read");
    if (data->size() > maximumBytes) return {{}, 0, URLError::tooLarge(maximumBytes)};
    if (request.mayTake && !request.mayTake(data->size())) return notAdmitted();
    return {*std::move(data), 0, std::nullopt};
}

URLResponse readFileURL(const URLRequest& request, std::size_t maximumBytes) {
    const std::string path = request.url.filePath();
    std::error_code unknown;
    const std::uintmax_t size = std::filesystem::file_size(path, unknown);
    if (!unknown && request.mayTake && !request.mayTake(std::min<std::uintmax_t>(size, maximumBytes)))
        return notAdmitted();
    FileContents contents = readFile(path, maximumBytes);
    if (!contents.error.empty()) return failed(URLError::Code::failed, std::move(contents.error));
    return {std::move(contents.bytes), 0, std::nullopt};
}

}  // namespace

std::optional<std::string> refusal(const URL& url, FetchPolicy policy) {
    if (policy == FetchPolicy::all || url.isData()) return std::nullopt;
    if (policy == FetchPolicy::none) return "nothing may be fetched";
    if (policy == FetchPolicy::publicOnly && url.isFile()) return "files are not public";
    return std::nullopt;
}

/// The threads of a session and what they work on. Only `run` touches transfers; everything else it is handed.
class URLSession::Loop : public std::enable_shared_from_this<Loop> {
public:
    class Load;

    explicit Loop(Configuration configuration)
        : configuration_(configuration),
          waiting_(configuration.maximumTransfers, configuration.maximumTransfersPerHost) {}
    Loop(const Loop&) = delete;
    Loop& operator=(const Loop&) = delete;
    ~Loop() {
        if (multi_) curl_->multiCleanup(multi_);
    }

    std::shared_ptr<Task> begin(URLRequest request, Completion completion);
    void stop();
    /// Puts a load that has become urgent before others.
    void hurry(const std::shared_ptr<Load>& load);
    /// Makes the loop look at what has changed.
    void wake() {
        const std::lock_guard lock(mutex_);
        if (multi_) curl_->multiWakeup(multi_);
    }

private:
    using LoadPtr = std::shared_ptr<Load>;
    struct Active {
        LoadPtr load;
        std::unique_ptr<URLTransfer> transfer;
    };

    /// Hands a load over to the thread. Returns false when there is none.
    bool add(const LoadPtr& load);
    /// Starts the thread with the first transfer. Returns whether it runs. Called under the lock.
    bool start();
    void run();
    /// Takes over what other threads have left. Returns false when the session stops.
    bool takeChanges();
    void beginTransfers();
    void beginTransfer(const LoadPtr& load);
    void endTransfers();
    void cancelTransfers();
    void cancelAll();
    /// Ends a transfer that is under way.
    void end(CURL* handle, const std::function<URLResponse(URLTransfer&)>& response);

    /// Calls a load's completion, on another thread, with what `response` makes there; unless it is cancelled.
    void complete(const LoadPtr& load, std::function<URLResponse()> response, std::function<void()> afterwards = {});
    void complete(const LoadPtr& load, URLError::Code code, std::string message);

    const Configuration configuration_;
    std::atomic<bool> isStopping_ = false;

    std::mutex mutex_;
    const CurlLibrary* curl_ = nullptr;
    CURLM* multi_ = nullptr;
    std::thread thread_;
    std::vector<LoadPtr> added_;  // also once more those that have become urgent
    std::vector<std::string> finishedHosts_;

    TransferQueue<LoadPtr> waiting_;
    std::unordered_map<CURL*, Active> active_;
    WorkQueue completions_{completionThreads()};
};

class URLSession::Loop::Load final : public Task, public std::enable_shared_from_this<Load> {
public:
    Load(std::weak_ptr<Loop> loop, URLRequest wanted, Completion whenDone)
        : request(std::move(wanted)),
          completion(std::move(whenDone)),
          isUrgent(request.isUrgent),
          loop_(std::move(loop)) {}

    void cancel() override {
        isCancelled = true;
        if (const std::shared_ptr<Loop> loop = loop_.lock()) loop->wake();
    }

    void hurry() override {
        if (isUrgent.exchange(true)) return;
        if (const std::shared_ptr<Loop> loop = loop_.lock()) loop->hurry(shared_from_this());
    }

    /// Calls the completion by `end`, which is set by now, the first time.
    void finish() {
        if (!isFinished_.exchange(true)) std::exchange(end, nullptr)();
    }

    const URLRequest request;
    Completion completion;
    std::atomic<bool> isCancelled = false;
    std::atomic<bool> isUrgent;
    /// Whether its transfer has begun, or never will. The loop's thread's own.
    bool isTaken = false;
    /// What calls the completion, once `isEnding`.
    std::function<void()> end;
    std::atomic<bool> isEnding = false;

private:
    std::atomic<bool> isFinished_ = false;
    std::weak_ptr<Loop> loop_;
};

std::shared_ptr<URLSession::Task> URLSession::Loop::begin(URLRequest request, Completion completion) {
    auto load = std::make_shared<Load>(weak_from_this(), std::move(request), std::move(completion));
    const URL& url = load->request.url;
    if (std::optional<std::string> reason = refusal(url, load->request.policy)) {
        complete(load, URLError::Code::refused, *std::move(reason));
    } else if (url.isFile()) {
        complete(load, [this, load] { return readFileURL(load->request, configuration_.maximumBytes); });
    } else if (url.isData()) {
        complete(load, [this, load] { return readDataURL(load->request, configuration_.maximumBytes); });
    } else if (!isHTTP(url)) {
        complete(load, URLError::Code::unsupported, "unsupported URL");
    } else if (!add(load)) {
        complete(load, URLError::Code::failed,
                 "libcurl 4 is not installed (Debian's package libcurl4), or no thread can be started");
    }
    return load;
}

bool URLSession::Loop::add(const LoadPtr& load) {
    const std::lock_guard lock(mutex_);
    if (isStopping_ || !start()) return false;
    added_.push_back(load);
    curl_->multiWakeup(multi_);
    return true;
}

void URLSession::Loop::hurry(const LoadPtr& load) {
    // It stands in the queues twice from now on; who comes to it second finds it done. Either the one who ends it sees
    // that it is urgent, or it is seen here that it ends.
    if (load->isEnding) return completions_.post([load] { load->finish(); }, true);
    const std::lock_guard lock(mutex_);
    if (!thread_.joinable()) return;
    added_.push_back(load);
    curl_->multiWakeup(multi_);
}

bool URLSession::Loop::start() {
    if (thread_.joinable()) return true;
    if (!multi_) {
        curl_ = CurlLibrary::open();
        if (!curl_) return false;
        multi_ = curl_->multiInit();
        if (!multi_) return false;
        if (curl_->multiWakeup(multi_) != CURLM_OK) {  // without descriptors nothing would end its waiting
            curl_->multiCleanup(std::exchange(multi_, nullptr));
            return false;
        }
        curl_->multiSetopt(multi_, CURLMOPT_MAXCONNECTS, keptConnections);
    }
    try {
        const BlockedSignals blocked;  // signals are the host's
        thread_ = std::thread([this] { run(); });
    } catch (const std::system_error&) {
        return false;
    }
    return true;
}

void URLSession::Loop::stop() {
    std::thread thread;
    {
        const std::lock_guard lock(mutex_);
        isStopping_ = true;
        thread.swap(thread_);
        if (multi_) curl_->multiWakeup(multi_);
    }
    if (thread.joinable()) thread.join();
    completions_.finish();
}

void URLSession::Loop::run() {
    while (takeChanges()) {
        beginTransfers();
        int underWay = 0;
        curl_->multiPerform(multi_, &underWay);
        endTransfers();
        cancelTransfers();
        curl_->multiPoll(multi_, nullptr, 0, pollMilliseconds, nullptr);
    }
    cancelAll();
}

bool URLSession::Loop::takeChanges() {
    std::vector<LoadPtr> added;
    std::vector<std::string> finished;
    {
        const std::lock_guard lock(mutex_);
        added.swap(added_);
        finished.swap(finishedHosts_);
    }
    for (const std::string& host : finished) waiting_.finished(host);
    for (LoadPtr& load : added) {
        if (load->isTaken) continue;
        const bool isUrgent = load->isUrgent;
        const URLRequest& request = load->request;
        waiting_.add(request.url.host(), std::move(load), isUrgent);
    }
    return !isStopping_;
}

void URLSession::Loop::beginTransfers() {
    while (std::optional<LoadPtr> load = waiting_.next()) beginTransfer(*load);
}

void URLSession::Loop::beginTransfer(const LoadPtr& load) {
    if (std::exchange(load->isTaken, true)) return waiting_.finished(load->request.url.host());
    std::unique_ptr<URLTransfer> transfer;
    if (!load->isCancelled) transfer = std::make_unique<URLTransfer>(*curl_, load->request, configuration_);
    if (!transfer || !transfer->handle() || curl_->multiAddHandle(multi_, transfer->handle()) != CURLM_OK) {
        waiting_.finished(load->request.url.host());
        return complete(load, URLError::Code::failed, "not enough memory, or a libcurl before 7.87");
    }
    CURL* const handle = transfer->handle();
    active_.emplace(handle, Active{load, std::move(transfer)});
}

void URLSession::Loop::endTransfers() {
    int left = 0;
    while (const CURLMsg* message = curl_->multiInfoRead(multi_, &left)) {
        const CURLcode outcome = message->data.result;
        end(message->easy_handle, [outcome](URLTransfer& transfer) { return transfer.response(outcome); });
    }
}

void URLSession::Loop::cancelTransfers() {
    std::vector<CURL*> cancelled;
    for (const auto& [handle, active] : active_)
        if (active.load->isCancelled) cancelled.push_back(handle);
    for (CURL* handle : cancelled) end(handle, [](URLTransfer&) { return URLResponse(); });
}

void URLSession::Loop::cancelAll() {
    while (!active_.empty()) end(active_.begin()->first, [](URLTransfer&) { return URLResponse(); });
    for (const LoadPtr& load : waiting_.takeAll())
        if (!std::exchange(load->isTaken, true)) complete(load, URLError::Code::cancelled, "cancelled");
}

void URLSession::Loop::end(CURL* handle, const std::function<URLResponse(URLTransfer&)>& response) {
    curl_->multiRemoveHandle(multi_, handle);
    const auto found = active_.find(handle);
    Active ended = std::move(found->second);
    active_.erase(found);
    // The place is free only when the completion is through: bodies do not pile up in memory.
    auto giveBack = [this, host = ended.load->request.url.host()] {
        const std::lock_guard lock(mutex_);
        finishedHosts_.push_back(host);
        curl_->multiWakeup(multi_);
    };
    auto body = std::make_shared<URLResponse>(response(*ended.transfer));
    complete(
        ended.load, [body] { return std::move(*body); }, std::move(giveBack));
}

void URLSession::Loop::complete(const LoadPtr& load, std::function<URLResponse()> response,
                                std::function<void()> afterwards) {
    // The load holds this until it is called, and this the load.
    load->end = [this, load, response = std::move(response), afterwards = std::move(afterwards)] {
        const bool isCancelled = isStopping_ || load->isCancelled;
        const Completion completion = std::exchange(load->completion, nullptr);
        completion(isCancelled ? failed(URLError::Code::cancelled, "cancelled") : response());
        if (afterwards) afterwards();
    };
    load->isEnding = true;
    completions_.post([load] { load->finish(); }, load->isUrgent);
}

void URLSession::Loop::complete(const LoadPtr& load, URLError::Code code, std::string message) {
    complete(load, [code, message = std::move(message)] { return failed(code, message); });
}

URLSession& URLSession::shared() {
    // The object itself is never destroyed: others that outlive it may still ask it, and are told that all is
    // cancelled.
    static URLSession& session = *new URLSession;
    struct StopAtExit {
        ~StopAtExit() { session.stop(); }
    };
    static const StopAtExit stopAtExit;
    [[maybe_unused]] static const bool isForkable = beginAnewInChildren([] { session.beginAnew(); });
    return session;
}

void URLSession::beginAnew() {
    // The other one waits for threads that this process does not have, and must never end.
    static auto& others = *new std::vector<std::shared_ptr<Loop>>;
    others.push_back(std::exchange(loop_, std::make_shared<Loop>(Configuration{})));
}

URLSession::URLSession() : URLSession(Configuration{}) {}

URLSession::URLSession(Configuration configuration) : loop_(std::make_shared<Loop>(configuration)) {}

URLSession::~URLSession() { stop(); }

std::shared_ptr<URLSession::Task> URLSession::dataTask(URLRequest request, Completion completion) {
    return loop_->begin(std::move(request), std::move(completion));
}

void URLSession::stop() { loop_->stop(); }

}  // namespace tavrin
