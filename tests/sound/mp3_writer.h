// Makes MP3 files with LAME, as the show's own music is made.
#pragma once

#include <string>
#include <vector>

struct Mp3Options {
    int rate = 44100;     // frames per second
    int channels = 2;     // of `samples`, and of the file
    int bit_rate = 192;   // kbit/s
    bool info_tag = true; // whether the file tells its length, and the encoder's delay
};

// Encodes interleaved samples, -1..1.
void write_mp3(const std::string& path, const std::vector<float>& samples, const Mp3Options& options = {});
