// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>

namespace tavrin {

/// Lets any thread cancel what works with it: copies belong together. Thread-safe.
class CancelToken {
public:
    CancelToken() : isCancelled_(std::make_shared<std::atomic<bool>>(false)) {}

    /// What works with it ends soon with a `TavrinError` of kind "Budget". It cannot be taken back.
    void cancel() const { isCancelled_->store(true, std::memory_order_relaxed); }
    [[nodiscard]] bool isCancelled() const { return isCancelled_->load(std::memory_order_relaxed); }

private:
    std::shared_ptr<std::atomic<bool>> isCancelled_;
};

/// Whose documents are worked on: one's own, or those of people one does not know.
enum class BudgetProfile : unsigned char { usual, strangers };

/// What one call may cost: decoding, binding, laying out, drawing and writing together. What passes it ends with a
/// `TavrinError` of kind "Budget". By default the profile `usual`.
///
/// Steps, pixels and bytes are counted, not measured: the same document with the same options passes the same budget
/// everywhere. Seconds and the token depend on the moment.
struct RenderBudget {
    /// Steps of the work: nodes and modifiers, questions of layout, characters that are shaped, things drawn.
    std::uint64_t steps = 200'000'000;
    /// Pixels painted, each as often as something is painted on it, and those of pictures decoded, scaled and encoded.
    std::uint64_t pixels = 4'000'000'000;
    /// Bytes held at once: of the document, the model, views, texts, layers, pictures and what is written.
    std::uint64_t bytes = std::uint64_t{1} << 30;
    /// How long it may take, on a monotonic clock; absent: as long as it needs, so that load changes no result.
    std::optional<double> seconds = std::nullopt;
    std::optional<CancelToken> cancel = std::nullopt;

    static RenderBudget usual() { return {}; }
    static RenderBudget strangers() {
        return {.steps = 20'000'000, .pixels = 400'000'000, .bytes = std::uint64_t{128} << 20, .seconds = 2};
    }
    static RenderBudget of(BudgetProfile profile) { return profile == BudgetProfile::usual ? usual() : strangers(); }
};

}  // namespace tavrin
