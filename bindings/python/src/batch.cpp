// SPDX-License-Identifier: MIT
#include "bindings/python/src/batch.h"

#include <utility>

#include "bindings/python/src/arguments.h"
#include "bindings/python/src/open_documents.h"
#include "tavrin/doors/option_error.h"
#include "tavrin/platform/foundation/time/time_zone.h"

namespace nb = nanobind;

namespace tavrin::python {
namespace {

using Kind = ArrowColumn::Kind;

/// What holds for rows that say nothing: the same on every machine.
DrawingOptions usualOfRows() {
    DrawingOptions options;
    options.widget.timeZone = TimeZone();
    return options;
}

bool fits(Kind has, OptionKind wanted) {
    switch (wanted) {
        case OptionKind::flag: return has == Kind::flag;
        case OptionKind::number:
        case OptionKind::count: return has == Kind::number;
        case OptionKind::size: return has == Kind::text || has == Kind::pair;
        case OptionKind::moment: return has == Kind::text || has == Kind::moment;
        default: return has == Kind::text;
    }
}

const char* valuesOf(OptionKind kind) {
    switch (kind) {
        case OptionKind::flag: return "booleans";
        case OptionKind::number:
        case OptionKind::count: return "numbers";
        case OptionKind::size: return "texts or lists of two numbers";
        case OptionKind::moment: return "texts or timestamps with a time zone";
        default: return "texts";
    }
}

[[noreturn]] void refuseColumn(const std::string& argument, const char* wanted, nb::handle pair) {
    const std::string type(textOf(pair[1], "a type"));
    throw nb::type_error((argument + " takes a column of " + wanted + ", not of " + type).c_str());
}

ArrowColumn columnOf(nb::handle pair, std::size_t count) {
    ArrowColumn column(pair[0]);
    if (column.size() != count) throw nb::value_error("a column has not as many rows as the batch");
    return column;
}

ArrowColumn textColumn(const char* argument, nb::handle pair, std::size_t count) {
    ArrowColumn column = columnOf(pair, count);
    const Kind kind = column.kind();
    if (kind != Kind::text && kind != Kind::bytes && kind != Kind::null) refuseColumn(argument, "texts or bytes", pair);
    return column;
}

ArrowColumn optionColumn(const std::string& name, OptionKind wanted, nb::handle pair, std::size_t count) {
    ArrowColumn column = columnOf(pair, count);
    if (column.kind() != Kind::null && !fits(column.kind(), wanted))
        refuseColumn(name + "_column", valuesOf(wanted), pair);
    return column;
}

/// A row's text, which must not be null: it would be drawn as what nobody meant.
std::string_view textIn(const ArrowColumn& column, std::size_t row, const std::string& name) {
    if (const auto text = column.text(row)) return *text;
    throw OptionError(OptionFault::value, name, name + " takes a JSON text, not null");
}

}  // namespace

Batch::Batch(std::size_t count, nb::handle document, nb::handle model, const nb::dict& options, const nb::dict& columns)
    : usual_(optionReader(options, usualOfRows())) {
    if (nb::isinstance<nb::tuple>(document))
        documents_ = textColumn("document_column", document, count);
    else
        document_ = textOf(document, "document");
    if (!model.is_none()) models_ = textColumn("model", model, count);
    for (const auto& [key, column] : columns) {
        const std::string name(textOf(key, "an option's name"));
        const OptionName option = optionSpelled(name, Spelling::snake);
        columns_.push_back({option, optionColumn(name, describe(option).kind, column, count)});
    }
    if (columns_.empty()) options_ = usual_.options();
}

void Batch::OptionColumn::read(std::size_t row, OptionReader& reader) const {
    if (const auto value = values.value(row)) return reader.read(option, *value);
    const std::string name = spelled(option, Spelling::snake);
    if (!values.isNull(row)) reader.refuseType(name);
    if (option == OptionName::date)  // which has no default: a row that is drawn again must be the same
        throw OptionError(OptionFault::value, name, name + " takes " + wantedBy(describe(option)) + ", not null");
}

DrawingOptions Batch::options(std::size_t row) const {
    if (options_) return *options_;
    OptionReader reader = usual_;
    for (const OptionColumn& column : columns_) column.read(row, reader);
    return reader.options();
}

std::optional<std::string_view> Batch::model(std::size_t row) const {
    return models_ ? std::optional(textIn(*models_, row, "model")) : std::nullopt;
}

OpenDocument Batch::document(std::size_t row, const RenderBudget& budget) const {
    return OpenDocuments::shared().find(documents_ ? textIn(*documents_, row, "document") : document_, budget);
}

}  // namespace tavrin::python
