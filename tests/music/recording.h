// The show's music files decoded as the show's hosts decode them, and ways to measure them.
#pragma once

#include <array>
#include <string>
#include <vector>

constexpr int kRate = 44100; // samples per second

// One of the two files.
struct MusicFile {
    const char* name;  // in data/
    double show_begin; // show time of its position 0, seconds
    double show_end;   // show time at which the show stops listening to it
    double tail;       // seconds at its end that may ring out into silence
};

inline constexpr MusicFile kInstrumental{"zev.mp3", 0.0, 74.0, 1.5};
inline constexpr MusicFile kVocal{"zev_voc.mp3", 74.3, 162.0, 2.0};
inline constexpr std::array<MusicFile, 2> kMusicFiles{kInstrumental, kVocal};

std::string path_of(const MusicFile& file);

// A decoded file; index 0 is its position 0. Left and right have the same length.
struct Recording {
    std::vector<double> left;
    std::vector<double> right;

    double seconds() const { return static_cast<double>(left.size()) / kRate; }

    // Mean power (square of the samples) of both channels between two positions in seconds.
    double power(double begin, double end) const;
};

// A decoded file. Each is decoded once.
const Recording& decode(const MusicFile& file);

// Half the sum and half the difference of the channels.
std::vector<double> mid(const Recording& recording);
std::vector<double> side(const Recording& recording);

// Second-order filters at 44.1 kHz (Robert Bristow-Johnson, Audio EQ Cookbook). Frequencies in Hz.
std::vector<double> low_pass(const std::vector<double>& x, double frequency);
std::vector<double> high_pass(const std::vector<double>& x, double frequency);
std::vector<double> octave_band(const std::vector<double>& x, double centre);

double mean_power(const std::vector<double>& x);

// Ten times the decimal logarithm; the power of digital silence counts as -120 dB.
double decibel(double power);

// How suddenly it gets louder, once per millisecond: by how much the amplitude of three bands (below 150 Hz,
// 150 Hz to 2 kHz, above 2 kHz) grows within 10 ms, each as a multiple of its mean over the file, summed over
// the bands where it grows. Silence is assumed before the file. Computed once for each file.
const std::vector<double>& onset_strength(const MusicFile& file);
