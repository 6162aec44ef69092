// SPDX-License-Identifier: MIT
#include "cli/serve/picture_service.h"

#include <exception>
#include <new>
#include <string_view>
#include <utility>

#include <boost/asio/post.hpp>

#include "cli/http/http_status.h"
#include "cli/matrix/sha256.h"
#include "cli/serve/openapi.h"
#include "cli/serve/problem.h"
#include "cli/serve/route_table.h"
#include "tavrin/doors/option_error.h"
#include "tavrin/platform/foundation/net/percent_encoding.h"
#include "tavrin/schema/document_schema.h"

namespace tavrin::cli {
namespace {

/// What a page of another origin may send and read.
constexpr std::string_view allowedHeaders = "Content-Type, If-None-Match, traceparent";
constexpr std::string_view exposedHeaders = "ETag, Retry-After";

bool isPost(Route route) { return route == Route::render || route == Route::check; }

/// "application/json", whatever parameters stand behind it.
bool isJSONType(std::string_view type) {
    type = type.substr(0, type.find(';'));
    while (!type.empty() && (type.back() == ' ' || type.back() == '\t')) type.remove_suffix(1);
    constexpr std::string_view wanted = "application/json";
    return type.size() == wanted.size() && std::equal(type.begin(), type.end(), wanted.begin(), [](char a, char b) {
               return (a >= 'A' && a <= 'Z' ? static_cast<char>(a - 'A' + 'a') : a) == b;
           });
}

HTTPResponse wrongMethod(const RouteInfo& info) {
    const bool isGet = info.method == "GET";
    HTTPResponse response =
        problem(http_status::wrongMethod, "this is asked by " + std::string(isGet ? "GET or HEAD" : info.method));
    response.allow = isGet ? "GET, HEAD" : info.method;
    return response;
}

/// What is asked for before a page of another origin may ask.
HTTPResponse preflightAnswer(const RouteInfo& info) {
    HTTPResponse response{.status = http_status::noContent};
    const bool isGet = info.method == "GET";
    response.headers.emplace_back("Access-Control-Allow-Methods", isGet ? "GET, HEAD" : std::string(info.method));
    response.headers.emplace_back("Access-Control-Allow-Headers", allowedHeaders);
    response.headers.emplace_back("Access-Control-Max-Age", "86400");
    return response;
}

HTTPResponse textAnswer(std::shared_ptr<const std::string> text, std::string_view type) {
    HTTPResponse response{.contentType = std::string(type), .sharedBody = std::move(text)};
    response.headers.emplace_back("Cache-Control", "no-cache");
    return response;
}

HTTPResponse statusAnswer() {
    HTTPResponse response = HTTPResponse::json("{\"status\":\"ok\"}\n");
    response.headers.emplace_back("Cache-Control", "no-store");
    return response;
}

const std::shared_ptr<const std::string>& schemaText() {
    static const auto text = std::make_shared<const std::string>(documentSchema());
    return text;
}

const std::shared_ptr<const std::string>& openapiText() {
    static const auto text = std::make_shared<const std::string>(openapiJSON());
    return text;
}

/// The key of a picture: all that makes its bytes. Each text goes with its length, so that no two lists look alike.
std::string keyOf(const ServedRequest& request, std::uint64_t generation) {
    std::string all = std::to_string(generation) + (request.options.widget.date ? "d" : "n");
    for (const std::string_view text : {std::string_view(request.digest), std::string_view(request.said)})
        all.append(std::to_string(text.size())).append(":").append(text);
    if (request.model) all.append("m").append(*request.model);
    return sha256(all);
}

}  // namespace

PictureService::PictureService(const ServeSettings& settings, Listen listen)
    : listen_(std::move(listen)),
      connectionCount_([] { return std::size_t{0}; }),
      state_(stateOf(settings, 0)),
      cache_(settings.cacheBytes),
      queue_(settings.workers, settings.queue) {}

void PictureService::stop() {
    front_.join();
    queue_.stop();
}

PictureService::StatePtr PictureService::stateOf(const ServeSettings& settings, std::uint64_t generation) {
    auto state = std::make_shared<State>();
    state->settings = settings;
    state->generation = generation;
    if (settings.folder) state->folder = std::make_shared<WidgetFolder>(*settings.folder);
    if (settings.keyFile) state->keys = std::make_shared<const SigningKeys>(SigningKeys::read(*settings.keyFile));
    return state;
}

PictureService::StatePtr PictureService::state() const {
    const std::lock_guard lock(mutex_);
    return state_;
}

void PictureService::reload(const ServeSettings& settings) {
    StatePtr fresh = stateOf(settings, state()->generation + 1);
    const std::lock_guard lock(mutex_);
    state_ = std::move(fresh);
}

void PictureService::doAside(std::function<void()> work) { boost::asio::post(front_, std::move(work)); }

/// The headers of every answer: nothing is guessed, a picture that is opened by itself runs and loads nothing, any page
/// may show it, and those of one origin may read it.
HTTPResponse PictureService::dressed(HTTPResponse response) const {
    response.headers.emplace_back("X-Content-Type-Options", "nosniff");
    response.headers.emplace_back("Content-Security-Policy",
                                  "default-src 'none'; style-src 'unsafe-inline'; img-src data:; font-src data:");
    response.headers.emplace_back("Cross-Origin-Resource-Policy", "cross-origin");
    const std::string origin = state()->settings.corsOrigin;
    if (origin.empty()) return response;
    response.headers.emplace_back("Access-Control-Allow-Origin", origin);
    response.headers.emplace_back("Access-Control-Expose-Headers", exposedHeaders);
    if (origin != "*") response.headers.emplace_back("Vary", "Origin");
    return response;
}

std::optional<HTTPResponse> PictureService::refusal(HTTPRequest& request) {
    const StatePtr state = this->state();
    const Route route = routeOf(request.path);
    if (route == Route::none || (route == Route::widget && !state->folder))
        return dressed(problem(http_status::notFound, "there is nothing here"));
    const RouteInfo& info = routeTable[indexOf(route)];
    if (request.method == "OPTIONS" && !state->settings.corsOrigin.empty()) return dressed(preflightAnswer(info));
    if (request.method != info.method) return dressed(wrongMethod(info));
    if (auto fault = signatureFault(request, *state)) return dressed(*std::move(fault));
    if (!isPost(route)) return std::nullopt;
    if (!isJSONType(request.contentType))
        return dressed(problem(http_status::wrongType, "what is posted must be application/json"));
    if (!request.contentEncoding.empty() && request.contentEncoding != "identity")
        return dressed(problem(http_status::wrongType, "what is posted must not be compressed"));
    return std::nullopt;
}

std::optional<HTTPResponse> PictureService::signatureFault(const HTTPRequest& request, const State& state) {
    if (!state.keys) return std::nullopt;
    const Route route = routeOf(request.path);
    if (isPost(route) && !state.settings.opensPost)
        return problem(http_status::forbidden, "only signed addresses are drawn here");
    if (route != Route::widget) return std::nullopt;
    const SignatureVerdict verdict = state.keys->verdict(request.target, Date::now());
    if (verdict == SignatureVerdict::right) return std::nullopt;
    metrics_.rejected(verdict);
    return problem(http_status::forbidden, reasonOf(verdict));
}

HTTPResponse PictureService::failure(unsigned status, std::string_view message) const {
    return dressed(problem(status, message));
}

void PictureService::ended(const HTTPRecord& record) {
    constexpr double milli = 1000;
    metrics_.answered(routeOf(percentDecoded(record.path)), record.status, record.bytes, record.milliseconds / milli);
    listen_(record);
}

HTTPResponse PictureService::immediateAnswer(const HTTPRequest& request) const {
    switch (routeOf(request.path)) {
        case Route::schema: return textAnswer(schemaText(), "application/schema+json");
        case Route::openapi: return textAnswer(openapiText(), "application/json");
        case Route::metrics: {
            const ServerState now{.queued = queue_.waiting(),
                                  .capacity = queue_.capacity(),
                                  .drawing = queue_.underWay(),
                                  .connections = connectionCount_(),
                                  .cacheBytes = cache_.bytes()};
            return textAnswer(std::make_shared<const std::string>(metrics_.prometheusText(now)), Metrics::contentType);
        }
        default: return statusAnswer();
    }
}

void PictureService::handle(ExchangePtr exchange) {
    const Route route = routeOf(exchange->request.path);
    if (route == Route::health || route == Route::ready)
        return exchange->answer(dressed(immediateAnswer(exchange->request)));  // however much there is to do
    const std::chrono::duration<double> limit(state()->settings.timeLimit);
    const auto end = Clock::now() + std::chrono::duration_cast<Clock::duration>(limit);
    boost::asio::post(front_, [this, exchange = std::move(exchange), end] { work(exchange, end); });
}

void PictureService::work(const ExchangePtr& exchange, Clock::time_point end) {
    if (exchange->request.cancel.isCancelled()) return;
    const StatePtr state = this->state();
    try {
        switch (routeOf(exchange->request.path)) {
            case Route::widget: return answerWidget(exchange, end, *state);
            case Route::render: return answerRender(exchange, end, *state);
            case Route::check: return answerCheck(exchange, end, *state);
            default: return exchange->answer(dressed(immediateAnswer(exchange->request)));
        }
    } catch (const RequestFault& fault) {
        exchange->answer(dressed(problem(fault.status, fault.what())));
    } catch (const OptionError& error) {
        exchange->answer(dressed(problem(http_status::badRequest, error.what())));
    } catch (const SettingsError& error) {
        const ErrorDescription description{
            .type = "SettingsError", .message = error.source.name + ": " + error.what(), .place = error.place};
        exchange->answer(dressed(problem(http_status::unprocessable, description)));
    } catch (const std::bad_alloc&) {
        exchange->answer(dressed(problem(http_status::unavailable, "there is not enough memory for this now")));
    } catch (const TavrinError& error) {  // the budget of reading it
        exchange->answer(dressed(problem(http_status::unprocessable, describeError(std::current_exception()))));
    } catch (const std::exception& error) {
        exchange->answer(dressed(problem(http_status::internalError, error.what())));
    }
}

void PictureService::answerWidget(const ExchangePtr& exchange, Clock::time_point end, const State& state) {
    if (!state.folder) throw RequestFault(http_status::notFound, "there is nothing here");
    const HTTPRequest& asked = exchange->request;
    const WidgetAddress address = readWidgetAddress(asked.path);
    const FolderWidget widget = state.folder->find(address.name);
    ServedRequest request = readWidgetQuery(asked.query, address.format, widget, state.settings);
    if (!request.model)
        if (const FolderTextPtr model = state.folder->model(widget, request.options.widget.room.name))
            request.model = model->text;
    draw(exchange, end, state, std::move(request),
         [known = asked.ifNoneMatch](const ServedPicture& picture) { return widgetAnswer(picture, known); });
}

void PictureService::answerRender(const ExchangePtr& exchange, Clock::time_point end, const State& state) {
    ServedRequest request = readPosted(std::exchange(exchange->request.body, {}), state.settings.drawing);
    draw(exchange, end, state, std::move(request),
         [](const ServedPicture& picture) { return renderAnswer(picture, Date::now()); });
}

void PictureService::draw(const ExchangePtr& exchange, Clock::time_point end, const State& state, ServedRequest request,
                          std::function<HTTPResponse(const ServedPicture&)> present) {
    const std::string key = keyOf(request, state.generation);
    const auto find = [&] {
        ServedPicturePtr picture = cache_.find(key, Date::now());
        metrics_.lookedUp(picture != nullptr);
        return picture;
    };
    auto drawing = [this, key, request = std::make_shared<const ServedRequest>(std::move(request))](
                       const DrawingQueue::Limits& limits) {
        WorkOutcome outcome = drawServed(*request, documents_, metrics_, limits);
        if (outcome.picture) cache_.keep(key, outcome.picture, Date::now());
        return outcome;
    };
    auto presented = [this, present = std::move(present)](const WorkOutcome& outcome) {
        return dressed(outcome.picture ? present(*outcome.picture) : outcome.response);
    };
    refuseWhereFull(queue_.admit(key, find, std::move(drawing), {exchange, end, std::move(presented)}), exchange);
}

void PictureService::answerCheck(const ExchangePtr& exchange, Clock::time_point end, const State& state) {
    auto request = std::make_shared<const ServedRequest>(
        readPosted(std::exchange(exchange->request.body, {}), state.settings.drawing));
    auto checking = [this, request](const DrawingQueue::Limits& limits) {
        return checkServed(*request, metrics_, limits);
    };
    auto presented = [this](const WorkOutcome& outcome) { return dressed(outcome.response); };
    refuseWhereFull(queue_.admit({}, nullptr, std::move(checking), {exchange, end, std::move(presented)}), exchange);
}

void PictureService::refuseWhereFull(DrawingQueue::Admission admission, const ExchangePtr& exchange) const {
    if (admission == DrawingQueue::Admission::refused)
        exchange->answer(dressed(problem(http_status::tooMany, "too many pictures are asked for; try again soon")));
}

}  // namespace tavrin::cli
