// SPDX-License-Identifier: MIT
#include <algorithm>
#include <mutex>
#include <utility>
#include <vector>

#include "tavrin/platform/text/font_catalog.h"
#include "tavrin/platform/text/text_engine.h"

namespace tavrin::text {

std::shared_ptr<const FontLibrary> FontLibrary::system() {
    static const std::shared_ptr<const FontLibrary> library = make({});
    return library;
}

std::shared_ptr<const FontLibrary> FontLibrary::make(const Options& options) {
    return std::make_shared<const FontLibrary>(std::make_unique<const FontCatalog>(options));
}

std::shared_ptr<const FontLibrary> FontLibrary::inFolder(const std::string& folder) {
    constexpr std::size_t maximumKept = 8;
    static std::mutex mutex;
    static std::vector<std::pair<std::string, std::shared_ptr<const FontLibrary>>> kept;  // the latest first
    const std::lock_guard lock(mutex);
    auto known = std::ranges::find(kept, folder, &std::pair<std::string, std::shared_ptr<const FontLibrary>>::first);
    if (known == kept.end()) {
        Options options;
        options.folder = folder;
        known = kept.emplace(kept.begin(), folder, make(options));
        if (kept.size() > maximumKept) kept.pop_back();
    }
    std::rotate(kept.begin(), known, known + 1);
    return kept.front().second;
}

FontLibrary::FontLibrary(std::unique_ptr<const FontCatalog> catalog) : catalog_(std::move(catalog)) {}
FontLibrary::~FontLibrary() = default;

}  // namespace tavrin::text
