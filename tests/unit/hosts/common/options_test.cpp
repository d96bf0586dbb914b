#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "hosts/common/options.h"

namespace common {
namespace {

// What the program "play" of these tests was told.
struct Told {
    bool loud = false;
    std::string output;
    int count = 0;
};

CommandLine command_line(Told& told) {
    return {"Plays.\n",
            {{"What:",
              {{"output", 'o', "PATH", "where", set(told.output)},
               {"count", 0, "N",
                "how often, which takes more words to say than there is room for in one line of a terminal",
                [&](const std::string& value) { told.count = whole_number(value, 1, 9); }}}},
             {"Other:", {{"loud", 'l', "", "louder", set(told.loud)}}}},
            "The end.\n"};
}

Given read(std::vector<std::string> words, Told& told) {
    words.insert(words.begin(), "play");
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    return read_options(static_cast<int>(words.size()), arguments.data(), command_line(told));
}

std::string complaint(const std::vector<std::string>& words) {
    Told told;
    try {
        read(words, told);
        return "";
    } catch (const UsageError& error) {
        return error.what();
    }
}

TEST(CommandLine, IsReadByLongNamesLettersAndEqualsSigns) {
    Told told;
    const Given given = read({"-l", "--output", "a", "--count=3"}, told);
    EXPECT_TRUE(told.loud);
    EXPECT_EQ(told.output, "a");
    EXPECT_EQ(told.count, 3);
    EXPECT_EQ(given.options, (std::set<std::string>{"loud", "output", "count"}));
    EXPECT_EQ(given.answer, "");
    read({"-ob"}, told);
    EXPECT_EQ(told.output, "b");
}

TEST(CommandLine, NamesWhatIsWrongAndHowToGetHelp) {
    const std::pair<std::vector<std::string>, const char*> cases[] = {
        {{"--nonsense"}, "unknown option '--nonsense'"},
        {{"-l", "-z"}, "unknown option '-z'"},
        {{"--loud=3"}, "unknown option '--loud=3'"},
        {{"word", "--nonsense"}, "unknown option '--nonsense'"},
        {{"--output"}, "option '--output' needs a value"},
        {{"word", "-o"}, "option '-o' needs a value"},
        {{"--loud", "word"}, "unexpected argument 'word'"},
        {{"--count", "10"}, "--count: '10' is not a whole number from 1 to 9"},
        {{"--count", "1x"}, "--count: '1x' is not a whole number from 1 to 9"},
    };
    for (const auto& [words, message] : cases)
        EXPECT_EQ(complaint(words), std::string(message) + "; try 'host_tests --help'");
}

TEST(CommandLine, HelpHasEveryOptionInLinesOfATerminal) {
    Told told;
    EXPECT_EQ(read({"--help"}, told).answer,
              "Usage: host_tests [OPTION]...\n"
              "\n"
              "Plays.\n"
              "\n"
              "What:\n"
              "  -o, --output PATH  where\n"
              "      --count N      how often, which takes more words to say than there is room\n"
              "                     for in one line of a terminal\n"
              "\n"
              "Other:\n"
              "  -l, --loud         louder\n"
              "  -h, --help         print this text\n"
              "      --version      print the program's version\n"
              "\n"
              "The end.\n");
    EXPECT_EQ(read({"-h"}, told).answer, read({"--help"}, told).answer);
}

TEST(CommandLine, HelpAndVersionLeaveTheRestUnread) {
    Told told;
    EXPECT_EQ(read({"--version", "--nonsense"}, told).answer, "host_tests " PROJECT_VERSION "\n");
    EXPECT_EQ(read({"--help", "-l"}, told).options, std::set<std::string>{"help"});
    EXPECT_FALSE(told.loud);
}

TEST(Values, ATimeIsOneOfTheShow) {
    EXPECT_EQ(show_time("1:14.3"), 74'300'000);
    EXPECT_EQ(show_time("162"), kShowEnd);
    EXPECT_THROW(show_time("162.000001"), std::invalid_argument);
    EXPECT_THROW(show_time("soon"), std::invalid_argument);
}

TEST(Values, AWordIsOneOfThoseGiven) {
    EXPECT_EQ(one_of<int>("b", {{"a", 1}, {"b", 2}}), 2);
    EXPECT_THROW(one_of<int>("c", {{"a", 1}, {"b", 2}}), std::invalid_argument);
}

} // namespace
} // namespace common
