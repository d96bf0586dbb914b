// Converts pictures to what video holds: 4:2:0, BT.709, limited range.
#pragma once

#include <memory>

#include "hosts/offscreen/output/sink.h"

struct AVFrame;
struct SwsContext;

namespace offscreen {

// Frees a frame of libavutil.
struct AvFrameDeleter {
    void operator()(AVFrame* frame) const;
};
using AvFramePtr = std::unique_ptr<AVFrame, AvFrameDeleter>;

// A frame of that size, its colours tagged. Throws Failure when there is no memory.
AvFramePtr make_yuv_frame(int width, int height);

class YuvConverter {
public:
    YuvConverter(int width, int height);
    ~YuvConverter();
    YuvConverter(const YuvConverter&) = delete;
    YuvConverter& operator=(const YuvConverter&) = delete;

    // Writes `picture` into `frame`; both have the converter's size.
    void convert(const Picture& picture, AVFrame& frame) const;

private:
    SwsContext* context_;
};

} // namespace offscreen
