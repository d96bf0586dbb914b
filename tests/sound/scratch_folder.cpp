#include "tests/sound/scratch_folder.h"

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

ScratchFolder::ScratchFolder() {
    path_ = (std::filesystem::temp_directory_path() / "skav-sound-XXXXXX").string();
    if (!mkdtemp(path_.data())) throw std::runtime_error("cannot make a folder like " + path_);
}

ScratchFolder::~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}
