// Prints a line for every texture that the show makes: its number, size and format, and a hash of its pixels. The
// language is asked for on standard input, and the fonts are found in the working directory, as ever.
#include <cinttypes>
#include <cstdint>
#include <cstdio>

#include "tests/hosts/recording/recording.h"

int show_main(int argc, char** argv);

namespace {

constexpr int kCallsUntilLoaded = 102; // display calls: 101 of the warm-up and the one that loads

// FNV-1a.
std::uint64_t hash_of(const std::vector<unsigned char>& bytes) {
    std::uint64_t hash = 0xcbf29ce484222325u;
    for (unsigned char byte : bytes) hash = (hash ^ byte) * 0x100000001b3u;
    return hash;
}

} // namespace

int main() {
    recording::set_logging(false);
    recording::script().display_calls = kCallsUntilLoaded;
    char name[] = "skav";
    char* arguments[] = {name, nullptr};
    try {
        show_main(1, arguments);
    } catch (const recording::ScriptEnded&) {
    }
    for (const recording::Upload& upload : recording::uploads()) {
        std::printf("texture %u: %dx%d, format %x, %zu bytes, %016" PRIx64 "\n", upload.texture, upload.width,
                    upload.height, upload.format, upload.pixels.size(), hash_of(upload.pixels));
    }
    return recording::uploads().empty() ? 1 : 0;
}
