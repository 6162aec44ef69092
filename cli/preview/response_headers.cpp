// SPDX-License-Identifier: MIT
#include "cli/preview/response_headers.h"

#include <string>
#include <utility>

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

HTTPResponse withHeaders(HTTPResponse response) {
    if (response.isEventStream) response.contentType = "text/event-stream";
    response.headers.insert(response.headers.end(),
                            {
                                {"Cache-Control", "no-store"},
                                {"Content-Security-Policy", contentSecurityPolicy(response.nonce)},
                                {"Cross-Origin-Opener-Policy", "same-origin"},
                                {"Cross-Origin-Resource-Policy", "same-origin"},
                                {"Referrer-Policy", "no-referrer"},
                                {"X-Content-Type-Options", "nosniff"},
                                {"X-Frame-Options", "DENY"},
                            });
    return response;
}

}  // namespace tavrin::cli
