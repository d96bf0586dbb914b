#include <gtest/gtest.h>
#include <regex.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>

#include "tests/whole/export/programs.h"

namespace fs = std::filesystem;

namespace {

int lines_in(const std::string& text) { return static_cast<int>(std::count(text.begin(), text.end(), '\n')); }

void expect_one_line(const Finished& finished, int status, const std::string& named) {
    EXPECT_EQ(finished.status, status) << finished.err;
    EXPECT_EQ(lines_in(finished.err), 1) << finished.err;
    EXPECT_NE(finished.err.find(named), std::string::npos) << finished.err;
    EXPECT_EQ(finished.out, "");
}

// Whether a POSIX extended regular expression is found in a text. (std::regex takes seconds to compile.)
bool matches(const std::string& text, const char* expression) {
    regex_t compiled;
    if (regcomp(&compiled, expression, REG_EXTENDED | REG_NOSUB) != 0) return false;
    const bool found = regexec(&compiled, text.c_str(), 0, nullptr, 0) == 0;
    regfree(&compiled);
    return found;
}

// A folder with everything the show opens, by reference.
void link_data(const TestFolder& folder) {
    for (const auto& entry : fs::directory_iterator(SKAV_DATA)) {
        fs::create_symlink(fs::absolute(entry.path()), folder / entry.path().filename().string());
    }
}

TEST(CommandLine, HelpSaysItAllAndDoesNothing) {
    const Finished finished = run_program({{SKAV_EXPORT, "--help"}});
    EXPECT_EQ(finished.status, 0);
    EXPECT_NE(finished.out.find("--supersample"), std::string::npos);
    EXPECT_EQ(finished.err, "");
}

TEST(CommandLine, TheVersionIsThatOfTheProject) {
    const Finished finished = run_program({{SKAV_EXPORT, "--version"}});
    EXPECT_EQ(finished.status, 0);
    EXPECT_EQ(finished.out, "skav-export " PROJECT_VERSION "\n");
    EXPECT_EQ(finished.err, "");
}

TEST(CommandLine, ChaptersAreListedWithoutDrawingAnything) {
    const Finished finished =
        run_program({{SKAV_EXPORT, "--chapters", "--fps", "30000/1001", "--from", "70", "--to", "75"}});
    EXPECT_EQ(finished.status, 0);
    EXPECT_EQ(finished.err, "");
    // 70 s is frame 2098 of the show, 74 s frame 2218, and 75 s, by then 0.3 s ahead of the music, frame 2239.
    EXPECT_EQ(finished.out, ";FFMETADATA1\ntitle=skav\n"
                            "[CHAPTER]\nTIMEBASE=1001/30000\nSTART=0\nEND=120\ntitle=You want:\n"
                            "[CHAPTER]\nTIMEBASE=1001/30000\nSTART=120\nEND=141\n"
                            "title=Scroller: into the room\n");
    EXPECT_EQ(run_program(in_shell("\"$@\" > /dev/full", {{SKAV_EXPORT, "--chapters"}})).status, 1);
}

TEST(CommandLine, AnUnknownOptionIsOneLineAndStatus2) {
    expect_one_line(run_program(export_show({"--nonsense"})), 2, "--nonsense");
}

TEST(CommandLine, ABadTimeIsOneLineAndStatus2) {
    TestFolder folder;
    expect_one_line(run_program(export_show({"--still", "later", "-o", folder / "a.png"})), 2, "later");
    EXPECT_TRUE(folder.names().empty());
}

TEST(CommandLine, ARangeWithoutAFrameIsOneLineAndStatus2) {
    TestFolder folder;
    expect_one_line(
        run_program(export_show({"--fps", "1", "--from", "1.1", "--to", "1.9", "-o", folder / "a.mp4"})), 2,
        "no frame begins");
    EXPECT_TRUE(folder.names().empty());
}

TEST(CommandLine, AnOutputThatCannotBeWrittenIsOneLineAndStatus1) {
    expect_one_line(run_program(export_show({"-o", "/nonexistent/show.mp4"})), 1, "/nonexistent/show.mp4");
    expect_one_line(run_program(export_show({"-q", "--still", "0", "-o", "/nonexistent/a.png"})), 1,
                    "/nonexistent/a.png");
    expect_one_line(run_program(export_show({"--frames", "/dev/null/frames"})), 1, "/dev/null/frames");
    TestFolder folder;
    fs::create_symlink("loop.png", folder / "loop.png");
    expect_one_line(run_program(export_show({"--still", "0", "-o", folder / "loop.png"})), 1,
                    "cannot write " + (folder / "loop.png"));
}

// Each of these files is needed, some only late in the show: nothing is drawn without them.
TEST(CommandLine, EveryFileThatCannotBeUsedIsNamedBeforeAnythingIsDrawn) {
    TestFolder folder, output;
    link_data(folder);
    fs::remove(folder / "Vera.ttf");
    fs::remove(folder / "zev.mp3");
    std::ofstream(folder / "zev.mp3") << "all these words are no notes\n";
    fs::remove(folder / "zev_voc.mp3");
    fs::copy_file(std::string(SKAV_DATA) + "/zev_voc.mp3", folder / "zev_voc.mp3");
    fs::resize_file(folder / "zev_voc.mp3", 100'000);
    Command start = export_show({"-q", "--still", "0", "-o", output / "a.png"});
    start.arguments[2] = folder.path();
    const Finished finished = run_program(start);
    EXPECT_EQ(finished.status, 1);
    EXPECT_EQ(lines_in(finished.err), 4) << finished.err;
    for (const char* part : {"/zev.mp3 is not an MP3 file", "/zev_voc.mp3 ends or breaks off at",
                             "/Vera.ttf is missing", "nothing was drawn"}) {
        EXPECT_NE(finished.err.find(part), std::string::npos) << part << "\n" << finished.err;
    }
    EXPECT_TRUE(output.names().empty());
}

TEST(CommandLine, TheFontThatTheShowCanDoWithoutIsNamedAndTheExportGoesOn) {
    TestFolder folder, output;
    link_data(folder);
    fs::remove(folder / "Arial");
    Command start = export_show({"-q", "--fps", "1", "--still", "0", "-o", output / "a.png"});
    start.arguments[2] = folder.path();
    const Finished finished = run_program(start);
    EXPECT_EQ(finished.status, 0);
    EXPECT_EQ(lines_in(finished.err), 1) << finished.err;
    EXPECT_NE(finished.err.find("/Arial is missing"), std::string::npos) << finished.err;
    EXPECT_EQ(output.names(), std::vector<std::string>{"a.png"});
}

TEST(CommandLine, TheDataIsFoundHereOrInTheFolderData) {
    TestFolder here, above, output;
    link_data(here);
    fs::create_directory_symlink(fs::absolute(SKAV_DATA), above / "data");
    for (const TestFolder* folder : {&here, &above}) {
        Command start = export_probe("scale", {"-q", "--still", "loading", "-o", output / "a.png"});
        start.arguments.erase(start.arguments.begin() + 1, start.arguments.begin() + 3);
        start.folder = folder->path();
        EXPECT_EQ(run_program(start).status, 0);
        EXPECT_EQ(output.names(), std::vector<std::string>{"a.png"});
        fs::remove(output / "a.png");
    }
}

TEST(CommandLine, WithoutADataFolderAMissingFileIsMissedHere) {
    TestFolder here;
    link_data(here);
    fs::remove(here / "zev.mp3");
    Command start{{SKAV_EXPORT, "-q", "--still", "0", "-o", here / "a.png"}};
    start.folder = here.path();
    const Finished finished = run_program(start);
    EXPECT_EQ(finished.status, 1);
    EXPECT_EQ(lines_in(finished.err), 2) << finished.err;
    EXPECT_NE(finished.err.find((here / "zev.mp3") + " is missing"), std::string::npos) << finished.err;
}

TEST(CommandLine, DataThatIsNowhereIsOneLineThatSaysWhereItWasLookedFor) {
    if (fs::exists(INSTALLED_DATA)) GTEST_SKIP() << "the show is installed here";
    TestFolder here;
    Command start{{SKAV_EXPORT, "-q", "--still", "0", "-o", here / "a.png"}};
    start.folder = here.path();
    const Finished finished = run_program(start);
    EXPECT_EQ(finished.status, 1);
    EXPECT_EQ(
        finished.err.find("skav-export: the show's files are not in " + here.path() + ", " + (here / "data")),
        0u)
        << finished.err;
    EXPECT_EQ(lines_in(finished.err), 2) << "and that nothing was drawn: " << finished.err;
    EXPECT_TRUE(here.names().empty());
}

TEST(CommandLine, ARelativePathStartsAtTheFolderOfTheProgramsStart) {
    TestFolder folder;
    Command start = export_probe("scale", {"-q", "--still", "loading", "-o", "a.png"});
    start.folder = folder.path();
    EXPECT_EQ(run_program(start).status, 0);
    EXPECT_EQ(folder.names(), std::vector<std::string>{"a.png"});
}

TEST(CommandLine, TheShowAsksWhereNoLanguageIsGiven) {
    TestFolder folder;
    Command start = export_show({"-q", "--still", "68", "--fps", "2", "-o", folder / "asked.png"});
    start.arguments.erase(start.arguments.begin() + 3, start.arguments.begin() + 5);
    start.input = "e\n";
    const Finished asked = run_program(start);
    EXPECT_EQ(asked.status, 0);
    EXPECT_EQ(asked.out, "German or English Text [G/e]?: English screen text...\n\n");
    const Finished told =
        run_program(export_show({"-q", "--still", "68", "--fps", "2", "-o", folder / "en.png"}));
    EXPECT_EQ(told.out, "");
    EXPECT_EQ(file_bytes(folder / "asked.png"), file_bytes(folder / "en.png"));
    Command german = export_show({"-q", "--still", "68", "--fps", "2", "-o", folder / "de.png"});
    german.arguments[4] = "de";
    EXPECT_EQ(run_program(german).status, 0);
    EXPECT_NE(file_bytes(folder / "de.png"), file_bytes(folder / "en.png"));
}

TEST(CommandLine, QuietSaysNothing) {
    TestFolder folder;
    const Finished finished =
        run_program(export_probe("scale", {"-q", "--still", "0.5", "-o", folder / "a.png"}));
    EXPECT_EQ(finished.status, 0);
    EXPECT_EQ(finished.out, "");
    EXPECT_EQ(finished.err, "");
}

TEST(CommandLine, ProgressIsPlainLinesWhereThereIsNoTerminal) {
    TestFolder folder;
    const Finished finished =
        run_program(export_probe("scale", {"--fps", "10", "--to", "1", "--frames", folder / "frames"}));
    EXPECT_EQ(finished.status, 0);
    EXPECT_EQ(finished.out, "");
    EXPECT_NE(finished.err.find("50%"), std::string::npos) << finished.err;
    EXPECT_NE(finished.err.find("10 pictures in"), std::string::npos) << finished.err;
    EXPECT_EQ(finished.err.find('\r'), std::string::npos);
    // The loading screen counts as a picture.
    const Finished loading =
        run_program(export_probe("scale", {"--still", "loading", "-o", folder / "a.png"}));
    EXPECT_NE(loading.err.find("1 picture in"), std::string::npos) << loading.err;
}

TEST(CommandLine, TheTimeLeftIsToldAtTheStart) {
    TestFolder folder;
    const Finished finished =
        run_program(export_probe("scale", {"--fps", "10", "--to", "6", "-o", folder / "a.mp4"}));
    EXPECT_EQ(finished.status, 0);
    const char first_line[] = "^  3%  show 0\\.100 s  [0-9.]+ frames/s  [0-9]+:[0-9]{2} left\n 10%";
    EXPECT_TRUE(matches(finished.err, first_line)) << finished.err;
}

TEST(CommandLine, ProgressIsABarOnATerminal) {
    TestFolder folder;
    const Finished finished = run_program(on_terminal(
        export_probe("leftovers", {"--fps", "10", "--from", "1", "--to", "4", "--frames", folder / "frames"}),
        ""));
    EXPECT_EQ(finished.status, 0);
    EXPECT_NE(finished.out.find("\r["), std::string::npos) << finished.out;
    EXPECT_NE(finished.out.find("frames/s"), std::string::npos) << finished.out;
    EXPECT_NE(finished.out.find("30 pictures in"), std::string::npos) << finished.out;
}

TEST(CommandLine, FramesForAProgramAreNotSentToATerminal) {
    const Finished finished = run_program(on_terminal(export_show({"-o", "-"}), ""));
    EXPECT_EQ(finished.status, 2);
    EXPECT_NE(finished.out.find("standard output is a terminal"), std::string::npos) << finished.out;
}

TEST(CommandLine, AStopBeforeTheFirstPictureLeavesNothing) {
    TestFolder folder;
    Command start = export_show({"--fps", "51", "--from", "160", "-o", folder / "a.mp4"});
    const Finished finished = stop_at_work(start, SIGTERM);
    EXPECT_EQ(finished.status, 128 + SIGTERM);
    EXPECT_NE(finished.err.find("stopped by a signal after 0 of 102 pictures; nothing was kept"),
              std::string::npos)
        << finished.err;
    EXPECT_TRUE(folder.names().empty());
}

TEST(CommandLine, WithoutEglOneLineSaysWhatToInstall) {
    TestFolder folder;
    Command start = export_show({"-q", "--still", "0", "-o", folder / "a.png"});
    // No vendor's EGL is found in an empty folder.
    start.environment["__EGL_VENDOR_LIBRARY_DIRS"] = folder.path();
    expect_one_line(run_program(start), 1, "libegl-mesa0");
}

TEST(CommandLine, AFullDiskLeavesNoFileAndSaysSo) {
    TestFolder folder;
    // A file may grow to 40 blocks of 1024 bytes; SIGXFSZ is ignored, so that writing fails as on a full disk.
    for (const char* output : {"show.mp4", "a.png"}) {
        std::vector<std::string> arguments = {"-q", "--fps", "1", "-o", folder / output};
        if (output[0] == 'a') {
            arguments.insert(arguments.end(), {"--still", "12"});
        } else {
            arguments.insert(arguments.end(), {"--from", "12", "--to", "15", "--crf", "1"});
        }
        const Finished finished =
            run_program(in_shell("trap '' XFSZ; ulimit -f 40; exec \"$@\"", export_show(arguments)));
        EXPECT_EQ(finished.status, 1);
        EXPECT_EQ(lines_in(finished.err), 1) << finished.err;
        EXPECT_NE(finished.err.find(": File too large; nothing was kept"), std::string::npos) << finished.err;
        EXPECT_TRUE(folder.names().empty());
    }
}

} // namespace
