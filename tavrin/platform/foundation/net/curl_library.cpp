// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/net/curl_library.h"

#include <optional>

#include <dlfcn.h>

#include "tavrin/platform/foundation/net/system_library.h"

namespace tavrin {
namespace {

template <class Function>
bool find(void* library, const char* name, Function& function) {
    function = reinterpret_cast<Function>(::dlsym(library, name));
    return function != nullptr;
}

std::optional<CurlLibrary> load() {
    void* const library = openSystemLibrary("libcurl.so.4");
    if (!library) return std::nullopt;
    CurlLibrary curl{};
    const bool isWhole =
        find(library, "curl_global_init", curl.globalInit) && find(library, "curl_easy_init", curl.easyInit) &&
        find(library, "curl_easy_cleanup", curl.easyCleanup) && find(library, "curl_easy_setopt", curl.easySetopt) &&
        find(library, "curl_easy_getinfo", curl.easyGetinfo) &&
        find(library, "curl_easy_strerror", curl.easyStrerror) && find(library, "curl_multi_init", curl.multiInit) &&
        find(library, "curl_multi_cleanup", curl.multiCleanup) &&
        find(library, "curl_multi_setopt", curl.multiSetopt) &&
        find(library, "curl_multi_add_handle", curl.multiAddHandle) &&
        find(library, "curl_multi_remove_handle", curl.multiRemoveHandle) &&
        find(library, "curl_multi_perform", curl.multiPerform) &&
        find(library, "curl_multi_info_read", curl.multiInfoRead) && find(library, "curl_multi_poll", curl.multiPoll) &&
        find(library, "curl_multi_wakeup", curl.multiWakeup);
    if (!isWhole || curl.globalInit(CURL_GLOBAL_DEFAULT) != CURLE_OK) return std::nullopt;
    return curl;
}

}  // namespace

const CurlLibrary* CurlLibrary::open() {
    static const std::optional<CurlLibrary> library = load();
    return library ? &*library : nullptr;
}

}  // namespace tavrin
