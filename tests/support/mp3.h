// MP3 files, written with LAME and read with the hosts' own decoder. Samples are interleaved, -1..1. What cannot be
// done throws std::runtime_error.
#pragma once

#include <string>
#include <vector>

struct Mp3Options {
    int rate = 44100;     // frames per second
    int channels = 2;     // of `samples`, and of the file
    int bit_rate = 192;   // kbit/s
    bool info_tag = true; // whether the file tells its length, and the encoder's delay
};

void write_mp3(const std::string& path, const std::vector<float>& samples, const Mp3Options& options = {});

// All that the file at `path` decodes to, stereo at 44.1 kHz.
std::vector<float> read_mp3(const std::string& path);
