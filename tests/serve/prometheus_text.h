// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tavrin::cli {

/// A text as Prometheus reads it, strictly: `PrometheusText` throws for what it would not take, or not as it is meant.
class PrometheusText {
public:
    explicit PrometheusText(const std::string& text) {
        if (!text.ends_with('\n')) fail("the last line has no end", text);
        for (std::size_t at = 0; at < text.size();) {
            const std::size_t end = text.find('\n', at);
            read(text.substr(at, end - at));
            at = end + 1;
        }
        if (!help_.empty()) fail("there is no type of", help_);
        for (const auto& [series, value] : values_) checkBucket(series, value);
    }

    /// The value of a series as it is written, `name{a="b"}`; -1 where there is none.
    [[nodiscard]] double value(const std::string& series) const {
        const auto found = values_.find(series);
        return found == values_.end() ? -1 : found->second;
    }
    [[nodiscard]] const std::map<std::string, std::string>& types() const { return types_; }

private:
    [[noreturn]] static void fail(const std::string& why, const std::string& line) {
        throw std::runtime_error(why + ": " + line);
    }

    void read(const std::string& line) {
        if (line.starts_with("# HELP ")) return readHelp(line);
        if (line.starts_with("# TYPE ")) return readType(line);
        if (line.starts_with('#') || line.empty()) fail("what is this", line);
        readSeries(line);
    }

    void readHelp(const std::string& line) {
        if (!help_.empty()) fail("no type before", line);
        const std::size_t end = line.find(' ', 7);
        if (end == std::string::npos || end + 1 == line.size()) fail("a help that says nothing", line);
        help_ = line.substr(7, end - 7);
        if (types_.contains(help_)) fail("a family twice", line);
    }

    void readType(const std::string& line) {
        const std::size_t end = line.find(' ', 7);
        if (end == std::string::npos || line.substr(7, end - 7) != help_) fail("a type of something else", line);
        const std::string type = line.substr(end + 1);
        if (!std::set<std::string>{"counter", "gauge", "histogram"}.contains(type)) fail("no such type", line);
        if ((type == "counter") != help_.ends_with("_total")) fail("counters alone end with _total", line);
        family_ = std::exchange(help_, "");
        types_[family_] = type;
    }

    void readSeries(const std::string& line) {
        const std::size_t blank = line.rfind(' ');
        if (blank == std::string::npos) fail("no value", line);
        const std::string series = line.substr(0, blank);
        const std::string name = series.substr(0, series.find('{'));
        if (!isOfFamily(name)) fail("a series of another family", line);
        for (const char letter : name)
            if (!std::isalnum(static_cast<unsigned char>(letter)) && letter != '_') fail("no name", line);
        if (name.size() < series.size()) checkLabels(series.substr(name.size()), line);
        std::size_t end = 0;
        const double number = std::stod(line.substr(blank + 1), &end);
        if (end != line.size() - blank - 1 || number < 0) fail("no number that can be", line);
        if (!values_.emplace(series, number).second) fail("a series twice", line);
    }

    [[nodiscard]] bool isOfFamily(const std::string& name) const {
        if (types_.at(family_) != "histogram") return name == family_;
        return name == family_ + "_bucket" || name == family_ + "_sum" || name == family_ + "_count";
    }

    /// {key="value",…}
    static void checkLabels(std::string_view labels, const std::string& line) {
        if (!labels.ends_with("\"}")) fail("no labels", line);
        labels = labels.substr(1, labels.size() - 2);
        for (std::set<std::string_view> keys; !labels.empty();) {
            const std::size_t equals = labels.find("=\"");
            const std::size_t end = equals == std::string_view::npos ? equals : labels.find('"', equals + 2);
            if (end == std::string_view::npos || equals == 0) fail("a label without a value", line);
            if (!keys.insert(labels.substr(0, equals)).second) fail("a label twice", line);
            if (end + 1 < labels.size() && labels[end + 1] != ',') fail("no comma", line);
            labels.remove_prefix(std::min(end + 2, labels.size()));
        }
    }

    /// Buckets grow, and the last has all.
    void checkBucket(const std::string& series, double number) const {
        const std::size_t name = series.find("_bucket{");
        const std::size_t bound = series.find(",le=\"");
        if (name == std::string::npos) return;
        if (bound == std::string::npos) fail("a bucket without a bound", series);
        const std::string count = series.substr(0, name) + "_count" + series.substr(name + 7, bound - name - 7) + "}";
        const double all = value(count);
        if (number > all) fail("a bucket has more than there are", series);
        if (series.substr(bound) == ",le=\"+Inf\"}" && number != all) fail("the last bucket lacks some", series);
    }

    std::map<std::string, std::string> types_;
    std::map<std::string, double> values_;
    std::string help_;
    std::string family_;
};

}  // namespace tavrin::cli
