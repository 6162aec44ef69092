// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tavrin/images/web_image_hasher.h"
#include "tests/cli/program.h"
#include "tests/network/web_server.h"

namespace tavrin::cli {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

/// A document of web images, each an address or an address and a second one.
std::string documentOf(const std::vector<std::string>& members) {
    std::string children;
    for (const std::string& member : members)
        children += (children.empty() ? "" : ", ") + (R"({"type": "webImage", )" + member + "}");
    return R"({"version": "1.0", "nodes": {"main": {"type": "hstack", "children": [)" + children + "]}}}";
}

class Fetching : public ::testing::Test {
protected:
    Fetching() { useNoProxy(); }

    [[nodiscard]] std::string fileOf(const std::string& path) const {
        return "pictures/" + WebImageHasher(server.at(path));
    }
    [[nodiscard]] std::string url(const std::string& path) const { return R"("url": ")" + server.at(path) + "\""; }

    WebServer server;
    Workplace place;
};

TEST_F(Fetching, FillsAFolderThatRenderDrawsFrom) {
    place.write("a.json", documentOf({url("/ok/1") + R"(, "alt": "{{initServerParam.second}}")", url("/ok/1")}));
    place.write("b.json", documentOf({url("/status/404/b"), url("/flaky/b")}));
    place.write("model.json", R"({"second": ")" + server.at("/ok/2") + "\"}");
    const Finished fetched =
        place.run({"fetch", "a.json", "b.json", "--model", "model.json", "--image-cache-dir", "pictures"});
    EXPECT_EQ(fetched.status, 0);
    EXPECT_EQ(fetched.err, "");
    EXPECT_EQ(fetched.out, "fetched 4 of 4 pictures, 0.0 MB\n");
    for (const char* path : {"/ok/1", "/ok/2", "/status/404/b", "/flaky/b"})
        EXPECT_EQ(place.read(fileOf(path)), smallPicture()) << path;
    EXPECT_EQ(place.files().size(), 7U) << "nothing else is left";
    EXPECT_EQ(server.requests("/ok/1"), 1);
    EXPECT_EQ(server.requests("/flaky/b"), 3);

    const int before = server.requests();
    const Finished drawn = place.run({"render", "b.json", "--image-cache-dir", "pictures"});
    EXPECT_EQ(drawn.status, 0);
    EXPECT_EQ(drawn.err, "");
    EXPECT_EQ(server.requests(), before) << "pictures come from the folder";
}

const std::string pixelInAddress = "data:image/gif;base64,R0lGODlhAQABAIAAAP///wAAACH5BAAAAAAALAAAAAABAAEAAAICRAEAOw==";
const std::string cutOffInAddress = "data:image/gif;base64,R0lGODlh";

TEST_F(Fetching, NamesFilesByTheAddressAsItIsWritten) {
    place.write("a.json", documentOf({url("/ok/a b"), url("/ok/a%20b"), R"("url": ")" + pixelInAddress + "\"",
                                      R"("url": ")" + cutOffInAddress + "\""}));
    const Finished fetched = place.run({"fetch", "a.json", "--image-cache-dir", "pictures"});
    EXPECT_EQ(fetched.status, 1);
    EXPECT_EQ(fetched.out, "fetched 3 of 4 pictures, 0.0 MB; 1 failed\n");
    EXPECT_EQ(fetched.err, "tavrin: error: cannot fetch '" + cutOffInAddress + "': there is no picture\n");
    EXPECT_EQ(place.read(fileOf("/ok/a b")), smallPicture());
    EXPECT_EQ(place.read(fileOf("/ok/a%20b")), smallPicture());
    EXPECT_TRUE(place.read("pictures/" + WebImageHasher(pixelInAddress)).starts_with("GIF89a"));
    const Finished drawn = place.run({"render", "a.json", "--image-cache-dir", "pictures", "-o", "a.png"});
    EXPECT_THAT(drawn.err, HasSubstr("warning: 1 picture is missing"));
}

TEST_F(Fetching, DrawsWhatStandsInAnAddressWithoutFetching) {
    place.write("a.json", documentOf({R"("url": ")" + pixelInAddress + "\""}));
    for (const char* verb : {"layout", "check"}) {
        const Finished finished = place.run({verb, "a.json", "--offline"});
        EXPECT_EQ(finished.status, 0);
        EXPECT_EQ(finished.err, "") << verb;
    }
    place.write("b.json", documentOf({R"("url": ")" + cutOffInAddress + "\""}));
    EXPECT_THAT(place.run({"check", "b.json", "--offline"}).err, HasSubstr("no picture could be had from"));
}

TEST_F(Fetching, SaysWhatFailed) {
    place.write("a.json", documentOf({url("/text"), url("/ok/1"), url("/reset"), R"("url": "relative")",
                                      R"("url": "not a url:")"}));
    const Finished finished = place.run({"fetch", "a.json", "missing.json", "--image-cache-dir", "pictures"});
    EXPECT_EQ(finished.status, 1);
    EXPECT_EQ(finished.out, "fetched 1 of 4 pictures, 0.0 MB; 3 failed\n");
    EXPECT_THAT(finished.err, HasSubstr("tavrin: error: cannot read 'missing.json': No such file or directory\n"));
    EXPECT_THAT(finished.err, HasSubstr("tavrin: error: cannot fetch '" + server.at("/text") +
                                        "': there is no picture (status 200)\n"));
    EXPECT_THAT(finished.err, HasSubstr("tavrin: error: cannot fetch 'relative': unsupported URL\n"));
    EXPECT_GE(server.requests("/reset"), 3);
    EXPECT_EQ(server.requests("/text"), 1) << "what is no picture stays none";
    EXPECT_THAT(place.files(), ElementsAre("a.json", fileOf("/ok/1")));
    const Finished asJSON = place.run({"fetch", "a.json", "--image-cache-dir", "pictures", "--errors", "json"});
    EXPECT_EQ(errorText(asJSON, "type"), "IOError");
}

TEST_F(Fetching, KeepsToThePolicy) {
    place.write("a.json", documentOf({url("/ok/1")}));
    const Finished finished = place.run({"fetch", "a.json", "--image-cache-dir", "pictures", "--fetch", "public"});
    EXPECT_EQ(finished.status, 1);
    EXPECT_THAT(finished.err, HasSubstr("the address 127.0.0.1 is not public"));
    EXPECT_EQ(server.requests(), 0);
}

TEST_F(Fetching, DocumentsWithoutPicturesAreNoFailure) {
    place.write("a.json", hello);
    const Finished finished = place.run({"fetch", "a.json", "--image-cache-dir", "pictures"});
    EXPECT_EQ(finished.status, 0);
    EXPECT_EQ(finished.out, "fetched 0 of 0 pictures, 0.0 MB\n");
}

TEST_F(Fetching, SaysThatAddressesStandInTheModel) {
    place.write("a.json", documentOf({R"("url": "{{initServerParam.first}}", "alt": "{{initServerParam.second}}")",
                                      url("/ok/1")}));
    const Finished finished = place.run({"fetch", "a.json", "--image-cache-dir", "pictures"});
    EXPECT_EQ(finished.status, 0);
    EXPECT_EQ(finished.err, "warning: 2 addresses stand in the model; give it with --model FILE\n");
    EXPECT_EQ(finished.out, "fetched 1 of 1 picture, 0.0 MB\n");
}

TEST_F(Fetching, RenderTellsOfPicturesThatFail) {
    const std::string bad = server.at("/text");
    const std::string failed = "error LoadImageError: Load Image Failed: " + bad + "\n";
    const std::string refused = "error LoadImageRefused: Load Image Refused: " + bad + ": ";
    place.write("a.json", documentOf({url("/text"), url("/ok/1")}));
    const struct {
        const char* why;
        std::vector<std::string> options;
        std::string err;
        int requests;
    } rows[] = {
        {"everything", {}, failed, 2},
        {"nothing", {"--fetch", "none"}, refused + "nothing may be fetched\n" + failed, 0},
        {"the same, shorter", {"--offline"}, refused + "nothing may be fetched\n" + failed, 0},
        {"only what is public", {"--fetch", "public"}, refused + "the address 127.0.0.1 is not public\n" + failed, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const int before = server.requests();
        const Finished finished = place.run(joined({"render", "a.json"}, row.options));
        EXPECT_EQ(finished.status, 0) << "the widget is drawn without";
        const bool mayFetch = row.requests > 0 || row.options.back() == "public";
        EXPECT_EQ(finished.err.substr(0, row.err.size()), row.err);
        EXPECT_TRUE(finished.err.ends_with(mayFetch
                                               ? " missing; `tavrin check` says which\n"
                                               : "\nwarning: 2 pictures are missing, since nothing may be fetched\n"))
            << finished.err;
        EXPECT_EQ(server.requests() - before, row.requests);
    }
    place.write("b.json", documentOf({url("/late/20000")}));
    const Finished late = place.run({"layout", "b.json"});
    EXPECT_EQ(late.status, 0);
    EXPECT_EQ(late.err, "error LoadImageTimeOut: Load Image Timeout: " + server.at("/late/20000") +
                            "\nerror LoadImageError: Load Image Failed: " + server.at("/late/20000") + "\n");
    const int before = server.requests();
    EXPECT_EQ(place.run({"tree", "a.json"}).err, "");
    EXPECT_EQ(server.requests(), before) << "a tree that is only printed loads nothing";
}

TEST_F(Fetching, NamesTheDocumentWhereThereAreSeveral) {
    place.write("a.json", documentOf({url("/text")}));
    place.write("b.json", hello);
    EXPECT_EQ(place.run({"layout", "a.json"}).err,
              "error LoadImageError: Load Image Failed: " + server.at("/text") + "\n");
    const Finished finished = place.run({"check", "a.json", "b.json"});
    EXPECT_EQ(finished.status, 0);
    EXPECT_THAT(finished.err, HasSubstr("a.json:"));
    EXPECT_THAT(finished.err, HasSubstr("warning: no picture could be had from \"" + server.at("/text") + "\""));
}

}  // namespace
}  // namespace tavrin::cli
