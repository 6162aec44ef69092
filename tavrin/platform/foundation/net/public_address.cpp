// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/net/public_address.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>

#include <arpa/inet.h>
#include <netinet/in.h>

namespace tavrin {
namespace {

using IPv4 = std::uint32_t;
using IPv6 = std::array<std::uint8_t, 16>;

template <class Address>
struct Block {
    Address first;
    unsigned bits;
};

constexpr IPv4 ipv4(IPv4 a, IPv4 b, IPv4 c, IPv4 d) { return a << 24 | b << 16 | c << 8 | d; }

constexpr Block<IPv4> notPublic4[] = {
    {ipv4(0, 0, 0, 0), 8},         // "this network", the unspecified address
    {ipv4(10, 0, 0, 0), 8},        // private
    {ipv4(100, 64, 0, 0), 10},     // carrier-grade NAT, and a metadata service
    {ipv4(127, 0, 0, 0), 8},       // loopback
    {ipv4(168, 63, 129, 16), 32},  // a metadata service at a public address
    {ipv4(169, 254, 0, 0), 16},    // link-local, and most metadata services
    {ipv4(172, 16, 0, 0), 12},     // private
    {ipv4(192, 0, 0, 0), 24},      // protocol assignments
    {ipv4(192, 0, 2, 0), 24},      // documentation
    {ipv4(192, 88, 99, 0), 24},    // relays of 6to4
    {ipv4(192, 168, 0, 0), 16},    // private
    {ipv4(198, 18, 0, 0), 15},     // benchmarks
    {ipv4(198, 51, 100, 0), 24},   // documentation
    {ipv4(203, 0, 113, 0), 24},    // documentation
    {ipv4(224, 0, 0, 0), 3},       // multicast, reserved, broadcast
};

constexpr Block<IPv6> mapped{{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF}, 96};  // ::ffff:a.b.c.d
constexpr Block<IPv6> translated{{0, 0x64, 0xFF, 0x9B}, 96};                   // 64:ff9b::a.b.c.d, NAT64
constexpr Block<IPv6> globalUnicast{{0x20}, 3};
constexpr Block<IPv6> notPublic6[] = {
    {{0x20, 0x01, 0x00}, 23},        // protocol assignments, Teredo
    {{0x20, 0x01, 0x0D, 0xB8}, 32},  // documentation
    {{0x20, 0x02}, 16},              // 6to4
    {{0x3F, 0xFF, 0x00}, 20},        // documentation
};

bool isIn(const Block<IPv6>& block, const IPv6& address) {
    const std::size_t whole = block.bits / 8;
    if (!std::equal(address.begin(), address.begin() + static_cast<std::ptrdiff_t>(whole), block.first.begin()))
        return false;
    const unsigned rest = block.bits % 8;
    return rest == 0 || (address[whole] ^ block.first[whole]) >> (8 - rest) == 0;
}

bool isPublic(IPv4 address) {
    return std::ranges::none_of(
        notPublic4, [address](const Block<IPv4>& block) { return (address ^ block.first) >> (32 - block.bits) == 0; });
}

bool isPublic(const IPv6& address) {
    if (isIn(mapped, address) || isIn(translated, address))
        return isPublic(ipv4(address[12], address[13], address[14], address[15]));
    return isIn(globalUnicast, address) &&
           std::ranges::none_of(notPublic6, [&](const Block<IPv6>& block) { return isIn(block, address); });
}

}  // namespace

bool isPublicAddress(std::string_view address) {
    const std::string text(address);
    in_addr four{};
    if (::inet_pton(AF_INET, text.c_str(), &four) == 1) return isPublic(IPv4{ntohl(four.s_addr)});
    IPv6 six{};
    return ::inet_pton(AF_INET6, text.c_str(), six.data()) == 1 && isPublic(six);
}

}  // namespace tavrin
