#include "hosts/offscreen/output/output_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "hosts/common/signals.h"
#include "hosts/offscreen/failure.h"

namespace fs = std::filesystem;

namespace offscreen {

namespace {

// `path`, or what it links to in the end, which need not exist.
fs::path follow_links(fs::path path) {
    std::error_code none;
    for (int links = 0; fs::is_symlink(path, none); ++links) {
        if (links == 40) cannot_write(path, ELOOP);
        path = path.parent_path() / fs::read_symlink(path);
    }
    return path;
}

// Another name beside `path` each time, of this process alone.
std::string provisional_name(const fs::path& path) {
    static std::atomic<int> count = 0;
    const std::string number = std::to_string(getpid()) + "-" + std::to_string(count++);
    return (path.parent_path() / ("." + path.filename().string() + "." + number + ".part")).string();
}

// Whether the user agrees to replace `count` files, of which `first` is one. No without a terminal to ask on.
bool agreed_to_replace(const std::string& first, std::size_t count) {
    if (!isatty(STDIN_FILENO) || !isatty(STDERR_FILENO)) return false;
    const std::string others = count > 1 ? " and " + std::to_string(count - 1) + " more exist" : " exists";
    std::fprintf(stderr, "%s%s. Replace? [y/N] ", first.c_str(), others.c_str());
    char answer[80];
    return std::fgets(answer, sizeof answer, stdin) && (answer[0] == 'y' || answer[0] == 'Y');
}

} // namespace

bool check_outputs(const std::vector<std::string>& paths, bool force) {
    std::string first;
    std::size_t count = 0;
    for (const std::string& path : paths) {
        std::error_code error;
        const fs::file_status status = fs::status(path, error);
        if (!fs::status_known(status)) cannot_write(path, error.value()); // the name is too long, for example
        if (!fs::exists(status)) continue;
        if (!fs::is_regular_file(status))
            throw Failure("cannot write " + path + ": it is not a regular file");
        if (count++ == 0) first = path;
    }
    const OutputFile trial(paths.front(), false);
    if (count > 0 && !force && !agreed_to_replace(first, count)) {
        throw Failure(first + " exists (--force replaces it)");
    }
    return force || count > 0;
}

OutputFile::OutputFile(const std::string& path, bool replace) : path_(follow_links(path)), replace_(replace) {
    const std::string folder = fs::path(path_).parent_path().string();
    descriptor_ = open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0666);
    if (descriptor_ >= 0) {
        name_ = "/proc/self/fd/" + std::to_string(descriptor_);
        return;
    }
    do {
        name_ = provisional_name(path_);
        descriptor_ = open(name_.c_str(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, 0666);
    } while (descriptor_ < 0 && errno == EEXIST);
    if (descriptor_ < 0) cannot_write(path, errno);
    has_name_ = true;
}

OutputFile::~OutputFile() {
    close(descriptor_);
    if (has_name_) std::remove(name_.c_str());
}

void OutputFile::write(const void* data, std::size_t size) {
    if (!common::write_all(descriptor_, data, size)) cannot_write(path_, errno);
}

void OutputFile::commit() {
    // A link never replaces a file; a renamed one does.
    while (!has_name_) {
        const std::string link = replace_ ? provisional_name(path_) : path_;
        if (linkat(AT_FDCWD, name_.c_str(), AT_FDCWD, link.c_str(), AT_SYMLINK_FOLLOW) == 0) {
            if (!replace_) return;
            name_ = link;
            has_name_ = true;
        } else if (!replace_ || errno != EEXIST) {
            cannot_write(path_, errno);
        }
    }
    if (!replace_ && fs::exists(path_)) cannot_write(path_, EEXIST);
    if (std::rename(name_.c_str(), path_.c_str()) != 0) cannot_write(path_, errno);
    has_name_ = false;
}

std::string extension_of(const std::string& path) {
    std::string extension = fs::path(path).extension().string();
    for (char& letter : extension)
        letter = static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
    return extension;
}

bool is_folder(const std::string& path) {
    std::error_code none;
    return path.back() == '/' || fs::is_directory(path, none);
}

void make_folder(const std::string& folder) {
    std::error_code error;
    fs::create_directories(folder, error);
    if (error) throw Failure("cannot make the folder " + folder + ": " + error.message());
}

void cannot_write(const std::string& name, int error) {
    throw Failure("cannot write " + name + ": " + std::strerror(error));
}

} // namespace offscreen
