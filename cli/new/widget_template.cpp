// SPDX-License-Identifier: MIT
#include "cli/new/widget_template.h"

#include <algorithm>

#include "cli/embedded_file.h"

// The texts of the template NAME as NAME##Document(), NAME##Model() and NAME##Settings().
#define TAVRIN_TEMPLATE(NAME)                                                                \
    TAVRIN_EMBEDDED_FILE(NAME##Document, TAVRIN_TEMPLATES_FOLDER "/" #NAME "/document.json") \
    TAVRIN_EMBEDDED_FILE(NAME##Model, TAVRIN_TEMPLATES_FOLDER "/" #NAME "/model.json")       \
    TAVRIN_EMBEDDED_FILE(NAME##Settings, TAVRIN_TEMPLATES_FOLDER "/" #NAME "/widget.toml")

TAVRIN_TEMPLATE(number)
TAVRIN_TEMPLATE(rows)
TAVRIN_TEMPLATE(ring)
TAVRIN_TEMPLATE(bars)
TAVRIN_TEMPLATE(countdown)
TAVRIN_TEMPLATE(photo)

namespace tavrin::cli {

std::span<const WidgetTemplate> widgetTemplates() {
    static const WidgetTemplate list[] = {
        {"number", "A title, a large number and a note", numberDocument(), numberModel(), numberSettings()},
        {"rows", "A list of rows, each with a name and a value", rowsDocument(), rowsModel(), rowsSettings()},
        {"ring", "A ring that shows how much is done, a number inside", ringDocument(), ringModel(), ringSettings()},
        {"bars", "A bar chart under a sum", barsDocument(), barsModel(), barsSettings()},
        {"countdown", "The time until a moment", countdownDocument(), countdownModel(), countdownSettings()},
        {"photo", "A picture behind a text", photoDocument(), photoModel(), photoSettings()},
    };
    return list;
}

const WidgetTemplate* findTemplate(std::string_view name) {
    const auto list = widgetTemplates();
    const auto found = std::ranges::find(list, name, &WidgetTemplate::name);
    return found == list.end() ? nullptr : &*found;
}

}  // namespace tavrin::cli
