// The list of pictures to compare, moments.txt.
#pragma once

#include <ostream>
#include <string>
#include <vector>

struct PictureMoment {
    std::string language;
    std::string time; // as the command line has it
    std::string what; // is to be seen

    // The file's name under a folder of stills or references.
    std::string still() const;
    std::string reference() const;
};

// How a failed test calls it.
std::ostream& operator<<(std::ostream& out, const PictureMoment& moment);

std::vector<PictureMoment> read_moments(const std::string& path);
