// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/animation/webp_file.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "tavrin/platform/paint/webp_encoder.h"

namespace tavrin::paint {
namespace {

/// "RIFF", a size and "WEBP" stand before the chunks.
constexpr std::size_t fileHeaderSize = 12;

void append(std::string& bytes, std::uint64_t value, unsigned byteCount) {
    for (unsigned i = 0; i < byteCount; ++i) bytes += static_cast<char>(static_cast<std::uint8_t>(value >> (8 * i)));
}

void appendChunk(std::string& bytes, std::string_view type, std::string_view data) {
    bytes += type;
    append(bytes, data.size(), 4);
    bytes += data;
    if (data.size() % 2 != 0) bytes += '\0';
}

/// What says how a frame is shown, before its picture.
std::string controlOf(const EncodedFrame& frame) {
    constexpr std::uint64_t longest = 0xFFFFFF;
    constexpr unsigned replaces = 2;
    const auto number = [](int pixels) { return static_cast<std::uint64_t>(pixels); };
    std::string control;
    append(control, number(frame.area.x0 / 2), 3);
    append(control, number(frame.area.y0 / 2), 3);
    append(control, number(frame.area.width() - 1), 3);
    append(control, number(frame.area.height() - 1), 3);
    append(control, std::min(frame.milliseconds, longest), 3);
    append(control, frame.isBlended ? 0 : replaces, 1);
    return control;
}

std::string fileHead(int width, int height) {
    constexpr unsigned hasAnimation = 0x02;
    constexpr unsigned hasOpacity = 0x10;
    std::string features;
    append(features, hasAnimation | hasOpacity, 4);
    append(features, static_cast<std::uint64_t>(width - 1), 3);
    append(features, static_cast<std::uint64_t>(height - 1), 3);
    std::string bytes;
    appendChunk(bytes, "VP8X", features);
    appendChunk(bytes, "ANIM", std::string(6, '\0'));  // before a transparent background, without end
    return bytes;
}

}  // namespace

std::string webpFrame(const FramePatch& patch, PngCompression compression) {
    return encodeWebp(patch.pixels, compression).substr(fileHeaderSize);
}

std::string webpFile(int width, int height, std::span<const EncodedFrame> frames) {
    std::string bytes = "RIFF????WEBP" + fileHead(width, height);
    for (const EncodedFrame& frame : frames) appendChunk(bytes, "ANMF", controlOf(frame) + frame.bytes);
    std::string size;
    append(size, bytes.size() - 8, 4);
    return bytes.replace(4, 4, size);
}

}  // namespace tavrin::paint
