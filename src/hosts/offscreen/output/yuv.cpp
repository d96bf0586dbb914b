#include "hosts/offscreen/output/yuv.h"

#include "hosts/offscreen/failure.h"

extern "C" {
#include <libavutil/frame.h>
#include <libswscale/swscale.h>
}

namespace offscreen {

void AvFrameDeleter::operator()(AVFrame* frame) const { av_frame_free(&frame); }

AvFramePtr make_yuv_frame(int width, int height) {
    AvFramePtr frame(av_frame_alloc());
    if (!frame) throw Failure("no memory for a video frame");
    frame->format = AV_PIX_FMT_YUV420P;
    frame->width = width;
    frame->height = height;
    frame->color_range = AVCOL_RANGE_MPEG;
    frame->color_primaries = AVCOL_PRI_BT709;
    frame->color_trc = AVCOL_TRC_BT709;
    frame->colorspace = AVCOL_SPC_BT709;
    frame->chroma_location = AVCHROMA_LOC_LEFT;
    if (av_frame_get_buffer(frame.get(), 0) < 0) throw Failure("no memory for a video frame");
    return frame;
}

YuvConverter::YuvConverter(int width, int height)
    : context_(sws_getContext(width, height, AV_PIX_FMT_RGB0, width, height, AV_PIX_FMT_YUV420P,
                              SWS_BILINEAR | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INP, nullptr, nullptr,
                              nullptr)) {
    if (!context_) throw Failure("cannot convert pictures to video frames");
    const int* bt709 = sws_getCoefficients(SWS_CS_ITU709);
    constexpr int kFull = 1, kLimited = 0;
    sws_setColorspaceDetails(context_, bt709, kFull, bt709, kLimited, 0, 1 << 16, 1 << 16);
}

YuvConverter::~YuvConverter() { sws_freeContext(context_); }

void YuvConverter::convert(const Picture& picture, AVFrame& frame) const {
    // The top row comes first and is stored last.
    const std::uint8_t* top = picture.row(0);
    const int stride = -static_cast<int>(picture.stride());
    sws_scale(context_, &top, &stride, 0, picture.height, frame.data, frame.linesize);
}

} // namespace offscreen
