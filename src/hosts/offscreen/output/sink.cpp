#include "hosts/offscreen/output/sink.h"

#include <cstring>

namespace offscreen {

std::vector<std::uint8_t> Picture::rgb() const {
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 3);
    std::uint8_t* out = bytes.data();
    for (int y = 0; y < height; ++y) {
        const std::uint8_t* in = row(y);
        for (int x = 0; x < width; ++x, in += 4, out += 3) std::memcpy(out, in, 3);
    }
    return bytes;
}

std::string count_of_pictures(std::int64_t count) {
    return std::to_string(count) + (count == 1 ? " picture" : " pictures");
}

} // namespace offscreen
