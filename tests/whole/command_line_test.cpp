// The command line and the start of skav, up to where it touches the display.
#include <csignal>
#include <filesystem>

#include "tests/whole/display_test.h"

namespace {

TEST(CommandLine, AnswersBeforeAnyQuestion) {
    const std::pair<const char*, const char*> options[] = {
        {"--help", "Usage: skav-on-clock [OPTION]...\n"},
        {"--version", "skav-on-clock " PROJECT_VERSION "\n"}};
    for (const auto& [option, beginning] : options) {
        Process show(Command{{SKAV_ON_CLOCK_PROGRAM, option}, {}, {}, true});
        EXPECT_EQ(0, show.wait());
        EXPECT_EQ(0u, show.output().find(beginning)) << show.output();
        EXPECT_EQ(std::string::npos, show.output().find("[G/e]"));
        EXPECT_EQ("", show.errors());
    }
}

TEST(CommandLine, SaysByItsStatusWhenAnAnswerCannotBeWritten) {
    Process show(Command{{"sh", "-c", "\"$0\" --help >/dev/full", SKAV_ON_CLOCK_PROGRAM}});
    EXPECT_EQ(1, show.wait());
}

TEST(Prompt, IsSeenBeforeItIsAnswered) {
    Process show(Command{{SKAV_ON_CLOCK_PROGRAM}, {}, DATA_DIRECTORY, true});
    EXPECT_TRUE(eventually([&] { return show.output() == "German or English Text [G/e]?: "; }));
    EXPECT_TRUE(show.running());
}

TEST(Prompt, IsNeitherSeenNorReadWhereTheLanguageIsGiven) {
    for (const char* language : {"en", "de", "auto"}) {
        Process show(Command{{SKAV_ON_CLOCK_PROGRAM, "--language", language},
                             {{"DISPLAY", std::nullopt}},
                             DATA_DIRECTORY,
                             true});
        EXPECT_EQ(1, show.wait()) << "the display is missed after the question";
        EXPECT_EQ("", show.output());
        EXPECT_EQ(1, count_lines(show.errors())) << show.errors();
    }
}

struct Wrong {
    std::vector<std::string> words;
    std::string named;
};

std::ostream& operator<<(std::ostream& stream, const Wrong& wrong) { return stream << wrong.named; }

class WrongOption : public testing::TestWithParam<Wrong> {};

TEST_P(WrongOption, IsRefusedBeforeAnyQuestion) {
    Command command{{SKAV_ON_CLOCK_PROGRAM}, {}, {}, true};
    const std::vector<std::string>& words = GetParam().words;
    command.arguments.insert(command.arguments.end(), words.begin(), words.end());
    Process show(command);
    EXPECT_EQ(2, show.wait());
    EXPECT_EQ("", show.output());
    EXPECT_EQ(1, count_lines(show.errors()));
    EXPECT_NE(std::string::npos, show.errors().find("'" + GetParam().named + "'")) << show.errors();
}

// The last ones are GLUT's own, which it would accept and ignore.
INSTANTIATE_TEST_SUITE_P(Words, WrongOption,
                         testing::Values(Wrong{{"--fullscreen"}, "--fullscreen"}, Wrong{{"-w"}, "-w"},
                                         Wrong{{"file"}, "file"}, Wrong{{"--display"}, "--display"},
                                         Wrong{{"--language", "fr"}, "fr"}, Wrong{{"--from", "soon"}, "soon"},
                                         Wrong{{"--from", "3:00"}, "skav-on-clock --help"},
                                         Wrong{{"--scale", "0"}, "0"}, Wrong{{"--scale", "5"}, "5"},
                                         Wrong{{"--scale", "1.5"}, "1.5"},
                                         Wrong{{"-geometry", "640x480"}, "-g"}, Wrong{{"-iconic"}, "-i"},
                                         Wrong{{"-sync"}, "-s"}));

TEST(CommandLine, NamesTheDisplayInTwoSpellings) {
    const auto server = DisplayServer::virtual_screen(320, 240);
    const Viewer screen(server->name());
    for (const char* option : {"--display", "-display"}) {
        Command command = test_show(*server, "picture", {option, server->name()});
        command.environment["DISPLAY"] = std::nullopt;
        Process show(command);
        EXPECT_TRUE(eventually([&] { return shows_test_picture(screen.picture(), {0, 0, 320, 240}); }));
        show.send(SIGTERM);
        show.wait();
        EXPECT_TRUE(eventually([&] { return !shows_test_picture(screen.picture(), {0, 0, 320, 240}); }));
    }
}

// A folder with those of the show's files.
void put_files(const TestFolder& folder, const std::vector<std::string>& names) {
    for (const std::string& name : names) {
        std::filesystem::copy_file(std::filesystem::path(DATA_DIRECTORY) / name, folder / name);
    }
}

// Without a display, since what is checked comes before it is touched.
Command show_in(const TestFolder& folder, const std::vector<std::string>& options = {}) {
    Command command{{SKAV_ON_CLOCK_PROGRAM}, {{"DISPLAY", std::nullopt}}, folder.path()};
    command.arguments.insert(command.arguments.end(), options.begin(), options.end());
    return command;
}

TEST(Files, ThatAreMissingAreNamedAndTheShowGoesOn) {
    const TestFolder folder;
    put_files(folder, {"zev.mp3", "Arial"});
    Process show(show_in(folder));
    EXPECT_EQ(1, show.wait());
    EXPECT_EQ(3, count_lines(show.errors())) << "two files and the display:\n" << show.errors();
    EXPECT_NE(std::string::npos, show.errors().find("skav-on-clock: zev_voc.mp3: ")) << show.errors();
    EXPECT_NE(std::string::npos, show.errors().find("skav-on-clock: Vera.ttf: ")) << show.errors();
    EXPECT_NE(std::string::npos, show.output().find("[G/e]")) << "the show has started";
}

TEST(Files, ThatAreMissingEndAStrictStartBeforeAnyQuestion) {
    const TestFolder folder;
    put_files(folder, {"zev.mp3", "Arial"});
    Process show(show_in(folder, {"--strict"}));
    EXPECT_EQ(1, show.wait());
    EXPECT_EQ(2, count_lines(show.errors())) << show.errors();
    EXPECT_EQ("", show.output());
}

TEST(Files, ThatTheShowDoesWithoutAreNamedOnly) {
    const TestFolder folder;
    put_files(folder, {"zev.mp3", "zev_voc.mp3", "Vera.ttf"});
    Process show(show_in(folder, {"--strict"}));
    EXPECT_EQ(1, show.wait()) << "without a display";
    EXPECT_EQ(2, count_lines(show.errors())) << show.errors();
    EXPECT_EQ(0u, show.errors().find("skav-on-clock: Arial: ")) << show.errors();
    EXPECT_NE(std::string::npos, show.output().find("[G/e]")) << "the show has started";
}

// The lines that a start there with these options gives, the last of which is about the display.
std::string errors_in(const std::string& folder, std::vector<std::string> arguments) {
    Process show(Command{std::move(arguments), {{"DISPLAY", std::nullopt}}, folder});
    EXPECT_EQ(1, show.wait());
    return show.errors();
}

const char kNoDisplay[] = "no display";

TEST(Data, IsFoundInTheFolderThatIsGiven) {
    const TestFolder elsewhere;
    const std::string errors = errors_in(elsewhere.path(), {SKAV_ON_CLOCK_PROGRAM, "--data", DATA_DIRECTORY});
    EXPECT_EQ(1, count_lines(errors)) << errors;
    EXPECT_NE(std::string::npos, errors.find(kNoDisplay)) << errors;
}

TEST(Data, IsFoundInTheWorkingDirectoryItsFolderDataAndBesideTheProgram) {
    const TestFolder folder, elsewhere;
    std::filesystem::create_directory_symlink(DATA_DIRECTORY, folder / "data");
    std::filesystem::copy_file(SKAV_ON_CLOCK_PROGRAM, folder / "program");
    const std::pair<std::string, std::string> starts[] = {{DATA_DIRECTORY, SKAV_ON_CLOCK_PROGRAM},
                                                          {folder.path(), SKAV_ON_CLOCK_PROGRAM},
                                                          {elsewhere.path(), folder / "program"}};
    for (const auto& [where, program] : starts) {
        const std::string errors = errors_in(where, {program, "--strict"});
        EXPECT_EQ(1, count_lines(errors)) << errors;
        EXPECT_NE(std::string::npos, errors.find(kNoDisplay)) << errors;
    }
}

TEST(Data, ThatIsNowhereIsOneLineThatSaysWhereItWasLookedFor) {
    if (std::filesystem::exists(INSTALLED_DATA)) GTEST_SKIP() << "the show is installed here";
    const TestFolder elsewhere;
    const std::string errors = errors_in(elsewhere.path(), {SKAV_ON_CLOCK_PROGRAM, "--strict"});
    const std::string beside = std::filesystem::path(SKAV_ON_CLOCK_PROGRAM).parent_path();
    EXPECT_EQ(errors, "skav-on-clock: the show's files are not in " + elsewhere.path() + ", " +
                          (elsewhere / "data") + ", " + beside + ", " + beside + "/data or " +
                          INSTALLED_DATA + ": the show stands still without them. Name their folder with " +
                          "--data.\n");
}

TEST(Data, AFolderThatCannotBeEnteredIsOneLine) {
    const std::string errors = errors_in("/", {SKAV_ON_CLOCK_PROGRAM, "--data", "/no/such/folder"});
    EXPECT_EQ(errors, "skav-on-clock: cannot enter '/no/such/folder': No such file or directory\n");
}

} // namespace
