// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/net/public_address.h"

#include <gtest/gtest.h>

namespace tavrin {
namespace {

TEST(PublicAddresses, AreToldFromOthers) {
    const struct {
        const char* why;
        const char* address;
        bool isPublic;
    } rows[] = {
        {"a name server", "8.8.8.8", true},
        {"below private", "9.255.255.255", true},
        {"private", "10.0.0.0", false},
        {"private", "10.255.255.255", false},
        {"above private", "11.0.0.0", true},
        {"below carrier-grade NAT", "100.63.255.255", true},
        {"carrier-grade NAT", "100.64.0.1", false},
        {"metadata in it", "100.100.100.200", false},
        {"carrier-grade NAT", "100.127.255.255", false},
        {"above carrier-grade NAT", "100.128.0.0", true},
        {"loopback", "127.0.0.1", false},
        {"loopback", "127.255.255.254", false},
        {"unspecified", "0.0.0.0", false},
        {"this network", "0.1.2.3", false},
        {"link-local", "169.254.0.1", false},
        {"metadata", "169.254.169.254", false},
        {"above link-local", "169.255.0.0", true},
        {"metadata at a public address", "168.63.129.16", false},
        {"its neighbour", "168.63.129.17", true},
        {"below private", "172.15.255.255", true},
        {"private", "172.16.0.0", false},
        {"private", "172.31.255.255", false},
        {"above private", "172.32.0.0", true},
        {"metadata in protocol assignments", "192.0.0.192", false},
        {"documentation", "192.0.2.1", false},
        {"relays", "192.88.99.1", false},
        {"private", "192.168.1.1", false},
        {"above private", "192.169.0.0", true},
        {"benchmarks", "198.19.255.255", false},
        {"documentation", "198.51.100.1", false},
        {"documentation", "203.0.113.1", false},
        {"the last of all", "223.255.255.255", true},
        {"multicast", "224.0.0.1", false},
        {"reserved", "240.0.0.1", false},
        {"broadcast", "255.255.255.255", false},
        {"a name server", "2001:4860:4860::8888", true},
        {"the first of all", "2400::1", true},
        {"unspecified", "::", false},
        {"loopback", "::1", false},
        {"IPv4, mapped", "::ffff:127.0.0.1", false},
        {"IPv4, mapped", "::ffff:a9fe:a9fe", false},
        {"public IPv4, mapped", "::ffff:8.8.8.8", true},
        {"IPv4, compatible", "::7f00:1", false},
        {"IPv4 behind NAT64", "64:ff9b::10.0.0.1", false},
        {"public IPv4 behind NAT64", "64:ff9b::8.8.8.8", true},
        {"a local NAT64", "64:ff9b:1::8.8.8.8", false},
        {"discard", "100::1", false},
        {"Teredo", "2001:0:1::1", false},
        {"protocol assignments", "2001:1ff::1", false},
        {"above them", "2001:200::1", true},
        {"documentation", "2001:db8::1", false},
        {"6to4", "2002:7f00:1::1", false},
        {"documentation", "3fff::1", false},
        {"unassigned", "4000::1", false},
        {"unique local", "fc00::1", false},
        {"metadata in unique local", "fd00:ec2::254", false},
        {"link-local", "fe80::1", false},
        {"link-local with a zone", "fe80::1%eth0", false},
        {"site-local", "fec0::1", false},
        {"multicast", "ff02::1", false},
        {"a name", "example.com", false},
        {"a number", "2130706433", false},
        {"nothing", "", false},
    };
    for (const auto& row : rows) EXPECT_EQ(isPublicAddress(row.address), row.isPublic) << row.why << ' ' << row.address;
}

}  // namespace
}  // namespace tavrin
