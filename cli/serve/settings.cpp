// SPDX-License-Identifier: MIT
#include "cli/serve/settings.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>
#include <thread>
#include <utility>

#include <arpa/inet.h>
#include <netinet/in.h>

#include "cli/usage_error.h"
#include "tavrin/doors/option_error.h"
#include "tavrin/doors/option_values.h"
#include "tavrin/platform/foundation/strings/number_text.h"

namespace tavrin::cli {
namespace {

constexpr std::uint64_t mostWorkers = 1024;
constexpr std::uint64_t mostWaiting = 65'536;
constexpr std::uint64_t mostBodyBytes = std::uint64_t{256} << 20;
constexpr std::uint64_t mostCacheBytes = std::uint64_t{64} << 30;
constexpr double longestTime = 3600;

[[noreturn]] void refuse(const Setting& setting, std::string_view wanted) {
    throw UsageError(setting.place + setting.name + " takes " + std::string(wanted) + ", not '" + setting.value + "'");
}

std::uint64_t readUpTo(const Setting& setting, std::uint64_t most) {
    const auto count = intFromText<std::uint64_t>(setting.value);
    if (!count || *count == 0 || *count > most) refuse(setting, "a whole number from 1 to " + std::to_string(most));
    return *count;
}

/// "1048576", "1MiB".
std::size_t readBytes(const Setting& setting, std::uint64_t least, std::uint64_t most) {
    constexpr std::pair<std::string_view, unsigned> units[] = {{"KiB", 10}, {"MiB", 20}, {"GiB", 30}};
    std::string_view digits = setting.value;
    unsigned shift = 0;
    for (const auto& [unit, bits] : units) {
        if (!digits.ends_with(unit)) continue;
        digits.remove_suffix(unit.size());
        if (digits.ends_with(' ')) digits.remove_suffix(1);
        shift = bits;
    }
    const auto count = intFromText<std::uint64_t>(digits);
    if (!count || *count > most >> shift || *count << shift < least)
        refuse(setting, "a number of bytes such as 1048576 or 1MiB, from " + std::to_string(least) + " to " +
                            std::to_string(most));
    return *count << shift;
}

double readTimeLimit(const Setting& setting) {
    const auto seconds = doubleFromText(setting.value);
    if (!seconds || !(*seconds > 0 && *seconds <= longestTime))
        refuse(setting, "a number of seconds above 0 and up to 3600");
    return *seconds;
}

bool readSwitch(const Setting& setting) {
    if (setting.value == "true" || setting.value == "1") return true;
    if (setting.value != "false" && setting.value != "0") refuse(setting, "true or false");
    return false;
}

ListenAddress readListen(const Setting& setting) {
    constexpr std::string_view wanted = "an address in digits and a port, such as 127.0.0.1:8080 or [::1]:8080";
    const std::size_t colon = setting.value.rfind(':');
    if (colon == std::string::npos) refuse(setting, wanted);
    std::string host = setting.value.substr(0, colon);
    const bool isBracketed = host.starts_with('[') && host.ends_with(']');
    if (isBracketed) host = host.substr(1, host.size() - 2);
    in6_addr bytes{};  // which has room for those of IPv4, too
    const bool isAddress = ::inet_pton(isBracketed ? AF_INET6 : AF_INET, host.c_str(), &bytes) == 1;
    const std::string_view digits = std::string_view(setting.value).substr(colon + 1);
    const auto port = intFromText<std::uint16_t>(digits);
    if (!isAddress || !port || digits.find_first_not_of("0123456789") != std::string_view::npos)
        refuse(setting, wanted);
    return {host, *port};
}

/// What browsers call an origin: a scheme and a host, with a port where it is not the usual one.
std::string readOrigin(const Setting& setting) {
    if (setting.value == "*") return setting.value;
    for (const std::string_view scheme : {"http://", "https://"}) {
        if (!setting.value.starts_with(scheme)) continue;
        const std::string_view host = std::string_view(setting.value).substr(scheme.size());
        const bool isHost = std::ranges::all_of(host, [](char letter) {
            return letter > ' ' && letter < '\x7F' &&
                   std::string_view("/?#@,\"\\").find(letter) == std::string_view::npos;
        });
        if (!host.empty() && isHost) return setting.value;
    }
    refuse(setting, "an origin such as https://example.com, or *");
}

std::string readFile(const Setting& setting) {
    if (setting.value.empty()) refuse(setting, "the name of a file");
    return setting.value;
}

/// What is found, with its place in front and its option spelled as it is there.
[[noreturn]] void failAsFound(const Setting& setting, std::string_view option, std::string message) {
    if (message.starts_with(option)) message.replace(0, option.size(), setting.name);
    throw UsageError(setting.place + message);
}

DrawingOptions readDrawing(const Settings& settings) {
    DrawingOptions usual;
    usual.widget.timeZone = TimeZone();
    usual.widget.budget = RenderBudget::strangers();
    OptionReader reader(Spelling::kebab, OptionReader::Types::texts, usual);
    for (const Option& option : sharedOptions()) {
        const std::string name = spelled(option.name, Spelling::kebab);
        const auto found = settings.find(name);
        if (found == settings.end()) continue;
        try {
            reader.read(option.name, found->second.value);
        } catch (const OptionError& error) {
            failAsFound(found->second, name, error.what());
        }
    }
    DrawingOptions drawing = reader.options();
    drawing.widget = drawing.withFonts();
    drawing.fontDir.clear();  // they are loaded
    return drawing;
}

}  // namespace

ServeSettings readServeSettings(const Command& command) {
    return readServeSettings(command, [](const char* name) { return std::getenv(name); });
}

ServeSettings readServeSettings(const Command& command, const Environment& environment) {
    if (command.operands.size() > 1) throw UsageError("`tavrin serve` takes one folder");
    ServeSettings serve;
    if (!command.operands.empty()) serve.folder = command.operands.front();
    serve.workers = std::max(1U, std::thread::hardware_concurrency());
    const Settings settings = gatherSettings(command, environment);
    const auto read = [&](std::string_view option, const auto& take) {
        if (const auto found = settings.find(option); found != settings.end()) take(found->second);
    };
    read("--listen", [&](const Setting& setting) { serve.listen = readListen(setting); });
    read("--workers",
         [&](const Setting& setting) { serve.workers = static_cast<unsigned>(readUpTo(setting, mostWorkers)); });
    read("--queue", [&](const Setting& setting) { serve.queue = readUpTo(setting, mostWaiting); });
    read("--max-body", [&](const Setting& setting) { serve.maxBodyBytes = readBytes(setting, 1, mostBodyBytes); });
    read("--time-limit", [&](const Setting& setting) { serve.timeLimit = readTimeLimit(setting); });
    read("--cache", [&](const Setting& setting) { serve.cacheBytes = readBytes(setting, 0, mostCacheBytes); });
    read("--cors", [&](const Setting& setting) { serve.corsOrigin = readOrigin(setting); });
    read("--key-file", [&](const Setting& setting) { serve.keyFile = readFile(setting); });
    read("--open-post", [&](const Setting& setting) { serve.opensPost = readSwitch(setting); });
    serve.drawing = readDrawing(settings);
    return serve;
}

}  // namespace tavrin::cli
