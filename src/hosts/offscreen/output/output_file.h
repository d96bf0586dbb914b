// An output file that gets its name only when it is complete.
#pragma once

#include <string>

namespace offscreen {

class OutputFile {
public:
    // Opens a file under a provisional name beside `path`. Throws Failure.
    explicit OutputFile(const std::string& path);
    ~OutputFile(); // without commit: the file is removed
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    // What a library opens to write the file's content; valid until commit.
    const std::string& provisional_name() const { return provisional_; }

    // Appends to the content. Throws Failure.
    void write(const void* data, std::size_t size);

    // Gives the file its name, in the place of one that has it. Throws Failure.
    void commit();

    // Throws Failure when no file could be written at `path`: early, rather than when its picture is ready.
    static void expect_writable(const std::string& path);

private:
    std::string path_;
    std::string provisional_;
    int descriptor_ = -1;
    bool committed_ = false;
};

// Makes `folder`, and those it lies in, where they are missing. Throws Failure.
void make_folder(const std::string& folder);

// Writes all of `data`; `name` is for the message. Throws Failure.
void write_all(int descriptor, const void* data, std::size_t size, const std::string& name);

[[noreturn]] void cannot_write(const std::string& name, int error);

} // namespace offscreen
