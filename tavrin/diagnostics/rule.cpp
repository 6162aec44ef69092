// SPDX-License-Identifier: MIT
#include "tavrin/diagnostics/rule.h"

#include "tavrin/platform/foundation/enumerators.h"

namespace tavrin {
namespace {

constexpr Severity error = Severity::error;
constexpr Severity warning = Severity::warning;
constexpr Severity note = Severity::note;

constexpr EnumeratorTable<Rule, DiagnosticRule> rules{
    {{Rule::notJSON, {"not-json", error, "The text is not JSON.", "Fixed: a byte order mark is removed."}},
     {Rule::missingKey, {"missing-key", error, "An object lacks a key that it must have."}},
     {Rule::wrongType, {"wrong-type", error, "A value is of another type than its key takes."}},
     {Rule::unknownWord,
      {"unknown-word", error, "A word is none of those that its key takes.", "Fixed where only one word is close."}},
     {Rule::unreadableValue,
      {"unreadable-value", error, "A text cannot be converted to the type that its key takes.",
       "Fixed where only one word is close."}},
     {Rule::unresolvedExpression,
      {"unresolved-expression", warning,
       "An expression leads nowhere in the model, or to a value of another type; an error where it is drawn.",
       "All of them are found, not only the first. Fixed where only one key of the model is close."}},
     {Rule::refused,
      {"refused", error, "The document cannot be drawn.",
       "Everything else that fails while a document is drawn: no node \"main\", references in a circle, a bound "
       "that is passed. Fixed where only one node's name is close, and where a colour has three digits."}},
     {Rule::unknownKey,
      {"unknown-key", warning, "A key means nothing where it stands; it is ignored.",
       "Fixed where only one key is close. Keys that begin with `$`, `_` or `//` are the author's own."}},
     {Rule::duplicateKey, {"duplicate-key", warning, "A key stands twice in one object; only the first counts."}},
     {Rule::droppedValue,
      {"dropped-value", warning, "An optional value cannot be read; it counts as left out.",
       "Also a number with a unit, `\"12px\"`, a date where seconds since 1970 are meant, a time zone that is not "
       "known, "
       "and what comes from the model. "
       "Fixed where only one word is close."}},
     {Rule::outOfRange,
      {"out-of-range", warning, "A number lies outside the range in which it makes sense.",
       "The reference names the ranges. Also a text of the size 0, a clock's hand with the period 0, and a "
       "timer's moment that is given in milliseconds."}},
     {Rule::malformedExpression,
      {"malformed-expression", warning, "An expression can lead nowhere, whatever the model.",
       "An expression is one path without blanks that begins with `initServerParam`; each key of it may have one "
       "index. Fixed where blanks or the first word are to blame."}},
     {Rule::embeddedExpression,
      {"embedded-expression", warning, "An expression inside a longer text is shown as it stands.",
       "Put the whole text into the model, or two texts into an `hstack`. Fixed where there are only blanks "
       "around it."}},
     {Rule::hexAlpha,
      {"hex-alpha", warning, "A colour's opacity is hexadecimal, not in per cent; the colour is drawn opaque.",
       "Colours of a document are written `#PPRRGGBB`, with two decimal digits for the opacity. An alpha without "
       "a letter, such as `80`, can't be told from per cent. Fixed: the alpha becomes per cent."}},
     {Rule::modelAlphaFF,
      {"model-alpha-ff", warning,
       "The model's colour has the alpha FF, which shifts its digits: another colour is drawn.",
       "Colours of a model are written `#AARRGGBB`, but an opaque one must leave the alpha out."}},
     {Rule::oddColor,
      {"odd-color", warning, "A colour, or a part of it, is not read as it is written.",
       "Also a stop of a gradient, a dark or a border's colour that is none, and so is left out. Fixed where a "
       "colour has three digits."}},
     {Rule::oddText,
      {"odd-text", warning, "A text shows a value that is not made for readers.",
       "A `null` of the model, or a number with the noise of a calculation, such as `0.30000000000000004`. Round "
       "numbers "
       "where the model is made."}},
     {Rule::referenceModifiers, {"reference-modifiers", warning, "A reference's own modifiers are not applied."}},
     {Rule::newerFeature,
      {"newer-feature", warning, "The document uses what is newer than the version that it names.",
       "It is drawn all the same. Fixed: the version is raised."}},
     {Rule::clipShape,
      {"clip-shape", warning, "A clip shape will be refused: only bare circles, capsules and rounded rectangles clip.",
       "Where the node is drawn, it is the error `refused` instead."}},
     {Rule::invalidURL, {"invalid-url", warning, "An address is none, and leads nowhere."}},
     {Rule::untappableLink,
      {"untappable-link", warning, "A link cannot be tapped in the family, and the widget has no address of its own.",
       "In `systemSmall` and the accessory families only the widget's own address opens, wherever it is tapped. A note "
       "where the modifier `widgetURL` names one."}},
     {Rule::missingImage,
      {"missing-image", warning, "A picture cannot be had; nothing is drawn.",
       "With `--image-cache-dir` the file is not there; otherwise the picture cannot be fetched. With `--offline` "
       "no one asks. An error with `--fail-on-missing`, also where no one asks."}},
     {Rule::missingGlyph,
      {"missing-glyph", warning, "No font has a character; a box is drawn.",
       "Each such character is a finding of its own, of a text up to 100. Characters for private use are shown by "
       "no font but the one that they were made for."}},
     {Rule::contradictoryFrame,
      {"contradictory-frame", warning, "A frame's minimum is larger than its maximum; the minimum holds."}},
     {Rule::truncatedText,
      {"truncated-text", warning, "A text does not fit and ends in \"…\"; a note where the author limits its lines."}},
     {Rule::clippedText, {"clipped-text", warning, "A text reaches past the widget or a clip, and is cut off."}},
     {Rule::unseenText,
      {"unseen-text", warning, "A text lies wholly outside the widget or a clip, in every drawing.",
       "Also one that a full stack pushes over the edge. A text may be hidden on purpose: nothing is said where it "
       "has no opacity, size or colour, where the model or the clock moves it, or where it is moved inside a clip."}},
     {Rule::lowContrast,
      {"low-contrast", warning, "A text can hardly be told from what lies behind it.",
       "Measured as the Web Content Accessibility Guidelines 2.1 do, between the text's colour and the pixels "
       "that are drawn behind its letters, in the tenth of them where it is read worst: 4.5:1 is wanted, 3:1 from "
       "24 points on and, in bold, from 18.66. What is transparent or hidden is not judged, nor are emoji."}},
     {Rule::unusedNode, {"unused-node", note, "A named node is never drawn."}},
     {Rule::unusedElement,
      {"unused-element", note, "Some elements of a list of the model are used, but others are not.",
       "A document names each element that it shows; a list that has become longer shows no more of them."}},
     {Rule::roundedMoment,
      {"rounded-moment", note, "A timer counts to another moment than the one that is written.",
       "Its seconds are a number of single precision, which in our days is a multiple of 128."}},
     {Rule::notLookedAt,
      {"not-looked-at", note, "Something was too large to be looked at in full.",
       "A text of more than 64 MiB is only loaded; more than 1,000 findings are only counted."}}}};

}  // namespace

std::span<const DiagnosticRule> diagnosticRules() { return rules.values(); }

const DiagnosticRule& info(Rule rule) { return rules[rule]; }

}  // namespace tavrin
