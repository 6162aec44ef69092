// SPDX-License-Identifier: MIT
#include <cstdlib>
#include <filesystem>
#include <string>
#include <sys/stat.h>

#include <gtest/gtest.h>

#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/platform/text/font_chooser.h"
#include "tavrin/platform/text/font_faces.h"
#include "tavrin/platform/text/itemizer.h"

namespace tavrin::text {
namespace {

std::string fileOf(const FontCatalog& catalog, FontId font) {
    return std::filesystem::path(catalog.source(font).path()).filename().string();
}

/// The files that a text's items are shaped with, and the face inside a collection.
std::string fontsOf(std::string_view text, Font::Weight weight = Font::Weight::regular) {
    const auto library = FontLibrary::system();
    FontFaces faces(library->catalog());
    FontChooser chooser(faces);
    Paragraph paragraph;
    ParagraphReader(text).next(paragraph);
    std::string files;
    for (const auto& item : itemize(paragraph, weight, chooser).items) {
        if (!files.empty()) files += ' ';
        files += fileOf(library->catalog(), item.font);
        if (const unsigned face = library->catalog().source(item.font).faceIndex()) {
            files += '#';
            files += std::to_string(face);
        }
    }
    return files;
}

TEST(Fonts, SystemFontHasThreeWeights) {
    const auto library = FontLibrary::system();
    const FontCatalog& catalog = library->catalog();
    EXPECT_EQ(fileOf(catalog, catalog.systemFont(Font::Weight::regular)), "Inter-Regular.otf");
    EXPECT_EQ(fileOf(catalog, catalog.systemFont(Font::Weight::semibold)), "Inter-SemiBold.otf");
    EXPECT_EQ(fileOf(catalog, catalog.systemFont(Font::Weight::bold)), "Inter-Bold.otf");
}

TEST(Fonts, FallbacksAreChosenByScript) {
    const struct {
        const char* why;
        const char* text;
        const char* files;
        Font::Weight weight = Font::Weight::regular;
    } rows[] = {
        {"Latin, Greek, Cyrillic", "Aé Ωж", "Inter-Regular.otf Inter-Regular.otf Inter-Regular.otf"},
        {"simplified by default", "直骨", "NotoSansCJK-Regular.ttc#2"},
        {"Japanese beside kana", "直の", "NotoSansCJK-Regular.ttc NotoSansCJK-Regular.ttc"},
        {"Korean", "안녕", "NotoSansCJK-Regular.ttc#1"},
        {"Korean beside hangul", "漢글", "NotoSansCJK-Regular.ttc#1 NotoSansCJK-Regular.ttc#1"},
        {"traditional beside bopomofo", "漢ㄅ", "NotoSansCJK-Regular.ttc#3 NotoSansCJK-Regular.ttc#3"},
        {"semibold falls back to bold", "直", "NotoSansCJK-Bold.ttc#2", Font::Weight::semibold},
        {"Arabic with its spaces and tatweel", "مر حـبا", "NotoSansArabic-Regular.ttf"},
        {"Hebrew", "שלום", "NotoSansHebrew-Regular.ttf"},
        {"Thai, not the looped one", "ไทย", "NotoSansThai-Regular.ttf"},
        {"Devanagari with its danda", "नम।", "NotoSansDevanagari-Regular.ttf"},
        {"Tamil, not the supplement", "தமிழ்", "NotoSansTamil-Regular.ttf"},
        {"Tibetan is only in a serif", "བོད", "NotoSerifTibetan-Regular.ttf"},
        {"Myanmar, where a bold file calls itself regular", "မြန်", "NotoSansMyanmar-Regular.ttf"},
        {"emoji between letters", "a😀b", "Inter-Regular.otf NotoColorEmoji.ttf Inter-Regular.otf"},
        {"a flag is one picture, not letters", "🇯🇵", "NotoColorEmoji.ttf"},
        {"what no font has", "\u0378", "Inter-Regular.otf"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(fontsOf(row.text, row.weight), row.files);
    }
}

TEST(Fonts, OnlyWhatIsNeededIsOpened) {
    const auto library = FontLibrary::system();
    FontFaces faces(library->catalog());
    FontChooser chooser(faces);
    Paragraph paragraph;
    ParagraphReader("Just Latin, 21°").next(paragraph);
    itemize(paragraph, Font::Weight::regular, chooser);
    EXPECT_EQ(faces.openCount(), 1U);
}

TEST(Fonts, HostFilesComeBeforeInstalledFallbacks) {
    const auto library = FontLibrary::make({"Inter",
                                            {"/usr/share/fonts/truetype/noto/NotoSerif-Regular.ttf",
                                             "/usr/share/fonts/truetype/noto/NotoSerifThai-Regular.ttf"}});
    FontFaces faces(library->catalog());
    FontChooser chooser(faces);
    const std::u32string thai = U"\u0E01";
    EXPECT_EQ(fileOf(library->catalog(), chooser.choose(thai, {})), "NotoSerifThai-Regular.ttf");
    EXPECT_EQ(fileOf(library->catalog(), chooser.choose(U"a", {})), "Inter-Regular.otf");
}

TEST(Fonts, SystemFontMayBeAHostFile) {
    const auto library = FontLibrary::make({"Noto Serif", {"/usr/share/fonts/truetype/noto/NotoSerif-Regular.ttf"}});
    const FontCatalog& catalog = library->catalog();
    EXPECT_EQ(fileOf(catalog, catalog.systemFont(Font::Weight::bold)), "NotoSerif-Regular.ttf");
}

TEST(Fonts, AFolderStandsInsteadOfTheInstalledFonts) {
    namespace fs = std::filesystem;
    const FontCatalog& installed = FontLibrary::system()->catalog();
    std::string folder = (fs::temp_directory_path() / "tavrin-fonts-XXXXXX").string();
    ASSERT_NE(::mkdtemp(folder.data()), nullptr);
    fs::create_directory(folder + "/inside");
    const std::string inter = installed.source(installed.systemFont(Font::Weight::regular)).path();
    fs::copy_file(inter, folder + "/inside/Own.otf");
    const auto library = FontLibrary::inFolder(folder);
    EXPECT_EQ(fileOf(library->catalog(), library->catalog().systemFont(Font::Weight::bold)), "Own.otf");
    EXPECT_TRUE(library->catalog().fallbacks().families.empty());
    EXPECT_FALSE(library->catalog().fallbacks().emoji);
    EXPECT_EQ(FontLibrary::inFolder(folder), library) << "is kept";
    fs::remove_all(folder);
    fs::create_directory(folder);
    try {
        (void)FontLibrary::make({.folder = folder});
        FAIL();
    } catch (const TavrinError& error) {
        EXPECT_EQ(error.message, "the font family \"Inter\" is not in the folder \"" + folder + "\"");
    }
    ASSERT_EQ(::mkfifo((folder + "/pipe").c_str(), 0600), 0);
    EXPECT_THROW((void)FontLibrary::make({.folder = folder}), TavrinError) << "and does not wait for the pipe's writer";
    fs::remove_all(folder);
}

TEST(Fonts, WhatIsMissingIsReported) {
    std::string folder = (std::filesystem::temp_directory_path() / "tavrin-fonts-XXXXXX").string();
    ASSERT_NE(::mkdtemp(folder.data()), nullptr);
    const std::string pipe = folder + "/font.ttf";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const struct {
        const char* why;
        FontLibrary::Options options;
    } rows[] = {
        {"no such family", {"No Such Family", {}}},
        {"a family must agree exactly", {"Inte", {}}},
        {"no such file", {"Inter", {"/nonexistent/font.ttf"}}},
        {"a file that is no font", {"Inter", {"/etc/passwd"}}},
        {"a pipe, which is not waited for", {"Inter", {pipe}}},
        {"no such folder", {"Inter", {}, "/nonexistent"}},
        {"a folder that is a file", {"Inter", {}, "/etc/passwd"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        try {
            FontLibrary::make(row.options);
            FAIL();
        } catch (const TavrinError& error) {
            EXPECT_EQ(error.kind, "Font");
            EXPECT_FALSE(error.message.empty());
        }
    }
    std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace tavrin::text
