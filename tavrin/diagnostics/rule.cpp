#include "tavrin/diagnostics/rule.h"

namespace tavrin {
namespace {

constexpr Severity error = Severity::error;
constexpr Severity warning = Severity::warning;
constexpr Severity note = Severity::note;

/// In the order of `Rule`.
constexpr DiagnosticRule rules[] = {
    {"not-json", error, "The text is not JSON."},
    {"missing-key", error, "An object lacks a key that it must have."},
    {"wrong-type", error, "A value is of another type than its key takes."},
    {"unknown-word", error, "A word is none of those that its key takes."},
    {"unreadable-value", error, "A text cannot be converted to the type that its key takes."},
    {"unresolved-expression", warning,
     "An expression leads nowhere in the model, or to a value of another type; an error where it is drawn."},
    {"refused", error, "The document cannot be drawn."},
    {"unknown-key", warning, "A key means nothing where it stands; it is ignored."},
    {"duplicate-key", warning, "A key stands twice in one object; only the first counts."},
    {"dropped-value", warning, "An optional value cannot be read; it counts as left out."},
    {"out-of-range", warning, "A number lies outside the range in which it makes sense."},
    {"malformed-expression", warning, "An expression can lead nowhere, whatever the model."},
    {"embedded-expression", warning, "An expression inside a longer text is shown as it stands."},
    {"hex-alpha", warning, "A colour's opacity is hexadecimal, not in per cent; the colour is drawn opaque."},
    {"model-alpha-ff", warning,
     "The model's colour has the alpha FF, which shifts its digits: another colour is drawn."},
    {"odd-color", warning, "A colour, or a part of it, is not read as it is written."},
    {"reference-modifiers", warning, "A reference's own modifiers are not applied."},
    {"newer-feature", warning, "The document uses what is newer than the version that it names."},
    {"clip-shape", warning, "A clip shape will be refused: only bare circles, capsules and rounded rectangles clip."},
    {"invalid-url", warning, "An address is none, and leads nowhere."},
    {"missing-image", warning, "A picture cannot be had; nothing is drawn."},
    {"contradictory-frame", warning, "A frame's minimum is larger than its maximum; the minimum holds."},
    {"truncated-text", warning, "A text does not fit and ends in \"…\"; a note where the author limits its lines."},
    {"clipped-text", warning, "A text reaches past the widget or a clip, and is cut off."},
    {"unseen-text", warning, "A text lies wholly outside the widget or a clip, in every drawing."},
    {"low-contrast", warning, "A text can hardly be told from what lies behind it."},
    {"unused-node", note, "A named node is never drawn."},
    {"not-looked-at", note, "Something was too large to be looked at in full."},
};

}  // namespace

std::span<const DiagnosticRule> diagnosticRules() { return rules; }

const DiagnosticRule& info(Rule rule) { return rules[static_cast<std::size_t>(rule)]; }

}  // namespace tavrin
