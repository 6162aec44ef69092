// SPDX-License-Identifier: MIT
#include <cstddef>
#include <exception>
#include <filesystem>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <variant>
#include <vector>

#include <fmt/format.h>

#include "cli/input.h"
#include "cli/io_error.h"
#include "cli/output.h"
#include "cli/production.h"
#include "cli/progress.h"
#include "cli/verbs.h"
#include "tavrin/images/picture_downloads.h"
#include "tavrin/images/web_image_node.h"
#include "tavrin/json/decoding_error.h"
#include "tavrin/json/json.h"

namespace tavrin::cli {
namespace {

bool isExpression(const JSON* value) {
    const auto* text = value ? std::get_if<SharedText>(&value->object()) : nullptr;
    return text && text->view().find("{{") != std::string_view::npos;
}

/// How many addresses of pictures in a document stand in the model.
std::size_t addressesInModel(const JSON& value) {
    std::size_t count = 0;
    if (const auto* members = std::get_if<JSONObject>(&value.object())) {
        const JSON* const type = value.find(typeKey);
        if (type && type->description() == rawValue(WebImageNode::type))
            for (const std::string_view key : {keyOf<&WebImageNode::url>, keyOf<&WebImageNode::alt>})
                count += std::size_t{isExpression(value.find(key))};
        for (const auto& [key, member] : members->members()) count += addressesInModel(member);
    } else if (const auto* elements = std::get_if<JSONArray>(&value.object())) {
        for (const JSON& element : *elements) count += addressesInModel(element);
    }
    return count;
}

/// What `fetch` cannot know without a model.
void noteAddressesInModel(const Source& document, std::vector<std::string>& notes) {
    std::size_t count = 0;
    try {
        count = addressesInModel(JSON::parse(document.text));
    } catch (const DecodingError&) {  // nested more deeply, where there are no nodes, than is looked at
    }
    if (count == 0) return;
    const std::string addresses = count == 1 ? "1 address stands" : std::to_string(count) + " addresses stand";
    notes.push_back("warning: " + addresses + " in the model; give it with --model FILE");
}

/// What has been fetched and what has not.
class Fetch {
public:
    Fetch(const FetchArguments& arguments, const Reporter& reporter) : arguments_(arguments), reporter_(reporter) {}

    int run() {
        makeFolder(folder());
        collect();
        download();
        const std::string failures = failed_ == 0 ? "" : fmt::format("; {} failed", failed_);
        writeStandardOutput(fmt::format("fetched {} of {} picture{}, {:.1f} MB{}\n", fetched_, fetched_ + failed_,
                                        fetched_ + failed_ == 1 ? "" : "s", static_cast<double>(bytes_) / 1e6,
                                        failures));
        return failed_ == 0 && !documentFailed_ ? 0 : 1;
    }

private:
    [[nodiscard]] const std::filesystem::path& folder() const { return *arguments_.documents.front().imageCacheDir; }

    /// Finds out which pictures the documents name; each is fetched once.
    void collect() {
        const auto make = [](const Production& work) {
            if (!work.input.model) noteAddressesInModel(work.source, work.outcome.notes);
            work.outcome.pictures = work.document.pictures();
        };
        produceAll(arguments_, make, [this](const DocumentInput& document, const Outcome& outcome) {
            reporter_.note(displayName(document.path), outcome.notes);
            if (outcome.failure) {
                reporter_.report(*outcome.failure);
                documentFailed_ = true;
            }
            for (const NamedPicture& picture : outcome.pictures) add(picture);
        });
    }

    void add(const NamedPicture& picture) {
        const auto [known, isNew] = byName_.try_emplace(picture.fileName, picture.url);
        if (isNew)
            pictures_.push_back(picture);
        else if (known->second != picture.url)
            fail(picture.url,
                 "its name in the folder, " + known->first + ", is that of '" + known->second.shortened() + "' too");
    }

    void download() {
        Progress progress(pictures_.size());
        std::vector<URL> urls;
        for (const NamedPicture& picture : pictures_) urls.push_back(picture.url);
        PictureDownloads downloads(std::move(urls), arguments_.documents.front().widget.fetchPolicy);
        while (const auto download = downloads.next()) {
            const NamedPicture& picture = pictures_[download->index];
            if (!download->error.empty()) {
                progress.hide();
                fail(picture.url, download->error);
            } else {
                writeFile(folder() / picture.fileName, download->bytes);
                ++fetched_;
                bytes_ += download->bytes.size();
            }
            progress.advance(picture.url.shortened());
        }
    }

    void fail(const URL& url, const std::string& reason) {
        ++failed_;
        reporter_.report(
            describe(std::make_exception_ptr(IOError("cannot fetch '" + url.shortened() + "': " + reason))));
    }

    const FetchArguments& arguments_;
    const Reporter& reporter_;
    std::vector<NamedPicture> pictures_;
    std::unordered_map<std::string, URL> byName_;
    std::size_t fetched_ = 0;
    std::size_t failed_ = 0;
    std::size_t bytes_ = 0;
    bool documentFailed_ = false;
};

}  // namespace

int run(const FetchArguments& arguments, const Reporter& reporter) { return Fetch(arguments, reporter).run(); }

}  // namespace tavrin::cli
