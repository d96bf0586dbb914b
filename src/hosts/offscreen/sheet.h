// The storyboard: one small picture for every moment worth one, in rows, its time and what it shows under it.
#pragma once

#include <map>

#include "hosts/offscreen/frame_set.h"
#include "hosts/offscreen/show_frames.h"
#include "hosts/offscreen/sink.h"

class Sheet : public Sink {
public:
    // `path` is the PNG file to be written. The captions are set in the show's own font. Throws Failure.
    Sheet(const std::string& path, const ShowFrames& frames);

    const FrameSet& frames() const { return wanted_; }

    void take(const Picture& picture) override;
    void finish() override;

private:
    std::string path_;
    FrameSet wanted_;
    std::multimap<std::int64_t, int> places_; // by frame
    Picture sheet_;                           // empty until the first picture tells the size
    int cell_width_ = 0;
    int cell_height_ = 0;
};
