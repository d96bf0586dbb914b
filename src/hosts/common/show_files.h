// The files that the show opens from its working directory: found, and checked before the show starts. The show
// itself says nothing about a missing or broken file, it only stands still or leaves out its texts.
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

// Where the show's files are looked for where no folder is given, in this order: the working directory and the
// program's folder, each followed by its subfolder data, and the folder that they are installed in.
std::vector<std::string> data_folders();

// What enter_data_folder has found.
struct DataFolder {
    bool complete;                     // nothing is wrong with the files that the show needs
    std::vector<std::string> problems; // a line each, for the user
};

// Makes the folder of the show's files the working directory: `given`, or where that is empty the first of
// data_folders() that has music of the show; where none has, nothing changes. Throws std::runtime_error when that
// folder cannot be entered.
DataFolder enter_data_folder(const std::string& given);

// How much of the music file `name` (as the show opens it) the show plays, in seconds; 0 for any other file.
double needed_seconds(const std::string& name);

} // namespace common
