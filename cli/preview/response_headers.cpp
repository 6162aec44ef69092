// SPDX-License-Identifier: MIT
#include "cli/preview/response_headers.h"

namespace tavrin::cli {
namespace {

std::string contentSecurityPolicy(const std::string& nonce) {
    std::string common = "default-src 'none'; base-uri 'none'; form-action 'none'; frame-ancestors 'none'";
    if (nonce.empty()) return common;
    // Pictures are shown from memory; the editors make style sheets of their own, and browsers style what is typed.
    return common + "; script-src 'nonce-" + nonce + "'; style-src 'self' 'nonce-" + nonce +
           "'; style-src-attr 'unsafe-inline'; img-src 'self' blob: data:; connect-src 'self'";
}

}  // namespace

std::vector<std::pair<std::string, std::string>> headersOf(const HTTPResponse& response) {
    std::vector<std::pair<std::string, std::string>> headers{
        {"Content-Type", response.isEventStream ? "text/event-stream" : response.contentType},
        {"Cache-Control", "no-store"},
        {"Content-Security-Policy", contentSecurityPolicy(response.nonce)},
        {"Cross-Origin-Opener-Policy", "same-origin"},
        {"Cross-Origin-Resource-Policy", "same-origin"},
        {"Referrer-Policy", "no-referrer"},
        {"X-Content-Type-Options", "nosniff"},
        {"X-Frame-Options", "DENY"},
    };
    if (!response.allow.empty()) headers.emplace_back("Allow", response.allow);
    return headers;
}

}  // namespace tavrin::cli
