// SPDX-License-Identifier: MIT
#include "cli/http/http_server.h"

#include <atomic>
#include <chrono>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/io_error.h"
#include "tests/http/http_client.h"

namespace tavrin::cli {
namespace {

const std::string aHost = "Host: localhost\r\n";
const std::string aGet = "GET /a HTTP/1.1\r\n" + aHost + "\r\n";

bool becomesTrue(const std::function<bool()>& condition) {
    for (int i = 0; i < 5000 && !condition(); ++i) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return condition();
}

/// Answers with what it was asked; what is below /held when it is told to.
class EchoService final : public HTTPService {
public:
    std::optional<HTTPResponse> refusal(HTTPRequest& request) override {
        if (request.path == "/refused") return failure(403, "refused");
        return std::nullopt;
    }
    void handle(std::shared_ptr<HTTPExchange> exchange) override {
        const std::lock_guard lock(mutex_);
        if (exchange->request.path.starts_with("/held")) {
            held_.push_back(std::move(exchange));
            return;
        }
        const HTTPRequest& request = exchange->request;
        exchange->answer(HTTPResponse::json(request.method + " " + request.path + " " + request.body));
    }
    [[nodiscard]] HTTPResponse failure(unsigned status, std::string_view message) const override {
        return HTTPResponse::failure(status, message);
    }
    void ended(const HTTPRecord& record) override {
        const std::lock_guard lock(mutex_);
        records_.push_back(record);
    }

    [[nodiscard]] std::size_t heldCount() {
        const std::lock_guard lock(mutex_);
        return held_.size();
    }
    /// Answers what was held first.
    void letGo() {
        const std::lock_guard lock(mutex_);
        held_.front()->answer(HTTPResponse::json("held"));
        held_.pop_front();
    }
    [[nodiscard]] bool isFirstGone() {
        const std::lock_guard lock(mutex_);
        return held_.front()->request.cancel.isCancelled();
    }
    [[nodiscard]] std::vector<HTTPRecord> records() {
        const std::lock_guard lock(mutex_);
        return records_;
    }

private:
    std::mutex mutex_;
    std::deque<std::shared_ptr<HTTPExchange>> held_;
    std::vector<HTTPRecord> records_;
};

class HTTPServers : public ::testing::Test {
public:
    explicit HTTPServers(const HTTPLimits& limits = {}) : server(service, limits) {
        server.listen("127.0.0.1", 0);
        thread_ = std::thread([this] { server.run(); });
    }
    ~HTTPServers() override {
        server.stop();
        thread_.join();
    }

protected:
    [[nodiscard]] ClientConnection connection() const { return ClientConnection(server.port()); }
    [[nodiscard]] ClientAnswer ask(const std::string& request, bool isHead = false) const {
        ClientConnection client = connection();
        client.send(request);
        return client.receive(isHead);
    }

    EchoService service;
    HTTPServer server;

private:
    std::thread thread_;
};

TEST_F(HTTPServers, AnswerOverOneConnection) {
    ClientConnection client = connection();
    for (int i = 0; i < 3; ++i) {
        client.send(aGet);
        EXPECT_EQ(client.receive().body, "GET /a ");
    }
    client.send("HEAD /a HTTP/1.1\r\n" + aHost + "\r\n" + aGet);
    EXPECT_EQ(client.receive(true).header("content-length"), "7");
    EXPECT_EQ(client.receive().body, "GET /a ") << "what is sent at once is answered in turn";
    client.send("GET /refused HTTP/1.1\r\n" + aHost + "\r\n" + aGet);
    EXPECT_EQ(client.receive().status, 403);
    EXPECT_EQ(client.receive().body, "GET /a ") << "a refusal without a body does not end the connection";
    client.send("GET /a HTTP/1.1\r\n" + aHost + "Connection: close\r\n\r\n" + aGet);
    EXPECT_EQ(client.receive().header("connection"), "close");
    client.endSending();
    EXPECT_TRUE(client.isEnded()) << "what stands behind the last request is not answered";
}

TEST_F(HTTPServers, TakeBodies) {
    const std::string post = "POST /a HTTP/1.1\r\n" + aHost;
    EXPECT_EQ(ask(post + "Content-Length: 4\r\n\r\nbody").body, "POST /a body");
    EXPECT_EQ(ask(post + "Transfer-Encoding: chunked\r\n\r\n2;x=y\r\nbo\r\n2\r\ndy\r\n0\r\nX: y\r\n\r\n").body,
              "POST /a body");
    ClientConnection client = connection();
    client.send(post + "Expect: 100-continue\r\nContent-Length: 4\r\n\r\n");
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    client.send("body");
    EXPECT_EQ(client.receive().body, "POST /a body");
}

TEST_F(HTTPServers, RefuseWhatMightBeTwoRequests) {
    const std::string smuggled = "GET /smuggled HTTP/1.1\r\n" + aHost + "\r\n";
    const std::string post = "POST /a HTTP/1.1\r\n" + aHost;
    const struct {
        const char* why;
        std::string bytes;
    } rows[] = {
        {"a length and chunks", post + "Content-Length: 6\r\nTransfer-Encoding: chunked\r\n\r\n0\r\n\r\nG" + smuggled},
        {"two lengths", post + "Content-Length: 0\r\nContent-Length: 5\r\n\r\n12345" + smuggled},
        {"a coding that hides", post + "Transfer-Encoding: xchunked\r\nContent-Length: 4\r\n\r\nbody" + smuggled},
        {"a folded coding", post + "Transfer-Encoding:\r\n chunked\r\n\r\n0\r\n\r\n" + smuggled},
        {"a blank before the colon", post + "Content-Length : 4\r\n\r\nbody" + smuggled},
        {"lines that end with LF", "GET /a HTTP/1.1\nHost: a\n\n" + smuggled},
        {"one line that ends with LF", post + "X: a\nContent-Length: 4\r\n\r\nbody" + smuggled},
        {"a chunk's size that is none", post + "Transfer-Encoding: chunked\r\n\r\n0x4\r\nbody\r\n0\r\n\r\n" + smuggled},
        {"a negative chunk", post + "Transfer-Encoding: chunked\r\n\r\n-4\r\nbody\r\n0\r\n\r\n" + smuggled},
        {"a chunk's line that ends with LF",
         post + "Transfer-Encoding: chunked\r\n\r\n4\nbody\r\n0\r\n\r\n" + smuggled},
        {"a chunk that is longer", post + "Transfer-Encoding: chunked\r\n\r\n4\r\nbodybody\r\n0\r\n\r\n" + smuggled},
        {"garbage", "\x16\x03\x01\x02\n" + smuggled},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        ClientConnection client = connection();
        client.send(row.bytes);
        const ClientAnswer answer = client.receive();
        EXPECT_EQ(answer.status, 400);
        EXPECT_EQ(answer.header("connection"), "close");
        client.endSending();
        EXPECT_TRUE(client.isEnded());
    }
    for (const HTTPRecord& record : service.records()) EXPECT_NE(record.path, "/smuggled");
}

class StrictHTTPServers : public HTTPServers {
protected:
    StrictHTTPServers()
        : HTTPServers({.connections = 8,
                       .target = 64,
                       .head = 512,
                       .body = 1000,
                       .bodies = 1500,
                       .dropped = 4000,
                       .headTime = std::chrono::seconds(1)}) {}
};

TEST_F(StrictHTTPServers, RefuseWhatIsTooLarge) {
    const std::string post = "POST /a HTTP/1.1\r\n" + aHost;
    EXPECT_EQ(ask("GET /" + std::string(100, 'a') + " HTTP/1.1\r\n" + aHost + "\r\n").status, 414);
    EXPECT_EQ(ask("GET /" + std::string(9000, 'a')).status, 414) << "also before it ends";
    EXPECT_EQ(ask("GET / HTTP/1.1\r\nX: " + std::string(600, 'a') + "\r\n\r\n").status, 431);
    EXPECT_EQ(ask(post + "Content-Length: 1001\r\n\r\n" + std::string(1001, 'a')).status, 413);
    EXPECT_EQ(ask(post + "Transfer-Encoding: chunked\r\n\r\n7d0\r\n" + std::string(2000, 'a') + "\r\n0\r\n\r\n").status,
              413);
    EXPECT_EQ(ask(post + "Content-Length: 1000\r\n\r\n" + std::string(1000, 'a')).status, 200);
    ClientConnection client = connection();
    client.send(post + "Content-Length: 1000000\r\n\r\n");
    EXPECT_EQ(client.receive().status, 413) << "before the body has come";
    client.send(std::string(3000, 'a'));
    client.send(std::string(100000, 'a'));
    EXPECT_TRUE(client.isEnded()) << "only so much of it is read";
}

TEST_F(StrictHTTPServers, ShareRoomByWhatHasCome) {
    const std::string post = "POST /a HTTP/1.1\r\n" + aHost + "Content-Length: 1000\r\n\r\n";
    std::vector<ClientConnection> sending;
    for (int i = 0; i < 4; ++i) {
        sending.push_back(connection());
        sending.back().send(post);
    }
    const std::string whole(1000, 'a');
    EXPECT_EQ(ask(post + whole).status, 200) << "what is only announced takes no room";
    sending[0].send(std::string(900, 'a'));
    EXPECT_EQ(ask(aGet).status, 200) << "by now that has come";
    sending[1].send(std::string(900, 'a'));
    const ClientAnswer refused = sending[1].receive();
    EXPECT_EQ(refused.status, 503);
    EXPECT_EQ(refused.header("connection"), "close");
    sending[0].send(std::string(100, 'a'));
    EXPECT_EQ(sending[0].receive().body, "POST /a " + whole);
    EXPECT_EQ(ask(post + whole).status, 200) << "and it is given back";
    EXPECT_EQ(
        ask("POST /a HTTP/1.1\r\n" + aHost + "Transfer-Encoding: chunked\r\n\r\n1;" + std::string(140000, 'x')).status,
        400)
        << "a line before a chunk ends";
}

TEST_F(StrictHTTPServers, DoNotWaitForEver) {
    const auto begin = std::chrono::steady_clock::now();
    ClientConnection slow = connection();
    std::atomic<bool> isOver = false;
    std::thread sender([&] {  // a byte at a time does not help
        for (int i = 0; i < 50 && !isOver; ++i) {
            slow.send("G");
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        }
    });
    EXPECT_TRUE(slow.isEnded());
    isOver = true;
    sender.join();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(4));
}

TEST_F(StrictHTTPServers, MakeRoomForOthers) {
    std::vector<ClientConnection> idle;
    for (int i = 0; i < 30; ++i) {
        idle.push_back(connection());
        idle.back().send("GET /slow HTTP/1.1\r\nX: ");
        if (i % 5 == 4) {
            EXPECT_EQ(ask(aGet).status, 200);
        }
    }
    EXPECT_LE(server.connectionCount(), 9U);
}

TEST_F(HTTPServers, TellWhatBecameOfRequests) {
    EXPECT_EQ(ask("HEAD /a?s=secret HTTP/1.1\r\n" + aHost + "traceparent: 00-1-2-01\r\n\r\n", true).status, 200);
    EXPECT_EQ(ask(aGet).status, 200);
    EXPECT_EQ(ask("nonsense\r\n\r\n").status, 400);
    {
        ClientConnection client = connection();
        client.send("GET /held HTTP/1.1\r\n" + aHost + "\r\n");
        EXPECT_TRUE(becomesTrue([&] { return service.heldCount() == 1; }));
    }
    EXPECT_TRUE(becomesTrue([&] { return service.isFirstGone(); })) << "who works on it hears of it";
    ASSERT_TRUE(becomesTrue([&] { return service.records().size() == 4; }));
    EXPECT_EQ(ask("POST /a HTTP/1.1\r\n" + aHost + "Content-Length: 99999999\r\n\r\n").status, 413);
    ASSERT_TRUE(becomesTrue([&] { return service.records().size() == 5; }));
    {
        ClientConnection client = connection();
        client.send("POST /a HTTP/1.1\r\n" + aHost + "Content-Length: 4\r\n\r\nbo");
    }
    ASSERT_TRUE(becomesTrue([&] { return service.records().size() == 6; }));
    const auto records = service.records();
    const struct {
        std::string method;
        std::string path;
        unsigned status;
        std::size_t bytes;
    } rows[] = {{"HEAD", "/a", 200, 0},   {"GET", "/a", 200, 7},   {"", "", 400, 37},
                {"GET", "/held", 499, 0}, {"POST", "/a", 413, 45}, {"POST", "/a", 499, 0}};
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(records[i].method, rows[i].method);
        EXPECT_EQ(records[i].path, rows[i].path);
        EXPECT_EQ(records[i].status, rows[i].status);
        EXPECT_EQ(records[i].bytes, rows[i].bytes);
    }
    EXPECT_EQ(records[0].traceparent, "00-1-2-01");
}

TEST_F(HTTPServers, FinishWhatIsUnderWay) {
    ClientConnection idle = connection();
    idle.send(aGet);
    EXPECT_EQ(idle.receive().status, 200);
    ClientConnection sending = connection();
    sending.send("POST /a HTTP/1.1\r\n" + aHost + "Content-Length: 4\r\n\r\nbo");
    ClientConnection held = connection();
    held.send("GET /held HTTP/1.1\r\n" + aHost + "\r\n");
    ASSERT_TRUE(becomesTrue([&] { return service.heldCount() == 1; }));
    ClientConnection begun = connection();
    begun.send("GET /late HTTP/1.1\r\n");
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    server.drain();
    idle.send(aGet);  // which was on its way
    const ClientAnswer late = idle.receive();
    EXPECT_EQ(late.status, 503);
    EXPECT_EQ(late.header("connection"), "close");
    EXPECT_TRUE(becomesTrue([&] { return !connection().isOpen(); })) << "no one else is let in";
    begun.send(aHost + "\r\n");
    EXPECT_EQ(begun.receive().status, 503);
    sending.send("dy");
    EXPECT_EQ(sending.receive().body, "POST /a body");
    service.letGo();
    const ClientAnswer last = held.receive();
    EXPECT_EQ(last.body, "held");
    EXPECT_EQ(last.header("connection"), "close");
}

TEST(HTTPServerDrain, EndsWhenTheLastConnectionDoes) {
    EchoService service;
    HTTPServer server(service, {});
    server.listen("::1", 0);
    server.listen("127.0.0.1", 0);
    EXPECT_THAT(server.addresses().front(), ::testing::StartsWith("http://[::1]:"));
    std::thread thread([&] { server.run(); });
    server.drain();
    thread.join();  // or the test does not end
}

TEST(HTTPServerListens, WhereItCan) {
    EchoService service;
    HTTPServer server(service, {});
    EXPECT_THROW(server.listen("nowhere", 0), IOError);
    EXPECT_THROW(server.listenOn(0), IOError) << "no socket";
    const FileDescriptor udp(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    EXPECT_THROW(server.listenOn(udp.number()), IOError);
    const FileDescriptor closed(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    EXPECT_THROW(server.listenOn(closed.number()), IOError) << "it does not listen";
}

}  // namespace
}  // namespace tavrin::cli
