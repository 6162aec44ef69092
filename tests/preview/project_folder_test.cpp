// SPDX-License-Identifier: MIT
#include "cli/preview/project_folder.h"

#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

#include "cli/io_error.h"
#include "cli/preview/folder_error.h"
#include "cli/preview/folder_watch.h"
#include "tests/preview/requests.h"

namespace tavrin::cli {
namespace {

namespace fs = std::filesystem;

std::vector<std::string> paths(const ProjectFolder& folder) {
    std::vector<std::string> found;
    for (const ProjectFile& file : folder.files()) found.push_back(file.path);
    return found;
}

unsigned statusOfReading(const ProjectFolder& folder, const std::string& path) {
    try {
        static_cast<void>(folder.read(path));
        return 200;
    } catch (const FolderError& error) {
        return error.status;
    }
}

/// While it lives, files are opened by a user whom permissions concern: root, who may run the tests, passes them all.
class AnyoneElse {
public:
    AnyoneElse() {
        if (::geteuid() == 0) become(65534);
    }
    AnyoneElse(const AnyoneElse&) = delete;
    AnyoneElse& operator=(const AnyoneElse&) = delete;
    ~AnyoneElse() {
        if (::getuid() == 0) become(0);
    }

private:
    static void become(uid_t user) { EXPECT_EQ(::seteuid(user), 0); }
};

TEST(ProjectFolder, ListsJSONFilesAndNothingHidden) {
    const ScratchFolder scratch;
    for (const char* name : {"b.json", "a/z.json", "a/b/c.json", ".hidden.json", ".git/x.json", "node_modules/p.json",
                             "notes.txt", "1/2/3/4/5/6/7/deep.json", "1/2/3/4/5/6/7/8/deeper.json"})
        scratch.write(name, "{}");
    fs::create_symlink(scratch.path() / "b.json", scratch.path() / "link.json");
    const ProjectFolder folder(scratch.path());
    EXPECT_EQ(paths(folder), (std::vector<std::string>{"1/2/3/4/5/6/7/deep.json", "a/b/c.json", "a/z.json", "b.json"}));
}

TEST(ProjectFolder, ReadsOnlyWhatLiesInIt) {
    const ScratchFolder outside;
    outside.write("secret.json", "secret");
    const ScratchFolder scratch;
    scratch.write("a/document.json", "text");
    scratch.write("notes.txt", "notes");
    scratch.write(".env.json", "hidden");
    scratch.write("large.json", std::string(ProjectFolder::maximumBytes + 1, ' '));
    fs::create_symlink(outside.path() / "secret.json", scratch.path() / "out.json");
    fs::create_directory_symlink(outside.path(), scratch.path() / "away");
    fs::create_symlink(scratch.path() / "a/document.json", scratch.path() / "in.json");
    fs::create_directory(scratch.path() / "folder.json");
    ASSERT_EQ(::mkfifo((scratch.path() / "pipe.json").c_str(), 0600), 0);
    const ProjectFolder folder(scratch.path());

    const struct {
        const char* why;
        std::string path;
        unsigned status;
    } rows[] = {
        {"a file", "a/document.json", 200},
        {"a link that stays inside", "in.json", 200},
        {"nothing", "gone.json", 404},
        {"no name", "", 403},
        {"up", "../secret.json", 403},
        {"up later", "a/../../secret.json", 403},
        {"up and back", "a/../a/document.json", 403},
        {"an absolute path", (outside.path() / "secret.json").string(), 403},
        {"an absolute path inside", (scratch.path() / "a/document.json").string(), 403},
        {"a link out", "out.json", 403},
        {"through a folder that is a link out", "away/secret.json", 403},
        {"a hidden file", ".env.json", 403},
        {"another kind of file", "notes.txt", 403},
        {"a folder", "folder.json", 403},
        {"a pipe", "pipe.json", 403},
        {"too large a file", "large.json", 413},
        {"a name with a zero", std::string("a/document.json\0.txt", 20), 403},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(statusOfReading(folder, row.path), row.status);
    }
}

TEST(ProjectFolder, DoesNotTakeAnotherFolderForItself) {
    const ScratchFolder scratch;
    scratch.write("one/a.json", "");
    scratch.write("one-more/b.json", "secret");
    fs::create_symlink(scratch.path() / "one-more/b.json", scratch.path() / "one/out.json");
    const ProjectFolder folder(scratch.path() / "one");
    EXPECT_EQ(statusOfReading(folder, "out.json"), 403);
}

TEST(ProjectFolder, SavesOnlyOverWhatItHasRead) {
    const ScratchFolder scratch;
    scratch.write("a.json", "old");
    ProjectFolder folder(scratch.path());
    const std::string revision = folder.read("a.json").revision;
    const std::string next = folder.save("a.json", "newer", revision);
    EXPECT_EQ(scratch.read("a.json"), "newer");
    EXPECT_EQ(folder.read("a.json").revision, next);
    EXPECT_THROW(folder.save("a.json", "lost", revision), FolderError);
    EXPECT_THROW(folder.save("new.json", "", ""), FolderError);
    EXPECT_THROW(folder.save("a.json", std::string(ProjectFolder::maximumBytes + 1, ' '), next), FolderError);
    EXPECT_THROW(folder.save("../a.json", "", next), FolderError);
    EXPECT_EQ(scratch.read("a.json"), "newer");
    EXPECT_EQ(paths(folder), std::vector<std::string>{"a.json"}) << "nothing else is left";
}

TEST(ProjectFolder, MakesNewFilesWhereItWouldFindThem) {
    const ScratchFolder outside;
    const ScratchFolder scratch;
    scratch.write("a.json", "old");
    scratch.write("in/b.json", "");
    fs::create_symlink(outside.path() / "gone.json", scratch.path() / "dangling.json");
    fs::create_directory_symlink(outside.path(), scratch.path() / "away");
    fs::create_directory_symlink(scratch.path() / "in", scratch.path() / "link");
    fs::create_directory(scratch.path() / "folder.json");
    ProjectFolder folder(scratch.path());
    const struct {
        const char* why;
        std::string path;
        unsigned status;
    } rows[] = {
        {"a file", "new.json", 200},
        {"settings", "new.widget.toml", 200},
        {"in a folder", "in/new.json", 200},
        {"in new folders", "1/2/3/4/5/6/7/deep.json", 200},
        {"where it is not looked for", "1/2/3/4/5/6/7/8/deeper.json", 403},
        {"a file that is there", "a.json", 409},
        {"a folder that is there", "folder.json", 409},
        {"a link that leads nowhere", "dangling.json", 409},
        {"through a link out", "away/new.json", 403},
        {"through a link inside", "link/new.json", 403},
        {"through a file", "a.json/new.json", 403},
        {"up", "../new.json", 403},
        {"up and back", "in/../new.json", 403},
        {"an absolute path", (outside.path() / "new.json").string(), 403},
        {"an absolute path inside", (scratch.path() / "new2.json").string(), 403},
        {"a hidden file", ".new.json", 403},
        {"in a hidden folder", ".git/new.json", 403},
        {"among packages", "node_modules/new.json", 403},
        {"another kind of file", "new.txt", 403},
        {"no name", "", 403},
        {"a name that cannot be read", "new\nline.json", 403},
        {"a long name", "a/" + std::string(251, 'n') + ".json", 400},
        {"a name with a zero", std::string("new.json\0.json", 14), 403},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        unsigned status = 200;
        try {
            const std::vector<ProjectFile> made = folder.create({{row.path, "text"}});
            ASSERT_EQ(made.size(), 1U);
            EXPECT_EQ(made.front().path, row.path);
            EXPECT_EQ(made.front().revision, folder.read(row.path).revision);
            EXPECT_EQ(scratch.read(row.path), "text");
        } catch (const FolderError& error) {
            status = error.status;
        }
        EXPECT_EQ(status, row.status);
    }
    EXPECT_EQ(scratch.read("a.json"), "old");
    EXPECT_TRUE(fs::is_empty(outside.path()));
}

TEST(ProjectFolder, MakesAllNewFilesOrNone) {
    const ScratchFolder scratch;
    scratch.write("w.model.json", "mine");
    ProjectFolder folder(scratch.path());
    try {
        folder.create({{"w.json", "{}"}, {"w.model.json", "{}"}});
        FAIL() << "it was there";
    } catch (const FolderError& error) {
        EXPECT_STREQ(error.what(), "'w.model.json' is there already, and is left as it is; give another name");
    }
    const std::string large(ProjectFolder::maximumBytes + 1, ' ');
    EXPECT_THROW(folder.create({{"v.json", "{}"}, {"v.model.json", large}}), FolderError);
    // Each has a good name, but where one is to lie stands the folder of the other.
    try {
        folder.create({{"new/deep/a.json", "{}"}, {"new/deep/a.json/b.json", "{}"}});
        FAIL() << "it was written";
    } catch (const FolderError& error) {
        EXPECT_EQ(error.status, 409U);
        EXPECT_THAT(error.what(), ::testing::Not(::testing::HasSubstr(scratch.path().string())));
    }
    EXPECT_FALSE(fs::exists(scratch.path() / "new")) << "and no folder is left";
    EXPECT_EQ(paths(folder), std::vector<std::string>{"w.model.json"});
    EXPECT_EQ(scratch.read("w.model.json"), "mine");
}

TEST(ProjectFolder, ShowsButNeverWritesWhatIsNotUTF8) {
    const ScratchFolder scratch;
    const std::string latin1 = "{\"name\": \"caf\xe9\"}";
    scratch.write("a.json", latin1);
    scratch.write("b.json", "{\"name\": \"caf\u00e9\"}");
    ProjectFolder folder(scratch.path());
    EXPECT_TRUE(folder.read("b.json").isUtf8);
    const ProjectText shown = folder.read("a.json");
    EXPECT_FALSE(shown.isUtf8);
    EXPECT_EQ(shown.text, "{\"name\": \"caf\uFFFD\"}");
    EXPECT_THROW(folder.save("a.json", shown.text, shown.revision), FolderError);
    EXPECT_EQ(scratch.read("a.json"), latin1);
    scratch.write("a.json", "{}");
    EXPECT_NO_THROW(folder.save("a.json", "{ }", folder.read("a.json").revision)) << "once it is UTF-8";
}

TEST(ProjectFolder, UsesPicturesThatAreItsOwn) {
    const ScratchFolder outside;
    outside.write("secret.png", "");
    const ScratchFolder scratch;
    scratch.write("a/document.json", "");
    scratch.write("a/pictures/1f", "");
    scratch.write("b/document.json", "");
    scratch.write("c/pictures/2f", "");
    fs::create_symlink(outside.path() / "secret.png", scratch.path() / "c/pictures/3f");
    fs::create_directory_symlink(outside.path(), scratch.path() / "b/pictures");
    const ProjectFolder folder(scratch.path());
    EXPECT_EQ(folder.picturesBeside("a/document.json"), scratch.path() / "a/pictures");
    EXPECT_EQ(folder.picturesBeside("b/document.json"), std::nullopt);
    EXPECT_EQ(folder.picturesBeside("c/document.json"), std::nullopt);
    EXPECT_EQ(folder.picturesBeside("../a/document.json"), std::nullopt);
}

TEST(ProjectFolder, HasToBeThere) {
    const ScratchFolder scratch;
    scratch.write("a.json", "");
    EXPECT_THROW(ProjectFolder(scratch.path() / "gone"), IOError);
    EXPECT_THROW(ProjectFolder(scratch.path() / "a.json"), IOError);
}

TEST(ProjectFolder, HasToBeReadable) {
    const AnyoneElse anyone;
    const ScratchFolder scratch;
    for (const fs::perms missing : {fs::perms::owner_read, fs::perms::owner_exec}) {
        fs::create_directory(scratch.path() / "a");
        fs::permissions(scratch.path() / "a", fs::perms::owner_all & ~missing);
        EXPECT_THROW(ProjectFolder(scratch.path() / "a"), IOError);
        fs::remove(scratch.path() / "a");
    }
}

TEST(ProjectFolder, TellsOfOddPaths) {
    const ScratchFolder scratch;
    const ProjectFolder folder(scratch.path());
    const struct {
        std::string path;
        std::string message;
    } rows[] = {
        {std::string("\0", 1), "'\uFFFD' is no path in the folder"},
        {std::string("a\nb\xff.json\0", 10), "'a\uFFFDb\uFFFD.json\uFFFD' is no path in the folder"},
        {"a\x1b[1m.json", "there is no 'a\uFFFD[1m.json'"},
        {std::string(5000, 'a') + ".json", "there is no '" + std::string(5000, 'a') + ".json'"},
    };
    for (const auto& row : rows) {
        try {
            static_cast<void>(folder.read(row.path));
            FAIL() << row.message;
        } catch (const FolderError& error) {
            EXPECT_EQ(error.what(), row.message);
        }
    }
}

TEST(FolderWatch, TellsWhatHasComeChangedAndGone) {
    EXPECT_EQ(changedPaths({{"a", "1"}, {"b", "1"}, {"c", "1"}}, {{"a", "1"}, {"b", "2"}, {"d", "1"}}),
              (std::vector<std::string>{"b", "d", "c"}));
}

}  // namespace
}  // namespace tavrin::cli
