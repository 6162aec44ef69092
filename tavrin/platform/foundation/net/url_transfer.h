// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "tavrin/platform/foundation/net/curl_library.h"
#include "tavrin/platform/foundation/net/url_session.h"

namespace tavrin {

/// One load over HTTP: what the transfer library is told, and what it tells.
class URLTransfer {
public:
    URLTransfer(const CurlLibrary& curl, const URLRequest& request, const URLSession::Configuration& configuration);
    URLTransfer(const URLTransfer&) = delete;
    URLTransfer& operator=(const URLTransfer&) = delete;

    /// Null when there was no memory for it, or the library does not know an option: it must not go without one.
    [[nodiscard]] CURL* handle() const { return isSet_ ? handle_.get() : nullptr; }

    /// What the transfer came to.
    [[nodiscard]] URLResponse response(CURLcode outcome);

private:
    template <class Value>
    void set(CURLoption option, Value value) {
        isSet_ = curl_.easySetopt(handle_.get(), option, value) == CURLE_OK && isSet_;
    }
    [[nodiscard]] URLError error(CURLcode outcome) const;
    /// Whether an address may be used; notes a refusal.
    [[nodiscard]] bool allows(const std::string& address);

    static std::size_t take(char* bytes, std::size_t size, std::size_t count, void* transfer) noexcept;
    static curl_socket_t openSocket(void* transfer, curlsocktype purpose, curl_sockaddr* address) noexcept;
    static int aboutToRequest(void* transfer, char* remote, char* local, int remotePort, int localPort) noexcept;

    const CurlLibrary& curl_;
    std::unique_ptr<CURL, void (*)(CURL*)> handle_;
    std::size_t maximumBytes_;
    FetchPolicy policy_;
    bool (*isPublic_)(std::string_view);
    std::function<bool(std::size_t)> mayTake_;
    std::string data_;
    std::string refusedAddress_;
    bool isSet_ = true;
    bool isTooLarge_ = false;
    bool isAdmitted_ = true;
    char message_[CURL_ERROR_SIZE] = {};
};

}  // namespace tavrin
