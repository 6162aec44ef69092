// SPDX-License-Identifier: MIT
// What people make of metrics must have the names that the server gives them.
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/serve/metrics.h"
#include "tests/serve/prometheus_text.h"

namespace tavrin::cli {
namespace {

std::string pageText(const std::string& name) {
    std::ifstream file(TAVRIN_SOURCE_DIR "/docs/" + name, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

/// The names of metrics in a text, each of a histogram's series by its family.
std::set<std::string> familiesIn(const std::string& text, const std::map<std::string, std::string>& types) {
    std::set<std::string> names;
    const std::regex metric(R"(\b(tavrin|process)_[a-z_]+)");
    for (std::sregex_iterator found(text.begin(), text.end(), metric), end; found != end; ++found) {
        std::string name = found->str();
        for (const std::string suffix : {"_bucket", "_sum", "_count"}) {
            const std::string family = name.substr(0, name.size() - std::min(suffix.size(), name.size()));
            const auto type = types.find(family);
            if (name.ends_with(suffix) && type != types.end() && type->second == "histogram") name = family;
        }
        names.insert(name);
    }
    return names;
}

TEST(MetricsPages, NameEveryMetric) {
    const auto types = PrometheusText(Metrics().prometheusText({})).types();
    std::set<std::string> families;
    for (const auto& family : types) families.insert(family.first);
    for (const char* const page : {"serve-dashboard.json", "serving.md"}) {
        SCOPED_TRACE(page);
        EXPECT_EQ(familiesIn(pageText(page), types), families);
    }
}

}  // namespace
}  // namespace tavrin::cli
