// SPDX-License-Identifier: MIT
#include "tavrin/schema/note_text.h"

#include <cctype>

#include "tavrin/platform/foundation/enumerators.h"
#include "tavrin/platform/foundation/strings/number_text.h"

namespace tavrin {

std::string numberText(double number) {
    const auto whole = exactInteger(number);
    return whole ? toText(*whole) : toText(number);
}

std::string sensibleRange(const Note& note) {
    if (note.minimum && note.maximum) return "from " + numberText(*note.minimum) + " to " + numberText(*note.maximum);
    if (note.minimum) return numberText(*note.minimum) + " or more";
    if (note.maximum) return "at most " + numberText(*note.maximum);
    return {};
}

std::string unitAndRange(const Note& note) {
    std::string text(note.unit == Unit::none ? "" : name(note.unit));
    const std::string sensible = sensibleRange(note);
    if (!text.empty() && !sensible.empty()) text += ", ";
    return text + sensible;
}

std::string sentences(const Note& note) {
    std::string text(note.text);
    if (std::string measure = unitAndRange(note); !measure.empty()) {
        if (note.unit != Unit::none) measure = "in " + measure;
        measure.front() = static_cast<char>(std::toupper(measure.front()));
        text += " " + measure + ".";
    }
    if (!note.absent.empty()) text += " Left out: " + std::string(note.absent) + ".";
    return text;
}

}  // namespace tavrin
