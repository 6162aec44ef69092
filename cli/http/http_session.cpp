// SPDX-License-Identifier: MIT
#include "cli/http/http_session.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <string_view>
#include <sys/socket.h>
#include <utility>

#include <boost/asio/buffer.hpp>
#include <boost/asio/write.hpp>

#include "cli/http/http_status.h"
#include "cli/preview/response_headers.h"
#include "tavrin/platform/foundation/net/percent_encoding.h"

namespace tavrin::cli {
namespace {

namespace beast = boost::beast;
namespace http = boost::beast::http;
using boost::asio::ip::tcp;

constexpr std::uint64_t maximumBody = std::uint64_t{16} << 20;
constexpr std::uint32_t maximumHead = 16 << 10;
constexpr std::size_t firstPart = 4096;
constexpr std::chrono::seconds headPatience{5};
constexpr std::chrono::seconds bodyPatience{30};  // also for answers: the port may be forwarded over a slow line
constexpr std::chrono::seconds betweenRequests{30};
constexpr std::chrono::milliseconds resetPatience{200};
constexpr std::size_t maximumUnsent = 256;

std::string text(beast::string_view view) { return {view.data(), view.size()}; }

/// Without its body.
HTTPRequest requestOf(const http::request<http::string_body>& message) {
    HTTPRequest request;
    request.method = message.method() == http::verb::head ? "GET" : text(message.method_string());
    const std::string target = text(message.target());
    const std::size_t mark = std::min(target.find('?'), target.size());
    request.path = percentDecoded(std::string_view(target).substr(0, mark));
    if (mark < target.size()) request.query = target.substr(mark + 1);
    request.host = text(message[http::field::host]);
    request.origin = text(message[http::field::origin]);
    request.fetchSite = text(message["Sec-Fetch-Site"]);
    request.contentType = text(message[http::field::content_type]);
    return request;
}

/// Whether the other side can still be told, unlike when the connection itself failed or ended.
bool isAboutMessage(beast::error_code error) {
    return error.category() == beast::error_code(http::error::bad_method).category() &&
           error != http::error::end_of_stream && error != http::error::partial_message;
}

}  // namespace

void HTTPSession::start() { waitForRequest(headPatience); }

void HTTPSession::waitForRequest(std::chrono::seconds time) {
    idleSince_ = Clock::now();
    if (buffer_.size() > 0) return readHead();
    if (hasEnded_) return close();
    stream_.expires_after(time);
    stream_.async_read_some(buffer_.prepare(firstPart),
                            [self = shared_from_this()](beast::error_code error, std::size_t count) {
                                if (error) return self->close();
                                self->buffer_.commit(count);
                                self->readHead();
                            });
}

void HTTPSession::readHead() {
    parser_.emplace();
    parser_->body_limit(maximumBody);
    parser_->header_limit(maximumHead);
    isHead_ = false;
    stream_.expires_after(headPatience);
    http::async_read_header(stream_, buffer_, *parser_,
                            [self = shared_from_this()](beast::error_code error, std::size_t) {
                                error ? self->refuseBroken(error) : self->takeHead();
                            });
}

void HTTPSession::takeHead() {
    const auto& message = parser_->get();
    goesOn_ = message.keep_alive();
    isHead_ = message.method() == http::verb::head;
    if (message.count(http::field::host) > 1)
        return refuse(HTTPResponse::failure(http_status::badRequest, "a request names one Host"));
    request_ = requestOf(message);
    if (auto refused = host_.refusal(request_)) return refuse(*std::move(refused));
    // A body whose length is not declared may become as long as any.
    const std::uint64_t length = parser_->is_done() ? 0 : parser_->content_length().value_or(maximumBody);
    if (!host_.takeShare(length))
        return refuse(HTTPResponse::failure(http_status::unavailable,
                                            "too much is being sent to the preview at once; try again in a moment"));
    share_ = length;
    readBody();
}

void HTTPSession::readBody() {
    stream_.expires_after(bodyPatience);
    http::async_read(stream_, buffer_, *parser_, [self = shared_from_this()](beast::error_code error, std::size_t) {
        error ? self->refuseBroken(error) : self->take();
    });
}

void HTTPSession::take() {
    idleSince_ = std::nullopt;
    request_.body = std::move(parser_->get().body());
    host_.giveShareBack(share_ - request_.body.size());
    share_ = request_.body.size();
    cancel_ = request_.cancel;
    stream_.expires_never();  // a handler takes the time it takes
    host_.handle(shared_from_this(), std::move(request_));
    watch();
}

/// While an answer is worked on, it is looked whether the other side goes away. What comes instead belongs to the next
/// request.
void HTTPSession::watch() {
    if (hasEnded_ || buffer_.size() > maximumAhead) return;
    isWatching_ = true;
    stream_.async_read_some(buffer_.prepare(firstPart),
                            [self = shared_from_this()](beast::error_code error, std::size_t count) {
                                self->isWatching_ = false;
                                self->buffer_.commit(count);
                                if (self->answer_) return self->sendAnswer(*std::exchange(self->answer_, {}));
                                if (!error) return self->watch();
                                if (error == boost::asio::error::eof) return self->askWhetherOneWaits();
                                self->cancel();
                                self->close();
                            });
}

/// Whoever has sent all may still wait for the answer, or be gone. Only where one is gone an interim answer, which
/// means nothing, is met with a reset; reading would not tell.
void HTTPSession::askWhetherOneWaits() {
    constexpr std::string_view interim = "HTTP/1.1 100 Continue\r\n\r\n";
    hasEnded_ = true;
    if (parser_->get().version() < 11) return;  // one may not be asked
    beast::error_code error;
    stream_.socket().write_some(boost::asio::buffer(interim), error);
    isWatching_ = true;
    pause_.expires_after(resetPatience);
    pause_.async_wait([self = shared_from_this()](beast::error_code) {
        self->isWatching_ = false;
        if (self->answer_) return self->sendAnswer(*std::exchange(self->answer_, {}));
        if (!self->wasReset()) return;
        self->cancel();
        self->close();
    });
}

bool HTTPSession::wasReset() {
    int error = 0;
    socklen_t size = sizeof error;
    return ::getsockopt(stream_.socket().native_handle(), SOL_SOCKET, SO_ERROR, &error, &size) != 0 || error != 0;
}

void HTTPSession::refuseBroken(boost::system::error_code error) {
    if (!isAboutMessage(error)) return close();
    const bool isTooLarge = error == http::error::body_limit || error == http::error::header_limit;
    refuse(isTooLarge ? HTTPResponse::failure(http_status::tooLarge, "the request is too large")
                      : HTTPResponse::failure(http_status::badRequest, "this is no HTTP request"));
}

void HTTPSession::refuse(HTTPResponse response) {
    goesOn_ = false;
    answer(std::move(response));
}

void HTTPSession::answer(HTTPResponse response) {
    giveShareBack();
    if (!isWatching_) return sendAnswer(std::move(response));
    answer_ = std::move(response);
    stream_.cancel();
    pause_.cancel();
}

void HTTPSession::sendAnswer(HTTPResponse response) {
    if (response.isEventStream && !isHead_) return becomeEventStream(response);
    message_ = {};
    message_.result(response.status);
    for (const auto& [name, value] : headersOf(response)) message_.set(name, value);
    message_.body() = std::move(response.body);
    message_.keep_alive(goesOn_);
    message_.prepare_payload();
    if (isHead_) message_.body().clear();  // after its length was taken
    idleSince_ = Clock::now();
    stream_.expires_after(bodyPatience);
    http::async_write(stream_, message_, [self = shared_from_this()](beast::error_code error, std::size_t) {
        if (error) return self->close();
        self->goesOn_ ? self->waitForRequest(betweenRequests) : self->endAnswer();
    });
}

void HTTPSession::becomeEventStream(const HTTPResponse& response) {
    std::string head = "HTTP/1.1 200 OK\r\nConnection: close\r\n";
    for (const auto& [name, value] : headersOf(response)) head.append(name).append(": ").append(value).append("\r\n");
    host_.listens(shared_from_this());
    stream_.expires_never();
    skipToEnd();
    send(head + "\r\n");
}

void HTTPSession::send(std::string text) {
    if (unsent_.size() >= maximumUnsent) return close();
    unsent_.push_back(std::move(text));
    if (unsent_.size() == 1) sendNext();
}

void HTTPSession::sendNext() {
    boost::asio::async_write(stream_, boost::asio::buffer(unsent_.front()),
                             [self = shared_from_this()](beast::error_code error, std::size_t) {
                                 if (error) return self->close();
                                 self->unsent_.pop_front();
                                 if (!self->unsent_.empty()) self->sendNext();
                             });
}

void HTTPSession::endAnswer() {
    if (hasEnded_) return close();
    // What the other side still sends is read: a connection that is closed over it takes the answer along.
    beast::error_code ignored;
    stream_.socket().shutdown(tcp::socket::shutdown_send, ignored);
    stream_.expires_after(headPatience);
    skipToEnd();
}

void HTTPSession::skipToEnd() {
    stream_.async_read_some(boost::asio::buffer(skipped_),
                            [self = shared_from_this()](beast::error_code error, std::size_t) {
                                error ? self->close() : self->skipToEnd();
                            });
}

void HTTPSession::close() {
    idleSince_ = std::nullopt;
    beast::error_code ignored;
    stream_.socket().shutdown(tcp::socket::shutdown_both, ignored);
    stream_.close();
}

}  // namespace tavrin::cli
