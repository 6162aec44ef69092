// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/net/idna_library.h"

#include <memory>

#include <dlfcn.h>
#include <idn2.h>

#include "tavrin/platform/foundation/net/system_library.h"

namespace tavrin {
namespace {

/// The functions of libidn2 that are used here; null when it is not installed.
struct IDNALibrary {
    decltype(&idn2_to_ascii_8z) toASCII = nullptr;
    decltype(&idn2_free) free = nullptr;

    static const IDNALibrary& open() {
        static const IDNALibrary library = load();
        return library;
    }

private:
    static IDNALibrary load() {
        void* const library = openSystemLibrary("libidn2.so.0");
        if (!library) return {};
        return {reinterpret_cast<decltype(toASCII)>(::dlsym(library, "idn2_to_ascii_8z")),
                reinterpret_cast<decltype(free)>(::dlsym(library, "idn2_free"))};
    }
};

/// A name has at most 253 bytes in ASCII; some letters are left out or become shorter on the way.
constexpr std::size_t longestHost = 2048;

}  // namespace

std::optional<std::string> asciiHost(std::string_view host) {
    if (host.size() > longestHost || host.find('\0') != std::string_view::npos) return std::nullopt;
    const IDNALibrary& idna = IDNALibrary::open();
    if (!idna.toASCII || !idna.free) return std::nullopt;
    char* ascii = nullptr;
    const int outcome = idna.toASCII(std::string(host).c_str(), &ascii, IDN2_NFC_INPUT | IDN2_NONTRANSITIONAL);
    const std::unique_ptr<char, void (*)(void*)> owner(ascii, idna.free);
    if (outcome != IDN2_OK) return std::nullopt;
    return std::string(ascii);
}

}  // namespace tavrin
