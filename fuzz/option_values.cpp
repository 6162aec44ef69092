// SPDX-License-Identifier: MIT
#include "tavrin/doors/option_values.h"

#include <cstddef>
#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

#include "cli/frames.h"

// A value behind an option of the command line, read as each kind of value.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tavrin;
    const std::string_view value(reinterpret_cast<const char*>(data), size);
    const auto read = [value](auto reader) {
        try {
            (void)reader("--option", std::string(value));
        } catch (const std::exception&) {  // an error is an answer; a crash is none
        }
    };
    read(readBackground);
    read(readCount);
    read(readDate);
    read(cli::readMoments);
    read(readFlag);
    read(readQuality);
    read(readSeconds);
    read(readSize);
    read(readTimeZone);
    read(readUpTo100);
    read([](std::string_view option, const OptionValue& text) { return readFamily(option, text, {390, 844}); });
    return 0;
}
