// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace tavrin {

/// Whether a numeric IPv4 or IPv6 address belongs to the public Internet. Not public are the machine itself, private
/// networks, link-local, carrier-grade NAT, multicast, documentation and reserved ranges, tunnels, the metadata
/// services of cloud providers, IPv6 addresses that stand for such an IPv4 one, and what is no address.
[[nodiscard]] bool isPublicAddress(std::string_view address);

}  // namespace tavrin
