// SPDX-License-Identifier: MIT
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

FontLibrary::FontLibrary(std::unique_ptr<const FontCatalog> catalog) : catalog_(std::move(catalog)) {}
FontLibrary::~FontLibrary() = default;

}  // namespace tavrin::text
