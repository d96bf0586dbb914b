// The stored loading picture: 256 by 256 pixels, quantiser 20. Its bytes are made by art/loading/make.sh.
#pragma once

#include <cstddef>

extern const unsigned char kLoadingPicture[];
extern const std::size_t kLoadingPictureSize; // bytes
