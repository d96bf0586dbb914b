// The estimator, fed with scripted devices.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <random>

#include "hosts/desktop/sound/position_clock.h"

namespace {

using desktop::PositionClock;

constexpr double kRate = 44100;
constexpr double kMs = kRate / 1000; // frames

// What a poll every 2 ms saw of a clock that measures `device` every 5 ms or so.
struct Seen {
    double worst_ms = 0; // furthest from the truth
    int fell = 0;        // polls less than the one before
    int repeated = 0;    // polls with the same whole millisecond as the one before
    double last_ms = 0;
};

// Runs a clock from 0 to `end` seconds and looks at it from `from` on. `truth` gives the audible frame at a
// time, `device` what is measured of it.
Seen run(double from, double end, const std::function<double(double)>& truth,
         const std::function<double(double)>& device, double interval = 0.005) {
    PositionClock clock(kRate);
    Seen seen;
    double last = -1;
    double next_measurement = 0;
    for (double now = 0; now < end; now += 0.002) {
        if (now >= next_measurement) {
            next_measurement += interval;
            clock.limit(now, std::numeric_limits<double>::max());
            clock.measure(now, device(now));
        }
        const double told = clock.line().at(now);
        if (told < last) ++seen.fell;
        if (now > from) {
            seen.worst_ms = std::max(seen.worst_ms, std::fabs(told - truth(now)) / kMs);
            if (std::floor(told / kMs) == std::floor(last / kMs)) ++seen.repeated;
        }
        last = told;
    }
    seen.last_ms = last / kMs;
    return seen;
}

double steady(double now) { return now * kRate; }

TEST(PositionClock, FollowsAnExactDeviceExactly) {
    const Seen seen = run(0.5, 10, steady, steady);
    EXPECT_LT(seen.worst_ms, 0.01);
    EXPECT_EQ(seen.fell, 0);
    EXPECT_EQ(seen.repeated, 0);
}

TEST(PositionClock, SmoothsADeviceThatReportsWholeBuffers) {
    for (double buffer : {256.0, 441.0, 1024.0}) {
        const auto stairs = [&](double now) { return std::floor(now * kRate / buffer) * buffer; };
        const Seen seen = run(1, 20, steady, stairs);
        EXPECT_LT(seen.worst_ms, 5) << buffer; // the time between two measurements
        EXPECT_EQ(seen.fell, 0) << buffer;
        EXPECT_EQ(seen.repeated, 0) << buffer;
    }
}

TEST(PositionClock, KeepsStepWithADeviceThatRunsFastOrSlow) {
    for (double pace : {0.9995, 1.0005}) {
        const auto device = [&](double now) { return now * kRate * pace; };
        const Seen seen = run(1, 162, device, device);
        EXPECT_LT(seen.worst_ms, 0.2) << pace;
        EXPECT_EQ(seen.repeated, 0) << pace;
    }
}

TEST(PositionClock, SmoothsNoise) {
    std::mt19937 random(1);
    std::uniform_real_distribution<double> noise(-0.5 * kMs, 0.5 * kMs);
    const auto device = [&](double now) { return std::max(0.0, now * kRate + noise(random)); };
    const Seen seen = run(1, 20, steady, device);
    EXPECT_LT(seen.worst_ms, 1);
    EXPECT_EQ(seen.fell, 0);
    EXPECT_EQ(seen.repeated, 0);
}

TEST(PositionClock, SettlesAfterAStallWithoutFallingOrStanding) {
    const auto truth = [](double now) { return (now < 5 ? now : std::max(5.0, now - 0.03)) * kRate; };
    EXPECT_LT(run(5.5, 8, truth, truth).worst_ms, 3);
    EXPECT_LT(run(6.5, 8, truth, truth).worst_ms, 0.1);
    const Seen seen = run(1, 8, truth, truth);
    EXPECT_EQ(seen.fell, 0);
    EXPECT_EQ(seen.repeated, 0);
}

TEST(PositionClock, RunsOnThroughMissingMeasurements) {
    const Seen seen = run(2, 10, steady, steady, 0.4);
    EXPECT_LT(seen.worst_ms, 0.5);
    EXPECT_EQ(seen.fell, 0);
    EXPECT_EQ(seen.repeated, 0);
}

TEST(PositionClock, StandsAtZeroUntilTheDeviceMoves) {
    PositionClock clock(kRate);
    for (double now = 0; now < 1; now += 0.005) clock.measure(now, 0);
    EXPECT_EQ(clock.line().at(1), 0);
}

TEST(PositionClock, NeverFallsWhenTheDeviceDoes) {
    const auto device = [](double now) { return now < 5 ? now * kRate : (now - 1) * kRate; };
    EXPECT_EQ(run(1, 10, steady, device).fell, 0);
}

TEST(PositionClock, StepsForwardToADeviceFarAhead) {
    const auto device = [](double now) { return (now < 5 ? now : now + 1) * kRate; };
    const Seen seen = run(5.01, 8, device, device);
    EXPECT_LT(seen.worst_ms, 0.1);
}

TEST(PositionClock, StandsAtTheLastFrameHandedOut) {
    PositionClock clock(kRate);
    double now = 0;
    for (; now < 1; now += 0.005) {
        clock.limit(now, now * kRate + 1000);
        clock.measure(now, now * kRate);
    }
    const double handed_out = clock.line().at(now) + 500;
    for (; now < 2; now += 0.005) clock.limit(now, handed_out);
    EXPECT_EQ(clock.line().position, handed_out);
}

// A sound server's own estimate runs on while a stopped program hands nothing out, and then stands for as long.
TEST(PositionClock, StaysWithADeviceThatStalledWhileItsReportsRanOn) {
    PositionClock clock(kRate);
    const double latency = 0.03 * kRate;
    double handed_out = 0;
    double last = 0;
    for (double now = 0; now < 4; now += 0.005) {
        if (now > 1 && now < 1.4) continue; // stopped
        const double truth = now < 1 ? now : std::max(1.0 + 0.03, now - 0.37);
        const double report = now < 1.4 ? now : std::max(1.4, truth); // never falls
        handed_out = truth * kRate + latency;
        clock.limit(now, handed_out);
        clock.measure(now, report * kRate);
        const double told = clock.line().at(now);
        EXPECT_GE(told, last);
        EXPECT_LE(told, handed_out);
        if (now > 2.5) {
            EXPECT_NEAR(told / kRate, truth, 0.003) << now;
        }
        last = told;
    }
}

TEST(PositionClock, DoesNotBelieveThatMoreIsAudibleThanWasHandedOut) {
    PositionClock clock(kRate);
    clock.limit(0, 1000);
    clock.measure(0, 500);
    clock.limit(0.005, 1000);
    clock.measure(0.005, 40000);
    EXPECT_LE(clock.line().at(0.005), 1000);
}

} // namespace
