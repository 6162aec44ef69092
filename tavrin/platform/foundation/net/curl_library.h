// SPDX-License-Identifier: MIT
#pragma once

#include <curl/curl.h>

namespace tavrin {

/// The functions of libcurl that are used here. The library is opened with the first download: it brings some thirty
/// others with it, and every process that fetches nothing would begin milliseconds later.
struct CurlLibrary {
    decltype(&curl_global_init) globalInit;
    decltype(&curl_easy_init) easyInit;
    decltype(&curl_easy_cleanup) easyCleanup;
    decltype(&curl_easy_setopt) easySetopt;
    decltype(&curl_easy_getinfo) easyGetinfo;
    decltype(&curl_easy_strerror) easyStrerror;
    decltype(&curl_multi_init) multiInit;
    decltype(&curl_multi_cleanup) multiCleanup;
    decltype(&curl_multi_setopt) multiSetopt;
    decltype(&curl_multi_add_handle) multiAddHandle;
    decltype(&curl_multi_remove_handle) multiRemoveHandle;
    decltype(&curl_multi_perform) multiPerform;
    decltype(&curl_multi_info_read) multiInfoRead;
    decltype(&curl_multi_poll) multiPoll;
    decltype(&curl_multi_wakeup) multiWakeup;

    /// The library, opened and initialised; null when it is not installed or too old. Thread-safe.
    static const CurlLibrary* open();
};

}  // namespace tavrin
