// SPDX-License-Identifier: MIT
#include "cli/serve/drawing_queue.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace tavrin::cli {
namespace {

using namespace std::chrono_literals;

/// Someone who has asked, and what came of it.
struct Asker {
    std::promise<HTTPResponse> promise;
    std::future<HTTPResponse> answer = promise.get_future();
    std::shared_ptr<HTTPExchange> exchange = std::make_shared<HTTPExchange>(
        HTTPRequest{.method = "GET", .path = "/"}, [this](HTTPResponse response) { promise.set_value(response); });

    [[nodiscard]] bool isAnswered() const { return answer.wait_for(0s) == std::future_status::ready; }
};

/// Work that waits until it is let go or cancelled.
struct Gate {
    std::atomic<int> begun = 0;
    std::atomic<int> cancelled = 0;
    std::atomic<bool> isOpen = false;

    DrawingQueue::Work work(const std::string& body) {
        return [this, body](const DrawingQueue::Limits& limits) {
            ++begun;
            while (!isOpen) {
                if (limits.cancel.isCancelled()) {
                    ++cancelled;
                    return WorkOutcome{};
                }
                if (DrawingQueue::Clock::now() >= limits.end)
                    return WorkOutcome{.response = {.status = 504}, .isOutOfTime = true};
                std::this_thread::sleep_for(1ms);
            }
            return WorkOutcome{.response = {.body = body}};
        };
    }
};

class DrawingQueueThreads : public ::testing::Test {
protected:
    DrawingQueue::Admission admit(DrawingQueue& queue, const std::string& key, Asker& asker, const std::string& body,
                                  std::chrono::milliseconds time = 10s) {
        return queue.admit(key, nullptr, gate.work(body),
                           {asker.exchange, DrawingQueue::Clock::now() + time,
                            [](const WorkOutcome& outcome) { return outcome.response; }});
    }
    static bool comes(const std::function<bool()>& condition) {
        for (int i = 0; i < 5000 && !condition(); ++i) std::this_thread::sleep_for(1ms);
        return condition();
    }

    Gate gate;
};

using enum DrawingQueue::Admission;

TEST_F(DrawingQueueThreads, WorkOnceForAllWhoAskTheSame) {
    DrawingQueue queue(1, 2);
    std::vector<Asker> askers(8);
    EXPECT_EQ(admit(queue, "a", askers[0], "first"), taken);
    EXPECT_TRUE(comes([&] { return gate.begun == 1; }));
    for (std::size_t i = 1; i < 6; ++i) EXPECT_EQ(admit(queue, "a", askers[i], "again"), taken);
    EXPECT_EQ(admit(queue, "b", askers[6], "other"), taken);
    EXPECT_EQ(queue.waiting(), 1U) << "whoever joins takes no place";
    gate.isOpen = true;
    for (std::size_t i = 0; i < 6; ++i) EXPECT_EQ(askers[i].answer.get().body, "first");
    EXPECT_EQ(askers[6].answer.get().body, "other");
    EXPECT_EQ(gate.begun, 2);
    EXPECT_EQ(admit(queue, "a", askers[7], "anew"), taken);
    EXPECT_EQ(askers[7].answer.get().body, "anew") << "what is over is not shared";
}

TEST_F(DrawingQueueThreads, WorkOnForWhoStays) {
    DrawingQueue queue(1, 2);
    Asker first;
    Asker second;
    ASSERT_EQ(admit(queue, "a", first, "picture"), taken);
    EXPECT_TRUE(comes([&] { return gate.begun == 1; }));
    ASSERT_EQ(admit(queue, "a", second, "never"), taken);
    first.exchange->leave();
    std::this_thread::sleep_for(20ms);
    EXPECT_EQ(gate.cancelled, 0);
    gate.isOpen = true;
    EXPECT_EQ(second.answer.get().body, "picture");
    EXPECT_FALSE(first.isAnswered());
}

TEST_F(DrawingQueueThreads, CancelWhatNobodyWaitsFor) {
    DrawingQueue queue(1, 4);
    Asker running;
    Asker waiting;
    Asker next;
    ASSERT_EQ(admit(queue, "a", running, ""), taken);
    EXPECT_TRUE(comes([&] { return gate.begun == 1; }));
    ASSERT_EQ(admit(queue, "b", waiting, ""), taken);
    waiting.exchange->leave();
    EXPECT_EQ(queue.waiting(), 0U);
    running.exchange->leave();
    EXPECT_TRUE(comes([&] { return gate.cancelled == 1; }));
    gate.isOpen = true;
    ASSERT_EQ(admit(queue, "a", next, "anew"), taken);
    EXPECT_EQ(next.answer.get().body, "anew") << "not what was cancelled";
    EXPECT_EQ(gate.begun, 2);
}

TEST_F(DrawingQueueThreads, RefuseWhatTheQueueHasNoPlaceFor) {
    DrawingQueue queue(1, 2);
    std::vector<Asker> askers(4);
    EXPECT_EQ(admit(queue, "", askers[0], "0"), taken);
    EXPECT_TRUE(comes([&] { return gate.begun == 1; }));
    EXPECT_EQ(admit(queue, "", askers[1], "1"), taken);
    EXPECT_EQ(admit(queue, "", askers[2], "2"), taken);
    EXPECT_EQ(admit(queue, "", askers[3], "3"), refused);
    gate.isOpen = true;
    for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(askers[i].answer.get().body, std::to_string(i));
    EXPECT_FALSE(askers[3].isAnswered());
}

TEST_F(DrawingQueueThreads, TryAgainForWhoHasTimeLeft) {
    DrawingQueue queue(1, 2);
    Asker first;
    Asker second;
    ASSERT_EQ(admit(queue, "a", first, "", 100ms), taken);
    EXPECT_TRUE(comes([&] { return gate.begun == 1; }));
    ASSERT_EQ(admit(queue, "a", second, "", 10s), taken);
    EXPECT_EQ(first.answer.get().status, 504U);
    EXPECT_TRUE(comes([&] { return gate.begun == 2; }));
    EXPECT_FALSE(second.isAnswered());
    gate.isOpen = true;
    EXPECT_EQ(second.answer.get().status, 200U);
}

TEST_F(DrawingQueueThreads, AnswerWithWhatIsKnown) {
    DrawingQueue queue(1, 1);
    Asker asker;
    const auto known = std::make_shared<const ServedPicture>(ServedPicture{.tag = "\"known\""});
    const auto present = [](const WorkOutcome& outcome) { return HTTPResponse{.body = outcome.picture->tag}; };
    EXPECT_EQ(queue.admit("a", [&] { return known; }, gate.work(""), {asker.exchange, {}, present}),
              DrawingQueue::Admission::known);
    EXPECT_EQ(asker.answer.get().body, "\"known\"");
    EXPECT_EQ(gate.begun, 0);
}

TEST_F(DrawingQueueThreads, EndWhatIsUnderWay) {
    Asker running;
    {
        DrawingQueue queue(2, 1);
        ASSERT_EQ(admit(queue, "a", running, ""), taken);
        EXPECT_TRUE(comes([&] { return gate.begun == 1; }));
    }
    EXPECT_EQ(gate.cancelled, 1);
}

}  // namespace
}  // namespace tavrin::cli
