// A host as small as can be: it sees the installed headers and the package's target, nothing of the source tree.
#include <cstdio>
#include <exception>
#include <optional>
#include <string_view>

#include "tavrin/tavrin.h"

int main() {
    constexpr std::string_view json = R"({"version": "1.0", "nodes": {"main": {"type": "text", "content": "Hello"}}})";
    try {
        tavrin::TavrinEngine engine;
        tavrin::TavrinEngine::Context context(nullptr);
        const tavrin::AnyView view = engine.loadView(json, std::nullopt, context);
        return view.as<tavrin::Text>() ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "host: %s\n", error.what());
        return 1;
    }
}
