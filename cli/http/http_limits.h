// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>

namespace tavrin::cli {

/// What connections may take of a server. Times begin anew with each head, body, answer and pause.
struct HTTPLimits {
    /// Once there are so many, the one that has been idle longest makes room for a new one.
    std::size_t connections = 64;
    std::size_t listeners = 16;                  ///< connections that hear events
    std::size_t target = std::size_t{8} << 10;   ///< bytes of path and query
    std::size_t head = std::size_t{16} << 10;    ///< bytes of a request without its body
    std::size_t body = std::size_t{16} << 20;    ///< bytes of a body
    std::size_t bodies = std::size_t{64} << 20;  ///< bytes of all bodies together, until they are answered
    std::size_t dropped = std::size_t{8} << 20;  ///< how much is still read of a request that was refused
    std::chrono::seconds headTime{5};
    std::chrono::seconds bodyTime{30};  ///< also for answers: they may go over a slow line
    std::chrono::seconds idleTime{30};  ///< between requests
};

}  // namespace tavrin::cli
