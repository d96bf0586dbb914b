#include "hosts/offscreen/stills.h"

#include "hosts/offscreen/failure.h"
#include "hosts/offscreen/png_file.h"

#include <filesystem>

namespace fs = std::filesystem;

namespace {

std::string file_name(ShowTime time) {
    const std::string text = seconds_text(time);
    return std::string(7 - text.size(), '0') + text + ".png";
}

} // namespace

Stills::Stills(const std::vector<ShowTime>& times, const ShowFrames& frames, const std::string& output) {
    const bool into_folder = times.size() > 1 || fs::is_directory(output) || output.back() == '/';
    std::error_code error;
    if (into_folder) fs::create_directories(output, error);
    if (error) throw Failure("cannot make the folder " + output + ": " + error.message());
    for (ShowTime time : times) {
        const std::string path = into_folder ? (fs::path(output) / file_name(time)).string() : output;
        paths_.emplace(frames.frame_on_screen_at(time), path);
    }
}

void Stills::take(const Picture& picture) {
    const auto [begin, end] = paths_.equal_range(picture.frame);
    for (auto path = begin; path != end; ++path) write_png(picture, path->second);
}
