#include "hosts/offscreen/stream_writer.h"

#include "hosts/offscreen/failure.h"

extern "C" {
#include <libavutil/frame.h>
}

#include <unistd.h>

#include <cerrno>
#include <cstring>

StreamWriter::StreamWriter(int descriptor, StreamFormat format, FrameRate rate, bool continued)
    : descriptor_(descriptor), format_(format), rate_(rate), begun_(continued) {}

void StreamWriter::take(const Picture& picture) {
    bytes_.clear();
    if (format_ == StreamFormat::y4m) {
        take_y4m(picture);
    } else {
        take_rgb(picture);
    }
    write_all(bytes_.data(), bytes_.size());
}

void StreamWriter::take_y4m(const Picture& picture) {
    std::string header = "FRAME\n";
    if (!converter_) {
        converter_ = std::make_unique<YuvConverter>(picture.width, picture.height);
        frame_ = make_yuv_frame(picture.width, picture.height);
    }
    if (!begun_) {
        begun_ = true;
        const std::string size = " W" + std::to_string(picture.width) + " H" + std::to_string(picture.height);
        const std::string rate = " F" + std::to_string(rate_.frames) + ":" + std::to_string(rate_.seconds);
        header = "YUV4MPEG2" + size + rate + " Ip A1:1 C420mpeg2 XCOLORRANGE=LIMITED\n" + header;
    }
    converter_->convert(picture, *frame_);
    bytes_.assign(header.begin(), header.end());
    for (int plane = 0; plane < 3; ++plane) {
        const int width = plane == 0 ? picture.width : picture.width / 2;
        const int height = plane == 0 ? picture.height : picture.height / 2;
        for (int y = 0; y < height; ++y) {
            const std::uint8_t* row = frame_->data[plane] + y * frame_->linesize[plane];
            bytes_.insert(bytes_.end(), row, row + width);
        }
    }
}

void StreamWriter::take_rgb(const Picture& picture) {
    bytes_.resize(static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height) * 3);
    std::uint8_t* out = bytes_.data();
    for (int y = 0; y < picture.height; ++y) {
        const std::uint8_t* in = picture.row(y);
        for (int x = 0; x < picture.width; ++x, in += 4, out += 3) std::memcpy(out, in, 3);
    }
}

void StreamWriter::write_all(const void* data, std::size_t size) {
    const char* bytes = static_cast<const char*>(data);
    while (size > 0) {
        const ssize_t written = write(descriptor_, bytes, size);
        if (written < 0 && errno == EINTR) continue;
        if (written < 0)
            throw Failure(std::string("cannot write to standard output: ") + std::strerror(errno));
        bytes += written;
        size -= static_cast<std::size_t>(written);
    }
}
