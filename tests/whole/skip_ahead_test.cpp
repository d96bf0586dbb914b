// The show started in the middle, at its own size and larger, against what the exporter draws there.
#include "tests/support/picture.h"
#include "tests/whole/display_test.h"

namespace {

struct Start {
    std::string time;     // a frame of the exporter
    std::string language; // --language
    std::string drawn_in; // what it comes to
    std::string scale;    // of the desktop, by which the exporter supersamples
};

std::ostream& operator<<(std::ostream& stream, const Start& start) { return stream << start.time; }

bool same_picture(const Pixels& screen, const Rgb& picture) {
    for (int y = 0; y < screen.height(); ++y) {
        for (int x = 0; x < screen.width(); ++x) {
            const std::uint8_t* pixel = picture.at(x, y);
            if (screen.at(x, y) != Color{pixel[0], pixel[1], pixel[2]}) return false;
        }
    }
    return true;
}

class StartInTheMiddle : public testing::TestWithParam<Start> {};

// The music stands still there, so that the one picture stays.
TEST_P(StartInTheMiddle, ShowsWhatTheExporterDraws) {
    const Start& start = GetParam();
    const TestFolder folder;
    const Finished still =
        run_program({{SKAV_EXPORT, "--data", DATA_DIRECTORY, "--language", start.drawn_in, "-q", "--still",
                      start.time, "--supersample", start.scale, "-o", folder / "still.png"}});
    ASSERT_EQ(0, still.status) << still.err;
    const Rgb expected = read_png(folder / "still.png");

    const auto server = DisplayServer::virtual_screen(1024, 768);
    const Viewer screen(server->name());
    Process show(Command{
        {SKAV_ON_CLOCK_PROGRAM, "--from", start.time, "--language", start.language, "--scale", start.scale},
        {{"DISPLAY", server->name()},
         {"TEST_CLOCK_SPEED", "0"},
         {"LC_ALL", std::nullopt},
         {"LC_MESSAGES", "de_DE.UTF-8"}},
        DATA_DIRECTORY});
    EXPECT_TRUE(
        eventually([&] { return same_picture(screen.picture(), expected); }, std::chrono::minutes(4)));
    EXPECT_TRUE(show.running());
    EXPECT_EQ("", show.output());
    EXPECT_EQ("", show.errors());
}

// Where a text is on the screen. At twice the show's size: the gyroscope's room; and in the second piece of music the
// scroller, with points and with a texture that is copied from the screen.
INSTANTIATE_TEST_SUITE_P(Times, StartInTheMiddle,
                         testing::Values(Start{"1:10", "auto", "de", "1"}, Start{"47", "en", "en", "2"},
                                         Start{"80.5", "en", "en", "2"}));

} // namespace
