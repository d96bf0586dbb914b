#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
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

TEST(Video, MatroskaAndQuicktimeKeepTheSoundToTheSample) {
    for (const auto& [name, codec] : {std::pair("a.mkv", "flac"), std::pair("a.mov", "pcm_s16le")}) {
        const DecodedVideo video = exported(name, {"--fps", "5", "--from", "73", "--to", "75"});
        EXPECT_EQ(video.sound_codec, codec);
        EXPECT_EQ(video.frame_times.size(), 9u);
        expect_sound_around_the_switch(video.left);
    }
}

// How much stronger the sound is than its difference to `coded`: the ratio of their powers in the worst second.
double least_signal_to_noise(const std::vector<float>& sound, const std::vector<float>& coded) {
    constexpr double kSilence = 1e-9; // power
    double least = 1e9;
    for (std::size_t begin = 0; begin + kRate <= std::min(sound.size(), coded.size()); begin += kRate) {
        double signal = 0, noise = 0;
        for (std::size_t i = begin; i < begin + kRate; ++i) {
            signal += std::pow(sound[i], 2);
            noise += std::pow(sound[i] - coded[i], 2);
        }
        least = std::min(least, (signal / kRate + kSilence) / (noise / kRate + kSilence));
    }
    return least;
}

// The commands in the project's README that render ranges and join them, as they are printed.
std::string joining_recipe() {
    const std::string readme = file_bytes(SKAV_README), fence = "\n```\n";
    const std::size_t command = readme.find("-o part-1.mov");
    if (command == readme.npos) return "";
    const std::size_t begin = readme.rfind(fence, command) + fence.size();
    return readme.substr(begin, readme.find(fence, begin) - begin);
}

// The last of these commands, which joins the parts that parts.txt names.
std::string joining_command() {
    const std::string recipe = joining_recipe();
    return recipe.substr(recipe.rfind('\n') + 1);
}

// Runs `script` in `folder`, where skav-export is the exporter under the probe show: drawn quickly, with the real
// show's length and music.
void run_recipe(const std::string& script, const std::string& folder, std::vector<std::string> arguments) {
    TestFolder programs;
    Command command = export_probe("leftovers", std::move(arguments));
    std::ofstream program(programs / "skav-export");
    program << "#!/bin/bash\nexec";
    for (const std::string& word : command.arguments) program << " '" << word << "'";
    program << " \"$@\"\n";
    program.close();
    std::filesystem::permissions(programs / "skav-export", std::filesystem::perms::owner_all);
    command.environment["PATH"] = programs.path() + ":" + std::getenv("PATH");
    command.arguments = {"/bin/bash", "-euc", script};
    command.folder = folder;
    const Finished finished = run_program(command);
    ASSERT_EQ(finished.status, 0) << finished.err;
}

// At this rate neither frames nor ranges begin at whole milliseconds.
TEST(Video, TheReadmesRecipeJoinsRangesWithoutASeam) {
    const std::vector<std::string> how = {"-q", "--fps", "7/6", "--crf", "0"};
    TestFolder apart, at_once;
    run_recipe(joining_recipe(), apart.path(), how);
    const DecodedVideo joined = decode_video(apart / "show.mp4");
    // The same sound, encoded the same way, that was never cut.
    run_recipe(
        "skav-export -o whole.mov\nskav-export --chapters > chapters.txt\necho file whole.mov > parts.txt\n" +
            joining_command(),
        at_once.path(), how);
    const DecodedVideo whole = decode_video(at_once / "whole.mov");
    const DecodedVideo uncut = decode_video(at_once / "show.mp4");

    ASSERT_EQ(whole.frame_times.size(), 190u);
    EXPECT_EQ(joined.frame_sums, whole.frame_sums);
    ASSERT_EQ(joined.frame_times.size(), whole.frame_times.size());
    for (std::size_t i = 0; i < whole.frame_times.size(); ++i) {
        EXPECT_NEAR(joined.frame_times[i], static_cast<double>(i) * 6 / 7, 1e-4) << i;
    }
    ASSERT_EQ(joined.chapters.size(), 13u);
    ASSERT_EQ(whole.chapters.size(), 13u);
    for (std::size_t i = 0; i < 13; ++i) {
        EXPECT_EQ(joined.chapters[i].title, whole.chapters[i].title);
        EXPECT_NEAR(joined.chapters[i].begin, whole.chapters[i].begin, 1e-3) << i;
        EXPECT_NEAR(joined.chapters[i].end, whole.chapters[i].end, 1e-3) << i;
    }
    EXPECT_EQ(joined.sound_codec, "aac");
    EXPECT_NEAR(joined.duration, whole.duration, 0.03);
    EXPECT_TRUE(joined.left == uncut.left) << "the sound has a seam";
    EXPECT_GT(least_signal_to_noise(whole.left, joined.left), 8);
}

} // namespace
