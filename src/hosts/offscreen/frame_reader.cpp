#include "hosts/offscreen/frame_reader.h"

#include <cstring>
#include <utility>

#include "hosts/offscreen/failure.h"
#include "hosts/offscreen/gl_next.h"

namespace {

GLsizeiptr picture_bytes(const EglScreen& screen) {
    return static_cast<GLsizeiptr>(screen.width()) * screen.height() * 4;
}

} // namespace

FrameReader::FrameReader(const EglScreen& screen, std::function<PicturePtr()> blank,
                         std::function<void(PicturePtr)> deliver)
    : screen_(screen), blank_(std::move(blank)), deliver_(std::move(deliver)) {
    glGenBuffers(kBuffers, buffers_);
    for (unsigned buffer : buffers_) {
        glBindBuffer(GL_PIXEL_PACK_BUFFER, buffer);
        glBufferData(GL_PIXEL_PACK_BUFFER, picture_bytes(screen_), nullptr, GL_STREAM_READ);
    }
    glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
}

FrameReader::~FrameReader() { glDeleteBuffers(kBuffers, buffers_); }

void FrameReader::read(const PictureInfo& about) {
    if (under_way_ == kBuffers) deliver_oldest();
    const int next = (oldest_ + under_way_) % kBuffers;
    abouts_[next] = about;
    screen_.resolve();
    glBindBuffer(GL_PIXEL_PACK_BUFFER, buffers_[next]);
    glReadPixels(0, 0, screen_.width(), screen_.height(), GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
    glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
    screen_.bind();
    ++under_way_;
}

void FrameReader::drain() {
    while (under_way_ > 0) deliver_oldest();
}

void FrameReader::deliver_oldest() {
    PicturePtr picture = blank_();
    picture->info = abouts_[oldest_];
    picture->resize(screen_.width(), screen_.height());
    glBindBuffer(GL_PIXEL_PACK_BUFFER, buffers_[oldest_]);
    const void* pixels = glMapBuffer(GL_PIXEL_PACK_BUFFER, GL_READ_ONLY);
    if (!pixels) throw Failure("OpenGL cannot hand out the picture it has drawn");
    std::memcpy(picture->pixels.data(), pixels, picture->pixels.size());
    glUnmapBuffer(GL_PIXEL_PACK_BUFFER);
    glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
    oldest_ = (oldest_ + 1) % kBuffers;
    --under_way_;
    deliver_(std::move(picture));
}
