// SPDX-License-Identifier: MIT
#include "tavrin/doors/option_reader.h"

#include <utility>

#include "tavrin/doors/option_error.h"
#include "tavrin/doors/option_words.h"

namespace tavrin {
namespace {

using enum OptionName;

/// What messages call a value's type.
std::string_view typeOf(const OptionValue& value) {
    constexpr std::string_view types[] = {"a boolean", "a number", "a number", "a text", "a size", "a date"};
    return types[value.index()];
}

/// Whether an option takes values of this type, where doors have types of their own.
bool takesType(OptionKind kind, const OptionValue& value) {
    const bool isText = std::holds_alternative<std::string>(value);
    switch (kind) {
        case OptionKind::flag: return std::holds_alternative<bool>(value);
        case OptionKind::number:
        case OptionKind::count:
            return std::holds_alternative<double>(value) || std::holds_alternative<std::uint64_t>(value);
        case OptionKind::size: return isText || std::holds_alternative<Size>(value);
        case OptionKind::moment: return isText || std::holds_alternative<Date>(value);
        default: return isText;
    }
}

}  // namespace

WidgetOptions DrawingOptions::withFonts() const {
    WidgetOptions options = widget;
    if (!fontDir.empty()) options.fonts = text::FontLibrary::inFolder(fontDir);
    return options;
}

OptionReader::OptionReader(Spelling spelling, Types types, DrawingOptions usual)
    : spelling_(spelling), types_(types), options_(std::move(usual)) {}

void OptionReader::refuseType(std::string_view name) const {
    const OptionName option = optionSpelled(name, spelling_);
    throw OptionError(OptionFault::type, std::string(name), label(option) + " takes " + wantedBy(describe(option)));
}

void OptionReader::checkType(const Option& option, const OptionValue& value) const {
    if (types_ == Types::texts ? std::holds_alternative<std::string>(value) : takesType(option.kind, value)) return;
    throw OptionError(OptionFault::type, label(option.name),
                      label(option.name) + " takes " + wantedBy(option) + ", not " + std::string(typeOf(value)));
}

void OptionReader::read(OptionName name, const OptionValue& value) {
    const Option& option = describe(name);
    const std::string label = this->label(name);
    checkType(option, value);
    WidgetOptions& widget = options_.widget;
    const auto word = [&] { return readWord(label, value, option.words); };
    switch (name) {
        case family: family_ = option.words[word()]; break;
        case size: size_ = readSize(label, value); break;
        case screen: options_.screen = readSize(label, value); break;
        case scale: widget.scale = readUpTo100(label, value); break;
        case appearance: widget.appearance = static_cast<Appearance>(word()); break;
        case date: widget.date = readDate(label, value); break;
        case timeZone: widget.timeZone = readTimeZone(label, value); break;
        case background: widget.background = readBackground(label, value); break;
        case rounded: widget.rounded = readFlag(label, value); break;
        case imageCacheDir: widget.imageCacheDir = URL::fileURL(readFolder(label, value)); break;
        case maxImageSize: widget.maxImageSize = readSize(label, value); break;
        case fetch: widget.fetchPolicy = static_cast<FetchPolicy>(word()); break;
        case fontDir: options_.fontDir = readFolder(label, value); break;
        case format: options_.format = static_cast<PictureFormat>(word()); break;
        case compression: widget.compression = static_cast<PngCompression>(word()); break;
        case quality: widget.quality = readQuality(label, value); break;
        case hashes: options_.hashes = readFlag(label, value); break;
        case budget: profile_ = static_cast<BudgetProfile>(word()); break;
        case budgetSteps: budget_.steps = readCount(label, value); break;
        case budgetPixels: budget_.pixels = readCount(label, value); break;
        case budgetBytes: budget_.bytes = readCount(label, value); break;
        case budgetSeconds: budget_.seconds = readSeconds(label, value); break;
    }
    given_.set(indexOf(name));
}

DrawingOptions OptionReader::options() const {
    DrawingOptions options = options_;
    WidgetOptions& widget = options.widget;
    if (isGiven(family) && isGiven(size))
        throw OptionError(OptionFault::value, label(size),
                          label(size) + " stands instead of " + label(family) + "; give one of them");
    if (isGiven(size))
        widget.room = {.name = sizeText(size_), .size = size_};
    else if (isGiven(family) || (isGiven(screen) && widgetFamily(widget.room.name)))
        widget.room = readFamily(label(isGiven(family) ? family : screen), isGiven(family) ? family_ : widget.room.name,
                                 options.screen);
    if (isGiven(budget)) widget.budget = RenderBudget::of(profile_);
    if (isGiven(budgetSteps)) widget.budget.steps = budget_.steps;
    if (isGiven(budgetPixels)) widget.budget.pixels = budget_.pixels;
    if (isGiven(budgetBytes)) widget.budget.bytes = budget_.bytes;
    if (isGiven(budgetSeconds)) widget.budget.seconds = budget_.seconds;
    return options;
}

PictureOptions OptionReader::pictureOptions() const {
    PictureOptions picture;
    if (isGiven(format)) picture.format = options_.format;
    if (isGiven(compression)) picture.compression = options_.widget.compression;
    if (isGiven(quality)) picture.quality = options_.widget.quality;
    return picture;
}

}  // namespace tavrin
