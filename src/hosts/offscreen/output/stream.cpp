// Pictures as a stream of bytes for another program.
#include <unistd.h>

#include <cerrno>

extern "C" {
#include <libavutil/frame.h>
#include <libavutil/imgutils.h>
}

#include "hosts/common/signals.h"
#include "hosts/offscreen/failure.h"
#include "hosts/offscreen/output/output_file.h"
#include "hosts/offscreen/output/sink.h"
#include "hosts/offscreen/output/yuv.h"

namespace offscreen {

namespace {

constexpr const char* kName = "to standard output";

class Stream : public Sink {
public:
    Stream(int descriptor, StreamFormat format, common::FrameRate rate)
        : descriptor_(descriptor), format_(format), rate_(rate) {
        if (::write(descriptor, nullptr, 0) != 0) cannot_write(kName, errno); // it may be closed
    }

    void take(const Picture& picture) override {
        if (format_ == StreamFormat::rgb) {
            const std::vector<std::uint8_t> rgb = picture.rgb();
            write(rgb.data(), rgb.size());
        } else {
            take_y4m(picture);
        }
    }

    std::string kept(std::int64_t pictures) const override {
        return "the stream ends after " + count_of_pictures(pictures);
    }

private:
    void take_y4m(const Picture& picture) {
        if (!converter_) {
            converter_ = std::make_unique<YuvConverter>(picture.width, picture.height);
            frame_ = make_yuv_frame(picture.width, picture.height);
            const std::string header = "YUV4MPEG2 W" + std::to_string(picture.width) + " H" +
                                       std::to_string(picture.height) + " F" + std::to_string(rate_.frames) +
                                       ":" + std::to_string(rate_.seconds) +
                                       " Ip A1:1 C420mpeg2 XCOLORRANGE=LIMITED\n";
            write(header.data(), header.size());
        }
        converter_->convert(picture, *frame_);
        const std::string mark = "FRAME\n";
        bytes_.assign(mark.begin(), mark.end());
        const int size = av_image_get_buffer_size(AV_PIX_FMT_YUV420P, picture.width, picture.height, 1);
        bytes_.resize(mark.size() + static_cast<std::size_t>(size));
        av_image_copy_to_buffer(bytes_.data() + mark.size(), size, frame_->data, frame_->linesize,
                                AV_PIX_FMT_YUV420P, picture.width, picture.height, 1);
        write(bytes_.data(), bytes_.size());
    }

    void write(const void* data, std::size_t size) const {
        if (common::write_all(descriptor_, data, size)) return;
        if (errno != EINTR) cannot_write(kName, errno);
        throw Failure("stopped by a signal while nobody read standard output", 128 + common::noted_signal());
    }

    int descriptor_;
    StreamFormat format_;
    common::FrameRate rate_;
    std::unique_ptr<YuvConverter> converter_; // null until the first picture
    AvFramePtr frame_;
    std::vector<std::uint8_t> bytes_;
};

} // namespace

std::unique_ptr<Sink> make_stream(int descriptor, StreamFormat format, common::FrameRate rate) {
    return std::make_unique<Stream>(descriptor, format, rate);
}

} // namespace offscreen
