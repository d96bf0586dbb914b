#include <gtest/gtest.h>

#include "show/driver/music.h"
#include "tests/hosts/recording/recording.h"

using recording::calls_of;

namespace {

double number(const recording::Call& call, size_t index) {
    return std::get<double>(call.arguments.at(index));
}

} // namespace

TEST(Music, OpensTheSystemWithOneChannelAndTheInstrumentalFileAsAStream) {
    const recording::Log calls = calls_of(music_open);
    ASSERT_EQ(calls.size(), 3u);
    EXPECT_EQ(calls[0].name, "FMOD_System_Create");
    EXPECT_EQ(calls[1], (recording::Call{"FMOD_System_Init", {1.0, 1.0, 0.0, 0.0}}));
    EXPECT_EQ(calls[2], (recording::Call{"FMOD_System_CreateSound", {1.0, "zev.mp3", 200.0, 0.0}}));
}

TEST(Music, PlaysOnAFreeChannelUnpaused) {
    music_open();
    g_vocal = 1;
    const recording::Log calls = calls_of(music_play);
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0], (recording::Call{"FMOD_System_PlaySound", {1.0, -1.0, 1.0, 0.0}}));
    EXPECT_EQ(g_vocal, 0);
}

TEST(Music, ZeroBeforeTheSwitchIsShowTimeZero) {
    recording::script().positions = {0};
    music_open();
    music_play();
    EXPECT_EQ(music_position_ms(), 0.0f);
}

TEST(Music, ZeroAfterTheSwitchIsShowTime74300) {
    recording::script().positions = {0};
    music_open();
    music_play();
    music_switch_to_vocal();
    EXPECT_EQ(music_position_ms(), 74300.0f);
    EXPECT_EQ(g_vocal, 1);
}

TEST(Music, AsksForThePositionInMilliseconds) {
    music_open();
    music_play();
    const recording::Log calls = calls_of(music_position_ms);
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0], (recording::Call{"FMOD_Channel_GetPosition", {1.0, 1.0}}));
}

TEST(Music, AddsTheVocalOffsetBeforeRoundingToSinglePrecision) {
    recording::script().positions = {16777217u, 4294967295u};
    music_open();
    music_play();
    EXPECT_EQ(music_position_ms(), 16777216.0f); // a float's resolution ends here
    music_switch_to_vocal();
    EXPECT_EQ(music_position_ms(), 74299.0f); // the unsigned sum wraps
}

TEST(Music, TheSwitchReleasesThenOpensThenPlays) {
    music_open();
    music_play();
    const recording::Log calls = calls_of(music_switch_to_vocal);
    ASSERT_EQ(calls.size(), 3u);
    EXPECT_EQ(calls[0], (recording::Call{"FMOD_Sound_Release", {1.0}}));
    EXPECT_EQ(calls[1], (recording::Call{"FMOD_System_CreateSound", {1.0, "zev_voc.mp3", 200.0, 0.0}}));
    EXPECT_EQ(calls[2], (recording::Call{"FMOD_System_PlaySound", {1.0, -1.0, 2.0, 0.0}}));
}

TEST(Music, AMissingFileStandsStillAtZero) {
    recording::script().missing_files = {"zev.mp3"};
    recording::script().positions = {5000};
    music_open();
    EXPECT_EQ(g_fmod_result, FMOD_ERR_FILE_NOTFOUND);
    music_play();
    EXPECT_EQ(g_fmod_result, FMOD_ERR_INVALID_HANDLE);
    EXPECT_EQ(music_position_ms(), 0.0f);
    EXPECT_EQ(g_fmod_result, FMOD_ERR_INVALID_HANDLE);
}

TEST(Music, KeepsTheResultOfEveryCall) {
    const auto result_of = [](void (*operation)()) {
        g_fmod_result = FMOD_ERR_INTERNAL;
        operation();
        return g_fmod_result;
    };
    EXPECT_EQ(result_of(music_open), FMOD_OK);
    EXPECT_EQ(result_of(music_play), FMOD_OK);
    EXPECT_EQ(result_of([] { music_position_ms(); }), FMOD_OK);
    EXPECT_EQ(result_of([] { music_seek_seconds(1); }), FMOD_OK);
    EXPECT_EQ(result_of(music_release), FMOD_OK);
    EXPECT_EQ(result_of(music_release), FMOD_ERR_INVALID_HANDLE);
    EXPECT_EQ(result_of([] { music_seek_seconds(1); }), FMOD_ERR_INVALID_HANDLE);
}

TEST(Music, KeepsTheResultsOfOpeningTheSystem) {
    std::vector<FMOD_RESULT> results; // as each next call finds them
    recording::observer() = [&results](const recording::Call&) { results.push_back(g_fmod_result); };
    g_fmod_result = FMOD_ERR_INTERNAL;
    music_open();
    EXPECT_EQ(results, (std::vector<FMOD_RESULT>{FMOD_ERR_INTERNAL, FMOD_OK, FMOD_OK}));
}

TEST(Music, ReleaseReleasesTheFileNowLoaded) {
    music_open();
    EXPECT_EQ(calls_of(music_release), (recording::Log{{"FMOD_Sound_Release", {1.0}}}));
}

TEST(Music, SeeksInWholeSeconds) {
    music_open();
    music_play();
    const recording::Log calls = calls_of([] { music_seek_seconds(12); });
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].name, "FMOD_Channel_SetPosition");
    EXPECT_EQ(number(calls[0], 1), 12000.0);
    EXPECT_EQ(number(calls[0], 2), 1.0);
}
