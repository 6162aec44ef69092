// SPDX-License-Identifier: MIT
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/resource.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/file_descriptor.h"
#include "tests/cli/program.h"
#include "tests/http/http_client.h"

namespace tavrin::cli {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

/// `tavrin serve` with its outputs at hand.
class ServingProgram {
public:
    ServingProgram(const Workplace& place, std::vector<std::string> words) {
        int out[2];
        int err[2];
        EXPECT_EQ(::pipe2(out, O_CLOEXEC), 0);
        EXPECT_EQ(::pipe2(err, O_CLOEXEC), 0);
        process = place.start(joined({"serve", "--listen", "127.0.0.1:0"}, words), -1, out[1], err[1]);
        ::close(out[1]);
        ::close(err[1]);
        out_ = FileDescriptor(out[0]);
        err_ = FileDescriptor(err[0]);
        const std::string said = line(err_);
        const std::size_t colon = said.rfind(':');
        port = static_cast<std::uint16_t>(std::atoi(said.substr(colon + 1).c_str()));
    }

    [[nodiscard]] static std::string line(const FileDescriptor& from) {
        std::string text;
        for (char letter = 0; ::read(from.number(), &letter, 1) == 1 && letter != '\n';) text += letter;
        return text;
    }
    [[nodiscard]] std::string outLine() const { return line(out_); }
    [[nodiscard]] std::string errLine() const { return line(err_); }

    [[nodiscard]] ClientAnswer get(const std::string& target) const {
        ClientConnection client(port);
        client.send("GET " + target + " HTTP/1.1\r\nHost: localhost\r\n\r\n");
        return client.receive();
    }

    pid_t process = -1;
    std::uint16_t port = 0;

private:
    FileDescriptor out_{-1};
    FileDescriptor err_{-1};
};

TEST(Serve, AnswersLogsAndEnds) {
    const Workplace place;
    place.write("hello.json", hello);
    const ServingProgram program(place, {"."});
    ASSERT_NE(program.port, 0);
    const ClientAnswer answer = program.get("/v1/widgets/hello.png?date=2026-03-01T09:41:00Z&scale=2");
    EXPECT_EQ(answer.status, 200);
    EXPECT_THAT(program.outLine(), StartsWith(R"({"method":"GET","path":"/v1/widgets/hello.png","status":200,)"));
    EXPECT_EQ(
        place.run({"render", "hello.json", "--date", "2026-03-01T09:41:00Z", "--scale", "2", "--time-zone", "UTC"})
            .status,
        0);
    EXPECT_EQ(answer.body, place.read("hello.png")) << "the bytes of `tavrin render`";
    ::kill(program.process, SIGTERM);
    EXPECT_EQ(waitFor(program.process), 0);
}

TEST(Serve, ReadsItsSettingsAnew) {
    const Workplace place;
    place.write("hello.json", hello);
    place.write("serve.toml", "appearance = \"light\"\n");
    const ServingProgram program(place, {".", "--config", "serve.toml"});
    const std::string light = program.get("/v1/widgets/hello.png").body;
    place.write("serve.toml", "appearance = \"dark\"\n");
    ::kill(program.process, SIGHUP);
    EXPECT_EQ(program.errLine(), "The settings were read anew.");
    EXPECT_NE(program.get("/v1/widgets/hello.png").body, light);
    place.write("serve.toml", "appearance = \"grey\"\n");
    ::kill(program.process, SIGHUP);
    EXPECT_THAT(program.errLine(), StartsWith("The settings stay as they were: "));
    EXPECT_EQ(program.get("/v1/widgets/hello.png").status, 200);
    ::kill(program.process, SIGINT);
    EXPECT_EQ(waitFor(program.process), 0);
}

TEST(Serve, EndsAtOnceAtTheSecondSignal) {
    const Workplace place;
    const ServingProgram program(place, {"."});
    ClientConnection slow(program.port);
    slow.send("POST /v1/render HTTP/1.1\r\nHost: a\r\nContent-Type: application/json\r\nContent-Length: 9\r\n\r\n");
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    ::kill(program.process, SIGTERM);
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    ::kill(program.process, SIGTERM);
    EXPECT_EQ(waitFor(program.process), -SIGTERM);
}

TEST(Serve, TakesASocketOver) {
    const Workplace place;
    place.write("hello.json", hello);
    const FileDescriptor listening(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    ASSERT_EQ(::listen(listening.number(), 16), 0);  // on any port
    sockaddr_in address{};
    socklen_t size = sizeof address;
    // NOLINTNEXTLINE: the interface of sockets
    ASSERT_EQ(::getsockname(listening.number(), reinterpret_cast<sockaddr*>(&address), &size), 0);
    const pid_t process = ::fork();
    if (process == 0) {
        ::dup2(listening.number(), 3);
        ::setenv("LISTEN_FDS", "1", 1);
        ::setenv("LISTEN_PID", std::to_string(::getpid()).c_str(), 1);
        if (::chdir(place.path(".").c_str()) == 0)
            ::execl(TAVRIN_PROGRAM_PATH, "tavrin", "serve", ".", "--listen", "127.0.0.1:1", nullptr);
        ::_exit(127);
    }
    ClientConnection client(ntohs(address.sin_port));
    client.send("GET /v1/widgets/hello.svg HTTP/1.1\r\nHost: localhost\r\n\r\n");
    EXPECT_EQ(client.receive().status, 200);
    ::kill(process, SIGTERM);
    EXPECT_EQ(waitFor(process), 0);
}

TEST(Serve, RefusesOneRequestForWantOfMemory) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "sanitizers need more memory than that";
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
    GTEST_SKIP() << "sanitizers need more memory than that";
#endif
#endif
    const Workplace place;
    place.write("hello.json", hello);
    const ServingProgram program(place, {".", "--budget", "usual", "--workers", "1"});
    EXPECT_EQ(program.get("/v1/widgets/hello.png").status, 200);
    constexpr rlim_t tooLittle = rlim_t{350} << 20;  // for 100 megapixels
    const rlimit limit{.rlim_cur = tooLittle, .rlim_max = tooLittle};
    ASSERT_EQ(::prlimit(program.process, RLIMIT_AS, &limit, nullptr), 0);
    const ClientAnswer large = program.get("/v1/widgets/hello.png?size=2000x2000&scale=5");
    EXPECT_EQ(large.status, 503);
    EXPECT_THAT(large.body, HasSubstr("memory"));
    EXPECT_EQ(large.header("retry-after"), "1");
    EXPECT_EQ(program.get("/v1/widgets/hello.png?scale=2").status, 200);
    ::kill(program.process, SIGTERM);
    EXPECT_EQ(waitFor(program.process), 0);
}

TEST(Serve, RefusesWhatItCannotServe) {
    const Workplace place;
    place.write("a.json", hello);
    const struct {
        const char* why;
        std::vector<std::string> words;
        std::string type;
    } rows[] = {
        {"no such folder", {"gone"}, "IOError"},
        {"a file", {"a.json"}, "IOError"},
        {"keys that are not there", {".", "--key-file", "gone"}, "IOError"},
        {"an address that is another's", {".", "--listen", "192.0.2.1:8080"}, "IOError"},
        {"an address that is none", {".", "--listen", "nowhere"}, "UsageError"},
        {"two folders", {".", "."}, "UsageError"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const Finished finished = place.run(joined(joined({"serve"}, row.words), {"--errors", "json"}));
        EXPECT_EQ(finished.status, row.type == "UsageError" ? 2 : 1);
        EXPECT_EQ(errorText(finished, "type"), row.type);
    }
}

}  // namespace
}  // namespace tavrin::cli
