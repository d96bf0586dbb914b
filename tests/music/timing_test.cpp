// Whether the music lies where the pictures were cut to it.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>

#include "tests/music/recording.h"

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kBeat = 0.5; // seconds: 120 beats per minute

// Show times of the white flashes.
constexpr std::array<double, 14> kFlashes{0.0,  10.0, 11.4, 17.0, 23.0, 28.0, 28.5,
                                          34.0, 40.0, 45.5, 55.0, 56.5, 62.0, 67.5};

// Show times in the vocal file: sprites, the sign, the cube, the credits, the last chord.
constexpr std::array<double, 5> kVocalCues{121.0, 134.0, 141.0, 153.0, 162.0};

// The strongest onset within 80 ms of a position in the file.
struct Onset {
    double late;     // seconds after the position asked for
    double strength; // as a share of the strongest in the 4 s around
};

Onset strongest_near(const std::vector<double>& strength, double position) {
    auto clamp = [&](double s) {
        return strength.begin() + std::clamp<std::ptrdiff_t>(std::lround(s * 1000.0), 0,
                                                             static_cast<std::ptrdiff_t>(strength.size()));
    };
    auto peak = std::max_element(clamp(position - 0.08), clamp(position + 0.08));
    double around = *std::max_element(clamp(position - 2.0), clamp(position + 2.0));
    return {static_cast<double>(peak - strength.begin()) / 1000.0 - position, *peak / around};
}

void expect_onset(const std::vector<double>& strength, double position, double show_time) {
    Onset onset = strongest_near(strength, position);
    EXPECT_NEAR(onset.late, 0.0, 0.020) << "accent at " << show_time << " s";
    EXPECT_GT(onset.strength, 0.5) << "accent at " << show_time << " s is weak among its neighbours";
}

// The component of the onsets at a frequency: its magnitude says how well they fit.
std::complex<double> component(const std::vector<double>& strength, double frequency, double begin,
                               double end) {
    auto first = static_cast<std::size_t>(begin * 1000.0), last = static_cast<std::size_t>(end * 1000.0);
    std::complex<double> sum = 0.0, turn = std::polar(1.0, -2.0 * kPi * frequency / 1000.0);
    std::complex<double> hand = std::polar(1.0, -2.0 * kPi * frequency * static_cast<double>(first) / 1000.0);
    for (std::size_t ms = first; ms < last; ++ms, hand *= turn) sum += strength[ms] * hand;
    return sum;
}

// How well onsets fit a beat of that length: its rate and the next three multiples of it.
double fit(const std::vector<double>& strength, double beat, double begin, double end) {
    double sum = 0.0;
    for (int harmonic = 1; harmonic <= 4; ++harmonic)
        sum += std::abs(component(strength, harmonic / beat, begin, end));
    return sum;
}

// The place within a period, in seconds, at which the onsets between two positions are strongest.
double place_of_onsets(const std::vector<double>& strength, double period, double begin, double end) {
    std::vector<double> sum(static_cast<std::size_t>(std::lround(period * 1000.0)));
    for (auto ms = static_cast<std::size_t>(begin * 1000.0); ms < static_cast<std::size_t>(end * 1000.0);
         ++ms)
        sum[ms % sum.size()] += strength[ms];
    return static_cast<double>(std::max_element(sum.begin(), sum.end()) - sum.begin()) / 1000.0;
}

TEST(Timing, EveryFlashHasAnAccentWithin20Milliseconds) {
    const std::vector<double>& strength = onset_strength(kInstrumental);
    for (double flash : kFlashes) expect_onset(strength, flash - kInstrumental.show_begin, flash);
}

TEST(Timing, TheGreatCuesOfTheSecondHalfHaveAnAccentWithin20Milliseconds) {
    const std::vector<double>& strength = onset_strength(kVocal);
    for (double cue : kVocalCues) expect_onset(strength, cue - kVocal.show_begin, cue);
}

TEST(Timing, TheBeatIs120PerMinuteWithinATenthOfAPercent) {
    for (const MusicFile& file : kMusicFiles) {
        const std::vector<double>& strength = onset_strength(file);
        double end = file.show_end - file.show_begin;
        double best = 0.0, best_fit = 0.0;
        for (double beat = 0.98 * kBeat; beat <= 1.02 * kBeat; beat += 0.0002 * kBeat) {
            double f = fit(strength, beat, 0.0, end);
            if (f > best_fit) best = beat, best_fit = f;
        }
        EXPECT_NEAR(best, kBeat, 0.001 * kBeat) << file.name;
    }
}

double distance_on_circle(double a, double b, double period) {
    double d = a - b;
    return std::abs(d - std::round(d / period) * period);
}

// Show time 0 is a beat; the vocal file's position 0 lies 0.2 s before one.
TEST(Timing, TheBeatsLieOnHalfSecondsOfTheShow) {
    for (const MusicFile& file : kMusicFiles) {
        double end = file.show_end - file.show_begin;
        double place = place_of_onsets(onset_strength(file), kBeat, 0.0, end);
        EXPECT_LT(distance_on_circle(place, -file.show_begin, kBeat), 0.020) << file.name;
    }
}

// Where the drums play off the beat the strongest onsets may be its halves; those must not drift either.
TEST(Timing, TheBeatDoesNotDrift) {
    for (const MusicFile& file : kMusicFiles) {
        const std::vector<double>& strength = onset_strength(file);
        for (double begin = 10.0; begin + 12.0 < file.show_end - file.show_begin; begin += 12.0) {
            double place = place_of_onsets(strength, kBeat / 2.0, begin, begin + 12.0);
            EXPECT_LT(distance_on_circle(place, -file.show_begin, kBeat / 2.0), 0.020)
                << file.name << " from " << begin << " s";
        }
    }
}

TEST(Timing, TheVocalFilesFirstBeatComesAfterAFifthOfASecond) {
    Onset onset = strongest_near(onset_strength(kVocal), 0.2);
    EXPECT_NEAR(onset.late, 0.0, 0.020);
}

// The pictures of the cross flip on whole seconds: each carries an accent of its own.
TEST(Timing, TheCrossStrikesOnEveryWholeSecond) {
    const std::vector<double>& strength = onset_strength(kInstrumental);
    for (double second = 55.0; second <= 67.0; second += 1.0)
        EXPECT_NEAR(strongest_near(strength, second).late, 0.0, 0.020) << second << " s";
}

} // namespace
