// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "tavrin/dsl/node.h"
#include "tavrin/dsl/render_state.h"
#include "tavrin/engine/json_decoder.h"
#include "tavrin/engine/tavrin_engine.h"
#include "tavrin/nodes/color_string.h"

// What the tests of the document language share: decoding and drawing from JSON text, and failures as one line.

namespace tavrin {

inline Node nodeFrom(std::string_view json) { return JSONDecoder().decode<Node>(json); }
inline Modifier modifierFrom(std::string_view json) { return JSONDecoder().decode<Modifier>(json); }
inline ModelContext modelFrom(std::string_view json, ModelContext::Environment environment = {}) {
    return {JSON::parse(json), std::move(environment)};
}

inline std::string documentOf(std::string_view main) {
    return R"({"version": "1.2", "nodes": {"main": )" + std::string(main) + "}}";
}

/// Draws a whole document in a fresh context.
inline AnyView rendered(std::string_view document, std::optional<std::string_view> model = std::nullopt) {
    Context context;
    return TavrinEngine().loadView(document, model, context);
}

/// Draws one node as "main".
inline AnyView renderedNode(std::string_view main, std::optional<std::string_view> model = std::nullopt) {
    return rendered(documentOf(main), model);
}

inline Color hex(std::string_view text) { return colorFromHexString(text).value(); }

/// What `action` throws, as one line: "typeMismatch at nodes.main: expected …", "RefNode: …"; empty when nothing.
template <class Action>
std::string failureOf(Action action) {
    const auto placed = [](std::string kind, const PlacedError& error) {
        return (error.role == TextRole::model ? "model: " : "") + std::move(kind) + " at " + toText(error.codingPath) +
               ": " + error.message;
    };
    try {
        static_cast<void>(action());
    } catch (const DecodingError& error) {
        return placed(std::string(name(error.kind)), error);
    } catch (const ConversionError& error) {
        return placed("conversion", error);
    } catch (const ModelContextError& error) {
        return error.kind + ": " + error.message;
    } catch (const TavrinError& error) {
        return error.kind + ": " + error.message;
    }
    return {};
}

}  // namespace tavrin
