// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

#include "cli/serve/settings.h"

namespace tavrin::cli {

/// What a server tells whoever runs it.
using Announce = std::function<void(const std::string& line)>;

/// Serves pictures until SIGINT or SIGTERM: no more requests are taken then, those under way are answered, and a second
/// signal ends the process at once. SIGHUP has `readAnew` called for new settings; what fails then is announced, and
/// all stays as it was. Writes a line of JSON for each request to standard output. Throws `IOError` for a folder, a
/// file of keys or an address that cannot be had.
void servePictures(const ServeSettings& settings, const std::function<ServeSettings()>& readAnew,
                   const Announce& announce);

}  // namespace tavrin::cli
