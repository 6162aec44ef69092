// SPDX-License-Identifier: MIT
#include "tests/cli/program.h"

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <sys/wait.h>
#include <unistd.h>

namespace tavrin::cli {
namespace {

std::string readFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void connect(int descriptor, int standard) {
    ::dup2(descriptor >= 0 ? descriptor : ::open("/dev/null", O_RDWR), standard);
}

}  // namespace

Workplace::Workplace() {
    std::string name = (std::filesystem::temp_directory_path() / "tavrin-cli-XXXXXX").string();
    folder_ = ::mkdtemp(name.data());
}

Workplace::~Workplace() {
    if (isTemporary_) std::filesystem::remove_all(folder_);
}

pid_t Workplace::start(const std::vector<std::string>& words, int in, int out, int err) const {
    std::vector<std::string> copies{"tavrin"};
    copies.insert(copies.end(), words.begin(), words.end());
    std::vector<char*> arguments;
    arguments.reserve(copies.size() + 1);
    for (std::string& word : copies) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    const pid_t process = ::fork();
    if (process != 0) return process;
    connect(in, STDIN_FILENO);
    connect(out, STDOUT_FILENO);
    connect(err, STDERR_FILENO);
    if (::chdir(folder_.c_str()) == 0) ::execv(TAVRIN_PROGRAM_PATH, arguments.data());
    ::_exit(127);
}

Finished Workplace::run(const std::vector<std::string>& words, std::string_view input) const {
    const Workplace streams;
    streams.write("in", input);
    return runFrom(streams.path("in"), words);
}

Finished Workplace::runIn(const std::string& folder, const std::vector<std::string>& words) const {
    return Workplace(path(folder), false).run(words);
}

Finished Workplace::runFrom(const std::string& file, const std::vector<std::string>& words) const {
    const Workplace streams;
    const auto open = [](const std::filesystem::path& path, int flags) {
        return ::open(path.c_str(), flags | O_CLOEXEC, 0600);
    };
    const int in = open(path(file), O_RDONLY);
    const int out = open(streams.path("out"), O_WRONLY | O_CREAT);
    const int err = open(streams.path("err"), O_WRONLY | O_CREAT);
    const int status = waitFor(start(words, in, out, err));
    for (const int descriptor : {in, out, err}) ::close(descriptor);
    return {status, streams.read("out"), streams.read("err")};
}

void Workplace::write(const std::string& name, std::string_view text) const {
    std::filesystem::create_directories(path(name).parent_path());
    std::ofstream(path(name), std::ios::binary) << text;
}

void Workplace::write(const std::vector<PlacedFile>& files) const {
    for (const PlacedFile& file : files) write(file.name, file.text);
}

std::string Workplace::read(const std::string& name) const { return readFile(path(name)); }

std::vector<std::string> Workplace::files() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder_))
        if (!entry.is_directory()) names.push_back(entry.path().lexically_relative(folder_).string());
    std::sort(names.begin(), names.end());
    return names;
}

std::vector<std::string> joined(std::vector<std::string> words, const std::vector<std::string>& more) {
    words.insert(words.end(), more.begin(), more.end());
    return words;
}

std::vector<std::string> linesOf(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty()) {
        lines.emplace_back(text.substr(0, text.find('\n')));
        text.remove_prefix(std::min(lines.back().size() + 1, text.size()));
    }
    return lines;
}

int waitFor(pid_t process) {
    int status = 0;
    ::waitpid(process, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

JSON errorMember(const Finished& finished, std::string_view key) {
    std::string_view text = finished.err;
    if (text.ends_with('\n')) text.remove_suffix(1);
    const JSON parsed = JSON::parse(text.substr(text.rfind('\n') + 1));
    const JSON* const error = parsed.find("error");
    const JSON* const member = error ? error->find(key) : nullptr;
    return member ? *member : JSON();
}

std::string errorText(const Finished& finished, std::string_view key) {
    return errorMember(finished, key).description();
}

}  // namespace tavrin::cli
