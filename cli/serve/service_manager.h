// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string_view>
#include <vector>

namespace tavrin::cli {

/// The listening sockets that whoever started this process has handed over (`LISTEN_FDS`); none where there are none.
/// Those that it starts itself do not get them.
[[nodiscard]] std::vector<int> handedOverSockets();

/// Tells who started this process, where that wants to know (`NOTIFY_SOCKET`): "READY=1", "STOPPING=1". Failures count
/// for nothing.
void notifyManager(std::string_view state);
/// The same for "RELOADING=1", which goes with the moment of the monotonic clock.
void notifyReloading();

}  // namespace tavrin::cli
