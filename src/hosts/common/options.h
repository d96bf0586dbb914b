// Command lines. A program's options are a table: what --help says of each, and what reads its value.
//
//     const common::CommandLine line = {
//         "Plays the show.\n",
//         {{"How it looks:", {{"window", 0, "", "play in a window", common::set(options.window)}}}},
//         ""};
//     const common::Given given = common::read_options(argc, argv, line);
//
// --help and --version stand at the end of the last group of every program.
#pragma once

#include <functional>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "hosts/common/prompt.h"
#include "hosts/common/times.h"

namespace common {

// The command line makes no sense. what() is one line for the user, which also names --help; the exit status is 2.
class UsageError : public std::runtime_error {
public:
    explicit UsageError(const std::string& message);
};

struct Option {
    std::string name;  // "from" for --from
    char letter;       // 'o' for -o; 0: none
    std::string value; // what --help calls its value: "TIME"; empty: it takes none
    std::string help;  // one paragraph

    // Takes the value. Throws std::invalid_argument with what is wrong with it.
    std::function<void(const std::string& value)> read;
};

struct OptionGroup {
    std::string title;
    std::vector<Option> options;
};

struct CommandLine {
    std::string about; // what --help says before the options: whole lines
    std::vector<OptionGroup> groups;
    std::string notes; // and after them
};

// What a command line holds.
struct Given {
    std::set<std::string> options; // names
    std::string answer;            // for --help and --version: what to print instead of doing anything else
};

// Reads the command line from left to right; the values go where the table's readers put them. Throws UsageError.
Given read_options(int argc, char** argv, const CommandLine& line);

// Prints an answer. The program's exit status: 1 when it cannot be written.
int print_answer(const std::string& answer);

// Readers.

inline auto set(bool& flag) {
    return [&flag](const std::string&) { flag = true; };
}

inline auto set(std::string& target) {
    return [&target](const std::string& value) { target = value; };
}

// Values. Each throws std::invalid_argument with what is wrong.

// A time of the show: "74", "12.5" or "1:14.3", up to its end.
ShowTime show_time(const std::string& text);

int whole_number(const std::string& text, int least, int most);

// One of the given words.
template <typename Value>
Value one_of(const std::string& text, std::initializer_list<std::pair<const char*, Value>> choices) {
    std::string known;
    for (const auto& [name, value] : choices) {
        if (text == name) return value;
        known += (known.empty() ? "" : " or ") + std::string(name);
    }
    throw std::invalid_argument("'" + text + "' is not " + known);
}

// Options that are the same in every program.

// --language en|de|auto
Option language_option(Language& language);

// --data FOLDER
Option data_option(std::string& folder);

} // namespace common
