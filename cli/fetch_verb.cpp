#include <cstddef>
#include <exception>
#include <filesystem>
#include <string>
#include <unordered_map>
#include <vector>

#include <fmt/format.h>

#include "cli/input.h"
#include "cli/io_error.h"
#include "cli/output.h"
#include "cli/picture_downloads.h"
#include "cli/production.h"
#include "cli/progress.h"
#include "cli/verbs.h"
#include "tavrin/images/web_image_hasher.h"

namespace tavrin::cli {
namespace {

/// What has been fetched and what has not.
class Fetch {
public:
    Fetch(const Arguments& arguments, const Reporter& reporter) : arguments_(arguments), reporter_(reporter) {}

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
    [[nodiscard]] const std::filesystem::path& folder() const { return *arguments_.imageCacheDir; }

    /// Finds out which pictures the documents name; each is fetched once.
    void collect() {
        produceAll(arguments_, [this](const std::string& document, const Outcome& outcome) {
            reporter_.note(displayName(document), outcome.notes);
            if (outcome.failure) {
                reporter_.report(*outcome.failure);
                documentFailed_ = true;
            }
            for (const URL& url : outcome.pictures) add(url);
        });
    }

    void add(const URL& url) {
        const auto [known, isNew] = byName_.try_emplace(WebImageHasher(url.string()), url);
        if (isNew)
            urls_.push_back(url);
        else if (known->second != url)
            fail(url, "its name in the folder, " + known->first + ", is that of '" + known->second.string() + "' too");
    }

    void download() {
        Progress progress(urls_.size());
        PictureDownloads downloads(urls_, arguments_.fetchPolicy);
        while (const auto picture = downloads.next()) {
            if (!picture->error.empty()) {
                progress.hide();
                fail(picture->url, picture->error);
            } else {
                writeFile(folder() / WebImageHasher(picture->url.string()), picture->bytes);
                ++fetched_;
                bytes_ += picture->bytes.size();
            }
            progress.advance(picture->url.string());
        }
    }

    void fail(const URL& url, const std::string& reason) {
        ++failed_;
        reporter_.report(describe(std::make_exception_ptr(IOError("cannot fetch '" + url.string() + "': " + reason))));
    }

    const Arguments& arguments_;
    const Reporter& reporter_;
    std::vector<URL> urls_;
    std::unordered_map<std::string, URL> byName_;
    std::size_t fetched_ = 0;
    std::size_t failed_ = 0;
    std::size_t bytes_ = 0;
    bool documentFailed_ = false;
};

}  // namespace

int fetch(const Arguments& arguments, const Reporter& reporter) { return Fetch(arguments, reporter).run(); }

}  // namespace tavrin::cli
