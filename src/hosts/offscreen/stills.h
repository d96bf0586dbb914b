// Single pictures of the show as PNG files.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "hosts/offscreen/frame_set.h"
#include "hosts/offscreen/show_frames.h"
#include "hosts/offscreen/sink.h"

class Stills : public Sink {
public:
    // One time goes to the file `output`, unless that is a folder or ends in a slash; several go to the
    // folder `output`, which is made if it is missing, under names such as 012.500.png. kLoadingTime stands
    // for the loading screen. Throws Failure.
    Stills(const std::vector<ShowTime>& times, const ShowFrames& frames, const std::string& output);

    // The frames whose pictures it wants.
    const FrameSet& frames() const { return frames_; }

    void take(const Picture& picture) override;
    void finish() override {}
    std::string after_failure() const override { return "stills before it were kept"; }

private:
    FrameSet frames_;
    std::multimap<std::int64_t, std::string> paths_; // by frame
};
