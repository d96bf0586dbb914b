// Files of a test's own.
#pragma once

#include <string>
#include <vector>

// A new folder under the system's temporary one, removed with everything in it at the end. Throws
// std::system_error where none can be made.
class TestFolder {
public:
    TestFolder();
    ~TestFolder();
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    const std::string& path() const { return path_; }
    std::string operator/(const std::string& name) const { return path_ + "/" + name; }

    // The names of what is in it, sorted.
    std::vector<std::string> names() const;

private:
    std::string path_;
};

// All bytes of a file; none where it cannot be read.
std::string file_bytes(const std::string& path);
