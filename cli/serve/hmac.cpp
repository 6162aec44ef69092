// SPDX-License-Identifier: MIT
#include "cli/serve/hmac.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <sys/types.h>

namespace tavrin::cli {
namespace {

constexpr std::size_t blockBytes = SHA256_BLOCK_LENGTH;
constexpr std::size_t codeBytes = SHA256_DIGEST_LENGTH;

void digest(SHA256_CTX& state, std::string_view bytes) {
    SHA256_Update(&state, reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

std::string finished(SHA256_CTX state) {
    std::array<std::uint8_t, codeBytes> bytes{};
    SHA256_Final(bytes.data(), &state);
    return {bytes.begin(), bytes.end()};
}

/// A digest that has begun with the key, each of its bytes changed by `pad`.
SHA256_CTX begunWith(std::string block, char pad) {
    for (char& byte : block) byte = static_cast<char>(byte ^ pad);
    SHA256_CTX state;
    SHA256_Init(&state);
    digest(state, block);
    return state;
}

/// A key of exactly one block: a longer one's digest, filled up with zeros.
std::string blockOf(std::string_view key) {
    std::string block(key);
    if (block.size() > blockBytes) {
        SHA256_CTX state;
        SHA256_Init(&state);
        digest(state, key);
        block = finished(state);
    }
    block.resize(blockBytes);
    return block;
}

}  // namespace

HMACKey::HMACKey(std::string_view key) : inner_(begunWith(blockOf(key), 0x36)), outer_(begunWith(blockOf(key), 0x5C)) {}

std::string HMACKey::code(std::string_view text) const {
    SHA256_CTX inner = inner_;
    digest(inner, text);
    SHA256_CTX outer = outer_;
    digest(outer, finished(inner));
    return finished(outer);
}

}  // namespace tavrin::cli
