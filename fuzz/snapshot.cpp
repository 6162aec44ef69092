// SPDX-License-Identifier: MIT
#include "cli/snapshot/snapshot.h"

#include <string>

#include "fuzz/widget_input.h"

// What a snapshot's files may hold, a tree or a picture, compared with what is drawn.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const tavrin::cli::Snapshot drawn = [] {
        auto widget = tavrin::Document(R"({"version":"1.0","nodes":{"main":{"type":"color","value":"FF0000"}}})")
                          .widget(std::nullopt, smallOptions());
        return tavrin::cli::Snapshot{widget.encode(), widget.layoutText()};
    }();
    const std::string text(reinterpret_cast<const char*>(data), size);
    for (const tavrin::cli::Snapshot& kept : {tavrin::cli::Snapshot{text, drawn.tree}, {drawn.png, text}}) try {
            (void)tavrin::cli::difference(kept, drawn, 0);
            (void)tavrin::cli::difference(drawn, kept, 8);
        } catch (const std::exception&) {  // an error is an answer; a crash is none
        }
    return 0;
}
