// SPDX-License-Identifier: MIT
#pragma once

/// The codes of HTTP that the preview answers with.
namespace tavrin::cli::http_status {

inline constexpr unsigned badRequest = 400;
inline constexpr unsigned forbidden = 403;
inline constexpr unsigned notFound = 404;
inline constexpr unsigned wrongMethod = 405;
inline constexpr unsigned conflict = 409;
inline constexpr unsigned tooLarge = 413;
inline constexpr unsigned wrongType = 415;
inline constexpr unsigned misdirected = 421;
inline constexpr unsigned internalError = 500;
inline constexpr unsigned unavailable = 503;

}  // namespace tavrin::cli::http_status
