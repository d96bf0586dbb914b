// Compares, or with --refresh SKAV_EXPORT DATA PICTURES_FOLDER makes the references anew.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/pictures/comparison.h"
#include "tests/pictures/moments.h"
#include "tests/support/process.h"

namespace fs = std::filesystem;

namespace {

std::string file_stem(const std::string& time) {
    if (time == "loading") return time;
    return std::string(5 - time.size(), '0') + time + "00";
}

int refresh(const std::string& program, const std::string& data, const std::string& pictures) {
    TestFolder folder;
    Command start;
    start.arguments = {"/bin/bash", pictures + "/export_stills.sh", program,
                       data,        pictures + "/moments.txt",      folder / "stills"};
    const Finished finished = run_program(start);
    std::fputs(finished.err.c_str(), stderr);
    if (finished.status != 0) return finished.status;

    const std::string references = pictures + "/references";
    fs::remove_all(references);
    fs::create_directories(references);
    for (const PictureMoment& moment : read_moments(pictures + "/moments.txt")) {
        const Rgb picture = reduced(read_png(folder / ("stills/" + moment.still())), kReduction);
        write_png_file(picture, references + "/" + moment.reference());
    }
    return 0;
}

} // namespace

std::string PictureMoment::still() const { return language + "/" + file_stem(time) + ".png"; }
std::string PictureMoment::reference() const { return language + "-" + file_stem(time) + ".png"; }

std::ostream& operator<<(std::ostream& out, const PictureMoment& moment) {
    return out << moment.language << " " << moment.time << ": " << moment.what;
}

std::vector<PictureMoment> read_moments(const std::string& path) {
    std::vector<PictureMoment> moments;
    std::ifstream file(path);
    std::string line;
    while (std::getline(file, line)) {
        PictureMoment moment;
        std::istringstream words(line);
        if (line.empty() || line[0] == '#' || !(words >> moment.language >> moment.time)) continue;
        std::getline(words >> std::ws, moment.what);
        moments.push_back(moment);
    }
    return moments;
}

int main(int argc, char** argv) {
    if (argc == 5 && std::string(argv[1]) == "--refresh") return refresh(argv[2], argv[3], argv[4]);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
