#include "hosts/offscreen/frames/chapters.h"

#include <algorithm>

#include "hosts/offscreen/frames/running_order.h"

namespace offscreen {

std::vector<VideoChapter> chapters_of(const common::ShowFrames& frames, std::int64_t first,
                                      std::int64_t end) {
    std::vector<VideoChapter> chapters;
    for (int i = 0; i < kChapterCount; ++i) {
        const bool last = i + 1 == kChapterCount;
        const std::int64_t begins = std::max(frames.first_frame_at(kChapters[i].time), first);
        const std::int64_t ends = last ? end : std::min(frames.first_frame_at(kChapters[i + 1].time), end);
        if (begins < ends) chapters.push_back({kChapters[i].name, begins - first, ends - first});
    }
    return chapters;
}

std::string chapters_text(const common::ShowFrames& frames, std::int64_t first, std::int64_t end) {
    const common::FrameRate rate = frames.rate();
    const std::string time_base = std::to_string(rate.seconds) + "/" + std::to_string(rate.frames);
    std::string text = ";FFMETADATA1\ntitle=skav\n";
    for (const VideoChapter& chapter : chapters_of(frames, first, end)) {
        text += "[CHAPTER]\nTIMEBASE=" + time_base + "\nSTART=" + std::to_string(chapter.begin) +
                "\nEND=" + std::to_string(chapter.end) + "\ntitle=" + chapter.name + "\n";
    }
    return text;
}

} // namespace offscreen
