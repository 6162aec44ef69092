// SPDX-License-Identifier: MIT
#include "cli/serve/signature.h"

#include <algorithm>
#include <cstddef>

#include "cli/input.h"
#include "cli/io_error.h"
#include "cli/usage_error.h"
#include "tavrin/platform/foundation/strings/base64.h"

namespace tavrin::cli {
namespace {

constexpr std::string_view signatureMember = "s=";
constexpr std::string_view expiresMember = "expires=";
constexpr std::size_t maximumExpiresDigits = 15;

/// Takes all of both, however early they differ.
bool areSame(std::string_view one, std::string_view other) {
    if (one.size() != other.size()) return false;
    int difference = 0;
    for (std::size_t i = 0; i < one.size(); ++i) difference |= one[i] ^ other[i];
    return difference == 0;
}

/// The members of a query as they are written.
std::vector<std::string_view> membersOf(std::string_view target) {
    std::vector<std::string_view> members;
    const std::size_t begin = target.find('?');
    if (begin == std::string_view::npos) return members;
    for (std::string_view rest = target.substr(begin + 1);;) {
        const std::size_t end = rest.find('&');
        members.push_back(rest.substr(0, end));
        if (end == std::string_view::npos) return members;
        rest.remove_prefix(end + 1);
    }
}

/// Moments as decimal digits; none for anything else.
std::optional<std::uint64_t> readExpires(std::string_view digits) {
    if (digits.empty() || digits.size() > maximumExpiresDigits) return std::nullopt;
    std::uint64_t seconds = 0;
    for (const char digit : digits) {
        if (digit < '0' || digit > '9') return std::nullopt;
        seconds = seconds * 10 + static_cast<std::uint64_t>(digit - '0');
    }
    return seconds;
}

/// What is wrong with the members before the signature, or empty.
std::string_view faultOf(const std::vector<std::string_view>& members) {
    for (const std::string_view member : members) {
        // A name that is spelled in two ways could be one thing here and another to who answers.
        if (member.substr(0, member.find('=')).find('%') != std::string_view::npos)
            return "names of members are not percent-encoded";
        if (member == expiresMember.substr(0, expiresMember.size() - 1) ||
            (member.starts_with(expiresMember) && !readExpires(member.substr(expiresMember.size()))))
            return "expires takes seconds since 1970 in decimal digits";
    }
    return {};
}

bool isPast(const std::vector<std::string_view>& members, Date now) {
    return std::ranges::any_of(members, [&](std::string_view member) {
        if (!member.starts_with(expiresMember)) return false;
        const auto expires = readExpires(member.substr(expiresMember.size()));
        return expires && now.secondsSince1970 >= static_cast<double>(*expires);
    });
}

bool isBlank(std::string_view line) { return line.find_first_not_of(" \t") == std::string_view::npos; }

}  // namespace

std::string_view reasonOf(SignatureVerdict verdict) {
    switch (verdict) {
        case SignatureVerdict::right: break;
        case SignatureVerdict::missing: return "the address is not signed: s must be the last member of its query";
        case SignatureVerdict::wrong: return "the signature is wrong";
        case SignatureVerdict::expired: return "the address has expired";
    }
    return {};
}

SigningKeys::SigningKeys(std::string_view text, const std::string& name) {
    if (text.size() > maximumFileBytes)
        throw IOError("cannot take keys from '" + name + "': it is larger than 64 KiB", name);
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (line.ends_with('\r')) line.remove_suffix(1);
        if (!isBlank(line)) keys_.emplace_back(line);
    }
    if (keys_.empty()) throw IOError("there is no key in '" + name + "': it wants one a line", name);
    if (keys_.size() > maximumKeys)
        throw IOError("there are " + std::to_string(keys_.size()) + " keys in '" + name + "', and at most " +
                          std::to_string(maximumKeys) + " are tried",
                      name);
}

SigningKeys SigningKeys::read(const std::string& path) { return {readInput(path, {}), displayName(path)}; }

bool SigningKeys::isMadeByAny(std::string_view text, std::string_view signature) const {
    bool isMade = false;
    for (const HMACKey& key : keys_) isMade |= areSame(base64URL(key.code(text)), signature);
    return isMade;
}

SignatureVerdict SigningKeys::verdict(std::string_view target, Date now) const {
    std::vector<std::string_view> members = membersOf(target);
    if (members.empty() || !members.back().starts_with(signatureMember)) return SignatureVerdict::missing;
    const std::string_view signature = members.back().substr(signatureMember.size());
    const std::string_view text = target.substr(0, target.size() - members.back().size() - 1);
    members.pop_back();
    // The text is looked at only once it is known to come from who has a key.
    if (!isMadeByAny(text, signature) || !faultOf(members).empty()) return SignatureVerdict::wrong;
    return isPast(members, now) ? SignatureVerdict::expired : SignatureVerdict::right;
}

std::string SigningKeys::sign(std::string_view target, std::optional<std::uint64_t> expires) const {
    const auto refuse = [&](std::string_view why) {
        throw UsageError("cannot sign '" + std::string(target) + "': " + std::string(why));
    };
    if (!target.starts_with('/')) refuse("a path begins with '/', without a scheme and host before it");
    if (!std::ranges::all_of(target, [](char letter) { return letter > ' ' && letter < '\x7F' && letter != '#'; }))
        refuse("blanks, control characters, '#' and what is not ASCII are percent-encoded");
    const std::vector<std::string_view> members = membersOf(target);
    if (const std::string_view fault = faultOf(members); !fault.empty()) refuse(fault);
    const auto begins = [&](std::string_view name) {
        return std::ranges::any_of(members, [&](std::string_view member) { return member.starts_with(name); });
    };
    if (begins(signatureMember)) refuse("it has an s already");
    if (expires && begins(expiresMember)) refuse("it has an expires already");
    if (expires && *expires >= 1'000'000'000'000'000) refuse("expires is too late");

    std::string text(target);
    const auto separator = [&] { return text.find('?') == std::string::npos ? '?' : '&'; };
    if (expires) text.append(1, separator()).append(expiresMember).append(std::to_string(*expires));
    const std::string signature = base64URL(keys_.front().code(text));
    return text.append(1, separator()).append(signatureMember).append(signature);
}

}  // namespace tavrin::cli
