// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "cli/http/http_server.h"
#include "cli/serve/picture_service.h"
#include "tests/http/http_client.h"

namespace tavrin::cli {

/// A folder with documents, and a server of their pictures on a free port until the end of the scope.
class RunningService {
public:
    /// A document that draws the model's "a", and one that draws a colour.
    static constexpr std::string_view greetingText =
        R"({"version":"1.0","nodes":{"main":{"type":"text","content":"{{initServerParam.a}}"}}})";
    static constexpr std::string_view colorText =
        R"({"version":"1.0","nodes":{"main":{"type":"color","value":"FF0000"}}})";

    explicit RunningService(const std::function<void(ServeSettings&)>& change = {}) {
        std::string name = (std::filesystem::temp_directory_path() / "tavrin-serve-XXXXXX").string();
        folder = ::mkdtemp(name.data());
        write("greeting.json", greetingText);
        write("color.json", colorText);
        settings.folder = folder / "";
        settings.workers = 2;
        settings.timeLimit = 10;
        settings.drawing.widget.timeZone = TimeZone();
        settings.drawing.widget.fetchPolicy = FetchPolicy::publicOnly;
        settings.drawing.widget.budget = RenderBudget::strangers();
        settings.drawing.widget.budget.seconds = std::nullopt;
        if (change) change(settings);
        service.emplace(settings, [this](const HTTPRecord& record) {
            const std::lock_guard lock(mutex_);
            records_.push_back(record);
        });
        server.emplace(*service, HTTPLimits{.body = settings.maxBodyBytes});
        server->listen("127.0.0.1", 0);
        thread_ = std::thread([this] { server->run(); });
    }
    RunningService(const RunningService&) = delete;
    RunningService& operator=(const RunningService&) = delete;
    ~RunningService() {
        server->stop();
        thread_.join();
        service->stop();
        std::filesystem::remove_all(folder);
    }

    void write(const std::string& name, std::string_view text) const {
        std::ofstream(folder / name, std::ios::binary) << text;
    }

    [[nodiscard]] ClientConnection connection() const { return ClientConnection(server->port()); }
    /// A request, as it is sent; `fields` are whole lines.
    [[nodiscard]] static std::string request(const std::string& method, const std::string& target,
                                             const std::string& fields = {}, const std::string& body = {}) {
        std::string text = method + " " + target + " HTTP/1.1\r\nHost: localhost\r\n" + fields;
        if (!body.empty()) text += "Content-Length: " + std::to_string(body.size()) + "\r\n";
        return text + "\r\n" + body;
    }
    [[nodiscard]] ClientAnswer ask(const std::string& method, const std::string& target, const std::string& fields = {},
                                   const std::string& body = {}) const {
        ClientConnection client = connection();
        client.send(request(method, target, fields, body));
        return client.receive(method == "HEAD");
    }
    [[nodiscard]] ClientAnswer get(const std::string& target, const std::string& fields = {}) const {
        return ask("GET", target, fields);
    }
    [[nodiscard]] ClientAnswer post(const std::string& target, const std::string& body) const {
        return ask("POST", target, "Content-Type: application/json\r\n", body);
    }
    /// What the metric of that name, with its labels, stands at; 0 where it is not told.
    [[nodiscard]] double metric(const std::string& name) const {
        const std::string text = "\n" + get("/metrics").body;
        const std::size_t at = text.find("\n" + name + " ");
        return at == std::string::npos ? 0 : std::strtod(text.c_str() + at + name.size() + 2, nullptr);
    }
    [[nodiscard]] std::vector<HTTPRecord> records() {
        const std::lock_guard lock(mutex_);
        return records_;
    }

    std::filesystem::path folder;
    ServeSettings settings;
    std::optional<PictureService> service;
    std::optional<HTTPServer> server;

private:
    std::mutex mutex_;
    std::vector<HTTPRecord> records_;
    std::thread thread_;
};

}  // namespace tavrin::cli
