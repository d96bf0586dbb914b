#include <gtest/gtest.h>

#include "hosts/desktop/frame_statistics.h"

namespace {

using desktop::FrameStatistics;

// Frames at those times, in seconds, with music in step.
FrameStatistics after(double refresh_rate, const std::vector<double>& times) {
    FrameStatistics statistics(refresh_rate);
    for (const double time : times) {
        statistics.position_read(time, static_cast<unsigned>(1000 * time + 0.5));
        statistics.shown(time);
    }
    return statistics;
}

TEST(Statistics, AreEmptyWithoutAFrame) {
    EXPECT_EQ("frames shown: 0 in 0.0 s, 0.0 a second\n"
              "late frames: 0, missed refreshes: 0 (of 60.0 a second)\n"
              "worst frame: 0.0 ms, before 0.000 s of the music\n"
              "clock jitter: 0.0 ms, 0.0 ms at most",
              FrameStatistics(60).text());
}

TEST(Statistics, CountFramesThatWereLateAndRefreshesThatTheyMissed) {
    // Steps of 1, 1.4, 1.6, 1, 3.8 and 0.5 refreshes.
    EXPECT_EQ("frames shown: 7 in 0.9 s, 6.5 a second\n"
              "late frames: 2, missed refreshes: 4 (of 10.0 a second)\n"
              "worst frame: 380.0 ms, before 1.880 s of the music\n"
              "clock jitter: 0.0 ms, 0.0 ms at most",
              after(10, {1, 1.1, 1.24, 1.4, 1.5, 1.88, 1.93}).text());
}

TEST(Statistics, BeginWithTheMusic) {
    FrameStatistics statistics(10);
    statistics.shown(0);
    statistics.shown(5);
    statistics.position_read(6, 0);
    statistics.shown(7);
    EXPECT_EQ(0u, statistics.text().find("frames shown: 1 in 0.0 s, 0.0 a second\n"
                                         "late frames: 0, missed refreshes: 0"));
}

TEST(Statistics, DoNotCountTheTimeWhileTheWindowIsHidden) {
    FrameStatistics statistics(10);
    statistics.position_read(1, 1000);
    statistics.shown(1);
    statistics.shown(1.1);
    statistics.hidden();
    statistics.shown(9);
    statistics.shown(9.1);
    EXPECT_NE(std::string::npos, statistics.text().find("late frames: 0, missed refreshes: 0"));
    EXPECT_NE(std::string::npos, statistics.text().find("worst frame: 100.0 ms"));
}

TEST(Statistics, CompareTheStepsOfTheMusicWithThoseOfTheTime) {
    FrameStatistics statistics(10);
    statistics.position_read(0.0, 0);   // the wait for the beginning
    statistics.position_read(0.5, 0);   //
    statistics.position_read(1.0, 20);  //
    statistics.position_read(1.1, 110); // 10 ms less than passed
    statistics.position_read(1.2, 240); // 30 ms more
    statistics.position_read(1.3, 340); // as much
    statistics.position_read(1.4, 0);   // the next piece
    statistics.position_read(1.5, 10);  //
    statistics.position_read(1.6, 110); // as much
    EXPECT_NE(std::string::npos, statistics.text().find("clock jitter: 10.0 ms, 30.0 ms at most"))
        << statistics.text();
}

} // namespace
