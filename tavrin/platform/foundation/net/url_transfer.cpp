// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/net/url_transfer.h"

#include <exception>
#include <sys/socket.h>

#include <arpa/inet.h>
#include <netinet/in.h>

namespace tavrin {
namespace {

constexpr long maximumRedirects = 10;
constexpr long bufferBytes = 64 * 1024;

std::string textOf(const sockaddr& address) {
    char text[INET6_ADDRSTRLEN] = "?";
    if (address.sa_family == AF_INET)
        ::inet_ntop(AF_INET, &reinterpret_cast<const sockaddr_in&>(address).sin_addr, text, sizeof text);
    else if (address.sa_family == AF_INET6)
        ::inet_ntop(AF_INET6, &reinterpret_cast<const sockaddr_in6&>(address).sin6_addr, text, sizeof text);
    return text;
}

}  // namespace

URLTransfer::URLTransfer(const CurlLibrary& curl, const URLRequest& request,
                         const URLSession::Configuration& configuration)
    : curl_(curl),
      handle_(curl.easyInit(), curl.easyCleanup),
      maximumBytes_(configuration.maximumBytes),
      policy_(request.policy),
      isPublic_(configuration.isPublic),
      mayTake_(request.mayTake) {
    if (!handle_) return;
    set(CURLOPT_URL, request.url.string().c_str());
    set(CURLOPT_PROTOCOLS_STR, "http,https");
    set(CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
    set(CURLOPT_FOLLOWLOCATION, 1L);
    set(CURLOPT_MAXREDIRS, maximumRedirects);
    set(CURLOPT_USERAGENT, "tavrin");
    set(CURLOPT_ACCEPT_ENCODING, "");  // every encoding that can be undone
    set(CURLOPT_NOSIGNAL, 1L);
    // A look-up that hangs is left behind, not waited for: other transfers go on meanwhile.
    set(CURLOPT_QUICK_EXIT, 1L);
    set(CURLOPT_TIMEOUT_MS, static_cast<long>(configuration.timeout.count()));
    set(CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(maximumBytes_));
    set(CURLOPT_BUFFERSIZE, bufferBytes);
    set(CURLOPT_ERRORBUFFER, static_cast<char*>(message_));
    set(CURLOPT_WRITEFUNCTION, &URLTransfer::take);
    set(CURLOPT_WRITEDATA, static_cast<void*>(this));
    set(CURLOPT_OPENSOCKETFUNCTION, &URLTransfer::openSocket);
    set(CURLOPT_OPENSOCKETDATA, static_cast<void*>(this));
    if (policy_ == FetchPolicy::publicOnly) {
        set(CURLOPT_PROXY, "");  // a proxy would resolve names itself
        // A connection that is used again opens no socket.
        set(CURLOPT_PREREQFUNCTION, &URLTransfer::aboutToRequest);
        set(CURLOPT_PREREQDATA, static_cast<void*>(this));
    }
}

bool URLTransfer::allows(const std::string& address) {
    if (policy_ != FetchPolicy::publicOnly || isPublic_(address)) return true;
    refusedAddress_ = address;
    return false;
}

std::size_t URLTransfer::take(char* bytes, std::size_t size, std::size_t count, void* transfer) noexcept {
    auto& self = *static_cast<URLTransfer*>(transfer);
    const std::size_t length = size * count;
    self.isTooLarge_ = length > self.maximumBytes_ - self.data_.size();
    if (self.isTooLarge_) return CURL_WRITEFUNC_ERROR;
    try {
        self.isAdmitted_ = !self.mayTake_ || self.mayTake_(self.data_.size() + length);
        if (!self.isAdmitted_) return CURL_WRITEFUNC_ERROR;
        self.data_.append(bytes, length);
        return length;
    } catch (const std::exception&) {
        return CURL_WRITEFUNC_ERROR;
    }
}

curl_socket_t URLTransfer::openSocket(void* transfer, curlsocktype, curl_sockaddr* address) noexcept {
    try {
        auto& self = *static_cast<URLTransfer*>(transfer);
        if (!self.allows(textOf(address->addr))) return CURL_SOCKET_BAD;
    } catch (const std::exception&) {
        return CURL_SOCKET_BAD;
    }
    return ::socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
}

// NOLINTNEXTLINE(readability-non-const-parameter): the library's type
int URLTransfer::aboutToRequest(void* transfer, char* remote, char*, int, int) noexcept {
    try {
        auto& self = *static_cast<URLTransfer*>(transfer);
        return self.allows(remote) ? CURL_PREREQFUNC_OK : CURL_PREREQFUNC_ABORT;
    } catch (const std::exception&) {
        return CURL_PREREQFUNC_ABORT;
    }
}

URLResponse URLTransfer::response(CURLcode outcome) {
    if (outcome != CURLE_OK) return {{}, 0, error(outcome)};
    long status = 0;
    curl_.easyGetinfo(handle_.get(), CURLINFO_RESPONSE_CODE, &status);
    return {std::move(data_), static_cast<int>(status), std::nullopt};
}

URLError URLTransfer::error(CURLcode outcome) const {
    using Code = URLError::Code;
    if (!refusedAddress_.empty()) return {Code::refused, "the address " + refusedAddress_ + " is not public"};
    if (isTooLarge_ || outcome == CURLE_FILESIZE_EXCEEDED) return URLError::tooLarge(maximumBytes_);
    if (!isAdmitted_) return {Code::notAdmitted, "larger than it may be"};
    const char* const message = message_[0] != '\0' ? message_ : curl_.easyStrerror(outcome);
    return {outcome == CURLE_OPERATION_TIMEDOUT ? Code::timedOut : Code::failed, message};
}

}  // namespace tavrin
