// SPDX-License-Identifier: MIT
#include "cli/preview/end_deadline.h"

#include <chrono>
#include <csignal>
#include <iostream>
#include <thread>
#include <unistd.h>

#include <gtest/gtest.h>

namespace tavrin::cli {
namespace {

using std::chrono::milliseconds;

TEST(EndDeadlineDeathTest, EndsWhatDoesNotEndByItself) {
    const auto hang = [] {
        EndDeadline deadline(milliseconds(50), [] { std::cerr << "saved"; });
        deadline.start();
        while (true) std::this_thread::sleep_for(milliseconds(10));
    };
    EXPECT_EXIT(hang(), ::testing::ExitedWithCode(0), "saved");
}

TEST(EndDeadlineDeathTest, FinishesBeforeAnotherSignalEndsTheProcess) {
    const auto interrupt = [](int signal) {
        EndDeadline deadline(milliseconds(60'000), [] {
            std::this_thread::sleep_for(milliseconds(50));
            std::cerr << "saved";
        });
        deadline.start();
        ::kill(::getpid(), signal);
        while (true) std::this_thread::sleep_for(milliseconds(10));
    };
    for (const int signal : {SIGTERM, SIGINT})
        EXPECT_EXIT(interrupt(signal), ::testing::KilledBySignal(signal), "saved");
}

TEST(EndDeadline, LeavesWhatEndsInTime) {
    bool isLate = false;
    {
        EndDeadline deadline(milliseconds(60'000), [&] { isLate = true; });
        deadline.start();
    }
    {
        const EndDeadline neverStarted(milliseconds(0), [&] { isLate = true; });
    }
    EXPECT_FALSE(isLate);
}

}  // namespace
}  // namespace tavrin::cli
