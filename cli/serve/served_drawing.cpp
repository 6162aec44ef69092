// SPDX-License-Identifier: MIT
#include "cli/serve/served_drawing.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <new>
#include <string_view>
#include <utility>

#include "cli/arguments.h"
#include "cli/http/http_status.h"
#include "cli/serve/problem.h"
#include "tavrin/doors/error_description.h"
#include "tavrin/doors/open_document.h"
#include "tavrin/doors/option_error.h"
#include "tavrin/platform/foundation/precondition.h"
#include "tavrin/widget/kept_pictures.h"
#include "tavrin/widget/widget.h"

namespace tavrin::cli {
namespace {

using Clock = DrawingQueue::Clock;

double secondsFrom(Clock::time_point begin) { return std::chrono::duration<double>(Clock::now() - begin).count(); }

std::optional<std::string_view> modelOf(const ServedRequest& request) {
    return request.model ? std::optional<std::string_view>(*request.model) : std::nullopt;
}

WorkOutcome timedOut() {
    return {.response = problem(http_status::timedOut, "the time limit has passed"), .isOutOfTime = true};
}

/// The budget with what is left of the time.
RenderBudget limited(RenderBudget budget, const DrawingQueue::Limits& limits) {
    const double left = std::chrono::duration<double>(limits.end - Clock::now()).count();
    budget.seconds = std::max(0.0, std::min(budget.seconds.value_or(left), left));
    budget.cancel = limits.cancel;
    return budget;
}

/// Hears whether pictures could not be had. Each that fails is told of once more where that was because of the policy,
/// and so will never change.
struct MissingPictures {
    int failed = 0;
    int refused = 0;

    void hear(const WidgetNote& note) {
        failed += note.code == "LoadImageError" ? 1 : 0;
        refused += note.code == "LoadImageRefused" ? 1 : 0;
    }
};

/// What a piece of work fails with.
WorkOutcome failedOutcome(const std::exception_ptr& error, const ServedRequest& request,
                          const DrawingQueue::Limits& limits, Metrics& metrics) {
    try {
        std::rethrow_exception(error);
    } catch (const std::bad_alloc&) {
        return {.response = problem(http_status::unavailable, "there is not enough memory for this now")};
    } catch (const OptionError& wrong) {
        return {.response = problem(http_status::badRequest, wrong.what())};
    } catch (const CallError& told) {
        return {.response = problem(http_status::unprocessable, told.description)};
    } catch (...) {
        const ErrorDescription description = describeError(error, request.document, modelOf(request));
        const bool isBudget = description.kind == "Budget";
        if (isBudget && Clock::now() >= limits.end) return timedOut();
        if (isBudget) metrics.spentBudget();
        const bool isOurs = description.kind == "Program";
        return {.response = problem(isOurs ? http_status::internalError : http_status::unprocessable, description)};
    }
}

/// Does some work before its end, and within what requests may do to a process.
template <class Work>
WorkOutcome outcomeOf(const ServedRequest& request, const DrawingQueue::Limits& limits, Metrics& metrics,
                      const Work& work) {
    try {
        metrics.took(Stage::wait, secondsFrom(limits.since));
        if (Clock::now() >= limits.end) return timedOut();
        const ThrowingPreconditions throwing;
        return work();
    } catch (...) {
        return failedOutcome(std::current_exception(), request, limits, metrics);
    }
}

std::shared_ptr<const Document> decoded(const ServedRequest& request, const RenderBudget& budget,
                                        DecodedDocuments& documents, Metrics& metrics) {
    if (auto known = documents.find(request.digest)) return known;
    const auto begin = Clock::now();
    auto document = std::make_shared<const Document>(request.document, budget);
    metrics.took(Stage::decode, secondsFrom(begin));
    documents.keep(request.digest, std::make_shared<const Document>(document->withoutTime()), request.document.size());
    return document;
}

ServedPicturePtr drawn(const ServedRequest& request, DecodedDocuments& documents, Metrics& metrics,
                       const DrawingQueue::Limits& limits) {
    MissingPictures missing;
    WidgetOptions options = request.options.widget;
    options.budget = limited(options.budget, limits);
    options.notes = [&missing](const WidgetNote& note) { missing.hear(note); };
    if (!options.date) options.date = Date::now();
    const auto document = decoded(request, options.budget, documents, metrics);
    const auto begin = Clock::now();
    Widget widget = document->widget(modelOf(request), options);
    const auto bound = Clock::now();
    metrics.took(Stage::bind, std::chrono::duration<double>(bound - begin).count());
    KeptPictures& kept = KeptPictures::ofThisThread();
    std::string bytes = widget.encode(request.options.format, kept.before(request.digest, options));
    kept.trim();
    const auto validUntil = widget.validUntil();
    metrics.took(Stage::draw, secondsFrom(bound));
    metrics.drew();
    std::string tag = entityTag(bytes);
    return std::make_shared<const ServedPicture>(
        ServedPicture{.bytes = std::make_shared<const std::string>(std::move(bytes)),
                      .format = request.options.format,
                      .tag = std::move(tag),
                      .moment = *options.date,
                      .isNow = !request.options.widget.date,
                      .validUntil = validUntil,
                      .lacksPictures = missing.failed > missing.refused});
}

}  // namespace

std::shared_ptr<const Document> DecodedDocuments::find(const std::string& digest) {
    const std::lock_guard lock(mutex_);
    const auto* const known = kept_.find(digest);
    return known ? *known : nullptr;
}

void DecodedDocuments::keep(const std::string& digest, std::shared_ptr<const Document> document,
                            std::size_t textBytes) {
    Cache::Dropped dropped;  // destroyed when the lock is gone
    const std::lock_guard lock(mutex_);
    dropped = kept_.insert(digest, std::move(document), textBytes);
}

WorkOutcome drawServed(const ServedRequest& request, DecodedDocuments& documents, Metrics& metrics,
                       const DrawingQueue::Limits& limits) {
    return outcomeOf(request, limits, metrics,
                     [&] { return WorkOutcome{.picture = drawn(request, documents, metrics, limits)}; });
}

WorkOutcome checkServed(const ServedRequest& request, Metrics& metrics, const DrawingQueue::Limits& limits) {
    return outcomeOf(request, limits, metrics, [&] {
        DrawingOptions options = request.options;
        options.widget.budget = limited(options.widget.budget, limits);
        // The same every day, as the program's own checks.
        if (!options.widget.date) options.widget.date = Date::parseRFC3339(repeatableMoment);
        const std::vector<Diagnostic> found =
            tavrin::checkDocument(request.document, modelOf(request), options, std::vector<std::string>{});
        if (Clock::now() >= limits.end) return timedOut();  // which is none of the document's faults
        return WorkOutcome{.response = HTTPResponse::json("{\"diagnostics\":" + toJSON(found) + "}\n")};
    });
}

}  // namespace tavrin::cli
