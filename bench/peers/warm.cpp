#include <chrono>
#include <iostream>
#include <string>
#include <string_view>

#include "bench/bench_data.h"
#include "tavrin/tavrin.h"

// The scene of this folder from JSON to PNG in memory, as draw.mjs draws it with the peers: for every number on a line
// of standard input draws as many pictures, one text changed each time, and answers with the milliseconds of each and
// the bytes of the last, as JSON. `tavrin_peer_bench small` makes small PNGs.

namespace tavrin::bench {
namespace {

struct Scene {
    std::string document = readFile("bench/peers/document.json");
    std::string model = readFile("bench/peers/model.json");
    std::size_t wind = model.find("17 km/h");
    URL pictures = URL::fileURL(std::string(TAVRIN_SOURCE_DIR) + "/examples/weather/pictures");

    [[nodiscard]] std::string draw(int number, PngCompression compression) const {
        std::string changed = model;
        changed.replace(wind, 2, std::to_string(number));
        Context context;
        context.imageCacheDir = pictures;
        const AnyView view = TavrinEngine().loadView(document, changed, context);
        RenderOptions options;
        options.background.kind = WidgetBackground::Kind::none;
        options.compression = compression;
        return ImageRenderer(view, options).encode(PictureFormat::png);
    }
};

void answerRequests(PngCompression compression) {
    using Clock = std::chrono::steady_clock;
    const Scene scene;
    int drawn = 0;
    for (int left = 0; std::cin >> left;) {
        std::string milliseconds;
        std::size_t bytes = 0;
        for (; left > 0; --left) {
            const auto start = Clock::now();
            bytes = scene.draw(drawn++, compression).size();
            const std::chrono::duration<double, std::milli> time = Clock::now() - start;
            if (!milliseconds.empty()) milliseconds += ',';
            milliseconds += std::to_string(time.count());
        }
        std::cout << R"({"milliseconds":[)" << milliseconds << R"(],"bytes":)" << bytes << "}\n" << std::flush;
    }
}

}  // namespace
}  // namespace tavrin::bench

int main(int count, char** arguments) {
    const bool small = count > 1 && std::string_view(arguments[1]) == "small";
    tavrin::bench::answerRequests(small ? tavrin::PngCompression::small : tavrin::PngCompression::fast);
}
