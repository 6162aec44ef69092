// SPDX-License-Identifier: MIT
#include "cli/serve/served_request.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <utility>

#include "cli/destination.h"
#include "cli/http/http_status.h"
#include "cli/json_member.h"
#include "cli/matrix/sha256.h"
#include "cli/project/beside_options.h"
#include "cli/serve/problem.h"
#include "cli/serve/request_options.h"
#include "cli/serve/route_table.h"
#include "tavrin/doors/json_options.h"
#include "tavrin/doors/option_error.h"
#include "tavrin/doors/words.h"
#include "tavrin/json/decoding_error.h"
#include "tavrin/platform/foundation/budget/metering.h"
#include "tavrin/platform/foundation/net/percent_encoding.h"
#include "tavrin/platform/foundation/strings/base64.h"

namespace tavrin::cli {
namespace {

constexpr std::array<std::string_view, 3> postedMembers{"document", "model", "options"};

[[noreturn]] void failForm(const std::string& message) { throw RequestFault(http_status::badRequest, message); }

void checkPosted(const JSONElement& body) {
    if (body.kind() != JSONKind::object)
        failForm("what is posted is an object with " + listed(postedMembers) + ", not " +
                 std::string(describe(body.kind())));
    std::array<bool, postedMembers.size()> seen{};
    for (JSONElement::Walk walk(body); walk.next();) {
        const auto* const member = std::ranges::find(postedMembers, walk.key());
        if (member == postedMembers.end())
            failForm("what is posted has no '" + std::string(walk.key()) + "'" + suggestion(walk.key(), postedMembers));
        if (std::exchange(seen[static_cast<std::size_t>(member - postedMembers.begin())], true))
            failForm("'" + std::string(walk.key()) + "' stands twice in what is posted");
    }
}

/// What only the server may say.
void checkOptions(const JSONElement& options) {
    if (options.kind() != JSONKind::object) return;  // which reading them refuses
    for (JSONElement::Walk walk(options); walk.next();) refuseServersOwn(optionSpelled(walk.key(), Spelling::camel));
}

ServedRequest readPostedText(std::string_view body, const DrawingOptions& served) {
    const JSONText text(body);
    checkPosted(text.root());
    const auto [document, model, options] = text.root().findMembers<postedMembers>();
    ServedRequest request;
    auto documentText = textMember(body, "document", document);
    if (!documentText) failForm("what is posted has the document that is meant as \"document\"");
    request.document = *std::move(documentText);
    request.digest = sha256(request.document);
    request.model = textMember(body, "model", model);
    OptionReader reader(Spelling::camel, OptionReader::Types::own, served);
    if (options.exists() && !options.isNull()) {
        checkOptions(options);
        readOptions(reader, options);
        request.said = *textMember(body, "options", options);
    }
    request.options = within(served, reader.options());
    return request;
}

/// The members of a query, decoded. Throws `RequestFault` for one that stands twice, or is no member.
std::map<std::string, std::string> queryMembers(std::string_view query) {
    std::map<std::string, std::string> members;
    while (!query.empty()) {
        const std::string_view pair = query.substr(0, query.find('&'));
        query.remove_prefix(std::min(pair.size() + 1, query.size()));
        const std::size_t equals = pair.find('=');
        if (equals == std::string_view::npos || equals == 0)
            failForm("a query is made of NAME=VALUE with & between them");
        std::string name = percentDecoded(pair.substr(0, equals));
        std::string value = percentDecoded(pair.substr(equals + 1));
        if (!members.emplace(name, std::move(value)).second) failForm("'" + name + "' stands twice in the query");
    }
    return members;
}

std::string modelIn(const std::string& value) {
    if (auto model = fromBase64URL(value)) return *std::move(model);
    failForm("model takes the text of a model in base64url");
}

/// A text that stands before others so that no two lists of texts are written alike.
void append(std::string& said, std::string_view text) {
    said.append(std::to_string(text.size())).append(":").append(text);
}

}  // namespace

ServedRequest readPosted(std::string_view body, const DrawingOptions& served) {
    Cost cost;
    const Metering metering(served.widget.budget, cost);
    try {
        return readPostedText(body, served);
    } catch (const DecodingError& error) {
        failForm("what is posted is not JSON: " + error.message);
    }
}

WidgetAddress readWidgetAddress(std::string_view path) {
    const std::string file(path.substr(std::min(widgetsPath.size(), path.size())));
    const std::size_t dot = file.rfind('.');
    const std::optional<PictureFormat> format = formatOf(file);
    if (dot == std::string::npos || !format)
        throw RequestFault(http_status::notFound, "a picture's address ends in .png, .svg, .pdf, .webp or .jpg");
    return {.name = file.substr(0, dot), .format = *format};
}

ServedRequest readWidgetQuery(std::string_view query, PictureFormat format, const FolderWidget& widget,
                              const ServeSettings& serve) {
    ServedRequest request{.document = widget.document->text, .digest = widget.document->digest};
    append(request.said, name(format));
    append(request.said, widget.settingsDigest);
    append(request.said, widget.files.document.string());
    append(request.said, widget.picturesStamp);
    OptionReader reader(Spelling::camel, OptionReader::Types::texts, serve.drawing);
    const std::map<std::string, std::string> members = queryMembers(query);
    const bool hasSize = members.contains(spelled(OptionName::size, Spelling::camel));
    readBeside(reader, widget.files, widget.settings, [&](OptionName option) {
        return serve.said.contains(option) || (hasSize && option == OptionName::size);
    });
    for (const auto& [name, value] : members) {
        if (name == "s" || name == "expires") continue;  // which were judged by now, where that is wanted
        if (name == "model") {
            request.model = modelIn(value);
            continue;
        }
        const OptionName option = optionSpelled(name, Spelling::camel);
        refuseServersOwn(option);
        reader.read(option, value);
        append(request.said, name);
        append(request.said, value);
    }
    const std::optional<PictureFormat> asked = reader.pictureOptions().format;
    if (asked && *asked != format) failForm("format contradicts the end of the path");
    request.options = within(serve.drawing, reader.options());
    request.options.format = format;
    return request;
}

}  // namespace tavrin::cli
