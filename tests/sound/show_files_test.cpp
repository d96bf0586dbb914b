// The check of the show's files, and the music that is cut or breaks off.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cmath>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>

#include "hosts/common/music.h"
#include "hosts/common/show_files.h"
#include "tests/sound/test_music.h"
#include "tests/support/files.h"
#include "tests/support/mp3.h"

namespace {

namespace fs = std::filesystem;

// A copy of the show's files, to be damaged.
class ShowFiles : public ::testing::Test {
protected:
    ShowFiles() {
        for (const char* name : {"zev.mp3", "zev_voc.mp3", "Vera.ttf", "Arial"})
            fs::copy_file(std::string(DATA_FOLDER) + "/" + name, folder_ / name);
    }

    void write(const std::string& name, const std::string& content) {
        std::ofstream(folder_ / name, std::ios::binary) << content;
    }

    // Writes `bytes` over what the file has at `offset`.
    void overwrite(const std::string& name, std::uintmax_t offset, const std::string& bytes) {
        std::fstream file(folder_ / name, std::ios::binary | std::ios::in | std::ios::out);
        file.seekp(static_cast<std::streamoff>(offset));
        file << bytes;
    }

    void cut(const std::string& name, std::uintmax_t bytes) { fs::resize_file(folder_ / name, bytes); }

    std::uintmax_t size(const std::string& name) { return fs::file_size(folder_ / name); }

    // The one problem, checked to be the only one and `name`'s.
    common::FileProblem only_problem(const std::string& name) {
        const std::vector<common::FileProblem> problems = common::show_file_problems(folder_.path());
        EXPECT_EQ(problems.size(), 1u);
        if (problems.size() != 1) return {};
        EXPECT_EQ(problems[0].name, name);
        EXPECT_EQ(problems[0].path, folder_ / name);
        return problems[0];
    }

    TestFolder folder_;
};

TEST_F(ShowFiles, OfTheShowAreWithoutAProblem) {
    for (const common::FileProblem& problem : common::show_file_problems(DATA_FOLDER))
        ADD_FAILURE() << to_line(problem);
}

TEST_F(ShowFiles, AreAllNamedWhenTheFolderIsWrong) {
    const auto problems = common::show_file_problems("/nowhere");
    ASSERT_EQ(problems.size(), 4u);
    EXPECT_EQ(
        to_line(problems[0]),
        "zev.mp3: /nowhere/zev.mp3 is missing: the show stands still or falls silent before 74 s. "
        "Name the folder of "
        "the show's files with --data, or put the file there (in a checkout: git checkout -- data/zev.mp3).");
    for (const common::FileProblem& problem : problems) EXPECT_EQ(problem.problem, "is missing");
}

TEST_F(ShowFiles, AreNamedWithTheAbsolutePath) {
    const auto problems = common::show_file_problems("no/such/../folder");
    ASSERT_FALSE(problems.empty());
    EXPECT_EQ(problems[0].path, fs::current_path() / "no/folder/zev.mp3");
}

TEST_F(ShowFiles, OnlyTheSecondFontIsOptional) {
    for (const common::FileProblem& problem : common::show_file_problems("/nowhere"))
        EXPECT_EQ(problem.optional, problem.name == "Arial") << problem.name;
}

TEST_F(ShowFiles, MusicThatIsNone) {
    for (const char* name : {"zev.mp3", "zev_voc.mp3"}) {
        const TestFolder kept;
        fs::rename(folder_ / name, kept / name);
        EXPECT_EQ(only_problem(name).problem, "is missing");
        write(name, "");
        EXPECT_EQ(only_problem(name).problem, "cannot be read or is empty");
        write(name, "RIFF....WAVEfmt " + std::string(200000, 'x'));
        EXPECT_EQ(only_problem(name).problem, "is not an MP3 file");
        write(name, file_bytes(std::string(DATA_FOLDER) + "/Arial"));
        EXPECT_EQ(only_problem(name).problem, "is not an MP3 file");
        fs::remove(folder_ / name);
        fs::create_directory(folder_ / name);
        EXPECT_EQ(only_problem(name).problem, "cannot be read or is empty");
        fs::remove(folder_ / name);
        ASSERT_EQ(mkfifo((folder_ / name).c_str(), 0600), 0); // waiting for its writer would be for ever
        EXPECT_EQ(only_problem(name).problem, "cannot be read or is empty");
        fs::remove(folder_ / name);
        fs::rename(kept / name, folder_ / name);
    }
}

TEST_F(ShowFiles, MusicThatIsTooShort) {
    cut("zev.mp3", 100000);
    const std::string problem = only_problem("zev.mp3").problem;
    EXPECT_EQ(problem.rfind("ends or breaks off at ", 0), 0u) << problem;
    EXPECT_NE(problem.find(" of the 74.0 s needed"), std::string::npos) << problem;
}

TEST_F(ShowFiles, MusicIsWhatTheShowNeedsOfIt) {
    write_mp3(folder_ / "zev_voc.mp3", noise(88, 1));
    EXPECT_TRUE(common::show_file_problems(folder_.path()).empty());
    write_mp3(folder_ / "zev_voc.mp3", noise(87.55, 1));
    EXPECT_EQ(only_problem("zev_voc.mp3").problem, "ends or breaks off at 87.5 s of the 87.7 s needed");
}

TEST_F(ShowFiles, MusicWithALongHole) {
    overwrite("zev_voc.mp3", size("zev_voc.mp3") / 2, std::string(8192, '\0'));
    const std::string problem = only_problem("zev_voc.mp3").problem;
    EXPECT_TRUE(problem.rfind("ends or breaks off at ", 0) == 0 || problem.rfind("is damaged at ", 0) == 0)
        << problem;
}

TEST_F(ShowFiles, MusicWithAShortHole) {
    overwrite("zev.mp3", size("zev.mp3") / 2, std::string(700, '\0'));
    const std::string problem = only_problem("zev.mp3").problem;
    EXPECT_EQ(problem.rfind("is damaged at ", 0), 0u) << problem;
}

TEST_F(ShowFiles, MusicThatChangesItsRate) {
    write_mp3(folder_ / "zev.mp3", noise(40, 1), {44100, 2, 128, false});
    write_mp3(folder_ / "other.mp3", noise(40, 1), {48000, 2, 128, false});
    const std::string both = file_bytes(folder_ / "zev.mp3") + file_bytes(folder_ / "other.mp3");
    write("zev.mp3", both);
    const std::string problem = only_problem("zev.mp3").problem;
    EXPECT_TRUE(problem.rfind("is damaged at 40.", 0) == 0 ||
                problem.rfind("ends or breaks off at 40.", 0) == 0)
        << problem;
}

TEST_F(ShowFiles, DamageBehindWhatTheShowNeedsIsNoProblem) {
    const double part = 75.0 / 76.5;
    cut("zev.mp3", static_cast<std::uintmax_t>(part * static_cast<double>(size("zev.mp3"))));
    EXPECT_TRUE(common::show_file_problems(folder_.path()).empty());
}

TEST_F(ShowFiles, FontsThatAreNone) {
    for (const char* name : {"Vera.ttf", "Arial"}) {
        const std::string good = file_bytes(folder_ / name);
        write(name, "");
        EXPECT_EQ(only_problem(name).problem, "is empty");
        write(name, "This is no font.\n");
        EXPECT_EQ(only_problem(name).problem, "is not a font");
        write(name, good.substr(0, 2000));
        EXPECT_EQ(only_problem(name).problem, "is not a font");
        write(name, good.substr(0, good.size() / 8));
        const std::string cut = only_problem(name).problem;
        EXPECT_TRUE(cut == "is not a font" || cut == "is damaged") << cut;
        fs::remove(folder_ / name);
        EXPECT_EQ(only_problem(name).problem, "is missing");
        fs::create_directory(folder_ / name);
        EXPECT_EQ(only_problem(name).problem, "is not a file");
        fs::remove(folder_ / name);
        write(name, good);
    }
}

// Processor time of this thread, in seconds, that `work` takes.
double effort(const std::function<void()>& work) {
    const auto now = [] {
        timespec time{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
    };
    const double start = now();
    work();
    return now() - start;
}

// The check holds up the start of the show, so it reads headers and decodes nothing.
TEST_F(ShowFiles, AreCheckedInAPartOfTheTimeThatDecodingTakes) {
    const double decoding = effort([] {
        for (const char* name : {"/zev.mp3", "/zev_voc.mp3"}) read_mp3(std::string(DATA_FOLDER) + name);
    });
    const double checking = effort([] { common::show_file_problems(DATA_FOLDER); });
    std::printf("checked in %.1f ms, decoded in %.1f ms\n", checking * 1000, decoding * 1000);
    EXPECT_LT(checking, decoding / 4);
}

// What the music reads to at its start and from its break on.
class BrokenMusic : public ShowFiles {
protected:
    BrokenMusic() {
        home_ = fs::current_path();
        fs::current_path(folder_.path()); // the show opens its files by name alone
    }
    ~BrokenMusic() override { fs::current_path(home_); }

    static std::unique_ptr<common::Music> open(const char* name) {
        common::Mp3Error error = common::Mp3Error::none;
        return common::Music::open(name, error);
    }

    static std::vector<float> read_all(common::Music& music) {
        std::vector<float> samples(2 * static_cast<std::size_t>(music.length() - music.position()));
        std::size_t got = 0;
        while (const std::size_t more = music.read(samples.data() + 2 * got, 1000)) got += more;
        EXPECT_EQ(2 * got, samples.size());
        return samples;
    }

    // Seconds up to the last sample that is not silent.
    static double sounding(const std::vector<float>& samples) {
        const auto last =
            std::find_if(samples.rbegin(), samples.rend(), [](float sample) { return sample != 0; });
        return static_cast<double>(samples.rend() - last) / 2 / common::kSoundRate;
    }

    fs::path home_;
};

TEST_F(BrokenMusic, WholeIsAsLongAsItsFile) {
    ::testing::internal::CaptureStderr();
    for (const char* name : {"zev.mp3", "zev_voc.mp3"}) {
        const std::unique_ptr<common::Music> music = open(name);
        ASSERT_TRUE(music);
        EXPECT_EQ(read_all(*music), read_mp3(folder_ / name));
        EXPECT_GT(music->length_ms(), 1000 * (common::needed_seconds(name) + 1));
    }
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

TEST_F(BrokenMusic, CutIsSilentUpToWhatTheShowNeedsAndSaysSoOnce) {
    cut("zev.mp3", 240000); // 10 s
    ::testing::internal::CaptureStderr();
    const std::unique_ptr<common::Music> music = open("zev.mp3");
    ASSERT_TRUE(music);
    const double sounded = sounding(read_all(*music));
    EXPECT_NEAR(sounded, 10, 0.5);
    EXPECT_EQ(music->length_ms(), 75000u);
    music->seek(0);
    EXPECT_NEAR(sounding(read_all(*music)), sounded, 1e-4);
    music->seek(60 * common::kSoundRate);
    EXPECT_EQ(sounding(read_all(*music)), 0);
    const std::string said = ::testing::internal::GetCapturedStderr();
    EXPECT_NE(said.find("zev.mp3 breaks off at "), std::string::npos) << said;
    EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1) << said;
}

TEST_F(BrokenMusic, AnotherFileEndsAtItsEnd) {
    write_mp3("other.mp3", noise(1, 1));
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(open("other.mp3")->length(), common::kSoundRate);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

TEST_F(BrokenMusic, TruncatedOrOverwrittenWhileItPlaysKeepsItsLength) {
    const std::function<void()> damages[] = {
        [&] { cut("zev.mp3", 500000); },
        [&] { overwrite("zev.mp3", 500000, std::string(1300000, 'x')); },
        [&] { overwrite("zev.mp3", 500000, std::string(1300000, '\0')); },
    };
    const std::string good = file_bytes("zev.mp3");
    for (const auto& damage : damages) {
        write("zev.mp3", good);
        ::testing::internal::CaptureStderr();
        const std::unique_ptr<common::Music> music = open("zev.mp3");
        ASSERT_TRUE(music);
        const unsigned length = music->length_ms();
        std::vector<float> start(2 * common::kSoundRate);
        EXPECT_EQ(music->read(start.data(), common::kSoundRate),
                  static_cast<std::size_t>(common::kSoundRate));
        damage();
        const double sounded = 1 + sounding(read_all(*music));
        EXPECT_GT(sounded, 15);
        EXPECT_LT(sounded, 35);
        EXPECT_EQ(music->length_ms(), length);
        EXPECT_NE(::testing::internal::GetCapturedStderr().find("breaks off"), std::string::npos);
    }
}

} // namespace
