// SPDX-License-Identifier: MIT
#include "bindings/c/options.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <optional>
#include <string>

#include "bindings/c/handles.h"

namespace tavrin::c {
namespace {

constexpr std::size_t notOffered = ~std::size_t{0};

/// Where each option stands in the struct.
constexpr EnumeratorTable<OptionName, std::size_t> offsets{{
    {OptionName::family, offsetof(tavrin_options, family)},
    {OptionName::size, offsetof(tavrin_options, size)},
    {OptionName::screen, offsetof(tavrin_options, screen)},
    {OptionName::scale, offsetof(tavrin_options, scale)},
    {OptionName::appearance, offsetof(tavrin_options, appearance)},
    {OptionName::date, offsetof(tavrin_options, date)},
    {OptionName::timeZone, offsetof(tavrin_options, time_zone)},
    {OptionName::background, offsetof(tavrin_options, background)},
    {OptionName::rounded, offsetof(tavrin_options, rounded)},
    {OptionName::imageCacheDir, offsetof(tavrin_options, image_cache_dir)},
    {OptionName::maxImageSize, offsetof(tavrin_options, max_image_size)},
    {OptionName::fetch, offsetof(tavrin_options, fetch)},
    {OptionName::fontDir, offsetof(tavrin_options, font_dir)},
    {OptionName::format, offsetof(tavrin_options, format)},
    {OptionName::compression, offsetof(tavrin_options, compression)},
    {OptionName::quality, offsetof(tavrin_options, quality)},
    {OptionName::hashes, notOffered},
    {OptionName::budget, offsetof(tavrin_options, budget)},
    {OptionName::budgetSteps, offsetof(tavrin_options, budget_steps)},
    {OptionName::budgetPixels, offsetof(tavrin_options, budget_pixels)},
    {OptionName::budgetBytes, offsetof(tavrin_options, budget_bytes)},
    {OptionName::budgetSeconds, offsetof(tavrin_options, budget_seconds)},
}};

template <class Member>
Member memberAt(const tavrin_options& options, std::size_t offset) {
    Member member;
    std::memcpy(&member, reinterpret_cast<const char*>(&options) + offset, sizeof member);
    return member;
}

/// The value of an option's member; none where it is not given.
std::optional<OptionValue> valueOf(const Option& option, const tavrin_options& options) {
    const std::size_t offset = offsets[option.name];
    if (offset == notOffered) return std::nullopt;
    switch (option.kind) {
        case OptionKind::flag: {
            const int flag = memberAt<int>(options, offset);
            return flag != 0 ? std::optional<OptionValue>(true) : std::nullopt;
        }
        case OptionKind::number: {
            const double number = memberAt<double>(options, offset);
            return number != 0 ? std::optional<OptionValue>(number) : std::nullopt;
        }
        case OptionKind::count: {
            const auto count = memberAt<std::uint64_t>(options, offset);
            return count != 0 ? std::optional<OptionValue>(count) : std::nullopt;
        }
        case OptionKind::size: {
            const auto size = memberAt<tavrin_size>(options, offset);
            const bool isGiven = size.width != 0 || size.height != 0;
            return isGiven ? std::optional<OptionValue>(Size{size.width, size.height}) : std::nullopt;
        }
        default: break;
    }
    const auto* const text = memberAt<const char*>(options, offset);
    return text != nullptr ? std::optional<OptionValue>(std::string(text)) : std::nullopt;
}

/// What an older, or an equally old, program has; nothing of a newer one's that this library does not know.
tavrin_options known(const tavrin_options& options) {
    std::size_t size = 0;
    std::memcpy(&size, &options, sizeof size);
    const auto* const bytes = reinterpret_cast<const char*>(&options);
    if (size < sizeof size) throw Misuse("struct_size of tavrin_options is not set; begin with TAVRIN_OPTIONS_INIT");
    if (size > sizeof options && std::any_of(bytes + sizeof options, bytes + size, [](char byte) { return byte != 0; }))
        throw Misuse("tavrin_options gives an option that this version does not have");
    tavrin_options copy{};
    std::memcpy(&copy, &options, std::min(size, sizeof copy));
    return copy;
}

/// Reads the options for which `takes` holds.
template <class Takes>
void readMembers(OptionReader& reader, const tavrin_options& given, const Takes& takes) {
    for (const Option& option : sharedOptions())
        if (takes(option))
            if (const auto value = valueOf(option, given)) reader.read(option.name, *value);
}

}  // namespace

DrawingOptions readOptions(const tavrin_options* options) {
    OptionReader reader(Spelling::snake, OptionReader::Types::own);
    if (options == nullptr) return reader.options();
    const tavrin_options given = known(*options);
    readMembers(reader, given, [](const Option&) { return true; });
    DrawingOptions read = reader.options();
    if (given.cancel != nullptr) read.widget.budget.cancel = valueOf(given.cancel);
    return read;
}

PictureOptions readPictureOptions(const tavrin_options* options) {
    OptionReader reader(Spelling::snake, OptionReader::Types::own);
    if (options != nullptr)
        readMembers(reader, known(*options), [](const Option& option) { return option.use == OptionUse::picture; });
    return reader.pictureOptions();
}

}  // namespace tavrin::c
