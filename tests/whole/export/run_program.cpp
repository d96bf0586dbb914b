#include "tests/whole/export/run_program.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <png.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace fs = std::filesystem;

namespace {

struct Pipe {
    int read_end = -1;
    int write_end = -1;
    Pipe() {
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0) std::abort();
        read_end = ends[0];
        write_end = ends[1];
    }
    void close_read() {
        if (read_end >= 0) close(read_end);
        read_end = -1;
    }
    void close_write() {
        if (write_end >= 0) close(write_end);
        write_end = -1;
    }
    ~Pipe() {
        close_read();
        close_write();
    }
};

[[noreturn]] void become(const Start& start, const Pipe& in, const Pipe& out, const Pipe& err) {
    dup2(in.read_end, STDIN_FILENO);
    dup2(out.write_end, STDOUT_FILENO);
    dup2(err.write_end, STDERR_FILENO);
    if (!start.folder.empty() && chdir(start.folder.c_str()) != 0) _exit(126);
    // At the end the leak checker reads the storage of every thread, and now and then crashes over those of
    // the GL driver that are just ending. Leaks are looked for where no driver is loaded.
    setenv("ASAN_OPTIONS", "detect_leaks=0", 0);
    for (const auto& [name, value] : start.environment) setenv(name.c_str(), value.c_str(), 1);
    std::vector<char*> arguments;
    for (const std::string& argument : start.arguments)
        arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    execv(arguments[0], arguments.data());
    _exit(127);
}

} // namespace

Finished run_program(const Start& start) {
    Pipe in, out, err;
    const pid_t child = fork();
    if (child < 0) std::abort();
    if (child == 0) become(start, in, out, err);
    in.close_read();
    out.close_write();
    err.close_write();
    const ssize_t written = write(in.write_end, start.input.data(), start.input.size()); // fits into a pipe
    EXPECT_EQ(written, static_cast<ssize_t>(start.input.size()));
    in.close_write();

    Finished finished;
    std::vector<char> buffer(1 << 16);
    const auto take = [&](int descriptor, std::string& text, const auto& callback) {
        const ssize_t size = read(descriptor, buffer.data(), buffer.size());
        if (size <= 0) return false;
        const std::string piece(buffer.data(), static_cast<std::size_t>(size));
        text += piece;
        if (callback) callback(child, piece);
        return true;
    };
    while (out.read_end >= 0 || err.read_end >= 0) {
        pollfd ends[2] = {{out.read_end, POLLIN, 0}, {err.read_end, POLLIN, 0}};
        poll(ends, 2, -1);
        if (ends[0].revents && !take(out.read_end, finished.out, start.on_output)) out.close_read();
        if (ends[1].revents && !take(err.read_end, finished.err, start.on_error)) err.close_read();
    }
    int status = 0;
    waitpid(child, &status, 0);
    finished.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return finished;
}

TestFolder::TestFolder() {
    std::string pattern = (fs::temp_directory_path() / "skav-export-XXXXXX").string();
    if (!mkdtemp(pattern.data())) std::abort();
    path_ = pattern;
}

TestFolder::~TestFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

std::vector<std::string> TestFolder::names() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(path_)) names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

std::string file_bytes(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

bool operator==(const Rgb& a, const Rgb& b) {
    return a.width == b.width && a.height == b.height && a.pixels == b.pixels;
}

Rgb read_png(const std::string& path) {
    Rgb picture;
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&image, path.c_str())) {
        ADD_FAILURE() << path << ": " << image.message;
        return picture;
    }
    image.format = PNG_FORMAT_RGB;
    picture.width = static_cast<int>(image.width);
    picture.height = static_cast<int>(image.height);
    picture.pixels.resize(PNG_IMAGE_SIZE(image));
    EXPECT_TRUE(png_image_finish_read(&image, nullptr, picture.pixels.data(), 0, nullptr)) << path;
    return picture;
}

void write_png_file(const Rgb& picture, const std::string& path) {
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    image.format = PNG_FORMAT_RGB;
    image.width = static_cast<png_uint_32>(picture.width);
    image.height = static_cast<png_uint_32>(picture.height);
    EXPECT_TRUE(png_image_write_to_file(&image, path.c_str(), 0, picture.pixels.data(), 0, nullptr)) << path;
}

Rgb reduced(const Rgb& picture, int factor) {
    Rgb small;
    small.width = picture.width / factor;
    small.height = picture.height / factor;
    for (int y = 0; y < small.height; ++y) {
        for (int x = 0; x < small.width; ++x) {
            for (int i = 0; i < 3; ++i) {
                int sum = 0;
                for (int dy = 0; dy < factor; ++dy) {
                    for (int dx = 0; dx < factor; ++dx)
                        sum += picture.at(x * factor + dx, y * factor + dy)[i];
                }
                const int count = factor * factor;
                small.pixels.push_back(static_cast<std::uint8_t>((sum + count / 2) / count));
            }
        }
    }
    return small;
}

std::vector<std::string> raw_pictures(const std::string& stream) {
    constexpr std::size_t kSize = 1024 * 768 * 3;
    EXPECT_EQ(stream.size() % kSize, 0u);
    std::vector<std::string> pictures;
    for (std::size_t at = 0; at + kSize <= stream.size(); at += kSize)
        pictures.push_back(stream.substr(at, kSize));
    return pictures;
}

Rgb raw_picture(const std::string& bytes) {
    Rgb picture;
    picture.width = 1024;
    picture.height = 768;
    picture.pixels.assign(bytes.begin(), bytes.end());
    return picture;
}
