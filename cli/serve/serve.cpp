// SPDX-License-Identifier: MIT
#include "cli/serve/serve.h"

#include <algorithm>
#include <csignal>
#include <exception>
#include <sys/resource.h>
#include <unistd.h>
#include <vector>

#include "cli/http/http_server.h"
#include "cli/serve/picture_service.h"
#include "cli/serve/request_log.h"
#include "cli/serve/service_manager.h"

namespace tavrin::cli {
namespace {

/// How many files the process may open, as many as it can get.
std::size_t raisedFileLimit() {
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0) return 0;
    limit.rlim_cur = limit.rlim_max;
    static_cast<void>(::setrlimit(RLIMIT_NOFILE, &limit));
    static_cast<void>(::getrlimit(RLIMIT_NOFILE, &limit));
    return static_cast<std::size_t>(limit.rlim_cur);
}

HTTPLimits limitsFor(const ServeSettings& settings) {
    constexpr std::size_t mostConnections = 4096;
    constexpr std::size_t otherFiles = 256;  // documents, pictures from the network and from folders, libraries
    constexpr std::size_t leastBodies = std::size_t{64} << 20;
    HTTPLimits limits;
    const std::size_t files = raisedFileLimit();
    limits.connections = std::clamp(files, otherFiles + 16, otherFiles + mostConnections) - otherFiles;
    limits.target = std::size_t{16} << 10;  // models stand in it
    limits.head = std::size_t{32} << 10;
    limits.body = settings.maxBodyBytes;
    limits.bodies = std::max(leastBodies, 4 * settings.maxBodyBytes);
    return limits;
}

/// Listens where it is told to, unless sockets were handed over. Says where.
std::string listenFor(HTTPServer& server, const ListenAddress& address) {
    const std::vector<int> sockets = handedOverSockets();
    for (const int socket : sockets) server.listenOn(socket);
    if (sockets.empty()) server.listen(address.host, address.port);
    std::string text;
    for (const std::string& where : server.addresses()) text.append(text.empty() ? "" : " and ").append(where);
    return text;
}

/// The service's end of settings that are read anew.
void reload(PictureService& service, const std::function<ServeSettings()>& readAnew, const Announce& announce) {
    notifyReloading();
    try {
        service.reload(readAnew());
        announce("The settings were read anew.");
    } catch (const std::exception& error) {
        announce(std::string("The settings stay as they were: ") + error.what());
    }
    notifyManager("READY=1");
}

}  // namespace

void servePictures(const ServeSettings& settings, const std::function<ServeSettings()>& readAnew,
                   const Announce& announce) {
    RequestLog log(STDOUT_FILENO);
    PictureService service(settings, [&log](const HTTPRecord& record) { log.write(record); });
    HTTPServer server(service, limitsFor(settings));
    const std::string addresses = listenFor(server, settings.listen);
    service.setConnectionCount([&server] { return server.connectionCount(); });
    server.onSignals({SIGHUP}, [&](int) {
        service.doAside([&] { reload(service, readAnew, announce); });
        return true;
    });
    server.onSignals({SIGINT, SIGTERM}, [&](int) {
        notifyManager("STOPPING=1");
        server.drain();
        return false;
    });
    announce((settings.folder ? "Serving '" + settings.folder->string() + "' at " : "Serving at ") + addresses);
    notifyManager("READY=1");
    server.run();
    service.stop();
}

}  // namespace tavrin::cli
