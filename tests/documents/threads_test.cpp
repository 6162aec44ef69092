// SPDX-License-Identifier: MIT
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "tests/golden/golden_case.h"

namespace tavrin {
namespace {

/// Every example, in light and in dark, as the bytes of its files.
std::vector<std::string> filesOfExamples() {
    std::vector<std::string> files;
    for (const GoldenCase& example : exampleCases()) {
        for (const Appearance appearance : {Appearance::light, Appearance::dark}) {
            Widget widget = example.widget(appearance);
            for (const PictureFormat format : {PictureFormat::png, PictureFormat::svg, PictureFormat::pdf})
                files.push_back(widget.encode(format));
        }
    }
    return files;
}

TEST(PicturesOfThreads, AreTheSameBytes) {
    const std::vector<std::string> expected = filesOfExamples();
    ASSERT_GE(expected.size(), 48U);
    constexpr std::size_t threads = 4;
    constexpr int runs = 2;
    std::vector<int> differing(threads, -1);
    {
        std::vector<std::jthread> workers;
        for (int& count : differing)
            workers.emplace_back([&count, &expected] {
                count = 0;
                for (int run = 0; run < runs; ++run) {
                    const std::vector<std::string> files = filesOfExamples();
                    for (std::size_t i = 0; i < expected.size(); ++i) count += files.at(i) != expected[i];
                }
            });
    }
    EXPECT_EQ(differing, std::vector<int>(threads, 0)) << "pictures that differ, by thread";
    EXPECT_TRUE(filesOfExamples() == expected) << "afterwards, with every cache warm";
}

}  // namespace
}  // namespace tavrin
