// A video file as a player sees it.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

struct DecodedVideo {
    std::string video_codec;
    std::string sound_codec;
    std::string colours; // "tv bt709 bt709 bt709 left": range, matrix, primaries, transfer, chroma location
    int width = 0;
    int height = 0;
    double duration = 0;                   // seconds, as the container tells it
    std::vector<double> frame_times;       // seconds
    std::vector<std::uint64_t> frame_sums; // of the luma plane: equal pictures have equal ones
    std::vector<float> left;               // the left channel at 44.1 kHz, from second 0 on
    struct Chapter {
        double begin;
        double end;
        std::string title;
    };
    std::vector<Chapter> chapters;
};

// Fails the test when the file cannot be read.
DecodedVideo decode_video(const std::string& path);
