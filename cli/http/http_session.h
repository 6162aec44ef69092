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

#include "cli/http/http_message.h"

namespace tavrin::cli {

class HTTPSession;

/// What sessions need of their server; called by the thread that talks to connections.
class HTTPSessionHost {
public:
    HTTPSessionHost() = default;
    HTTPSessionHost(const HTTPSessionHost&) = delete;
    HTTPSessionHost& operator=(const HTTPSessionHost&) = delete;
    virtual ~HTTPSessionHost() = default;

    /// Why a request must not be answered, as its head tells; or none.
    virtual std::optional<HTTPResponse> refusal(HTTPRequest& request) = 0;
    /// All bodies share some room. False where so much of it is not left.
    [[nodiscard]] virtual bool takeShare(std::size_t bytes) = 0;
    virtual void giveShareBack(std::size_t bytes) = 0;
    /// Has a request answered on another thread; the answer comes back through `HTTPSession::answer`.
    virtual void handle(std::shared_ptr<HTTPSession> session, HTTPRequest request) = 0;
    virtual void listens(const std::shared_ptr<HTTPSession>& session) = 0;
    virtual void begun(HTTPSession& session) = 0;
    virtual void ended(HTTPSession& session) = 0;
};

/// One connection: reads a request, has it answered, writes the answer, and again. Lives as long as an operation of its
/// own is under way. Whoever is to send or to take something has a few seconds for it; whoever goes away meanwhile is
/// not answered any more, unlike who only has nothing more to send.
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
    void answer(HTTPResponse response);
    /// Sends text to a page that listens for events. One that reads too slowly is let go.
    void send(std::string text);
    void close();
    /// Lets the answer that is worked on come to nothing.
    void cancel() { cancel_.cancel(); }
    /// Since when it waits for the other side's request or for the other side to take the answer; none while it is
    /// answered, hears events or is closed.
    [[nodiscard]] std::optional<Clock::time_point> idleSince() const { return idleSince_; }

private:
    using Parser = boost::beast::http::request_parser<boost::beast::http::string_body>;
    using Message = boost::beast::http::response<boost::beast::http::string_body>;

    /// What is read and not understood yet: a head, or the line before a chunk. Bodies are taken out as they come.
    static constexpr std::size_t maximumBuffer = std::size_t{128} << 10;
    /// How much of it may be read while an answer is worked on.
    static constexpr std::size_t maximumAhead = std::size_t{64} << 10;

    void waitForRequest(std::chrono::seconds patience);
    void readHead();
    void takeHead();
    void readBody();
    void take();
    void giveShareBack() { host_.giveShareBack(std::exchange(share_, 0)); }
    void watch();
    void askWhetherOneWaits();
    [[nodiscard]] bool wasReset();
    void sendAnswer(HTTPResponse response);
    void refuseBroken(boost::system::error_code error);
    void refuse(HTTPResponse response);
    void becomeEventStream(const HTTPResponse& response);
    void sendNext();
    void endAnswer();
    void skipToEnd();

    boost::beast::tcp_stream stream_;
    boost::asio::steady_timer pause_{stream_.get_executor()};
    HTTPSessionHost& host_;
    boost::beast::flat_buffer buffer_{maximumBuffer};
    std::optional<Parser> parser_;
    HTTPRequest request_;
    std::size_t share_ = 0;  // of the room for bodies
    CancelToken cancel_;
    bool isWatching_ = false;             // whether the other side is read from while an answer is worked on
    bool hasEnded_ = false;               // whether the other side has sent all; it is not read from any more
    std::optional<HTTPResponse> answer_;  // which waits for that to end
    Message message_;
    bool goesOn_ = true;   // whether another request may follow
    bool isHead_ = false;  // whether the answer's body is left out
    std::optional<Clock::time_point> idleSince_;
    std::deque<std::string> unsent_;
    std::array<char, 4096> skipped_{};
};

}  // namespace tavrin::cli
