// SPDX-License-Identifier: MIT

// A host as small as can be: it sees the installed headers and the package's target, nothing of the source tree.
#include <cstdio>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "tavrin/diagnostics.h"
#include "tavrin/records.h"
#include "tavrin/tavrin.h"

namespace {

/// A view of the host's own, made of the platform's; the colour comes from the host's environment.
struct Badge {
    tavrin::AnyView label;

    [[nodiscard]] tavrin::AnyView body(const tavrin::EnvironmentValues& environment) const {
        const auto accent = environment.custom.find("accent");
        const tavrin::Color color =
            accent == environment.custom.end() ? tavrin::Color::gray : std::any_cast<tavrin::Color>(accent->second);
        const tavrin::AnyView padded = tavrin::Padding{.length = 12, .content = label};
        return tavrin::Background{.background = tavrin::FilledShape{.shape = tavrin::Capsule{}, .fill = color},
                                  .content = padded};
    }
};

class QuietLogger final : public tavrin::Logger {
    void info(std::string_view) override {}
    void error(std::string_view, std::string_view) override {}
    void debug(std::string_view) override {}
    void metric(std::string_view) override {}
    void usertrack(std::string_view, std::string_view, std::string_view) override {}
};

bool isBlue(const tavrin::PixelBuffer& pixels, int x, int y) { return pixels.row(y)[x] == 0xFF0000FF; }

/// A document that is built in code.
std::string greeting() {
    tavrin::DSLRoot root;
    root.nodes.emplace("main", tavrin::TextNode{.content = "Hello"});
    return tavrin::DSLJSONEncoder().encode(root);
}

}  // namespace

int main() {
    try {
        const std::string json = greeting();
        const tavrin::TavrinEngine engine;
        tavrin::TavrinEngine::Context context(std::make_shared<QuietLogger>());
        context.linkConverter = [](const tavrin::URL& url) { return url; };
        const tavrin::AnyView view = engine.loadView(json, std::nullopt, context);

        tavrin::RenderOptions options{.size = {158, 158}, .scale = 2};
        options.environment.custom["accent"] = tavrin::Color::rgb(0, 0, 1);
        tavrin::ImageRenderer renderer(Badge{view}, options);
        const tavrin::PixelBuffer pixels = renderer.pixels();
        const std::string png = renderer.encode(tavrin::PictureFormat::png);
        const bool drawn = pixels.width() == 316 && isBlue(pixels, 158, 140) && !isBlue(pixels, 158, 20);
        return view.as<tavrin::Text>() != nullptr && drawn && png.starts_with("\x89PNG") ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "host: %s\n", error.what());
        return 1;
    }
}
