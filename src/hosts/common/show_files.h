// The files that the show opens from its working directory, checked before the show starts: the show itself says
// nothing about a missing or broken file, it only stands still or leaves out its texts.
#pragma once

#include <string>
#include <vector>

namespace common {

// A file that the show cannot use as it should.
struct FileProblem {
    std::string name;    // as the show opens it
    std::string path;    // where it was looked for, absolute
    std::string problem; // what is wrong: "is missing"
    std::string effect;  // what the show does then: "the show stands still at its start"
    bool optional;       // the show allows for its absence
};

// The problem in one line, without a line end: what, where, why, and what to do.
std::string to_line(const FileProblem& problem);

// Checks the show's files in `folder`: both music files from the first frame header to the last one that the show
// needs, and the fonts. Nothing is decoded; this takes some hundredths of a second. Nothing is printed.
std::vector<FileProblem> show_file_problems(const std::string& folder);

// How much of the music file `name` (as the show opens it) the show plays, in seconds; 0 for any other file.
double needed_seconds(const std::string& name);

} // namespace common
