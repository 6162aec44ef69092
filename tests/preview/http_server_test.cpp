#include "cli/preview/http_server.h"

#include <atomic>
#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/io_error.h"
#include "tests/preview/requests.h"

namespace tavrin::cli {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

const std::string host = "Host: 127.0.0.1:PORT\r\n";

HTTPResponse echo(const HTTPRequest& request) {
    return HTTPResponse::json(request.method + " " + request.path + " " + request.parameter("q") + " " + request.body);
}

TEST(HTTPServer, AnswersOneRequestAfterTheOther) {
    const RunningServer running(echo);
    const std::string answers =
        running.send("GET /a%20b?q=%C3%A9 HTTP/1.1\r\n" + host + "\r\nPOST /c HTTP/1.1\r\n" + host +
                     "Content-Type: application/json\r\nContent-Length: 4\r\n"
                     "Connection: close\r\n\r\nbody");
    EXPECT_THAT(answers, HasSubstr("GET /a b é "));
    EXPECT_THAT(answers, HasSubstr("POST /c  body"));
}

TEST(HTTPServer, RefusesWhatIsTooLargeOrNoRequest) {
    const RunningServer running(echo);
    EXPECT_THAT(running.send("nonsense\r\n\r\n"), StartsWith("HTTP/1.1 400"));
    EXPECT_THAT(running.send("GET / HTTP/1.1\r\n" + host + "X: " + std::string(20000, 'x') + "\r\n\r\n"),
                StartsWith("HTTP/1.1 413"));
    EXPECT_THAT(running.send("POST / HTTP/1.1\r\n" + host + "Content-Length: 99999999\r\n\r\n"),
                StartsWith("HTTP/1.1 413"));
}

TEST(HTTPServer, TellsWhatAHandlerThrows) {
    const RunningServer running([](const HTTPRequest&) -> HTTPResponse { throw std::runtime_error("broken"); });
    const std::string answer = running.send("GET / HTTP/1.1\r\n" + host + "Connection: close\r\n\r\n");
    EXPECT_THAT(answer, StartsWith("HTTP/1.1 500"));
    EXPECT_THAT(answer, HasSubstr("broken"));
}

TEST(HTTPServer, TellsListenersWhatHappens) {
    RunningServer running([](const HTTPRequest&) { return HTTPResponse{.isEventStream = true}; });
    std::string heard;
    std::thread listener([&] { heard = running.send("GET /events HTTP/1.1\r\n" + host + "\r\n"); });
    while (!running.server().hasListeners()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    running.server().broadcast("{\"a\":1}");
    listener.join();
    EXPECT_THAT(heard, HasSubstr("Content-Type: text/event-stream"));
    EXPECT_THAT(heard, HasSubstr("data: {\"a\":1}\n\n"));
    for (int i = 0; i < 1000 && running.server().hasListeners(); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    EXPECT_FALSE(running.server().hasListeners()) << "one that has gone is forgotten";
}

TEST(HTTPServer, AnswersManyAtOnce) {
    const RunningServer running(echo);
    std::atomic<int> answered = 0;
    std::vector<std::thread> clients;
    for (int i = 0; i < 16; ++i)
        clients.emplace_back([&] {
            const std::string answer = running.send("GET /many HTTP/1.1\r\n" + host + "Connection: close\r\n\r\n");
            if (answer.starts_with("HTTP/1.1 200")) ++answered;
        });
    for (std::thread& client : clients) client.join();
    EXPECT_EQ(answered, 16);
}

TEST(HTTPServer, HasAPortForItself) {
    const HTTPServer first(0);
    EXPECT_NE(first.port(), 0);
    EXPECT_THROW(HTTPServer second(first.port()), IOError);
}

}  // namespace
}  // namespace tavrin::cli
