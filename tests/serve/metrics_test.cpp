// SPDX-License-Identifier: MIT
#include "cli/serve/metrics.h"

#include <algorithm>
#include <limits>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/serve/prometheus_text.h"

namespace tavrin::cli {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

TEST(PrometheusTextItself, RefusesWhatPrometheusWould) {
    const std::string head = "# HELP a_total A.\n# TYPE a_total counter\n";
    const std::string histogram = "# HELP h H.\n# TYPE h histogram\n";
    const struct {
        const char* why;
        std::string text;
    } rows[] = {
        {"no end", head + "a_total 1"},
        {"no type", "# HELP a_total A.\na_total 1\n"},
        {"another family", head + "b_total 1\n"},
        {"twice", head + "a_total 1\na_total 2\n"},
        {"no number", head + "a_total x\n"},
        {"a counter below zero", head + "a_total -1\n"},
        {"a label without a value", head + "a_total{b} 1\n"},
        {"a label twice", head + "a_total{b=\"1\",b=\"2\"} 1\n"},
        {"a counter by another name", "# HELP a A.\n# TYPE a counter\na 1\n"},
        {"a bucket that has more than all", histogram + "h_bucket{a=\"b\",le=\"+Inf\"} 2\nh_count{a=\"b\"} 1\n"},
        {"a last bucket that has less", histogram + "h_bucket{a=\"b\",le=\"+Inf\"} 0\nh_count{a=\"b\"} 1\n"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_THROW(PrometheusText{row.text}, std::exception);
    }
    EXPECT_EQ(PrometheusText(head + "a_total{b=\"c\",d=\"e\"} 1\n").value("a_total{b=\"c\",d=\"e\"}"), 1);
}

TEST(Metrics, TellWhatWasCounted) {
    Metrics metrics;
    metrics.answered(Route::widget, 200, 1000, 0.004);
    metrics.answered(Route::widget, 200, 500, 0.3);
    metrics.answered(Route::widget, 403, 100, 0.0001);
    metrics.answered(Route::none, 404, 0, 0);
    metrics.answered(Route::render, 418, 10, 60);
    metrics.took(Stage::wait, 0.002);
    metrics.took(Stage::draw, -1);
    metrics.took(Stage::draw, std::numeric_limits<double>::quiet_NaN());
    metrics.took(Stage::draw, std::numeric_limits<double>::infinity());
    metrics.drew();
    metrics.lookedUp(true);
    metrics.lookedUp(false);
    metrics.lookedUp(false);
    metrics.spentBudget();
    metrics.rejected(SignatureVerdict::expired);
    const PrometheusText text(
        metrics.prometheusText({.queued = 3, .capacity = 64, .drawing = 2, .connections = 5, .cacheBytes = 4096}));
    const struct {
        const char* series;
        double value;
    } rows[] = {
        {R"(tavrin_http_requests_total{route="widget",status="200"})", 2},
        {R"(tavrin_http_requests_total{route="widget",status="403"})", 1},
        {R"(tavrin_http_requests_total{route="none",status="404"})", 1},
        {R"(tavrin_http_requests_total{route="render",status="other"})", 1},
        {R"(tavrin_http_requests_total{route="check",status="200"})", -1},
        {R"(tavrin_http_request_duration_seconds_count{route="widget"})", 3},
        {R"(tavrin_http_request_duration_seconds_sum{route="widget"})", 0.3041},
        {R"(tavrin_http_request_duration_seconds_bucket{route="widget",le="0.0005"})", 1},
        {R"(tavrin_http_request_duration_seconds_bucket{route="widget",le="0.005"})", 2},
        {R"(tavrin_http_request_duration_seconds_bucket{route="widget",le="0.25"})", 2},
        {R"(tavrin_http_request_duration_seconds_bucket{route="widget",le="0.5"})", 3},
        {R"(tavrin_http_request_duration_seconds_bucket{route="render",le="10.0"})", 0},
        {R"(tavrin_http_request_duration_seconds_bucket{route="render",le="+Inf"})", 1},
        {R"(tavrin_stage_duration_seconds_count{stage="wait"})", 1},
        {R"(tavrin_stage_duration_seconds_count{stage="draw"})", 3},
        {R"(tavrin_stage_duration_seconds_count{stage="bind"})", -1},
        {R"(tavrin_http_sent_bytes_total)", 1610},
        {R"(tavrin_pictures_drawn_total)", 1},
        {R"(tavrin_cache_lookups_total{result="hit"})", 1},
        {R"(tavrin_cache_lookups_total{result="miss"})", 2},
        {R"(tavrin_budget_errors_total)", 1},
        {R"(tavrin_signatures_rejected_total{reason="expired"})", 1},
        {R"(tavrin_signatures_rejected_total{reason="missing"})", 0},
        {R"(tavrin_queue_length)", 3},
        {R"(tavrin_queue_capacity)", 64},
        {R"(tavrin_drawings_running)", 2},
        {R"(tavrin_http_connections)", 5},
        {R"(tavrin_cache_bytes)", 4096},
    };
    for (const auto& row : rows) EXPECT_DOUBLE_EQ(text.value(row.series), row.value) << row.series;
    EXPECT_GT(text.value("process_start_time_seconds"), 1.7e9);
    EXPECT_GT(text.value("process_resident_memory_bytes"), 1e6);
}

TEST(Metrics, CountABoundWithWhatIsBelowIt) {
    Histogram histogram;
    for (const double bound : Histogram::bounds) histogram.count(bound);
    const auto counts = histogram.buckets();
    for (std::size_t i = 0; i < Histogram::bounds.size(); ++i) EXPECT_EQ(counts[i], 1U) << Histogram::bounds[i];
    EXPECT_EQ(counts.back(), 0U);
}

TEST(Metrics, HaveNothingToTellAtFirst) {
    const std::string text = Metrics().prometheusText({});
    EXPECT_THAT(text, Not(HasSubstr("route=")));
    const PrometheusText read(text);
    EXPECT_EQ(read.value("tavrin_pictures_drawn_total"), 0);
    for (const auto& family : read.types())
        EXPECT_TRUE(family.first.starts_with("tavrin_") || family.first.starts_with("process_")) << family.first;
}

TEST(MetricsThreads, LoseNothing) {
    constexpr int threads = 4;
    constexpr int times = 5000;
    Metrics metrics;
    std::vector<std::thread> running;
    for (int i = 0; i < threads; ++i)
        running.emplace_back([&metrics] {
            for (int n = 0; n < times; ++n) {
                metrics.answered(Route::widget, 200, 3, 0.001);
                metrics.took(Stage::draw, 0.001);
                metrics.drew();
                metrics.rejected(SignatureVerdict::wrong);
            }
        });
    for (int n = 0; n < 20; ++n) EXPECT_NO_THROW(PrometheusText(metrics.prometheusText({})));
    for (std::thread& thread : running) thread.join();
    const PrometheusText text(metrics.prometheusText({}));
    constexpr double all = threads * times;
    EXPECT_EQ(text.value(R"(tavrin_http_requests_total{route="widget",status="200"})"), all);
    EXPECT_EQ(text.value(R"(tavrin_http_request_duration_seconds_count{route="widget"})"), all);
    EXPECT_NEAR(text.value(R"(tavrin_stage_duration_seconds_sum{stage="draw"})"), all * 0.001, 1e-6);
    EXPECT_EQ(text.value("tavrin_http_sent_bytes_total"), 3 * all);
    EXPECT_EQ(text.value("tavrin_pictures_drawn_total"), all);
    EXPECT_EQ(text.value(R"(tavrin_signatures_rejected_total{reason="wrong"})"), all);
}

}  // namespace
}  // namespace tavrin::cli
