// SPDX-License-Identifier: MIT
#include "cli/preview/preview_server.h"

#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>

#include "cli/io_error.h"
#include "tests/preview/requests.h"

namespace tavrin::cli {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

const std::string host = "Host: 127.0.0.1:PORT\r\n";
const std::string post = "POST /SECRET/ HTTP/1.1\r\n" + host + "Content-Type: application/json\r\n";

std::string get(const std::string& path) { return "GET /SECRET" + path + " HTTP/1.1\r\n" + host; }
const std::string end = "Connection: close\r\n\r\n";

std::string withoutDate(std::string answer) {
    const std::size_t begin = answer.find("Date: ");
    return answer.erase(begin, answer.find('\n', begin) - begin);
}

HTTPResponse echo(const HTTPRequest& request) {
    return HTTPResponse::json(request.method + " " + request.path + " " + request.parameter("q") + " " + request.body);
}

TEST(PreviewServer, AnswersOneRequestAfterTheOther) {
    const RunningServer running(echo);
    const std::string answers =
        running.send("GET /SECRET/a%20b?q=%C3%A9 HTTP/1.1\r\n" + host + "\r\nPOST /SECRET/c HTTP/1.1\r\n" + host +
                     "Content-Type: application/json\r\nContent-Length: 4\r\n"
                     "Connection: close\r\n\r\nbody");
    EXPECT_THAT(answers, HasSubstr("GET /a b é "));
    EXPECT_THAT(answers, HasSubstr("POST /c  body"));
    const std::string text(std::size_t{5} << 20, 'x');
    EXPECT_THAT(running.send(post + "Content-Length: 5242880\r\n" + end + text), EndsWith(text));
    EXPECT_THAT(running.send(post + "Transfer-Encoding: chunked\r\n" + end + "500000\r\n" + text + "\r\n0\r\n\r\n"),
                EndsWith(text));
}

TEST(PreviewServer, RefusesWhatIsTooLargeOrNoRequest) {
    const RunningServer running(echo);
    EXPECT_THAT(running.send("nonsense\r\n\r\n"), StartsWith("HTTP/1.1 400"));
    EXPECT_THAT(running.send("GET /SECRET/ HTTP/1.1\r\n" + host + "X: " + std::string(20000, 'x') + "\r\n\r\n"),
                StartsWith("HTTP/1.1 431"));
    EXPECT_THAT(running.send("POST /SECRET/ HTTP/1.1\r\n" + host + "Content-Length: 99999999\r\n\r\n"),
                StartsWith("HTTP/1.1 413"));
    EXPECT_THAT(running.send("GET /SECRET/ HTTP/1.1\r\n" + host + host + "\r\n"), StartsWith("HTTP/1.1 400"));
    const std::string body(std::size_t{17} << 20, 'x');
    EXPECT_THAT(running.send(post + "Content-Length: 17825792\r\n\r\n" + body), StartsWith("HTTP/1.1 413"))
        << "also to one that goes on sending";
    const std::string chunk = "1;" + std::string(std::size_t{1} << 20, 'x');
    EXPECT_THAT(running.send(post + "Transfer-Encoding: chunked\r\n\r\n" + chunk), StartsWith("HTTP/1.1 400"));
}

TEST(PreviewServer, AnswersHeadAsGetWithoutTheBody) {
    const RunningServer running(echo);
    const std::string get = running.send("GET /SECRET/a HTTP/1.1\r\n" + host + "Connection: close\r\n\r\n");
    const std::string both = running.send("HEAD /SECRET/a HTTP/1.1\r\n" + host + "\r\nGET /SECRET/a HTTP/1.1\r\n" +
                                          host + "Connection: close\r\n\r\n");
    EXPECT_THAT(get, HasSubstr("Content-Length: 8"));
    const std::size_t second = both.find("HTTP/1.1", 1);
    ASSERT_NE(second, std::string::npos);
    EXPECT_THAT(both.substr(0, second), HasSubstr("Content-Length: 8"));
    EXPECT_THAT(both.substr(0, second), EndsWith("\r\n\r\n"));
    EXPECT_EQ(withoutDate(both.substr(second)), withoutDate(get));
}

TEST(PreviewServer, SaysWhichMethodsAreAllowed) {
    const RunningServer running([](const HTTPRequest&) { return HTTPResponse{.status = 405, .allow = "POST"}; });
    EXPECT_THAT(running.send("GET /SECRET/ HTTP/1.1\r\n" + host + "Connection: close\r\n\r\n"),
                HasSubstr("Allow: POST\r\n"));
}

TEST(PreviewServer, IsNeverFull) {
    const RunningServer running(echo);
    const std::string whole = "GET /SECRET/whole HTTP/1.1\r\n" + host + "\r\n";
    const std::string kinds[] = {"", "GET /SECRET/ HT", post + "Content-Length: 9\r\n\r\nbody", whole};
    std::vector<FileDescriptor> idle;
    for (int i = 0; i < 200; ++i) idle.push_back(running.begin(kinds[i % 4]));
    EXPECT_THAT(running.send("GET /SECRET/page HTTP/1.1\r\n" + host + "Connection: close\r\n\r\n"),
                HasSubstr("GET /page"));
    EXPECT_EQ(received(idle.front(), std::chrono::seconds(2)), "") << "the oldest has gone";
}

TEST(PreviewServer, WaitsAFewSecondsForARequest) {
    const RunningServer running(echo);
    const auto begin = std::chrono::steady_clock::now();
    const FileDescriptor silent = running.begin("");
    const FileDescriptor half = running.begin("GET /SECRET/ HTTP/1.1\r\nHost: 127");
    EXPECT_EQ(received(silent, std::chrono::seconds(10)), "");
    EXPECT_EQ(received(half, std::chrono::seconds(10)), "");
    const auto time = std::chrono::steady_clock::now() - begin;
    EXPECT_GT(time, std::chrono::seconds(2));
    EXPECT_LT(time, std::chrono::seconds(9));
}

TEST(PreviewServer, LetsTheOldestOfTooManyListenersGo) {
    RunningServer running([](const HTTPRequest&) { return HTTPResponse{.isEventStream = true}; });
    const std::string request = "GET /SECRET/ HTTP/1.1\r\n" + host + "\r\n";
    std::vector<FileDescriptor> listeners;
    for (int i = 0; i < 17; ++i) {
        listeners.push_back(running.begin(request));
        std::array<char, 16> head{};
        ASSERT_EQ(::read(listeners.back().number(), head.data(), head.size()), 16);
    }
    EXPECT_THAT(received(listeners.front(), std::chrono::seconds(5)), Not(HasSubstr("data:")));
    running.server().broadcast("{}");
    EXPECT_THAT(received(listeners.back(), std::chrono::seconds(1)), HasSubstr("data: {}"));
}

TEST(PreviewServer, TellsWhatAHandlerThrows) {
    const RunningServer running([](const HTTPRequest&) -> HTTPResponse { throw std::runtime_error("broken"); });
    const std::string answer = running.send("GET /SECRET/ HTTP/1.1\r\n" + host + "Connection: close\r\n\r\n");
    EXPECT_THAT(answer, StartsWith("HTTP/1.1 500"));
    EXPECT_THAT(answer, HasSubstr("broken"));
}

TEST(PreviewServer, TellsListenersWhatHappens) {
    RunningServer running([](const HTTPRequest&) { return HTTPResponse{.isEventStream = true}; });
    std::string heard;
    std::thread listener([&] { heard = running.send("GET /SECRET/events HTTP/1.1\r\n" + host + "\r\n"); });
    while (!running.server().hasListeners()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    running.server().broadcast("{\"a\":1}");
    listener.join();
    EXPECT_THAT(heard, HasSubstr("Content-Type: text/event-stream"));
    EXPECT_THAT(heard, HasSubstr("data: {\"a\":1}\n\n"));
    for (int i = 0; i < 1000 && running.server().hasListeners(); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    EXPECT_FALSE(running.server().hasListeners()) << "one that has gone is forgotten";
}

TEST(PreviewServer, AnswersManyAtOnce) {
    const RunningServer running(echo);
    std::atomic<int> answered = 0;
    std::vector<std::thread> clients;
    for (int i = 0; i < 16; ++i)
        clients.emplace_back([&] {
            const std::string answer =
                running.send("GET /SECRET/many HTTP/1.1\r\n" + host + "Connection: close\r\n\r\n");
            if (answer.starts_with("HTTP/1.1 200")) ++answered;
        });
    for (std::thread& client : clients) client.join();
    EXPECT_EQ(answered, 16);
}

TEST(PreviewServer, IsNowhereButBehindItsSecret) {
    std::atomic<int> handled = 0;
    const RunningServer running([&](const HTTPRequest&) {
        ++handled;
        return HTTPResponse{};
    });
    const auto ask = [&](const std::string& request) { return withoutDate(running.send(request)); };
    const std::string nothing = ask("GET / HTTP/1.1\r\n" + host + end);
    EXPECT_THAT(nothing, StartsWith("HTTP/1.1 404"));
    const std::string paths[] = {"/SECRET",
                                 "//SECRET/",
                                 "/SECRET0/",
                                 "/SECRE/",
                                 "/preview.js",
                                 "/api/files",
                                 "SECRET/",
                                 "/" + std::string(32, '0') + "/",
                                 "http://127.0.0.1:PORT/SECRET/"};
    for (const std::string& path : paths) {
        EXPECT_EQ(ask("GET " + path + " HTTP/1.1\r\n" + host + end), nothing) << path;
        EXPECT_EQ(ask("GET " + path + " HTTP/1.1\r\nHost: evil.example\r\n" + end), nothing) << path;
        const std::string large = "Content-Type: application/json\r\nContent-Length: 16000000\r\n\r\nbody";
        EXPECT_EQ(ask("POST " + path + " HTTP/1.1\r\n" + host + large), nothing) << "the body is not awaited";
    }
    EXPECT_EQ(handled, 0);
    EXPECT_THAT(running.send(get("/") + end), StartsWith("HTTP/1.1 200"));
}

/// Answers what takes long when it is cancelled, and all else at once.
struct Patience {
    std::atomic<int> begun = 0;
    std::atomic<int> ended = 0;

    static bool takesLong(const HTTPRequest& request) { return request.path.starts_with("/long"); }
    HTTPResponse operator()(const HTTPRequest& request) {
        if (!takesLong(request) || request.path == "/long/but-not-now") return echo(request);
        ++begun;
        while (!request.cancel.isCancelled()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
        ++ended;
        return {};
    }
};

bool comesTrue(const std::function<bool()>& condition) {
    for (int i = 0; i < 5000 && !condition(); ++i) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return condition();
}

TEST(PreviewServer, AnswersWhileOthersTakeLongUntilTheyAreGivenUp) {
    Patience patience;
    const RunningServer running(std::ref(patience), &Patience::takesLong);
    std::vector<FileDescriptor> waiting;
    for (int i = 0; i < 10; ++i) waiting.push_back(running.begin(get("/long") + "\r\n"));
    EXPECT_TRUE(comesTrue([&] { return patience.begun >= 2; }));
    EXPECT_THAT(running.send(get("/page") + end), HasSubstr("GET /page"));
    EXPECT_EQ(patience.ended, 0);
    waiting.clear();
    EXPECT_TRUE(comesTrue([&] { return patience.ended == patience.begun; }));
    EXPECT_THAT(running.send(get("/long/but-not-now") + end), HasSubstr("GET /long/but-not-now"));
    EXPECT_LE(patience.begun, 4) << "those that waited for their turn have not begun";
    EXPECT_EQ(patience.ended, patience.begun);
}

TEST(PreviewServer, LetsThreadsGiveBackWhatTheyKeepOnceNoPageListens) {
    std::atomic<int> kept = 0;
    thread_local bool isKept = false;
    {
        RunningServer running(
            [&](const HTTPRequest& request) {
                if (request.path == "/events") return HTTPResponse{.isEventStream = true};
                if (!std::exchange(isKept, true)) ++kept;
                return echo(request);
            },
            [](const HTTPRequest& request) { return request.path == "/long"; },
            [&] {
                if (std::exchange(isKept, false)) --kept;
            });
        {
            const FileDescriptor page = running.begin(get("/events") + "\r\n");
            EXPECT_TRUE(comesTrue([&] { return running.server().hasListeners(); }));
            EXPECT_THAT(running.send(get("/long") + end), HasSubstr("GET /long"));
            std::this_thread::sleep_for(std::chrono::milliseconds(1500));
            EXPECT_EQ(kept, 1) << "a page still listens";
        }
        EXPECT_TRUE(comesTrue([&] { return kept == 0; }));
        EXPECT_THAT(running.send(get("/long") + end), HasSubstr("GET /long"));
    }
    EXPECT_EQ(kept, 0) << "also when the server ends";
}

TEST(PreviewServer, AnswersWhoHasNothingMoreToSend) {
    const RunningServer running([](const HTTPRequest& request) {
        const bool isSlow = request.path == "/slow";
        std::this_thread::sleep_for(std::chrono::milliseconds(isSlow ? 500 : 20));
        return request.cancel.isCancelled() ? HTTPResponse{} : echo(request);
    });
    const struct {
        const char* why;
        std::string requests;
        std::vector<std::string> answered;
    } rows[] = {
        {"at once", get("/fast") + "\r\n", {"GET /fast"}},
        {"later", get("/slow") + "\r\n", {"GET /slow"}},
        {"one after the other", get("/slow") + "\r\n" + get("/fast") + "\r\n", {"GET /slow", "GET /fast"}},
        {"of an older version", "GET /SECRET/slow HTTP/1.0\r\n" + host + "\r\n", {"GET /slow"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const FileDescriptor socket = running.begin(row.requests);
        ::shutdown(socket.number(), SHUT_WR);
        const std::string answers = received(socket, std::chrono::seconds(5));
        for (const std::string& answer : row.answered) EXPECT_THAT(answers, HasSubstr(answer));
    }
}

TEST(PreviewServer, KeepsWhatIsSentWhileItAnswers) {
    const RunningServer running([](const HTTPRequest& request) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        return echo(request);
    });
    const FileDescriptor socket = running.begin(get("/first") + "\r\n" + "GET /");
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    ASSERT_TRUE(writeAll(socket.number(), running.addressed(get("/second") + end).substr(5)));
    const std::string answers = received(socket, std::chrono::seconds(2));
    EXPECT_THAT(answers, HasSubstr("GET /first"));
    EXPECT_THAT(answers, EndsWith("GET /second  "));
}

/// The answer to one of several requests, whichever comes first.
std::string firstAnswer(const std::vector<FileDescriptor>& sockets) {
    std::vector<pollfd> asked;
    for (const FileDescriptor& socket : sockets) asked.push_back({socket.number(), POLLIN, 0});
    constexpr int patience = 30000;
    ::poll(asked.data(), asked.size(), patience);
    for (std::size_t i = 0; i < asked.size(); ++i)
        if (asked[i].revents != 0) return received(sockets[i], std::chrono::seconds(1));
    return {};
}

TEST(PreviewServer, BoundsAllBodiesTogether) {
    const RunningServer running(echo);
    const std::size_t largest = std::size_t{16} << 20;
    const std::string most(largest - 1, 'x');
    std::vector<FileDescriptor> senders;
    for (int i = 0; i < 4; ++i) senders.push_back(running.begin(post + "Content-Length: 16777216\r\n\r\n" + most));
    senders.push_back(running.begin(post + "Content-Length: 1000\r\n\r\n" + std::string(999, 'x')));
    EXPECT_THAT(firstAnswer(senders), StartsWith("HTTP/1.1 503")) << "one of them is too many";
    EXPECT_THAT(running.send(get("/") + end), StartsWith("HTTP/1.1 200"));
    senders.clear();
    const std::string small = post + "Content-Length: 4\r\n" + end + "body";
    EXPECT_TRUE(comesTrue([&] { return running.send(small).starts_with("HTTP/1.1 200"); }));
}

TEST(PreviewServer, CancelsWhatIsAtWorkWhenItStops) {
    Patience patience;
    {
        const RunningServer running(std::ref(patience), &Patience::takesLong);
        const FileDescriptor waiting = running.begin(get("/long") + "\r\n");
        EXPECT_TRUE(comesTrue([&] { return patience.begun == 1; }));
        const FileDescriptor open = running.begin("");
    }
    EXPECT_EQ(patience.ended, 1);
}

TEST(PreviewServerDeathTest, EndsTheProcessAtTheSecondSignal) {
    const auto interruptTwice = [] {
        std::atomic<bool> isBegun = false;
        RunningServer running([&](const HTTPRequest&) -> HTTPResponse {
            isBegun = true;
            while (true) std::this_thread::sleep_for(std::chrono::seconds(1));
        });
        std::atomic<bool> isStopping = false;
        running.server().stopOnSignals([&] { isStopping = true; });
        const FileDescriptor waiting = running.begin(get("/") + "\r\n");
        comesTrue([&] { return isBegun.load(); });
        ::kill(::getpid(), SIGTERM);
        if (comesTrue([&] { return isStopping.load(); })) ::kill(::getpid(), SIGTERM);
    };
    EXPECT_EXIT(interruptTwice(), ::testing::KilledBySignal(SIGTERM), "");
}

TEST(PreviewServer, HasAPortForItself) {
    const PreviewServer first(0);
    EXPECT_NE(first.port(), 0);
    EXPECT_THROW(PreviewServer second(first.port()), IOError);
}

}  // namespace
}  // namespace tavrin::cli
