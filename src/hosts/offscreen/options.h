// The command line of skav-export.
#pragma once

#include <string>
#include <vector>

#include "hosts/common/prompt.h"
#include "hosts/common/times.h"
#include "hosts/offscreen/output/sink.h"

namespace offscreen {

enum class Job {
    stills, // PNG files of single moments
    sheet,  // the storyboard
    frames, // a PNG file for every frame
    video,  // a video file
    stream, // bytes on standard output
};

struct Options {
    Job job = Job::video;
    std::string output; // file or folder, absolute; "-" for a stream
    std::vector<common::ShowTime> stills;
    common::ShowTime from = 0;
    common::ShowTime to = common::kShowEnd; // not included
    common::FrameRate rate;
    int scale = 1;       // of the picture: 1..4
    int supersample = 1; // 1, 2 or 4
    VideoQuality quality;
    StreamFormat format = StreamFormat::y4m;
    common::Language language = common::Language::ask;
    std::string data;   // folder; empty: look for it
    bool force = false; // replace existing files without asking
    bool quiet = false;
    bool chapters = false; // only print the chapters
    std::string answer;    // not empty: only print this
};

// Reads the command line. Throws common::UsageError, or Failure when the current folder cannot be found.
Options parse_options(int argc, char** argv);

} // namespace offscreen
