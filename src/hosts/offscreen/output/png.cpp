#include "hosts/offscreen/output/png.h"

#include <png.h>

#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <map>

#include "hosts/offscreen/failure.h"
#include "hosts/offscreen/output/output_file.h"

namespace fs = std::filesystem;

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

void write_png(const Picture& picture, const std::string& path) {
    OutputFile file(path);
    const std::vector<std::uint8_t> rgb = picture.rgb();
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(picture.width);
    image.height = static_cast<png_uint_32>(picture.height);
    image.format = PNG_FORMAT_RGB;
    image.flags = PNG_IMAGE_FLAG_FAST; // three times as fast as without, and no larger for these pictures
    png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(image);
    std::vector<std::uint8_t> bytes(size);
    if (!png_image_write_to_memory(&image, bytes.data(), &size, 0, rgb.data(), 0, nullptr)) {
        throw Failure("cannot write " + path + ": " + image.message);
    }
    file.write(bytes.data(), size);
    file.commit();
}

namespace {

// "012.500.png"
std::string still_name(ShowTime time) {
    if (time == kLoadingTime) return "loading.png";
    const std::string text = seconds_text(time);
    return std::string(7 - text.size(), '0') + text + ".png";
}

class Stills : public Sink {
public:
    Stills(const std::vector<ShowTime>& times, const ShowFrames& frames, const std::string& output) {
        const bool into_folder = times.size() > 1 || output.back() == '/' || fs::is_directory(output);
        if (into_folder) make_folder(output);
        for (ShowTime time : times) {
            const std::string path = into_folder ? (fs::path(output) / still_name(time)).string() : output;
            OutputFile::expect_writable(path);
            paths_.emplace(frames.frame_on_screen_at(time), path);
        }
    }

    void take(const Picture& picture) override {
        const auto [begin, end] = paths_.equal_range(picture.info.frame);
        for (auto path = begin; path != end; ++path) write_png(picture, path->second);
    }

    std::string after_failure() const override { return "stills before it were kept"; }

private:
    std::multimap<std::int64_t, std::string> paths_; // by frame
};

class FrameFolder : public Sink {
public:
    explicit FrameFolder(const std::string& folder) : folder_(folder) {
        make_folder(folder);
        OutputFile::expect_writable(folder + "/frame");
    }

    void take(const Picture& picture) override {
        char name[40];
        std::snprintf(name, sizeof name, "/frame-%06" PRId64 ".png", picture.info.frame);
        write_png(picture, folder_ + name);
    }

    std::string after_failure() const override { return "the frames before it were kept"; }

private:
    std::string folder_;
};

} // namespace

std::unique_ptr<Sink> make_stills(const std::vector<ShowTime>& times, const ShowFrames& frames,
                                  const std::string& output) {
    return std::make_unique<Stills>(times, frames, output);
}

std::unique_ptr<Sink> make_frame_folder(const std::string& folder) {
    return std::make_unique<FrameFolder>(folder);
}

} // namespace offscreen
