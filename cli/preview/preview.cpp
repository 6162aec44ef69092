// SPDX-License-Identifier: MIT
#include "cli/preview/preview.h"

#include <chrono>
#include <vector>

#include "cli/preview/end_deadline.h"
#include "cli/preview/folder_watch.h"
#include "cli/preview/preview_server.h"
#include "cli/preview/project_folder.h"
#include "cli/preview/project_messages.h"
#include "cli/preview/routes.h"
#include "tavrin/widget/kept_pictures.h"

namespace tavrin::cli {
namespace {

/// How long what cannot be cancelled at once may take after the first signal.
constexpr std::chrono::milliseconds endPatience{1500};

}  // namespace

void servePreview(const PreviewOptions& options, const std::function<void(const std::string&)>& announce) {
    ProjectFolder folder(options.folder);
    const Routes routes(folder, options);
    EndDeadline deadline(endPatience, [&folder] { folder.stopSaving(); });
    PreviewServer server(options.port);
    const FolderWatch watch(
        folder, [&server] { return server.hasListeners(); },
        [&server](const std::vector<std::string>& paths) { server.broadcast(changedMessage(paths)); });
    server.stopOnSignals([&deadline] { deadline.start(); });
    announce(server.address());
    server.run([&routes](const HTTPRequest& request) { return routes.answer(request); }, &Routes::takesLong,
               [] { KeptPictures::ofThisThread().forget(); });
}

}  // namespace tavrin::cli
