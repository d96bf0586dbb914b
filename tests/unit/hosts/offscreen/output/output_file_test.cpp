#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>

#include "hosts/offscreen/failure.h"
#include "hosts/offscreen/output/output_file.h"
#include "tests/support/files.h"

namespace fs = std::filesystem;

namespace offscreen {
namespace {

void put(const std::string& path, const std::string& text) { std::ofstream(path) << text; }

void write_file(const std::string& path, const std::string& text, bool replace) {
    OutputFile file(path, replace);
    file.write(text.data(), text.size());
    file.commit();
}

TEST(OutputFile, HasItsNameOnlyWhenComplete) {
    const TestFolder folder;
    {
        OutputFile file(folder / "a.png", false);
        file.write("1", 1);
        EXPECT_FALSE(fs::exists(folder / "a.png"));
        file.write("2", 1);
        file.commit();
    }
    EXPECT_EQ(file_bytes(folder / "a.png"), "12");
    EXPECT_EQ(folder.names(), std::vector<std::string>{"a.png"});
    { const OutputFile dropped(folder / "b.png", false); }
    EXPECT_EQ(folder.names(), std::vector<std::string>{"a.png"});
}

TEST(OutputFile, TwoOfOneNameDoNotMix) {
    const TestFolder folder;
    OutputFile one(folder / "a.png", true), other(folder / "a.png", true);
    one.write("one", 3);
    other.write("other", 5);
    one.write("one", 3);
    one.commit();
    EXPECT_EQ(file_bytes(folder / "a.png"), "oneone");
    other.commit();
    EXPECT_EQ(file_bytes(folder / "a.png"), "other");
    EXPECT_EQ(folder.names(), std::vector<std::string>{"a.png"});
}

TEST(OutputFile, LeavesTheFilesOfOthersAlone) {
    const TestFolder folder;
    put(folder / "a.png.part", "foreign");
    write_file(folder / "a.png", "own", false);
    EXPECT_EQ(file_bytes(folder / "a.png.part"), "foreign");
    EXPECT_EQ(folder.names(), (std::vector<std::string>{"a.png", "a.png.part"}));
}

TEST(OutputFile, ReplacesAFileOnlyWhereThatIsAllowed) {
    const TestFolder folder;
    put(folder / "a.png", "old");
    EXPECT_THROW(write_file(folder / "a.png", "new", false), Failure);
    EXPECT_EQ(file_bytes(folder / "a.png"), "old");
    write_file(folder / "a.png", "new", true);
    EXPECT_EQ(file_bytes(folder / "a.png"), "new");
    EXPECT_EQ(folder.names(), std::vector<std::string>{"a.png"});
}

TEST(OutputFile, FollowsSymbolicLinks) {
    const TestFolder folder, other;
    put(other / "there.png", "old");
    fs::create_symlink(other / "there.png", folder / "link.png");
    fs::create_symlink("link.png", folder / "link to link.png");
    fs::create_symlink("new.png", folder / "dangling.png");
    write_file(folder / "link to link.png", "new", true);
    write_file(folder / "dangling.png", "new", false);
    EXPECT_EQ(file_bytes(other / "there.png"), "new");
    EXPECT_EQ(file_bytes(folder / "new.png"), "new");
    for (const char* link : {"link.png", "link to link.png", "dangling.png"}) {
        EXPECT_TRUE(fs::is_symlink(folder / link)) << link;
    }
}

TEST(OutputFile, IsNotWrittenInThePlaceOfAFifoOrFolder) {
    const TestFolder folder;
    ASSERT_EQ(mkfifo((folder / "fifo.mp4").c_str(), 0600), 0);
    EXPECT_THROW(check_outputs({folder / "fifo.mp4"}, true), Failure);
    EXPECT_THROW(check_outputs({folder.path()}, true), Failure);
}

TEST(OutputFile, WithANameThatIsTooLongIsRefusedAtOnce) {
    const TestFolder folder;
    EXPECT_THROW(check_outputs({folder / (std::string(300, 'a') + ".mp4")}, false), Failure);
}

TEST(OutputFile, IsGoneWhenTheProcessIsKilled) {
    const TestFolder folder;
    const int nameless = open(folder.path().c_str(), O_TMPFILE | O_RDWR, 0600);
    if (nameless < 0) GTEST_SKIP() << "the file system of " << folder.path() << " has no nameless files";
    close(nameless);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        OutputFile file(folder / "a.png", false);
        file.write("1", 1);
        std::raise(SIGKILL);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_TRUE(folder.names().empty());
}

} // namespace
} // namespace offscreen
