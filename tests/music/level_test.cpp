// Loudness, peaks, offset, silence, and the seam between the files.
#include <ebur128.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>

#include "tests/music/recording.h"

namespace {

struct Loudness {
    double integrated; // LUFS, both gates of BS.1770-4
    double true_peak;  // dBTP, four times oversampled
};

// Of a file, each of which is measured once.
const Loudness& loudness_of(const MusicFile& file) {
    static std::map<std::string, Loudness> measured;
    const auto [entry, is_new] = measured.try_emplace(file.name);
    Loudness& loudness = entry->second;
    if (!is_new) return loudness;
    const Recording& recording = decode(file);
    ebur128_state* state = ebur128_init(2, kRate, EBUR128_MODE_I | EBUR128_MODE_TRUE_PEAK);
    std::vector<double> frames(2 * recording.left.size());
    for (std::size_t i = 0; i < recording.left.size(); ++i) {
        frames[2 * i] = recording.left[i];
        frames[2 * i + 1] = recording.right[i];
    }
    ebur128_add_frames_double(state, frames.data(), recording.left.size());
    double left = 0.0, right = 0.0;
    ebur128_loudness_global(state, &loudness.integrated);
    ebur128_true_peak(state, 0, &left);
    ebur128_true_peak(state, 1, &right);
    loudness.true_peak = 20.0 * std::log10(std::max(left, right));
    ebur128_destroy(&state);
    return loudness;
}

TEST(Level, TruePeakStaysBelowMinusOneAfterDecoding) {
    for (const MusicFile& file : kMusicFiles) EXPECT_LE(loudness_of(file).true_peak, -1.0) << file.name;
}

TEST(Level, BothFilesAreEquallyLoud) {
    double instrumental = loudness_of(kInstrumental).integrated;
    double vocal = loudness_of(kVocal).integrated;
    for (double loudness : {instrumental, vocal}) {
        EXPECT_GE(loudness, -14.0);
        EXPECT_LE(loudness, -9.0);
    }
    EXPECT_NEAR(instrumental, vocal, 1.0);
}

TEST(Level, HasNoOffset) {
    for (const MusicFile& file : kMusicFiles) {
        const Recording& recording = decode(file);
        for (const std::vector<double>& channel : {recording.left, recording.right}) {
            double sum = 0.0;
            for (double v : channel) sum += v;
            EXPECT_LT(std::abs(sum / static_cast<double>(channel.size())), 0.0005) << file.name;
        }
    }
}

TEST(Level, IsNeverSilentForHalfASecondBeforeItsTail) {
    for (const MusicFile& file : kMusicFiles) {
        const Recording& recording = decode(file);
        for (double at = 0.0; at + 0.5 < recording.seconds() - file.tail; at += 0.05)
            EXPECT_GT(decibel(recording.power(at, at + 0.5)), -50.0) << file.name << " at " << at << " s";
    }
}

TEST(Level, EveryFileRingsOutBeforeItsEnd) {
    for (const MusicFile& file : kMusicFiles) {
        const Recording& recording = decode(file);
        EXPECT_LT(decibel(recording.power(recording.seconds() - 0.1, recording.seconds())), -45.0)
            << file.name;
    }
}

// The show stops the first file at 74.0 s and starts the second at its position 0.
TEST(Level, SwitchToTheVocalFileLeavesNoHoleAndNoBump) {
    const Recording &before = decode(kInstrumental), &after = decode(kVocal);
    double last = decibel(before.power(73.7, 74.0)), first = decibel(after.power(0.0, 0.3));
    EXPECT_NEAR(last, first, 3.0);
    double mean = (last + first) / 2.0;
    for (double at : {0.0, 0.1, 0.2}) {
        EXPECT_NEAR(decibel(before.power(73.7 + at, 73.8 + at)), mean, 4.0) << 73.7 + at << " s";
        EXPECT_NEAR(decibel(after.power(at, at + 0.1)), mean, 4.0) << at << " s into the vocal file";
    }
}

// A display that draws a frame late switches late: the first file must go on sounding meanwhile.
TEST(Level, InstrumentalKeepsSoundingWhenTheSwitchComesLate) {
    EXPECT_GT(decibel(decode(kInstrumental).power(74.0, 74.5)), -25.0);
}

} // namespace
