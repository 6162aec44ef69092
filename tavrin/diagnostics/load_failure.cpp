// SPDX-License-Identifier: MIT
#include "tavrin/diagnostics/load_failure.h"

#include <algorithm>

#include "tavrin/json/decoding_error.h"
#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/values/model_context.h"

namespace tavrin {
namespace {

Rule ruleOf(const DecodingError& error) {
    if (error.offset) return Rule::notJSON;
    switch (error.kind) {
        case DecodingError::Kind::keyNotFound: return Rule::missingKey;
        case DecodingError::Kind::dataCorrupted: return Rule::unknownWord;
        default: return Rule::wrongType;
    }
}

/// What an error is, in the terms of diagnostics.
struct Failure {
    Rule rule = Rule::refused;
    std::string message;
    const PlacedError* placed = nullptr;  // lives as long as the exception
    const DecodingError* decoding = nullptr;
};

Failure describe(const std::exception_ptr& failure) {
    try {
        std::rethrow_exception(failure);
    } catch (const DecodingError& error) {
        return {ruleOf(error), error.message, &error, &error};
    } catch (const ConversionError& error) {
        return {Rule::unreadableValue, error.message, &error};
    } catch (const ModelContextError& error) {
        return {Rule::unresolvedExpression, error.message, &error};
    } catch (const TavrinError& error) {
        return {Rule::refused, error.kind + ": " + error.message, &error};
    } catch (const std::exception& error) {
        return {Rule::refused, error.what()};
    } catch (...) {
        return {Rule::refused, "an unknown error"};
    }
}

bool beginsWith(const CodingPath& path, const CodingPath& start) {
    return path.size() >= start.size() && std::equal(start.begin(), start.end(), path.begin());
}

/// Whether a warning says what the error says now.
bool foresaw(const Diagnostic& warning, const Failure& failure) {
    if (warning.role != failure.placed->role || warning.severity == Severity::error) return false;
    const bool isClip = warning.code == info(Rule::clipShape).code;
    if (isClip && failure.rule == Rule::refused) return beginsWith(warning.path, failure.placed->codingPath);
    const bool isExpression =
        warning.code == info(Rule::unresolvedExpression).code || warning.code == info(Rule::malformedExpression).code;
    const bool failedOnExpression = failure.rule == Rule::unresolvedExpression || failure.rule == Rule::refused;
    return isExpression && failedOnExpression && warning.path == failure.placed->codingPath;
}

/// A message with what the warning that foresaw it says more.
std::string withForeseen(const std::string& message, const Diagnostic& foreseen) {
    if (foreseen.message.starts_with(message)) return foreseen.message;
    return foreseen.code == info(Rule::clipShape).code ? message + "; " + foreseen.message : message;
}

}  // namespace

void addFailure(const std::exception_ptr& failure, const WrittenDocument* document, const JSONOutline* model,
                Findings& findings) {
    const Failure described = describe(failure);
    Diagnostic error{.severity = Severity::error, .code = info(described.rule).code, .message = described.message};
    error.cause = failure;
    if (described.placed) error.role = described.placed->role;
    std::vector<Diagnostic>& all = findings.all();
    if (described.placed && described.placed->isRooted) {
        error.path = described.placed->codingPath;
        const auto foreseen = std::stable_partition(
            all.begin(), all.end(), [&](const Diagnostic& warning) { return !foresaw(warning, described); });
        if (foreseen != all.end()) error.fix = foreseen->fix;
        if (foreseen != all.end()) error.message = withForeseen(error.message, *foreseen);
        all.erase(foreseen, all.end());
    }
    const JSONOutline* const outline = error.role == TextRole::model ? model
                                       : document                    ? &document->outline()
                                                                     : nullptr;
    if (described.decoding && described.decoding->offset) {
        error.range = bytes(*described.decoding->offset, *described.decoding->offset);
    } else if (outline && described.placed && described.placed->isRooted) {
        error.range = rangeOf(*outline, OutlinePaths(*outline).nearest(error.path));
    }
    if (document && error.role == TextRole::document && error.fix.empty()) addHints(described.rule, *document, error);
    if (described.rule == Rule::unresolvedExpression)
        for (Diagnostic& warning : all)  // the next ones would fail it as well
            if (warning.code == error.code) warning.severity = Severity::error;
    all.push_back(std::move(error));
}

}  // namespace tavrin
