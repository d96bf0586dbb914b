// PNG files.
#pragma once

#include <string>

#include "hosts/offscreen/output/sink.h"

namespace offscreen {

// Writes `picture` as an 8-bit RGB PNG at `path`, all of it or nothing; `replace` allows it to replace a file. The
// same picture gives the same bytes. Throws Failure.
void write_png(const Picture& picture, const std::string& path, bool replace);

} // namespace offscreen
