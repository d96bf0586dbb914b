#include "hosts/page/gl/buffer.h"

#include <cstring>
#include <new>

namespace page::gl {

namespace {

constexpr std::align_val_t kAlignment{16};

} // namespace

void BufferMemory::release() {
    ::operator delete(begin_, kAlignment);
    begin_ = next_ = limit_ = nullptr;
}

void BufferMemory::grow(std::size_t bytes) {
    const std::size_t used = static_cast<std::size_t>(next_ - begin_), capacity = 2 * used + bytes;
    unsigned char* larger = static_cast<unsigned char*>(::operator new(capacity, kAlignment));
    if (used != 0) std::memcpy(larger, begin_, used);
    release();
    begin_ = larger;
    next_ = larger + used;
    limit_ = larger + capacity;
}

} // namespace page::gl
