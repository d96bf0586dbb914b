#include "hosts/offscreen/output/output_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "hosts/offscreen/failure.h"

namespace offscreen {

OutputFile::OutputFile(const std::string& path) : path_(path), provisional_(path + ".part") {
    if (std::filesystem::is_directory(path)) cannot_write(path, EISDIR);
    descriptor_ = open(provisional_.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (descriptor_ < 0) cannot_write(path, errno);
}

OutputFile::~OutputFile() {
    close(descriptor_);
    if (!committed_) std::remove(provisional_.c_str());
}

void OutputFile::write(const void* data, std::size_t size) { write_all(descriptor_, data, size, path_); }

void OutputFile::commit() {
    if (std::rename(provisional_.c_str(), path_.c_str()) != 0) cannot_write(path_, errno);
    committed_ = true;
}

void OutputFile::expect_writable(const std::string& path) { const OutputFile trial(path); }

void make_folder(const std::string& folder) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) throw Failure("cannot make the folder " + folder + ": " + error.message());
}

void write_all(int descriptor, const void* data, std::size_t size, const std::string& name) {
    const char* bytes = static_cast<const char*>(data);
    while (size > 0) {
        const ssize_t written = write(descriptor, bytes, size);
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) cannot_write(name, errno);
        bytes += written;
        size -= static_cast<std::size_t>(written);
    }
}

void cannot_write(const std::string& name, int error) {
    throw Failure("cannot write " + name + ": " + std::strerror(error));
}

} // namespace offscreen
