// SPDX-License-Identifier: MIT
#include <chrono>
#include <ctime>
#include <iostream>
#include <stdexcept>
#include <string>
#include <string_view>

#include "bench/bench_data.h"
#include "tavrin/tavrin.h"

// The scene of this folder from JSON to PNG in memory, as draw.mjs draws it with the peers: for every number on a line
// of standard input draws as many pictures, one text changed each time, and answers with the milliseconds of each, on
// the clock and of the processor, as JSON. `tavrin_peer_bench small` makes small PNGs; `tavrin_peer_bench next` keeps
// the decoded document and the last picture, as who draws one model after another does.

namespace tavrin::bench {
namespace {

class Scene {
public:
    [[nodiscard]] std::string draw(int number, PngCompression compression) const {
        Context context;
        context.imageCacheDir = pictures;
        const AnyView view = TavrinEngine().loadView(document, modelWith(number), context);
        RenderOptions options;
        options.background.kind = WidgetBackground::Kind::none;
        options.compression = compression;
        return ImageRenderer(view, options).encode(PictureFormat::png);
    }

    [[nodiscard]] std::string drawNext(int number) {
        WidgetOptions options;
        options.imageCacheDir = pictures;
        options.background.kind = WidgetBackground::Kind::none;
        return prepared.widget(modelWith(number), options).encode(PictureFormat::png, last);
    }

private:
    [[nodiscard]] std::string modelWith(int number) const {
        std::string changed = model;
        changed.replace(wind, 2, std::to_string(number));
        return changed;
    }

    std::string document = readFile("bench/peers/document.json");
    std::string model = readFile("bench/peers/model.json");
    std::size_t wind = model.find("17 km/h");
    URL pictures = URL::fileURL(std::string(TAVRIN_SOURCE_DIR) + "/examples/weather/pictures");
    Document prepared = Document(document);
    LastPicture last;
};

using Milliseconds = std::chrono::duration<double, std::milli>;

Milliseconds processorTime() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

void append(std::string& list, Milliseconds time) {
    if (!list.empty()) list += ',';
    list += std::to_string(time.count());
}

void answerRequests(std::string_view way) {
    using Clock = std::chrono::steady_clock;
    Scene scene;
    const PngCompression compression = way == "small" ? PngCompression::small : PngCompression::fast;
    int drawn = 0;
    for (int left = 0; std::cin >> left;) {
        std::string clock;
        std::string processor;
        for (; left > 0; --left) {
            const auto start = Clock::now();
            const Milliseconds used = processorTime();
            const std::string png = way == "next" ? scene.drawNext(drawn) : scene.draw(drawn, compression);
            if (png.empty()) throw std::runtime_error("no picture");
            ++drawn;
            append(processor, processorTime() - used);
            append(clock, Clock::now() - start);
        }
        std::cout << R"({"clock":[)" << clock << R"(],"processor":[)" << processor << "]}\n" << std::flush;
    }
}

}  // namespace
}  // namespace tavrin::bench

int main(int count, char** arguments) { tavrin::bench::answerRequests(count > 1 ? arguments[1] : ""); }
