// Balance of the spectrum, and a low end that both loudspeakers share.
#include <gtest/gtest.h>

#include <array>
#include <cmath>

#include "tests/music/recording.h"

namespace {

TEST(Spectrum, IsMonoBelow120Hz) {
    for (const MusicFile& file : kMusicFiles) {
        const Recording& recording = decode(file);
        double middle = mean_power(low_pass(low_pass(mid(recording), 120.0), 120.0));
        double difference = mean_power(low_pass(low_pass(side(recording), 120.0), 120.0));
        EXPECT_LT(decibel(difference) - decibel(middle), -20.0) << file.name;
    }
}

TEST(Spectrum, IsStereoAboveIt) {
    for (const MusicFile& file : kMusicFiles) {
        const Recording& recording = decode(file);
        double middle = mean_power(high_pass(mid(recording), 300.0));
        double difference = mean_power(high_pass(side(recording), 300.0));
        EXPECT_GT(decibel(difference) - decibel(middle), -12.0) << file.name;
    }
}

// Pink noise has the same power in every octave; music that sounds balanced falls a little towards the
// treble.
TEST(Spectrum, NoOctaveStandsOutOfAGentleTilt) {
    constexpr std::array<double, 10> kCentres{31.5, 63, 125, 250, 500, 1000, 2000, 4000, 8000, 16000};
    for (const MusicFile& file : kMusicFiles) {
        const Recording& recording = decode(file);
        std::array<double, kCentres.size()> level{};
        double mean = 0.0, slope = 0.0, spread = 0.0;
        for (std::size_t i = 0; i < kCentres.size(); ++i) {
            level[i] = decibel((mean_power(octave_band(recording.left, kCentres[i])) +
                                mean_power(octave_band(recording.right, kCentres[i]))) /
                               2.0);
            mean += level[i] / kCentres.size();
        }
        for (std::size_t i = 0; i < kCentres.size(); ++i) {
            double octave = static_cast<double>(i) - (kCentres.size() - 1) / 2.0;
            slope += octave * level[i];
            spread += octave * octave;
        }
        slope /= spread;
        EXPECT_LE(slope, 0.5) << file.name << ", dB per octave";
        EXPECT_GE(slope, -4.5) << file.name << ", dB per octave";
        for (std::size_t i = 0; i < kCentres.size(); ++i) {
            double octave = static_cast<double>(i) - (kCentres.size() - 1) / 2.0;
            EXPECT_NEAR(level[i], mean + slope * octave, 12.0) << file.name << " at " << kCentres[i] << " Hz";
        }
    }
}

} // namespace
