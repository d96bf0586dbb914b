#include "hosts/common/options.h"

#include <getopt.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <sstream>

namespace common {

namespace {

constexpr std::size_t kWidth = 80; // of a terminal
constexpr int kFirstLong = 256;    // getopt's value of the first option's long name; letters are less

Option help_option() { return {"help", 'h', "", "print this text", {}}; }
Option version_option() { return {"version", 0, "", "print the program's version", {}}; }

// "  -o, --output PATH"
std::string left_side(const Option& option) {
    const std::string letter = option.letter ? std::string("-") + option.letter + "," : "   ";
    return "  " + letter + " --" + option.name + (option.value.empty() ? "" : " " + option.value);
}

// `text` in lines of the terminal's width, all but the first behind `indent` spaces; the first begins there.
std::string wrapped(const std::string& text, std::size_t indent) {
    std::string lines, word;
    std::size_t column = indent;
    for (std::istringstream words(text); words >> word;) {
        if (column > indent && column + 1 + word.size() > kWidth) {
            lines += "\n" + std::string(indent, ' ');
            column = indent;
        }
        if (column > indent) {
            lines += ' ';
            ++column;
        }
        lines += word;
        column += word.size();
    }
    return lines + "\n";
}

// The groups with the options of every program.
std::vector<OptionGroup> all_groups(const CommandLine& line) {
    std::vector<OptionGroup> groups = line.groups;
    groups.back().options.push_back(help_option());
    groups.back().options.push_back(version_option());
    return groups;
}

std::string help_text(const CommandLine& line) {
    const std::vector<OptionGroup> groups = all_groups(line);
    std::size_t indent = 0;
    for (const OptionGroup& group : groups)
        for (const Option& option : group.options) indent = std::max(indent, left_side(option).size() + 2);
    std::string text =
        std::string("Usage: ") + program_invocation_short_name + " [OPTION]...\n\n" + line.about + "\n";
    for (const OptionGroup& group : groups) {
        text += group.title + "\n";
        for (const Option& option : group.options) {
            std::string left = left_side(option);
            left.resize(indent, ' ');
            text += left + wrapped(option.help, indent);
        }
        text += "\n";
    }
    return text + line.notes;
}

std::string version_text() { return std::string(program_invocation_short_name) + " " SKAV_VERSION "\n"; }

// The option that getopt has just rejected, as the user wrote it.
std::string offending(char** argv) {
    if (optopt > 0 && optopt < kFirstLong) return std::string("'-") + static_cast<char>(optopt) + "'";
    return std::string("'") + argv[optind - 1] + "'";
}

void read_value(const Option& option, const std::string& value) {
    try {
        option.read(value);
    } catch (const std::invalid_argument& wrong) {
        throw UsageError("--" + option.name + ": " + wrong.what());
    }
}

} // namespace

UsageError::UsageError(const std::string& message)
    : std::runtime_error(message + "; try '" + program_invocation_short_name + " --help'") {}

Given read_options(int argc, char** argv, const CommandLine& line) {
    std::vector<Option> options;
    for (const OptionGroup& group : all_groups(line))
        options.insert(options.end(), group.options.begin(), group.options.end());
    std::string letters = ":";
    std::vector<option> names; // as getopt takes them
    for (const Option& option : options) {
        const int has_value = option.value.empty() ? no_argument : required_argument;
        names.push_back(
            {option.name.c_str(), has_value, nullptr, kFirstLong + static_cast<int>(names.size())});
        if (option.letter) letters += std::string(1, option.letter) + (has_value ? ":" : "");
    }
    names.push_back({});

    Given given;
    opterr = 0;
    optind = 1;
    for (;;) {
        const int found = getopt_long(argc, argv, letters.c_str(), names.data(), nullptr);
        if (found == -1) break;
        if (found == ':') throw UsageError("option " + offending(argv) + " needs a value");
        if (found == '?') throw UsageError("unknown option " + offending(argv));
        const auto option = found >= kFirstLong
                                ? options.begin() + (found - kFirstLong)
                                : std::find_if(options.begin(), options.end(),
                                               [found](const Option& each) { return each.letter == found; });
        given.options.insert(option->name);
        if (option->name == "help") given.answer = help_text(line);
        if (option->name == "version") given.answer = version_text();
        if (!given.answer.empty()) return given;
        read_value(*option, optarg ? optarg : "");
    }
    if (optind < argc) throw UsageError(std::string("unexpected argument '") + argv[optind] + "'");
    return given;
}

int print_answer(const std::string& answer) {
    const bool written = std::fputs(answer.c_str(), stdout) >= 0 && std::fflush(stdout) == 0;
    return written ? 0 : 1;
}

ShowTime show_time(const std::string& text) {
    const auto time = parse_time(text);
    if (!time) throw std::invalid_argument("'" + text + "' is not a time such as 12.5 or 1:14.3");
    if (*time > kShowEnd) throw std::invalid_argument("the show ends at 162 s, before " + text);
    return *time;
}

int whole_number(const std::string& text, int least, int most) {
    for (int value = least; value <= most; ++value) {
        if (text == std::to_string(value)) return value;
    }
    throw std::invalid_argument("'" + text + "' is not a whole number from " + std::to_string(least) +
                                " to " + std::to_string(most));
}

Option language_option(Language& language) {
    return {
        "language", 0, "LANG",
        "language of the texts: en, de, or auto for the locale's (German where that is de, else English); "
        "without it the show asks on standard input",
        [&language](const std::string& value) {
            language = one_of<Language>(
                value, {{"en", Language::english}, {"de", Language::german}, {"auto", language_of_locale()}});
        }};
}

Option data_option(std::string& folder) {
    return {
        "data", 0, "FOLDER",
        "where the music and the fonts are; without it they are looked for in the working directory, beside "
        "the program and where they are installed, in the first two also in a folder data",
        set(folder)};
}

} // namespace common
