// Pictures as a stream of bytes for another program.
#pragma once

#include <memory>
#include <vector>

#include "hosts/offscreen/sink.h"
#include "hosts/offscreen/times.h"
#include "hosts/offscreen/yuv.h"

enum class StreamFormat {
    y4m, // YUV4MPEG2: 4:2:0, BT.709, limited range; says its size and rate itself
    rgb, // three bytes a pixel, top row first, nothing between the pictures
};

class StreamWriter : public Sink {
public:
    // Writes to `descriptor`, which stays open. `continued`: the stream has begun already.
    StreamWriter(int descriptor, StreamFormat format, FrameRate rate, bool continued);

    void take(const Picture& picture) override;
    void finish() override {}
    std::string after_failure() const override { return "the stream ends early"; }

private:
    void take_y4m(const Picture& picture);
    void take_rgb(const Picture& picture);
    void write_all(const void* data, std::size_t size);

    int descriptor_;
    StreamFormat format_;
    FrameRate rate_;
    bool begun_;
    std::unique_ptr<YuvConverter> converter_; // null until the first picture
    AvFramePtr frame_;
    std::vector<std::uint8_t> bytes_;
};
