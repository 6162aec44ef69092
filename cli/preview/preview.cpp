// SPDX-License-Identifier: MIT
#include "cli/preview/preview.h"

#include <vector>

#include "cli/preview/folder_watch.h"
#include "cli/preview/http_server.h"
#include "cli/preview/project_folder.h"
#include "cli/preview/project_messages.h"
#include "cli/preview/routes.h"

namespace tavrin::cli {

void servePreview(const PreviewOptions& options, const std::function<void(const std::string&)>& announce) {
    ProjectFolder folder(options.folder);
    HTTPServer server(options.port);
    const Routes routes(folder, options);
    const FolderWatch watch(
        folder, [&server] { return server.hasListeners(); },
        [&server](const std::vector<std::string>& paths) { server.broadcast(changedMessage(paths)); });
    server.stopOnSignals();
    announce(server.address());
    server.run([&routes](const HTTPRequest& request) { return routes.answer(request); });
}

}  // namespace tavrin::cli
