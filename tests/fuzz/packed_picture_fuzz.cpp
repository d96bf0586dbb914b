// Any bytes into the decoder of packed pictures.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "show/stage/loading_picture_data.h"
#include "show/stage/packed_picture.h"
#include "tests/support/image.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

// Decodes and checks that a picture that loads is one that decodes.
void load(const std::uint8_t* data, std::size_t size) {
    const ImagePtr img(load_packed_picture_n(data, size));
    if (size < 3) {
        if (img) std::abort();
        return;
    }
    std::vector<std::uint8_t> samples(static_cast<std::size_t>(packed_buffer_size(data)));
    const int whole = decode_packed_n(data, size, samples.data());
    if (img && !whole) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    load(data, size);

    // The stored picture with these bytes laid over a stretch of it: damage deep within a stream.
    if (size < 4) return 0;
    std::vector<std::uint8_t> stored(kLoadingPicture, kLoadingPicture + kLoadingPictureSize);
    const std::size_t at = (static_cast<std::size_t>(data[0]) * 256 + data[1]) % stored.size();
    for (std::size_t i = 2; i < size && at + i < stored.size(); ++i) stored[at + i] = data[i];
    stored[0] = 64; // small enough to be quick
    stored[1] = static_cast<std::uint8_t>(data[2] % 65);
    load(stored.data(), stored.size());
    return 0;
}
