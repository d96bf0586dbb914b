#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <map>

#include "hosts/common/options.h"
#include "hosts/common/prompt.h"
#include "tests/support/files.h"
#include "tests/unit/hosts/common/child.h"

namespace {

using common::Language;

// The language of the locale where just these variables are set.
Language language_with(const std::map<std::string, std::string>& variables) {
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const auto value = variables.find(name);
        if (value == variables.end())
            unsetenv(name);
        else
            setenv(name, value->second.c_str(), 1);
    }
    return common::language_of_locale();
}

TEST(LanguageOfTheLocale, IsGermanWhereTheLocaleIs) {
    for (const char* locale : {"de_DE.UTF-8", "de_AT", "de", "de.UTF-8", "de@euro"})
        EXPECT_EQ(language_with({{"LANG", locale}}), Language::german) << locale;
    for (const char* locale : {"en_US.UTF-8", "C", "POSIX", "fr_FR", "dev_XX", "DE", "nds_DE", ""})
        EXPECT_EQ(language_with({{"LANG", locale}}), Language::english) << locale;
    EXPECT_EQ(language_with({}), Language::english);
}

TEST(LanguageOfTheLocale, IsThatOfTheFirstVariableThatIsNotEmpty) {
    EXPECT_EQ(language_with({{"LC_ALL", "C"}, {"LC_MESSAGES", "de_DE"}, {"LANG", "de_DE"}}),
              Language::english);
    EXPECT_EQ(language_with({{"LC_ALL", ""}, {"LC_MESSAGES", "de_DE"}, {"LANG", "en_US"}}), Language::german);
    EXPECT_EQ(language_with({{"LC_MESSAGES", "en_US"}, {"LANG", "de_DE"}}), Language::english);
}

// Asks as the show does, with `language` known beforehand and "x" on standard input. Returns the answer; what is
// printed on standard output goes to the file `output`.
int ask(Language language, const std::string& output) {
    Child child([&](const Child&) {
        int ends[2];
        if (pipe(ends) != 0 || write(ends[1], "x\n", 2) != 2) return 1;
        if (dup2(ends[0], STDIN_FILENO) < 0 || !std::freopen(output.c_str(), "w", stdout)) return 1;
        common::begin_prompt(language);
        std::printf("question");
        const int answer = std::getchar();
        common::end_prompt();
        std::printf("show");
        std::fflush(stdout);
        return answer;
    });
    return child.wait();
}

TEST(Prompt, IsAnsweredBeforehandAndNotSeenWhereTheLanguageIsKnown) {
    TestFolder folder;
    EXPECT_EQ(ask(Language::english, folder / "english"), 'e');
    EXPECT_EQ(file_bytes(folder / "english"), "show");
    EXPECT_NE(ask(Language::german, folder / "german"), 'e');
    EXPECT_EQ(file_bytes(folder / "german"), "show");
}

TEST(Prompt, IsAskedWhereTheLanguageIsNotKnown) {
    TestFolder folder;
    EXPECT_EQ(ask(Language::ask, folder / "asked"), 'x');
    EXPECT_EQ(file_bytes(folder / "asked"), "questionshow");
}

TEST(LanguageOption, TakesTheWordsOfBothPrograms) {
    Language language = Language::ask;
    const common::Option option = common::language_option(language);
    option.read("en");
    EXPECT_EQ(language, Language::english);
    option.read("de");
    EXPECT_EQ(language, Language::german);
    language_with({{"LANG", "en_GB.UTF-8"}});
    option.read("auto");
    EXPECT_EQ(language, Language::english);
    language_with({{"LANG", "de_CH.UTF-8"}});
    option.read("auto");
    EXPECT_EQ(language, Language::german);
    EXPECT_THROW(option.read("fr"), std::invalid_argument);
}

} // namespace
