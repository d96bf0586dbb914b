#include <gtest/gtest.h>

#include <algorithm>
#include <thread>
#include <vector>

#include "hosts/desktop/sound/stream_ring.h"

namespace {

using sound::StreamRing;

// `count` frames, each numbered from `first` on, left positive and right negative.
std::vector<float> numbered(int first, std::size_t count) {
    std::vector<float> frames;
    for (std::size_t i = 0; i < count; ++i) {
        const float number = static_cast<float>(first) + static_cast<float>(i);
        frames.push_back(number);
        frames.push_back(-number);
    }
    return frames;
}

TEST(StreamRing, GivesBackWhatWentInAcrossTheWrap) {
    StreamRing ring(8);
    std::vector<float> out(2 * 8);
    for (int first = 0; first < 100; first += 5) {
        const std::vector<float> in = numbered(first, 5);
        ASSERT_EQ(ring.write(in.data(), 5), 5u);
        ASSERT_EQ(ring.read(out.data(), 8), 5u);
        EXPECT_EQ(std::vector<float>(out.begin(), out.begin() + 10), in);
    }
}

TEST(StreamRing, TakesOnlyWhatFits) {
    StreamRing ring(8);
    EXPECT_EQ(ring.space(), 8u);
    EXPECT_EQ(ring.write(numbered(0, 12).data(), 12), 8u);
    EXPECT_EQ(ring.space(), 0u);
    EXPECT_EQ(ring.write(numbered(0, 1).data(), 1), 0u);
}

TEST(StreamRing, IsEmptyAfterClear) {
    StreamRing ring(8);
    ring.write(numbered(0, 6).data(), 6);
    ring.clear();
    std::vector<float> out(2 * 8);
    EXPECT_EQ(ring.read(out.data(), 8), 0u);
    EXPECT_EQ(ring.space(), 8u);
}

TEST(StreamRing, CarriesEveryFrameOnceAndInOrderBetweenTwoThreads) {
    constexpr int kFrames = 1000000; // a float counts them exactly
    StreamRing ring(1024);
    std::thread writer([&] {
        for (int at = 0; at < kFrames;) {
            const std::vector<float> in = numbered(at, 300);
            const auto wanted = static_cast<std::size_t>(std::min(300, kFrames - at));
            const std::size_t done = ring.write(in.data(), wanted);
            if (done == 0) std::this_thread::yield();
            at += static_cast<int>(done);
        }
    });
    std::vector<float> out(2 * 257);
    int next = 0;
    int wrong = 0;
    while (next < kFrames) {
        const std::size_t got = ring.read(out.data(), 257);
        if (got == 0) std::this_thread::yield();
        for (std::size_t i = 0; i < got; ++i, ++next)
            if (out[2 * i] != static_cast<float>(next) || out[2 * i + 1] != -static_cast<float>(next))
                ++wrong;
    }
    writer.join();
    EXPECT_EQ(wrong, 0);
}

} // namespace
