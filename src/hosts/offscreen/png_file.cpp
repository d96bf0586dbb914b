#include "hosts/offscreen/png_file.h"

#include <png.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "hosts/offscreen/failure.h"

namespace {

[[noreturn]] void fail(const std::string& path, int error) {
    throw Failure("cannot write " + path + ": " + std::strerror(error));
}

// A file under a provisional name, gone again unless it is committed.
class ProvisionalFile {
public:
    explicit ProvisionalFile(const std::string& path) : path_(path), provisional_(path + ".part") {
        file_ = std::fopen(provisional_.c_str(), "wb");
        if (!file_) fail(path_, errno);
    }
    ~ProvisionalFile() {
        if (file_) std::fclose(file_);
        if (!committed_) std::remove(provisional_.c_str());
    }
    ProvisionalFile(const ProvisionalFile&) = delete;
    ProvisionalFile& operator=(const ProvisionalFile&) = delete;

    std::FILE* get() { return file_; }

    void commit() {
        const int closed = std::fclose(file_);
        file_ = nullptr;
        if (closed != 0 || std::rename(provisional_.c_str(), path_.c_str()) != 0) fail(path_, errno);
        committed_ = true;
    }

private:
    std::string path_;
    std::string provisional_;
    std::FILE* file_ = nullptr;
    bool committed_ = false;
};

// libpng reports errors by not returning; this makes them C++ exceptions.
[[noreturn]] void png_failed(png_structp png, png_const_charp) {
    fail(*static_cast<const std::string*>(png_get_error_ptr(png)), errno ? errno : ENOMEM);
}

void ignore_warning(png_structp, png_const_charp) {}

} // namespace

void write_png(const Picture& picture, const std::string& path) {
    ProvisionalFile file(path);
    errno = 0;
    const png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, const_cast<std::string*>(&path),
                                                    png_failed, ignore_warning);
    if (!png) fail(path, ENOMEM);
    const png_infop info = png_create_info_struct(png);
    struct Guard {
        png_structp png;
        png_infop info;
        ~Guard() { png_destroy_write_struct(&png, &info); }
    } guard{png, info};
    if (!info) fail(path, ENOMEM);

    png_init_io(png, file.get());
    png_set_IHDR(png, info, static_cast<png_uint_32>(picture.width), static_cast<png_uint_32>(picture.height),
                 8, PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    png_set_sRGB(png, info, PNG_sRGB_INTENT_PERCEPTUAL);
    png_set_compression_level(png, 4);
    png_write_info(png, info);
    png_set_filler(png, 0, PNG_FILLER_AFTER);
    for (int y = 0; y < picture.height; ++y) png_write_row(png, picture.row(y));
    png_write_end(png, info);
    file.commit();
}

void expect_writable(const std::string& path) {
    if (std::filesystem::is_directory(path)) fail(path, EISDIR);
    const ProvisionalFile trial(path);
}

void make_folder(const std::string& folder) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) throw Failure("cannot make the folder " + folder + ": " + error.message());
}
