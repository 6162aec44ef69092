#pragma once

#include <string_view>
#include <sys/socket.h>

namespace tavrin {

/// Whether an address belongs to the public Internet. Not public are the machine itself, private networks, link-local,
/// carrier-grade NAT, multicast, documentation and reserved ranges, tunnels, the metadata services of cloud providers,
/// and IPv6 addresses that stand for such an IPv4 one. Any other family than IPv4 and IPv6 is not public.
[[nodiscard]] bool isPublicAddress(const sockaddr& address);

/// The same of an address as text; what is none is not public. A zone behind "%" makes it link-local.
[[nodiscard]] bool isPublicAddress(std::string_view text);

}  // namespace tavrin
