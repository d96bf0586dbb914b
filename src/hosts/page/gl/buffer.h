// A vector of plain values whose new elements are not initialised. It keeps its memory when it is cleared.
#pragma once

#include <cstddef>
#include <type_traits>

namespace page::gl {

// The memory of a Buffer, in bytes.
class BufferMemory {
public:
    BufferMemory() = default;
    BufferMemory(const BufferMemory&) = delete;
    BufferMemory& operator=(const BufferMemory&) = delete;
    ~BufferMemory() { release(); }

    void release();

protected:
    // Makes room for that many more bytes behind next_.
    void grow(std::size_t bytes);

    unsigned char* begin_ = nullptr;
    unsigned char* next_ = nullptr;  // behind what is used
    unsigned char* limit_ = nullptr; // behind what there is
};

template <class T>
class Buffer : public BufferMemory {
    static_assert(std::is_trivially_copyable_v<T>);

public:
    std::size_t size() const { return static_cast<std::size_t>(next_ - begin_) / sizeof(T); }
    const T* data() const { return reinterpret_cast<const T*>(begin_); }
    const T* end() const { return reinterpret_cast<const T*>(next_); }

    // Room for that many more elements, to be filled; valid until the next call.
    T* append(std::size_t count) {
        if (static_cast<std::size_t>(limit_ - next_) < count * sizeof(T)) grow(count * sizeof(T));
        T* place = reinterpret_cast<T*>(next_);
        next_ += count * sizeof(T);
        return place;
    }

    // Leaves the first `size` elements; there are at least so many.
    void shrink(std::size_t size) { next_ = begin_ + size * sizeof(T); }
    void clear() { next_ = begin_; }
};

} // namespace page::gl
