// SPDX-License-Identifier: MIT
#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/cli/program.h"

namespace tavrin::cli {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

/// A command that draws frames, with other words behind.
std::vector<std::string> framesWith(const std::vector<std::string>& more,
                                    const char* span = "2026-03-01T09:41:00Z..2026-03-01T09:42:00Z") {
    return joined({"render", "a.json", "--frames", span}, more);
}

TEST(Usage, IsRefused) {
    const struct {
        const char* why;
        std::vector<std::string> words;
        const char* message;
    } rows[] = {
        {"nothing", {}, "a verb is missing"},
        {"misspelt verb", {"rendr", "a.json"}, "no verb 'rendr'; did you mean 'render'?"},
        {"a file instead of a verb", {"a.json"}, "no verb 'a.json'"},
        {"misspelt option", {"render", "a.json", "--famly", "systemSmall"}, "--famly here; did you mean '--family'?"},
        {"misspelt option with its value", {"tree", "a.json", "--scael=2"}, "--scael here; did you mean '--scale'?"},
        {"misspelt option before the verb", {"--verison"}, "did you mean '--version'?"},
        {"another verb's option", {"tree", "a.json", "--rounded"}, "no option --rounded"},
        {"no document", {"check"}, "which document?"},
        {"one document too many", {"tree", "a.json", "b.json"}, "one document, not 2"},
        {"two paths to explain", {"explain", "a.json", "nodes.a", "nodes.b"}, "one document and one path, not 3 words"},
        {"a format that explain has not", {"explain", "a.json", "--format", "png"}, "text or json, not 'png'"},
        {"an option's value is missing", {"tree", "a.json", "--model"}, "--model takes a value"},
        {"an option twice", {"tree", "a.json", "--scale", "1", "--scale=2"}, "--scale is given twice"},
        {"standard input twice", {"tree", "-", "--model", "-"}, "only once"},
        {"misspelt family", {"tree", "a.json", "--family", "systemsmal"}, "did you mean 'systemSmall'?"},
        {"no such family",
         {"tree", "a.json", "--family", "huge"},
         "accessoryRectangular or accessoryInline, not 'huge'"},
        {"a family that the screen has not",
         {"tree", "a.json", "--family", "systemExtraLarge"},
         "390x844 has no systemExtraLarge; 1192x1590, "},
        {"an accessory on a tablet",
         {"tree", "a.json", "--family", "accessoryInline", "--screen", "1024x1366"},
         "1024x1366 has no accessoryInline; 440x956, "},
        {"an unknown screen", {"tree", "a.json", "--screen", "100x100"}, "give a size, or one of 440x956"},
        {"a screen that is no size", {"tree", "a.json", "--screen", "phone"}, "such as 338x158"},
        {"a size and a family", {"tree", "a.json", "--size", "1x1", "--family", "systemSmall"}, "instead of --family"},
        {"one number", {"tree", "a.json", "--size", "338"}, "--size takes a width and a height"},
        {"three numbers", {"tree", "a.json", "--size", "1x2x3"}, "not '1x2x3'"},
        {"no width", {"tree", "a.json", "--size", "x2"}, "not 'x2'"},
        {"a size of nothing", {"tree", "a.json", "--size", "0x10"}, "not '0x10'"},
        {"negative size", {"tree", "a.json", "--size", "10x-1"}, "not '10x-1'"},
        {"infinite size", {"tree", "a.json", "--size", "infx1"}, "not 'infx1'"},
        {"blanks", {"tree", "a.json", "--size", "1 x 2"}, "not '1 x 2'"},
        {"wrong bound for pictures", {"tree", "a.json", "--max-image-size", "-1x1"}, "--max-image-size takes"},
        {"scale of nothing", {"tree", "a.json", "--scale", "0"}, "above 0 and up to 100"},
        {"negative scale", {"tree", "a.json", "--scale", "-1"}, "not '-1'"},
        {"endless scale", {"tree", "a.json", "--scale", "inf"}, "not 'inf'"},
        {"overflowing scale", {"tree", "a.json", "--scale", "1e999"}, "not '1e999'"},
        {"huge scale", {"tree", "a.json", "--scale", "101"}, "not '101'"},
        {"a hexadecimal scale", {"tree", "a.json", "--scale", "0x3"}, "not '0x3'"},
        {"a scale that is no number", {"tree", "a.json", "--scale", "nan"}, "not 'nan'"},
        {"a third appearance",
         {"tree", "a.json", "--appearance", "darkk"},
         "light or dark, not 'darkk'; did you mean 'dark'?"},
        {"a day without a time", {"tree", "a.json", "--date", "2026-03-01"}, "such as 2026-03-01T09:41:00Z"},
        {"an impossible day", {"tree", "a.json", "--date", "2026-02-30T00:00:00Z"}, "--date takes"},
        {"an unknown time zone", {"tree", "a.json", "--time-zone", "Europe/Atlantis"}, "not 'Europe/Atlantis'"},
        {"no time zone", {"tree", "a.json", "--time-zone", ""}, "not ''"},
        {"a colour of three digits", {"render", "a.json", "--background", "#FFF"}, "six hexadecimal digits"},
        {"a colour with a sign", {"render", "a.json", "--background", "-12345"}, "not '-12345'"},
        {"a colour's name", {"render", "a.json", "--background", "red"}, "such as #FF9500"},
        {"unknown suffix", {"render", "a.json", "-o", "a.gif"}, ".png, .svg, .pdf, .webp or .jpg"},
        {"no suffix", {"render", "a.json", "-o", "a"}, "--format says what 'a' is"},
        {"suffix and format", {"render", "a.json", "-o", "a.svg", "--format", "pdf"}, "contradicts"},
        {"no name", {"render", "a.json", "-o", ""}, "not ''"},
        {"no folder", {"tree", "a.json", "--image-cache-dir", ""}, "takes the name of a folder, not ''"},
        {"several pictures in one file", {"render", "a.json", "b.json", "-o", "c.png"}, "give a folder"},
        {"several pictures on standard output", {"render", "a.json", "b.json", "-o", "-"}, "standard output"},
        {"pictures of one name", {"render", "x/a.json", "y/a.json"}, "would both be drawn to 'a.png'"},
        {"no such way to write", {"check", "a.json", "--format", "png"}, "text, json, sarif or github, not 'png'"},
        {"a check's format for a picture", {"render", "a.json", "--format", "sarif"}, "png, svg, pdf, webp or jpeg"},
        {"another verb's flag", {"render", "a.json", "--fix"}, "no option --fix"},
        {"nothing to mend", {"check", "-", "--fix"}, "standard input"},
        {"no such family", {"check", "a.json", "--families", "systemSmall,systemHuge"}, "not 'systemHuge'"},
        {"families and a size", {"check", "a.json", "--families", "all", "--size", "1x1"}, "instead of --size"},
        {"no such appearance", {"check", "a.json", "--appearances", "light,gray"}, "not 'gray'"},
        {"appearances twice over", {"check", "a.json", "--appearances", "all", "--appearance", "dark"}, "instead of"},
        {"an unknown error format", {"tree", "a.json", "--errors", "xml"}, "text or json"},
        {"nowhere to put pictures", {"fetch", "a.json"}, "wants --image-cache-dir DIR"},
        {"another verb's option", {"fetch", "a.json", "--scale", "2"}, "no option --scale"},
        {"no such policy", {"tree", "a.json", "--fetch", "some"}, "none, public or all, not 'some'"},
        {"a policy twice over", {"tree", "a.json", "--fetch", "all", "--offline"}, "instead of --fetch"},
        {"frames of no span", {"render", "a.json", "--frames", "2026-03-01T09:41:00Z"}, "--frames takes two moments"},
        {"frames of one end", {"render", "a.json", "--frames", "2026-03-01T09:41:00Z.."}, "--frames takes two moments"},
        {"frames of days", {"render", "a.json", "--frames", "2026-03-01..2026-03-02"}, "not '2026-03-01..2026-03-02'"},
        {"frames back in time", framesWith({}, "2026-03-01T09:41:00Z..2026-03-01T09:40:59Z"), "the earlier one first"},
        {"frames without a step", framesWith({"--every", "0"}), "--every takes a positive number of seconds"},
        {"frames with a step back", framesWith({"--every", "-1"}), "not '-1'"},
        {"frames with an endless step", framesWith({"--every", "inf"}), "not 'inf'"},
        {"too many frames", framesWith({"--every", "0.001"}), "60001 frames: there may be at most 36000"},
        {"no rate", framesWith({"--fps", "0"}), "--fps takes a number above 0 and up to 100"},
        {"a rate that is too high", framesWith({"--fps", "101"}), "not '101'"},
        {"a rate of numbered pictures", framesWith({"-o", "a-%d.png", "--fps", "5"}), "--fps is for animations"},
        {"frames that may lack nothing", framesWith({"--fail-on-missing"}), "not for frames"},
        {"a step without frames", {"render", "a.json", "--every", "2"}, "--every goes with --frames"},
        {"a rate without frames", {"render", "a.json", "--fps", "2"}, "--fps goes with --frames"},
        {"frames and a date", framesWith({"--date", "2026-03-01T09:41:00Z"}), "leave --date away"},
        {"frames of two documents", framesWith({"b.json"}), "one document, not 2"},
        {"frames as SVG", framesWith({"-o", "a.svg"}), "not 'a.svg'"},
        {"frames as PDF", framesWith({"--format", "pdf"}), "png, apng or webp, not 'pdf'"},
        {"frames as WebP in a PDF", framesWith({"-o", "a.pdf", "--format", "webp"}), "not 'a.pdf'"},
        {"frames of no format", framesWith({"-o", "a"}), "such as clock-%04d.png, not 'a'"},
        {"frames of no name", framesWith({"-o", ""}), "not ''"},
        {"frames of two formats", framesWith({"-o", "a.png", "--format", "webp"}), "contradicts the suffix"},
        {"numbered WebPs", framesWith({"-o", "a-%d.webp"}), "numbered frames are PNGs"},
        {"numbered pictures as WebP", framesWith({"-o", "a-%d.png", "--format", "webp"}), "numbered frames are PNGs"},
        {"frames with two numbers", framesWith({"-o", "%d-%02d.png"}), "two places for a frame's number"},
        {"another verb's option", {"layout", "a.json", "--frames", "x"}, "no option --frames"},
        {"frames numbered as letters", framesWith({"-o", "c%s.png"}),
         "written %d or, with zeros in front, %04d, not '%s'"},
        {"frames numbered with blanks", framesWith({"-o", "c%5d.webp"}), "not '%5d'"},
        {"frames in a folder that is new", framesWith({"-o", "dirx"}), "a new one's name ends in /"},
        {"a picture in a folder that is new", {"render", "a.json", "-o", "dirx"}, "the name of a new folder ends in /"},
        {"an APNG without frames", {"render", "a.json", "-o", "a.apng"}, "say which moments with --frames"},
        {"a format of frames", {"render", "a.json", "--format", "apng"}, "say which moments with --frames"},
        {"the short suffix as a format", {"render", "a.json", "--format", "jpg"}, "did you mean 'jpeg'?"},
        {"a JPEG's suffix and a format", {"render", "a.json", "-o", "a.jpg", "--format", "webp"}, "contradicts"},
        {"frames as JPEG", framesWith({"-o", "a.jpg"}), "not 'a.jpg'"},
        {"frames in the format of stills", framesWith({"--format", "jpeg"}), "png, apng or webp, not 'jpeg'"},
        {"no quality", {"render", "a.json", "-o", "a.jpg", "--quality", "0"}, "from 1 to 100, not '0'"},
        {"too good a quality", {"render", "a.json", "-o", "a.jpg", "--quality", "101"}, "not '101'"},
        {"half a quality", {"render", "a.json", "-o", "a.jpg", "--quality", "84.5"}, "not '84.5'"},
        {"a quality in words", {"render", "a.json", "-o", "a.jpg", "--quality", "best"}, "not 'best'"},
        {"a PNG's quality", {"render", "a.json", "--quality", "80"}, "for jpeg and webp, not for png"},
        {"an SVG's quality", {"render", "a.json", "-o", "a.svg", "--quality", "80"}, "not for svg"},
        {"a PDF's quality", {"render", "a.json", "--format", "pdf", "--quality", "80"}, "not for pdf"},
        {"the quality of frames", framesWith({"-o", "a.webp", "--quality", "80"}), "not for frames"},
        {"the quality of a matrix", {"render", "a.json", "--scales=1,2", "-o", "m", "--quality=80"}, "not for png"},
        {"another verb's quality", {"tree", "a.json", "--quality", "80"}, "no option --quality"},
        {"several pictures in one file", {"render", "a.json", "--scales", "1,2", "-o", "a.png"}, "instead of 'a.png'"},
        {"several pictures in an animation", {"render", "a.json", "--scales", "1,2", "-o", "a.webp"}, "give a folder"},
        {"all is a word", {"check", "a.json", "--families", "huge"}, "accessoryInline, all or meant, not 'huge'"},
        {"all is one of the appearances", {"check", "a.json", "--appearances", "al"}, "did you mean 'all'?"},
        {"the help of nothing", {"help", "rendr"}, "no verb 'rendr'; did you mean 'render'?"},
        {"the help of no verb", {"rendr", "--help"}, "no verb 'rendr'; did you mean 'render'?"},
        {"the help of a file", {"-h", "a.json"}, "no verb 'a.json'"},
        {"help with a misspelt option", {"--verison", "--help"}, "did you mean '--version'?"},
        {"help of two verbs", {"help", "render", "tree"}, "one verb, not 2"},
        {"no shell", {"completion"}, "takes one shell"},
        {"a schema of something", {"schema", "a.json"}, "takes no document"},
        {"an unknown shell", {"completion", "fihs"}, "did you mean 'fish'?"},
    };
    const Workplace place;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const Finished asText = place.run(row.words);
        EXPECT_EQ(asText.status, 2);
        EXPECT_EQ(asText.out, "");
        EXPECT_THAT(asText.err, StartsWith("tavrin: error: "));
        EXPECT_THAT(asText.err, HasSubstr(row.message));

        const Finished asJSON = place.run(joined({"--errors=json"}, row.words));
        EXPECT_EQ(asJSON.status, 2);
        if (std::string_view(row.why) == "an unknown error format") continue;
        EXPECT_EQ(errorText(asJSON, "type"), "UsageError");
        EXPECT_THAT(errorText(asJSON, "message"), HasSubstr(row.message));
    }
    EXPECT_THAT(place.files(), ElementsAre());
}

TEST(Usage, JSONErrorsWhereverTheyAreAskedFor) {
    const Workplace place;
    const std::vector<std::string> rows[] = {
        {"--errors", "json", "nonsense"},
        {"tree", "--scale", "x", "a.json", "--errors", "json"},
        {"tree", "--errors=json", "--nonsense"},
        {"render", "--errors", "json"},
    };
    for (const auto& words : rows) {
        SCOPED_TRACE(words.front());
        const Finished finished = place.run(words);
        EXPECT_EQ(finished.status, 2);
        EXPECT_EQ(errorText(finished, "type"), "UsageError");
        EXPECT_EQ(std::count(finished.err.begin(), finished.err.end(), '\n'), 1);
    }
}

TEST(Usage, IsExplained) {
    const Workplace place;
    const struct {
        std::vector<std::string> words;
        const char* part;
    } rows[] = {
        {{"--help"}, "Usage: tavrin VERB"},
        {{"-h"}, "tavrin render weather.json"},
        {{"render", "--help"}, "Usage: tavrin render DOC... [-o OUT] [options]"},
        {{"tree", "a.json", "-h"}, "Usage: tavrin tree DOC"},
        {{"layout", "--help"}, "tavrin layout weather.json"},
        {{"check", "--help"}, "--errors text|json"},
        {{"check", "--help"}, "--families NAME,...|all"},
        {{"fetch", "--help"}, "Usage: tavrin fetch DOC... --image-cache-dir DIR"},
        {{"render", "--help"}, "--offline"},
        {{"schema", "--help"}, "Usage: tavrin schema"},
        {{"completion", "--help"}, "bash|zsh|fish"},
        {{"help"}, "Usage: tavrin VERB"},
        {{"help", "render"}, "Usage: tavrin render DOC"},
        {{"help", "help"}, "Usage: tavrin help [VERB]"},
        {{"tree", "--help"}, "Families: systemSmall, systemMedium,"},
        {{"tree", "--help"}, "Screens: 440x956, "},
        {{"--version"}, "tavrin "},
        {{"--licenses"}, "Copyright 2026 The Tavrin authors"},
        {{"--licenses"}, "\n---- libcli11-dev\n"},
        {{"--licenses"}, "\n---- @codemirror/view "},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.part);
        const Finished finished = place.run(row.words);
        EXPECT_EQ(finished.status, 0);
        EXPECT_EQ(finished.err, "");
        EXPECT_THAT(finished.out, HasSubstr(row.part));
        EXPECT_TRUE(finished.out.ends_with('\n'));
    }
    EXPECT_THAT(place.run({"tree", "--help"}).out, Not(HasSubstr("--rounded")));
}

TEST(Usage, ErrorsLeadToTheHelpOfTheVerb) {
    const Workplace place;
    const struct {
        std::vector<std::string> words;
        const char* hint;
    } rows[] = {
        {{"render", "a.json", "-o", "a.gif"}, "\n`tavrin render --help` explains it.\n"},
        {{"--errors", "text", "tree"}, "\n`tavrin tree --help` explains it.\n"},
        {{"tere", "tree"}, "\n`tavrin --help` and `tavrin help VERB` explain the command line.\n"},
        {{}, "\n`tavrin --help` and `tavrin help VERB` explain the command line.\n"},
    };
    for (const auto& row : rows) EXPECT_TRUE(place.run(row.words).err.ends_with(row.hint)) << row.hint;
}

TEST(Usage, OnlyCloseWordsAreSuggested) {
    const Workplace place;
    const struct {
        const char* word;
        bool isClose;
    } rows[] = {{"night", false}, {"lihgt", true}, {"ilght", true}, {"ight", true}, {"llight", true}, {"Light", true}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.word);
        const std::string text = place.run({"tree", "a.json", "--appearance", row.word}).err;
        EXPECT_EQ(text.find("did you mean 'light'?") != std::string::npos, row.isClose);
    }
}

TEST(Usage, AFolderOfPicturesNeedNotBeThere) {
    const Workplace place;
    place.write("a.json",
                R"({"version": "1.0", "nodes": {"main": {"type": "webImage", "url": "https://example.com/a"}}})");
    const Finished drawn = place.run({"render", "a.json", "--image-cache-dir", "gone"});
    EXPECT_EQ(drawn.status, 0) << "the widget is drawn without";
    EXPECT_THAT(drawn.err, HasSubstr("warning: 1 picture is missing, since there is no folder 'gone'\n"));
    for (const char* verb : {"tree", "layout", "targets", "explain", "check"})
        EXPECT_EQ(place.run({verb, "a.json", "--image-cache-dir", "gone"}).status, 0) << verb;
}

TEST(Usage, DocumentsBehindTwoDashesMayLookLikeOptions) {
    const Workplace place;
    place.write("--rounded", hello);
    EXPECT_EQ(place.run({"check", "--", "--rounded"}).status, 0);
    EXPECT_EQ(place.run({"check", "--rounded"}).status, 2);
    place.write("[a,b]", hello);
    EXPECT_EQ(place.run({"check", "[a,b]"}).status, 0);
    place.write("tree", hello);
    EXPECT_EQ(place.run({"tree", "tree"}).status, 0);
}

}  // namespace
}  // namespace tavrin::cli
