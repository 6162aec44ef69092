// SPDX-License-Identifier: MIT
#pragma once

/// The codes of HTTP that the program answers with.
namespace tavrin::cli::http_status {

inline constexpr unsigned ok = 200;
inline constexpr unsigned noContent = 204;
inline constexpr unsigned notModified = 304;
inline constexpr unsigned badRequest = 400;
inline constexpr unsigned forbidden = 403;
inline constexpr unsigned notFound = 404;
inline constexpr unsigned wrongMethod = 405;
inline constexpr unsigned conflict = 409;
inline constexpr unsigned tooLarge = 413;
inline constexpr unsigned targetTooLong = 414;
inline constexpr unsigned wrongType = 415;
inline constexpr unsigned misdirected = 421;
inline constexpr unsigned unprocessable = 422;
inline constexpr unsigned tooMany = 429;
inline constexpr unsigned headersTooLarge = 431;
inline constexpr unsigned gone = 499;  ///< in logs only: the other side went before it was answered
inline constexpr unsigned internalError = 500;
inline constexpr unsigned unavailable = 503;
inline constexpr unsigned timedOut = 504;

}  // namespace tavrin::cli::http_status
