#include "tests/support/files.h"

#include <stdlib.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

namespace fs = std::filesystem;

TestFolder::TestFolder() : path_((fs::temp_directory_path() / "skav-test-XXXXXX").string()) {
    if (!mkdtemp(path_.data())) throw std::system_error(errno, std::generic_category(), path_);
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
