// Running a program to its end, with what it reads and writes in the test's hands.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

struct Finished {
    int status = -1; // 128 and the signal's number when a signal ended it
    std::string out;
    std::string err;
};

struct Start {
    std::vector<std::string> arguments; // the program first
    std::string input;                  // all that standard input gives
    std::string folder;                 // to start in; empty: the current one
    std::map<std::string, std::string> environment;
    // Called with each piece of standard output as it comes; the process id lets it send signals.
    std::function<void(int pid, const std::string& piece)> on_output;
    // The same for standard error.
    std::function<void(int pid, const std::string& piece)> on_error;
};

Finished run_program(const Start& start);

// A folder of the test's own, gone when the test ends.
class TestFolder {
public:
    TestFolder();
    ~TestFolder();
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;
    std::string operator/(const std::string& name) const { return path_ + "/" + name; }
    const std::string& path() const { return path_; }
    std::vector<std::string> names() const; // what lies in it, sorted

private:
    std::string path_;
};

std::string file_bytes(const std::string& path);

// An 8-bit RGB picture, top row first.
struct Rgb {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> pixels;
    const std::uint8_t* at(int x, int y) const {
        return &pixels[3 * (static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                            static_cast<std::size_t>(x))];
    }
};
bool operator==(const Rgb& a, const Rgb& b);

Rgb read_png(const std::string& path);
void write_png_file(const Rgb& picture, const std::string& path);

// Each square of `factor` pixels becomes its mean.
Rgb reduced(const Rgb& picture, int factor);

// Cuts a stream of raw pictures of 1024x768 into its pictures.
std::vector<std::string> raw_pictures(const std::string& stream);
Rgb raw_picture(const std::string& bytes);
