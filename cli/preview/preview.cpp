// SPDX-License-Identifier: MIT
#include "cli/preview/preview.h"

#include <vector>

#include "cli/preview/folder_watch.h"
#include "cli/preview/http_server.h"
#include "cli/preview/project_folder.h"
#include "cli/preview/project_messages.h"
#include "cli/preview/routes.h"
#include "tavrin/platform/foundation/strings/number_text.h"

namespace tavrin::cli {

void servePreview(const PreviewOptions& options, const std::function<void(const std::string&)>& announce) {
    ProjectFolder folder(options.folder);
    HTTPServer server(options.port);
    const Routes routes(folder, options);
    const FolderWatch watch(
        folder, [&server] { return server.hasListeners(); },
        [&server](const std::vector<std::string>& paths) { server.broadcast(changedMessage(paths)); });
    server.stopOnSignals();
    announce("http://127.0.0.1:" + tavrin::toText(std::int64_t{server.port()}) + "/");
    server.run([&routes](const HTTPRequest& request) { return routes.answer(request); });
}

}  // namespace tavrin::cli
