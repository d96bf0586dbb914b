#define GL_GLEXT_PROTOTYPES
#include "hosts/offscreen/drawing/frame_reader.h"

#include <GL/glext.h>

#include <cstring>
#include <utility>

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
    if (pending_ == kBuffers) deliver_oldest();
    const int next = (oldest_ + pending_) % kBuffers;
    infos_[next] = info;
    const common::HostCalls host_calls;
    screen_.resolve();
    glBindBuffer(GL_PIXEL_PACK_BUFFER, buffers_[next]);
    glReadPixels(0, 0, screen_.width(), screen_.height(), GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
    glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
    screen_.bind();
    ++pending_;
}

void FrameReader::drain() {
    while (pending_ > 0) deliver_oldest();
}

void FrameReader::deliver_oldest() {
    PicturePtr picture = output_.blank();
    picture->info = infos_[oldest_];
    picture->resize(screen_.width(), screen_.height());
    glBindBuffer(GL_PIXEL_PACK_BUFFER, buffers_[oldest_]);
    const void* pixels = glMapBuffer(GL_PIXEL_PACK_BUFFER, GL_READ_ONLY);
    if (!pixels) throw Failure("OpenGL cannot hand out the picture it has drawn");
    std::memcpy(picture->pixels.data(), pixels, picture->pixels.size());
    glUnmapBuffer(GL_PIXEL_PACK_BUFFER);
    glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
    oldest_ = (oldest_ + 1) % kBuffers;
    --pending_;
    output_.deliver(std::move(picture));
}

} // namespace offscreen
