#include <gtest/gtest.h>

#include <cmath>
#include <fstream>

#include "hosts/common/mp3_stream.h"
#include "tests/whole/export/decoded_video.h"
#include "tests/whole/export/programs.h"

namespace {

constexpr int kRate = 44100;

// The left channel of a piece of the show's music.
std::vector<float> music(const std::string& file, double from, double seconds) {
    common::Mp3Error error = common::Mp3Error::none;
    const auto stream = common::Mp3Stream::open((std::string(SKAV_DATA) + "/" + file).c_str(), error);
    EXPECT_TRUE(stream);
    EXPECT_TRUE(stream->seek(static_cast<std::int64_t>(from * kRate)));
    std::vector<float> both(static_cast<std::size_t>(seconds * kRate) * 2);
    EXPECT_EQ(stream->read(both.data(), both.size() / 2), both.size() / 2);
    std::vector<float> left;
    for (std::size_t i = 0; i < both.size(); i += 2) left.push_back(both[i]);
    return left;
}

struct Match {
    int lag;            // samples by which the sound is late
    double correlation; // 0..1
};

// Where in `sound`, around second `at`, `wanted` lies.
Match find(const std::vector<float>& sound, double at, const std::vector<float>& wanted) {
    constexpr int kFarthest = 1500;
    Match best = {0, -1};
    const int begin = static_cast<int>(std::lround(at * kRate));
    for (int lag = -kFarthest; lag <= kFarthest; ++lag) {
        double product = 0, here = 0, there = 0;
        for (std::size_t i = 0; i < wanted.size(); i += 2) {
            const auto index = static_cast<std::ptrdiff_t>(begin + lag) + static_cast<std::ptrdiff_t>(i);
            if (index < 0 || index >= static_cast<std::ptrdiff_t>(sound.size())) continue;
            const double a = sound[static_cast<std::size_t>(index)];
            product += a * wanted[i];
            here += a * a;
            there += static_cast<double>(wanted[i]) * wanted[i];
        }
        const double correlation = product / std::sqrt(here * there + 1e-12);
        if (correlation > best.correlation) best = {lag, correlation};
    }
    return best;
}

void expect_within_5_ms(const Match& match) {
    EXPECT_LE(std::abs(match.lag), kRate * 5 / 1000);
    EXPECT_GT(match.correlation, 0.9);
}

DecodedVideo exported(const std::string& name, std::vector<std::string> arguments) {
    TestFolder folder;
    arguments.insert(arguments.end(), {"-q", "-o", folder / name});
    const Finished finished = run_program(export_show(arguments));
    EXPECT_EQ(finished.status, 0) << finished.err;
    EXPECT_EQ(folder.names(), std::vector<std::string>{name}) << "no provisional file is left";
    return decode_video(folder / name);
}

TEST(Video, HasEveryFrameItsChaptersAndItsMusicAlsoAfterTheSwitch) {
    const DecodedVideo video = exported("a.mp4", {"--fps", "5", "--from", "70", "--to", "80.3"});
    EXPECT_EQ(video.video_codec, "h264");
    EXPECT_EQ(video.sound_codec, "aac");
    EXPECT_EQ(video.colours, "tv bt709 bt709 bt709 left");
    EXPECT_EQ(video.width, 1024);
    EXPECT_EQ(video.height, 768);
    // 70.0 to 80.3 by the show's clock, of which the switch at 74.0 jumps over 0.3 s.
    ASSERT_EQ(video.frame_times.size(), 50u);
    for (std::size_t i = 0; i < 50; ++i) EXPECT_NEAR(video.frame_times[i], static_cast<double>(i) / 5, 1e-4);
    EXPECT_NEAR(video.duration, 10.0, 0.03);

    ASSERT_EQ(video.chapters.size(), 3u);
    EXPECT_EQ(video.chapters[0].title, "You want:");
    EXPECT_EQ(video.chapters[1].title, "Scroller: into the room");
    EXPECT_EQ(video.chapters[2].title, "Scroller");
    EXPECT_NEAR(video.chapters[1].begin, 4.0, 1e-3);
    EXPECT_NEAR(video.chapters[2].begin, 6.8, 1e-3) << "the first frame at 77.0 s or later is that of 77.1 s";
    EXPECT_NEAR(video.chapters[2].end, 10.0, 1e-3);

    // Second 4 of the video is the switch: the vocal file's position 0.
    expect_within_5_ms(find(video.left, 0.5, music("zev.mp3", 70.5, 2)));
    expect_within_5_ms(find(video.left, 3.0, music("zev.mp3", 73.0, 0.9)));
    expect_within_5_ms(find(video.left, 4.5, music("zev_voc.mp3", 0.5, 2)));
    expect_within_5_ms(find(video.left, 7.5, music("zev_voc.mp3", 3.5, 2)));
}

// Whether the sound is that of the show from 73 s to 74.8 s, over the switch of its music, to the sample.
void expect_sound_around_the_switch(const std::vector<float>& left) {
    std::vector<float> expected = music("zev.mp3", 73, 1);
    const std::vector<float> after = music("zev_voc.mp3", 0, 0.8);
    expected.insert(expected.end(), after.begin(), after.end());
    ASSERT_GE(left.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        ASSERT_NEAR(left[i], std::min(std::max(expected[i], -1.0f), 1.0f), 1.01 / 65536) << i;
    }
}

TEST(Video, MatroskaKeepsTheSoundToTheSample) {
    const DecodedVideo video = exported("a.mkv", {"--fps", "5", "--from", "73", "--to", "75"});
    EXPECT_EQ(video.sound_codec, "flac");
    EXPECT_EQ(video.frame_times.size(), 9u);
    expect_sound_around_the_switch(video.left);
}

// The recipe of the exporter's README: ranges rendered apart, then joined.
TEST(Video, RangesRenderedApartJoinWithoutASeam) {
    TestFolder folder;
    const auto render = [&](const char* from, const char* to, const std::string& name) {
        const Finished finished = run_program(
            export_show({"-q", "--fps", "5", "--crf", "0", "--from", from, "--to", to, "-o", folder / name}));
        EXPECT_EQ(finished.status, 0) << finished.err;
    };
    render("73", "75", "whole.mov");
    render("73", "73.7", "part-1.mov");
    render("73.7", "75", "part-2.mov");
    std::ofstream(folder / "parts.txt") << "file part-1.mov\nfile part-2.mov\n";
    Command join;
    join.arguments = {"/usr/bin/ffmpeg", "-loglevel", "error", "-f",        "concat", "-i",
                      "parts.txt",       "-c",        "copy",  "joined.mov"};
    join.folder = folder.path();
    const Finished finished = run_program(join);
    ASSERT_EQ(finished.status, 0) << finished.err;
    const DecodedVideo whole = decode_video(folder / "whole.mov");
    const DecodedVideo joined = decode_video(folder / "joined.mov");
    EXPECT_EQ(whole.sound_codec, "pcm_s16le");
    expect_sound_around_the_switch(whole.left);
    EXPECT_EQ(whole.frame_sums.size(), 9u);
    EXPECT_EQ(joined.frame_sums, whole.frame_sums);
    ASSERT_EQ(joined.frame_times.size(), whole.frame_times.size());
    for (std::size_t i = 0; i < whole.frame_times.size(); ++i) {
        EXPECT_NEAR(joined.frame_times[i], whole.frame_times[i], 1e-3);
    }
    EXPECT_EQ(joined.left, whole.left);
}

} // namespace
