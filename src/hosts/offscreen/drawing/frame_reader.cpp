#define GL_GLEXT_PROTOTYPES
#include "hosts/offscreen/drawing/frame_reader.h"

#include <GL/glext.h>

#include "hosts/common/gl_scale.h"
#include "hosts/offscreen/failure.h"

namespace offscreen {

namespace {

GLsizeiptr picture_bytes(const EglScreen& screen) {
    return static_cast<GLsizeiptr>(screen.width()) * screen.height() * 4;
}

} // namespace

FrameReader::FrameReader(const EglScreen& screen, OutputThread& output) : screen_(screen), output_(output) {
    glGenBuffers(kBuffers, buffers_);
    for (unsigned buffer : buffers_) {
        glBindBuffer(GL_PIXEL_PACK_BUFFER, buffer);
        glBufferData(GL_PIXEL_PACK_BUFFER, picture_bytes(screen_), nullptr, GL_STREAM_READ);
    }
    glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
}

FrameReader::~FrameReader() { glDeleteBuffers(kBuffers, buffers_); }

void FrameReader::read(const PictureInfo& info) {
    if (pending_.size() == kPending) deliver_oldest();
    const common::HostCalls host_calls;
    screen_.resolve();
    glBindBuffer(GL_PIXEL_PACK_BUFFER, buffer_of(read_));
    if (read_ >= kBuffers) glUnmapBuffer(GL_PIXEL_PACK_BUFFER); // its last picture has been written
    glReadPixels(0, 0, screen_.width(), screen_.height(), GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
    glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
    screen_.bind();
    pending_.push_back(info);
    ++read_;
}

void FrameReader::drain() {
    while (!pending_.empty()) deliver_oldest();
}

void FrameReader::deliver_oldest() {
    Picture picture;
    picture.info = pending_.front();
    picture.width = screen_.width();
    picture.height = screen_.height();
    const auto oldest = read_ - static_cast<std::int64_t>(pending_.size());
    pending_.pop_front();
    glBindBuffer(GL_PIXEL_PACK_BUFFER, buffer_of(oldest));
    picture.pixels = static_cast<const std::uint8_t*>(glMapBuffer(GL_PIXEL_PACK_BUFFER, GL_READ_ONLY));
    glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
    if (!picture.pixels) throw Failure("OpenGL cannot hand out the picture it has drawn");
    output_.deliver(picture);
}

} // namespace offscreen
