// SPDX-License-Identifier: MIT
#include "cli/http/http_session.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <limits>
#include <new>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <utility>

#include <boost/asio/buffer.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/core/string.hpp>

#include "cli/http/http_answer_head.h"
#include "cli/http/http_status.h"
#include "tavrin/platform/foundation/net/percent_encoding.h"

namespace tavrin::cli {
namespace {

namespace beast = boost::beast;
namespace http = boost::beast::http;
using boost::asio::ip::tcp;

constexpr std::size_t firstPart = 4096;
constexpr std::size_t partOfBody = 16384;
constexpr std::chrono::milliseconds resetPatience{200};
constexpr std::size_t maximumUnsent = 256;
constexpr std::string_view interim = "HTTP/1.1 100 Continue\r\n\r\n";

std::string text(beast::string_view view) { return {view.data(), view.size()}; }

std::string_view viewOf(const beast::flat_buffer& buffer) {
    return {static_cast<const char*>(buffer.data().data()), buffer.size()};
}

/// Without its body.
HTTPRequest requestOf(const http::request<http::buffer_body>& message) {
    HTTPRequest request;
    request.method = message.method() == http::verb::head ? "GET" : text(message.method_string());
    request.target = text(message.target());
    const std::string_view target = request.target;
    const std::size_t mark = std::min(target.find('?'), target.size());
    request.path = percentDecoded(target.substr(0, mark));
    if (mark < target.size()) request.query = target.substr(mark + 1);
    request.host = text(message[http::field::host]);
    request.origin = text(message[http::field::origin]);
    request.fetchSite = text(message["Sec-Fetch-Site"]);
    request.contentType = text(message[http::field::content_type]);
    request.contentEncoding = text(message[http::field::content_encoding]);
    request.ifNoneMatch = text(message[http::field::if_none_match]);
    return request;
}

HTTPRecord recordOf(const http::request<http::buffer_body>& message) {
    const std::string target = text(message.target());
    return {.method = text(message.method_string()),
            .path = target.substr(0, target.find('?')),
            .traceparent = text(message["traceparent"])};
}

/// Gives a text's memory back, which an empty one assigned to it does not.
void releaseMemory(std::string& text) { std::string().swap(text); }

HTTPFault tooLargeFault() { return {http_status::tooLarge, "the request's body is too large"}; }

}  // namespace

void HTTPSession::start() { waitForRequest(host_.limits().headTime); }

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
    parser_->body_limit(std::numeric_limits<std::uint64_t>::max());  // bodies share their room, and are counted here
    parser_->header_limit(static_cast<std::uint32_t>(host_.limits().head));
    isHead_ = false;
    goesOn_ = true;
    record_.emplace();
    begin_ = Clock::now();
    searched_ = 0;
    stream_.expires_after(host_.limits().headTime);
    lookForHead();
}

void HTTPSession::lookForHead() {
    const std::string_view bytes = viewOf(buffer_);
    const HeadEnd end = findHeadEnd(bytes, searched_);
    if (end.isBroken) return refuse(HTTPFault{http_status::badRequest, "a line of a request ends with CR and LF"});
    if (end.isWhole) return takeHead(end.searched);
    searched_ = end.searched;
    if (bytes.size() > host_.limits().head) return refuse(tooLongFault(bytes, host_.limits()));
    if (hasEnded_) return close();
    readMoreOfHead();
}

void HTTPSession::readMoreOfHead() {
    stream_.async_read_some(buffer_.prepare(firstPart),
                            [self = shared_from_this()](beast::error_code error, std::size_t count) {
                                if (error) return self->close();
                                self->buffer_.commit(count);
                                self->lookForHead();
                            });
}

void HTTPSession::takeHead(std::size_t size) {
    const std::string_view head = viewOf(buffer_).substr(0, size);
    if (const auto fault = headFault(head, host_.limits())) return refuse(*fault);
    beast::error_code error;
    const std::size_t taken = parser_->put(boost::asio::buffer(head.data(), head.size()), error);
    if (error || !parser_->is_header_done()) return refuseBroken();
    buffer_.consume(taken);
    const auto& message = parser_->get();
    goesOn_ = message.version() >= 11 && message.keep_alive();
    isHead_ = message.method() == http::verb::head;
    record_ = recordOf(message);
    begin_ = Clock::now();
    request_ = requestOf(message);
    if (host_.isDraining()) return refuse(HTTPFault{http_status::unavailable, "the server is ending"});
    if (parser_->content_length().value_or(0) > host_.limits().body) return refuse(tooLargeFault());
    if (auto refused = host_.service().refusal(request_)) {
        // Behind a body that is not read no one knows where the next request begins.
        if (!parser_->is_done()) goesOn_ = false;
        return sendAnswer(*std::move(refused));
    }
    welcomeBody();
}

/// Some send their body only once they are told to.
void HTTPSession::welcomeBody() {
    const auto& message = parser_->get();
    const bool isAsked = beast::iequals(message[http::field::expect], "100-continue") && message.version() >= 11;
    if (!isAsked || parser_->is_done() || buffer_.size() > 0) return readBody();
    stream_.expires_after(host_.limits().bodyTime);
    boost::asio::async_write(stream_, boost::asio::buffer(interim),
                             [self = shared_from_this()](beast::error_code error, std::size_t) {
                                 error ? self->close() : self->readBody();
                             });
}

void HTTPSession::readBody() {
    stream_.expires_after(host_.limits().bodyTime);
    takeBody();
}

/// What has come of a body takes its share of the room, and no more: one that is only announced takes none.
void HTTPSession::takeBody() {
    while (!parser_->is_done() && buffer_.size() > 0) {
        parser_->get().body() = {.data = part_.data(), .size = part_.size(), .more = true};
        beast::error_code error;
        const std::size_t taken = parser_->put(buffer_.data(), error);
        buffer_.consume(taken);
        const std::size_t count = part_.size() - parser_->get().body().size;
        if (request_.body.size() + count > host_.limits().body) return refuse(tooLargeFault());
        if (!host_.takeShare(count))
            return refuse(HTTPFault{http_status::unavailable, "too much is being sent at once; try again in a moment"});
        share_ += count;
        request_.body.append(part_.data(), count);
        if (error == http::error::need_more) break;
        if (error && error != http::error::need_buffer) return refuseBroken();
    }
    if (parser_->is_done()) return take();
    if (hasEnded_) return close();
    if (buffer_.size() + partOfBody > buffer_.max_size()) return refuseBroken();  // an endless line before a chunk
    stream_.async_read_some(buffer_.prepare(partOfBody),
                            [self = shared_from_this()](beast::error_code error, std::size_t count) {
                                if (error) return self->close();
                                self->buffer_.commit(count);
                                self->takeBody();
                            });
}

void HTTPSession::take() {
    idleSince_ = std::nullopt;
    stream_.expires_never();  // a service takes the time it takes
    self_ = shared_from_this();
    // Sessions belong to this thread, the last reference too.
    exchange_ = std::make_shared<HTTPExchange>(
        std::move(request_), [session = weak_from_this(), executor = stream_.get_executor()](HTTPResponse response) {
            boost::asio::post(executor, [session, response = std::move(response)]() mutable {
                if (const auto alive = session.lock()) alive->answer(std::move(response));
            });
        });
    watch();
    try {
        host_.service().handle(exchange_);
    } catch (const std::bad_alloc&) {
        const auto exchange = exchange_;
        if (exchange) exchange->answer(host_.service().failure(http_status::unavailable, "there is not enough memory"));
    }
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
                                self->close();
                            });
}

/// Whoever has sent all may still wait for the answer, or be gone. Only where one is gone an interim answer, which
/// means nothing, is met with a reset; reading would not tell.
void HTTPSession::askWhetherOneWaits() {
    hasEnded_ = true;
    if (parser_->get().version() < 11) return;  // one may not be asked
    // This thread waits for nobody; a part of an answer would not be one.
    const ssize_t count =
        ::send(stream_.socket().native_handle(), interim.data(), interim.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    if (count >= 0 && static_cast<std::size_t>(count) < interim.size()) return close();
    isWatching_ = true;
    pause_.expires_after(resetPatience);
    pause_.async_wait([self = shared_from_this()](beast::error_code) {
        self->isWatching_ = false;
        if (self->answer_) return self->sendAnswer(*std::exchange(self->answer_, {}));
        if (self->wasReset()) self->close();
    });
}

bool HTTPSession::wasReset() {
    int error = 0;
    socklen_t size = sizeof error;
    return ::getsockopt(stream_.socket().native_handle(), SOL_SOCKET, SO_ERROR, &error, &size) != 0 || error != 0;
}

void HTTPSession::refuseBroken() { refuse(HTTPFault{http_status::badRequest, "this is no HTTP request"}); }

void HTTPSession::refuse(const HTTPFault& fault) { refuse(host_.service().failure(fault.status, fault.message)); }

/// The connection ends with that.
void HTTPSession::refuse(HTTPResponse response) {
    goesOn_ = false;
    releaseMemory(request_.body);
    giveShareBack();
    sendAnswer(std::move(response));
}

void HTTPSession::answer(HTTPResponse response) {
    if (!exchange_) return;  // it was closed
    exchange_ = nullptr;
    giveShareBack();
    const auto self = std::exchange(self_, nullptr);
    if (!isWatching_) return sendAnswer(std::move(response));
    answer_ = std::move(response);
    stream_.cancel();
    pause_.cancel();
}

void HTTPSession::sendAnswer(HTTPResponse response) {
    if (host_.isDraining()) goesOn_ = false;
    record_->status = response.status;
    if (response.isEventStream && !isHead_) return becomeEventStream(response);
    body_ = std::move(response.body);
    sharedBody_ = std::move(response.sharedBody);
    const std::string& body = sharedBody_ ? *sharedBody_ : body_;
    head_ = answerHead(response, body.size(), goesOn_);
    const std::size_t bytes = isHead_ ? 0 : body.size();
    const std::array<boost::asio::const_buffer, 2> parts{boost::asio::buffer(head_),
                                                         boost::asio::buffer(body.data(), bytes)};
    idleSince_ = Clock::now();
    stream_.expires_after(host_.limits().bodyTime);
    boost::asio::async_write(stream_, parts, [self = shared_from_this()](beast::error_code error, std::size_t count) {
        self->report(count - std::min(count, self->head_.size()));
        self->sharedBody_ = nullptr;
        releaseMemory(self->body_);
        if (error) return self->close();
        self->goesOn_ ? self->waitForRequest(self->host_.limits().idleTime) : self->endAnswer();
    });
}

void HTTPSession::report(std::size_t bytes) {
    if (!record_) return;
    record_->bytes = bytes;
    record_->milliseconds = std::chrono::duration<double, std::milli>(Clock::now() - begin_).count();
    host_.service().ended(*record_);
    record_.reset();
}

void HTTPSession::becomeEventStream(const HTTPResponse& response) {
    host_.listens(shared_from_this());
    stream_.expires_never();
    skipToEnd();
    send(eventStreamHead(response));
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
    stream_.expires_after(host_.isDraining() ? host_.limits().headTime : host_.limits().bodyTime);
    skipToEnd();
}

void HTTPSession::skipToEnd() {
    stream_.async_read_some(boost::asio::buffer(part_),
                            [self = shared_from_this()](beast::error_code error, std::size_t count) {
                                self->skippedBytes_ += count;
                                const bool isTooMuch = self->skippedBytes_ > self->host_.limits().dropped;
                                error || isTooMuch ? self->close() : self->skipToEnd();
                            });
}

void HTTPSession::close() {
    idleSince_ = std::nullopt;
    const auto exchange = std::exchange(exchange_, nullptr);
    const auto self = std::exchange(self_, nullptr);
    if (record_ && record_->status == 0 && !record_->method.empty()) {  // its head has come, but no answer went out
        record_->status = http_status::gone;
        report(0);
    }
    if (exchange) exchange->leave();
    beast::error_code ignored;
    stream_.socket().shutdown(tcp::socket::shutdown_both, ignored);
    stream_.close();
}

}  // namespace tavrin::cli
