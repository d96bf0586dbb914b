#include "tools/pack/picture.h"

#include <png.h>

#include <cctype>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <memory>
#include <stdexcept>

#include "show/stage/packed_picture.h"

namespace {

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

[[noreturn]] void fail(const std::string& path, const std::string& reason) {
    throw std::runtime_error(path + ": " + reason);
}

File open_to_read(const std::string& path) {
    File file(std::fopen(path.c_str(), "rb"), std::fclose);
    if (!file) fail(path, std::strerror(errno));
    return file;
}

void check_size(const std::string& path, unsigned long width, unsigned long height, int max_side) {
    const auto limit = static_cast<unsigned long>(max_side);
    if (width == 0 || height == 0) fail(path, "the picture is empty");
    if (width > limit || height > limit)
        fail(path, "the picture is " + std::to_string(width) + " x " + std::to_string(height) +
                       " pixels; at most " + std::to_string(max_side) + " x " + std::to_string(max_side) +
                       " can be packed");
}

// Owns the record of libpng's simplified reader and writer.
struct PngImage {
    png_image image = {};
    PngImage() { image.version = PNG_IMAGE_VERSION; }
    ~PngImage() { png_image_free(&image); }
    PngImage(const PngImage&) = delete;
    PngImage& operator=(const PngImage&) = delete;
};

Picture read_png(const std::string& path, std::FILE* file, int max_side) {
    PngImage png;
    if (!png_image_begin_read_from_stdio(&png.image, file)) fail(path, png.image.message);
    check_size(path, png.image.width, png.image.height, max_side);
    png.image.format = PNG_FORMAT_RGB;
    Picture picture{static_cast<int>(png.image.width), static_cast<int>(png.image.height), {}};
    picture.rgb.resize(PNG_IMAGE_SIZE(png.image));
    const png_color white = {255, 255, 255};
    if (!png_image_finish_read(&png.image, &white, picture.rgb.data(), 0, nullptr))
        fail(path, png.image.message);
    return picture;
}

// Reads the next number of a PPM header, skipping white space and comments before it.
unsigned long read_ppm_number(const std::string& path, std::FILE* file) {
    int c = std::fgetc(file);
    while (c == '#' || std::isspace(c)) {
        if (c == '#')
            while (c != '\n' && c != EOF) c = std::fgetc(file);
        c = std::fgetc(file);
    }
    if (c < '0' || c > '9') fail(path, "the PPM header is damaged");
    unsigned long number = 0;
    for (; c >= '0' && c <= '9'; c = std::fgetc(file)) {
        number = 10 * number + static_cast<unsigned long>(c - '0');
        if (number > 1000000) fail(path, "the PPM header holds a number that is too large");
    }
    return number; // the white space character after it is consumed
}

Picture read_ppm(const std::string& path, std::FILE* file, int max_side) {
    std::fseek(file, 2, SEEK_SET);
    const unsigned long width = read_ppm_number(path, file);
    const unsigned long height = read_ppm_number(path, file);
    const unsigned long maximum = read_ppm_number(path, file);
    check_size(path, width, height, max_side);
    if (maximum != 255) fail(path, "only PPM pictures of 8 bits (maximum value 255) are read");
    Picture picture{static_cast<int>(width), static_cast<int>(height), {}};
    picture.rgb.resize(width * height * 3);
    if (std::fread(picture.rgb.data(), 1, picture.rgb.size(), file) != picture.rgb.size())
        fail(path, "the file ends before the picture does");
    return picture;
}

} // namespace

Picture read_picture(const std::string& path, int max_side) {
    const File file = open_to_read(path);
    unsigned char magic[8] = {};
    const std::size_t got = std::fread(magic, 1, sizeof magic, file.get());
    if (std::ferror(file.get())) fail(path, std::strerror(errno)); // a directory can be opened, but not read
    std::rewind(file.get());
    if (got == sizeof magic && png_sig_cmp(magic, 0, sizeof magic) == 0)
        return read_png(path, file.get(), max_side);
    if (got >= 2 && magic[0] == 'P' && magic[1] == '6') return read_ppm(path, file.get(), max_side);
    fail(path, "neither a PNG nor a binary PPM (P6) picture");
}

void write_png(const std::string& path, const Picture& picture) {
    PngImage png;
    png.image.width = static_cast<png_uint_32>(picture.width);
    png.image.height = static_cast<png_uint_32>(picture.height);
    png.image.format = PNG_FORMAT_RGB;
    if (!png_image_write_to_file(&png.image, path.c_str(), 0, picture.rgb.data(), 0, nullptr))
        fail(path, png.image.message);
}

Picture decode_picture(const std::vector<std::uint8_t>& packed) {
    if (packed.size() < 3) throw std::runtime_error("no packed picture: fewer than 3 bytes");
    Picture picture{packed_width(packed.data()), packed_height(packed.data()), {}};
    const std::size_t pixels =
        static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height);
    if (pixels == 0) throw std::runtime_error("no packed picture: it has no pixels");
    std::vector<std::uint8_t> samples(static_cast<std::size_t>(packed_buffer_size(packed.data())),
                                      kNeutralSample);
    if (!decode_packed_n(packed.data(), packed.size(), samples.data()))
        throw std::runtime_error("no whole packed picture: the data is cut off or damaged");
    std::vector<std::uint8_t> r(pixels), g(pixels), b(pixels);
    yuv_to_rgb(picture.width, picture.height, samples.data(), r.data(), g.data(), b.data());
    picture.rgb.reserve(3 * pixels);
    for (std::size_t i = 0; i < pixels; ++i) picture.rgb.insert(picture.rgb.end(), {r[i], g[i], b[i]});
    return picture;
}

double psnr(const Picture& a, const Picture& b) {
    double sum = 0.0;
    for (std::size_t i = 0; i < a.rgb.size(); ++i) {
        const double difference = a.rgb[i] - b.rgb[i];
        sum += difference * difference;
    }
    if (sum == 0.0) return std::numeric_limits<double>::infinity();
    return 10.0 * std::log10(255.0 * 255.0 * static_cast<double>(a.rgb.size()) / sum);
}
