#pragma once

#include <string>

// Makes the folder with the show's music and fonts the current one, since the show opens them by name alone:
// `folder`, or where that is empty the current folder if it has the music, else its subfolder data. Throws
// Failure when something is missing there, saying what.
void enter_data_folder(const std::string& folder);
