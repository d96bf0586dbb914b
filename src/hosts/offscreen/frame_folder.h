// Every frame as a PNG of its own.
#pragma once

#include "hosts/offscreen/sink.h"

class FrameFolder : public Sink {
public:
    // Makes `folder` if it is missing. The frames are frame-000000.png and so on, counted over the whole
    // show, so that ranges rendered apart fit together. Throws Failure.
    explicit FrameFolder(const std::string& folder);

    void take(const Picture& picture) override;
    void finish() override {}
    std::string after_failure() const override { return "the frames before it were kept"; }

private:
    std::string folder_;
};
