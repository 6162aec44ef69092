// SPDX-License-Identifier: MIT
#include "cli/file_descriptor.h"

#include <cerrno>
#include <cstddef>

namespace tavrin::cli {

bool writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

}  // namespace tavrin::cli
