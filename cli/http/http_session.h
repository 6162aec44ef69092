// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/core/tcp_stream.hpp>
#include <boost/beast/http.hpp>

#include "cli/http/http_head.h"
#include "cli/http/http_limits.h"
#include "cli/http/http_message.h"
#include "cli/http/http_service.h"

namespace tavrin::cli {

class HTTPSession;

/// What sessions need of their server; called by the thread that talks to connections.
class HTTPSessionHost {
public:
    HTTPSessionHost() = default;
    HTTPSessionHost(const HTTPSessionHost&) = delete;
    HTTPSessionHost& operator=(const HTTPSessionHost&) = delete;
    virtual ~HTTPSessionHost() = default;

    [[nodiscard]] virtual const HTTPLimits& limits() const = 0;
    [[nodiscard]] virtual HTTPService& service() = 0;
    /// Whether no request is taken any more.
    [[nodiscard]] virtual bool isDraining() const = 0;
    /// All bodies share some room. False where so much of it is not left.
    [[nodiscard]] virtual bool takeShare(std::size_t bytes) = 0;
    virtual void giveShareBack(std::size_t bytes) = 0;
    virtual void listens(const std::shared_ptr<HTTPSession>& session) = 0;
    virtual void begun(HTTPSession& session) = 0;
    virtual void ended(HTTPSession& session) = 0;
};

/// One connection: reads a request, has it answered, writes the answer, and again. Lives as long as an operation of its
/// own is under way or a request is worked on. Whoever is to send or to take something has a few seconds for it;
/// whoever goes away meanwhile is not answered any more, unlike who only has nothing more to send.
class HTTPSession : public std::enable_shared_from_this<HTTPSession> {
public:
    using Clock = std::chrono::steady_clock;

    HTTPSession(boost::asio::ip::tcp::socket socket, HTTPSessionHost& host) : stream_(std::move(socket)), host_(host) {
        host_.begun(*this);
    }
    HTTPSession(const HTTPSession&) = delete;
    HTTPSession& operator=(const HTTPSession&) = delete;
    ~HTTPSession() {
        giveShareBack();
        host_.ended(*this);
    }

    /// Waits for the first request.
    void start();
    /// Sends text to a page that listens for events. One that reads too slowly is let go.
    void send(std::string text);
    void close();
    /// Since when it waits for the other side's request or for the other side to take the answer; none while it is
    /// answered, hears events or is closed.
    [[nodiscard]] std::optional<Clock::time_point> idleSince() const { return idleSince_; }
    /// Whether nothing of a request has come, and nothing of an answer is left to be sent.
    [[nodiscard]] bool isBetweenRequests() const { return idleSince_ && !record_; }

private:
    using Parser = boost::beast::http::request_parser<boost::beast::http::buffer_body>;

    /// What is read and not understood yet: a head, or the line before a chunk. Bodies are taken out as they come.
    static constexpr std::size_t maximumBuffer = std::size_t{128} << 10;
    /// How much of it may be read while an answer is worked on.
    static constexpr std::size_t maximumAhead = std::size_t{64} << 10;

    void waitForRequest(std::chrono::seconds time);
    void readHead();
    void lookForHead();
    void readMoreOfHead();
    void takeHead(std::size_t size);
    void welcomeBody();
    void readBody();
    void takeBody();
    void take();
    void giveShareBack() { host_.giveShareBack(std::exchange(share_, 0)); }
    void watch();
    void askWhetherOneWaits();
    [[nodiscard]] bool wasReset();
    void answer(HTTPResponse response);
    void sendAnswer(HTTPResponse response);
    void refuse(const HTTPFault& fault);
    void refuseBroken();
    void refuse(HTTPResponse response);
    void becomeEventStream(const HTTPResponse& response);
    void sendNext();
    void endAnswer();
    void skipToEnd();
    void report(std::size_t bytes);

    boost::beast::tcp_stream stream_;
    boost::asio::steady_timer pause_{stream_.get_executor()};
    HTTPSessionHost& host_;
    boost::beast::flat_buffer buffer_{maximumBuffer};
    std::size_t searched_ = 0;  // of a head that has not come as a whole
    std::optional<Parser> parser_;
    HTTPRequest request_;
    std::size_t share_ = 0;                   // of the room for bodies
    std::shared_ptr<HTTPExchange> exchange_;  // while an answer is worked on
    std::shared_ptr<HTTPSession> self_;       // the same while
    bool isWatching_ = false;                 // whether the other side is read from meanwhile
    bool hasEnded_ = false;                   // whether the other side has sent all; it is not read from any more
    std::optional<HTTPResponse> answer_;      // which waits for that to end
    std::string head_;                        // of the answer that is written, as are the next two
    std::string body_;
    std::shared_ptr<const std::string> sharedBody_;
    bool goesOn_ = true;                // whether another request may follow
    bool isHead_ = false;               // whether the answer's body is left out
    std::optional<HTTPRecord> record_;  // of the request until it is reported
    Clock::time_point begin_;           // of that request
    std::optional<Clock::time_point> idleSince_;
    std::deque<std::string> unsent_;
    std::size_t skippedBytes_ = 0;
    std::array<char, 4096> part_{};  // of a body, or of what is skipped
};

}  // namespace tavrin::cli
