// SPDX-License-Identifier: MIT
#include <mutex>

#include "tavrin/platform/foundation/memory/lru_cache.h"
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
    static LRUCache<std::string, std::shared_ptr<const FontLibrary>> kept(maximumKept);
    const std::lock_guard lock(mutex);
    if (const auto* const known = kept.find(folder)) return *known;
    Options options;
    options.folder = folder;
    auto library = make(options);
    kept.insert(folder, library);
    return library;
}

FontLibrary::FontLibrary(std::unique_ptr<const FontCatalog> catalog) : catalog_(std::move(catalog)) {}
FontLibrary::~FontLibrary() = default;

}  // namespace tavrin::text
