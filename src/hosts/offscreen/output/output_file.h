// Output files: one gets its name only when it is complete, and replaces another only where that is allowed.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace offscreen {

// Checks before anything is drawn that files can be written at `paths`, which lie in one folder. Existing files are
// an error, unless `force` is set or the user agrees on the terminal to their replacement. Returns whether files may
// be replaced. Throws Failure.
bool check_outputs(const std::vector<std::string>& paths, bool force);

class OutputFile {
public:
    // Opens a file without a name in the folder of `path`, or of what `path` links to. Where the file system has no
    // nameless files it gets a unique name beside `path`. Throws Failure.
    OutputFile(const std::string& path, bool replace);
    ~OutputFile(); // without commit: the file is gone, also when the process is killed
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    // A name under which a library can open the file until commit.
    const std::string& name() const { return name_; }

    // Appends to the file. Throws Failure.
    void write(const void* data, std::size_t size);

    // Gives the file its name. Throws Failure, also when a file of that name exists and may not be replaced.
    void commit();

private:
    std::string path_; // no symbolic link
    bool replace_;
    int descriptor_ = -1;
    std::string name_;
    bool has_name_ = false; // other than under /proc
};

// The extension of `path` in small letters, with its dot.
std::string extension_of(const std::string& path);

// Whether `path` is a folder or ends in a slash.
bool is_folder(const std::string& path);

// Makes `folder`, and those it lies in, where they are missing. Throws Failure.
void make_folder(const std::string& folder);

// Throws Failure: cannot write `name`, with the reason that errno `error` stands for.
[[noreturn]] void cannot_write(const std::string& name, int error);

} // namespace offscreen
