// The chapters of a video.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "hosts/common/times.h"

namespace offscreen {

// A chapter of a video, in frames counted from the video's first; `end` is not included.
struct VideoChapter {
    const char* name;
    std::int64_t begin;
    std::int64_t end;
};

// The chapters of a video that shows the frames [first, end): those of kChapters that have a frame there. Where its
// first frame falls into a chapter, that chapter begins with it.
std::vector<VideoChapter> chapters_of(const common::ShowFrames& frames, std::int64_t first, std::int64_t end);

// The same as a text that ffmpeg reads as a file of metadata ("ffmetadata").
std::string chapters_text(const common::ShowFrames& frames, std::int64_t first, std::int64_t end);

} // namespace offscreen
