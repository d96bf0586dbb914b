// skav-export where something goes wrong around it: outputs that exist, closed descriptors, signals, old devices.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <fstream>

#include "tests/support/picture.h"
#include "tests/whole/export/decoded_video.h"
#include "tests/whole/export/programs.h"

namespace fs = std::filesystem;

namespace {

bool has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

Command with_fault(const char* fault, Command command) {
    command.environment["LD_PRELOAD"] = SKAV_FAULTS;
    command.environment["FAULT"] = fault;
    command.environment["ASAN_OPTIONS"] = "detect_leaks=0:verify_asan_link_order=0";
    return command;
}

TEST(ExistingFile, IsReplacedOnlyWithForceOrOnAgreement) {
    const TestFolder folder;
    const std::string path = folder / "a.png";
    std::ofstream(path) << "old";
    const Command export_again = export_probe("scale", {"-q", "--fps", "10", "--still", "0", "-o", path});
    const Finished refused = run_program(export_again);
    EXPECT_EQ(refused.status, 1);
    EXPECT_TRUE(has(refused.err, "a.png exists (--force replaces it)")) << refused.err;
    const Finished declined = run_program(on_terminal(export_again, "n\n"));
    EXPECT_EQ(declined.status, 1);
    EXPECT_TRUE(has(declined.out, "a.png exists. Replace? [y/N]")) << declined.out;
    EXPECT_EQ(file_bytes(path), "old");

    EXPECT_EQ(run_program(on_terminal(export_again, "y\n")).status, 0);
    const std::string made = file_bytes(path);
    EXPECT_NE(made, "old");
    std::ofstream(path) << "old";
    Command forced = export_again;
    forced.arguments.push_back("--force");
    EXPECT_EQ(run_program(forced).status, 0);
    EXPECT_EQ(file_bytes(path), made);
    EXPECT_EQ(folder.names(), std::vector<std::string>{"a.png"});
}

TEST(ExistingFile, OfSeveralFramesIsFoundBeforeAnyIsDrawn) {
    const TestFolder folder;
    std::ofstream(folder / "frame-000012.png") << "old";
    const Finished finished =
        run_program(export_probe("scale", {"--fps", "10", "--to", "2", "--frames", folder.path()}));
    EXPECT_EQ(finished.status, 1);
    EXPECT_TRUE(has(finished.err, "frame-000012.png exists")) << finished.err;
    EXPECT_EQ(folder.names(), std::vector<std::string>{"frame-000012.png"});
}

TEST(FileSystem, WithoutNamelessFilesGivesTheSameResult) {
    const TestFolder folder;
    const Finished finished = run_program(
        with_fault("no nameless files",
                   export_probe("scale", {"-q", "--fps", "10", "--to", "0.2", "-o", folder / "a.mp4"})));
    EXPECT_EQ(finished.status, 0) << finished.err;
    EXPECT_EQ(folder.names(), std::vector<std::string>{"a.mp4"});
    EXPECT_EQ(decode_video(folder / "a.mp4").frame_times.size(), 2u);
    const Finished failed = run_program(
        with_fault("no nameless files",
                   export_probe("exit", {"-q", "--fps", "10", "--to", "5", "-o", folder / "b.mp4"})));
    EXPECT_EQ(failed.status, 1);
    EXPECT_EQ(folder.names(), std::vector<std::string>{"a.mp4"});
}

TEST(CurrentFolder, ThatWasDeletedIsAnErrorLine) {
    const TestFolder folder;
    const Finished finished =
        run_program(in_shell("mkdir " + (folder / "gone") + "; cd " + (folder / "gone") + "; rmdir " +
                                 (folder / "gone") + "; exec \"$@\"",
                             export_show({"-o", "a.mp4"})));
    EXPECT_EQ(finished.status, 1);
    EXPECT_TRUE(has(finished.err, "skav-export: cannot find 'a.mp4'")) << finished.err;
}

TEST(ClosedDescriptor, OfStandardInputLeavesTheLanguageAsGiven) {
    const TestFolder folder;
    const auto still = [&](const std::string& name, const std::string& script) {
        const Finished finished = run_program(
            in_shell(script, export_show({"-q", "--fps", "1", "--still", "68", "-o", folder / name})));
        EXPECT_EQ(finished.status, 0) << finished.err;
        return read_png(folder / name);
    };
    EXPECT_TRUE(still("open.png", "exec \"$@\"") == still("closed.png", "exec \"$@\" <&-"));
}

TEST(ClosedDescriptor, OfStandardOutputIsAnErrorForAStream) {
    const Finished finished = run_program(in_shell("exec \"$@\" >&-", export_probe("scale", {"-o", "-"})));
    EXPECT_EQ(finished.status, 1);
    EXPECT_TRUE(has(finished.err, "cannot write to standard output")) << finished.err;
}

TEST(Signal, ThatWasIgnoredAtTheStartStaysIgnored) {
    const TestFolder folder;
    const Finished finished =
        stop_at_work(in_shell("trap '' HUP; exec \"$@\"",
                              export_probe("scale", {"--fps", "10", "--to", "4", "-o", folder / "a.mp4"})),
                     SIGHUP);
    EXPECT_EQ(finished.status, 0) << finished.err;
    EXPECT_TRUE(has(finished.err, "a.mp4: 40 pictures in")) << finished.err;
}

TEST(Signal, EndsAStreamThatNobodyReads) {
    const TestFolder folder;
    const std::string fifo = folder / "fifo";
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    // The shell opens both ends, so that there is a reader, which never reads.
    Process process(
        in_shell("exec \"$@\" 1<>" + fifo, export_probe("scale", {"-q", "--fps", "10", "-o", "-"})));
    EXPECT_FALSE(process.wait(std::chrono::seconds(2))) << process.errors();
    process.send(SIGTERM);
    EXPECT_EQ(process.wait(std::chrono::seconds(5)), 128 + SIGTERM);
    EXPECT_TRUE(has(process.errors(), "while nobody read standard output; the stream ends after 0 pictures"))
        << process.errors();
}

TEST(Signal, LeavesTheFramesDrawnSoFarAsAVideo) {
    const TestFolder folder;
    const Finished finished =
        stop_at_work(export_probe("leftovers", {"--fps", "10", "-o", folder / "a.mp4"}), SIGQUIT);
    EXPECT_EQ(finished.status, 128 + SIGQUIT);
    const DecodedVideo video = decode_video(folder / "a.mp4");
    const std::size_t count = video.frame_times.size();
    EXPECT_GT(count, 10u);
    EXPECT_LT(count, 1617u);
    const std::string pictures = std::to_string(count);
    EXPECT_TRUE(has(finished.err, "stopped by a signal after " + pictures + " of 1617 pictures; "))
        << finished.err;
    EXPECT_TRUE(has(finished.err, "/a.mp4 holds " + pictures + " pictures")) << finished.err;
    ASSERT_FALSE(video.chapters.empty());
    EXPECT_NEAR(video.chapters.back().end, static_cast<double>(count) / 10, 0.01);
    EXPECT_EQ(folder.names(), std::vector<std::string>{"a.mp4"});
}

TEST(Signal, LeavesNoPartOfAStoryboard) {
    const TestFolder folder;
    const Finished finished =
        stop_at_work(export_probe("leftovers", {"--fps", "30", "--sheet", folder / "sheet.png"}), SIGINT);
    EXPECT_EQ(finished.status, 128 + SIGINT);
    EXPECT_TRUE(has(finished.err, " of 31 pictures; nothing was kept")) << finished.err;
    EXPECT_TRUE(folder.names().empty());
}

TEST(Egl, PassesOverADeviceThatIsTooOld) {
    const TestFolder folder;
    const Finished finished = run_program(with_fault(
        "old device", export_probe("scale", {"-q", "--fps", "10", "--still", "0", "-o", folder / "a.png"})));
    EXPECT_EQ(finished.status, 0) << finished.err;
    EXPECT_EQ(read_png(folder / "a.png").width, 1024);
}

TEST(Egl, SaysWhatIsThereWhereAllDevicesAreTooOld) {
    const TestFolder folder;
    Command command = export_probe("scale", {"-q", "--still", "0", "-o", folder / "a.png"});
    command.environment["MESA_GL_VERSION_OVERRIDE"] = "2.1";
    const Finished finished = run_program(command);
    EXPECT_EQ(finished.status, 1);
    EXPECT_TRUE(has(finished.err, "OpenGL 3.0 or newer is needed, this machine's EGL has only 2.1"))
        << finished.err;
    EXPECT_TRUE(folder.names().empty());
}

} // namespace
