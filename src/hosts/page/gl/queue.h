// What is to be drawn, in order. It is collected while the show calls, and drawn when the frame ends or something must
// be read back: the driver then gets all vertices at once.
#pragma once

#include <GL/gl.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

#include "hosts/page/gl/lighting.h"
#include "hosts/page/gl/matrices.h"
#include "hosts/page/gl/state.h"

namespace page::gl {

struct Vertex {
    Float4 clip;     // clip coordinates
    Float4 eye_s;    // x, y, z in eye coordinates; texture coordinate s
    Float4 normal_t; // in eye coordinates, not normalised; t
    Float4 color;    // as given, not clamped
};

// One clear, or what is drawn with one state.
struct Item {
    GLbitfield clear; // the buffers; 0: something is drawn
    GLfloat clear_color[4];
    State state;
    GLenum topology;          // GL_POINTS, GL_LINES or GL_TRIANGLES
    std::size_t lighting;     // index in Queue::lighting, where the state has lighting
    std::size_t first, count; // in Queue::indices
};

// A vector of plain values whose new elements are not initialised. It keeps its memory when it is cleared.
template <class T>
class Buffer {
public:
    std::size_t size() const { return size_; }
    const T* data() const { return data_.get(); }
    const T* end() const { return data_.get() + size_; }

    // Room for that many more elements, to be filled; valid until the next call.
    T* append(std::size_t count) {
        if (capacity_ - size_ < count) grow(count);
        T* place = data_.get() + size_;
        size_ += count;
        return place;
    }

    void clear() { size_ = 0; }

private:
    void grow(std::size_t count) {
        capacity_ = std::max(2 * capacity_, size_ + count);
        std::unique_ptr<T[]> larger(new T[capacity_]);
        std::copy(data(), end(), larger.get());
        data_ = std::move(larger);
    }

    std::unique_ptr<T[]> data_;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
};

struct Queue {
    Buffer<Vertex> vertices;
    Buffer<GLuint> indices;
    std::vector<LightingBlock> lighting;
    std::vector<Item> items;
};

inline Queue g_queue;

} // namespace page::gl
