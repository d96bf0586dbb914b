// The desktop's sharp picture against the exporter's.
#include "tests/support/picture.h"
#include "tests/whole/display_test.h"

namespace {

struct Frame {
    int number;       // at one frame a second
    std::string time; // in the show, seconds
};

std::ostream& operator<<(std::ostream& stream, const Frame& frame) { return stream << frame.time; }

class SamePicture : public testing::TestWithParam<Frame> {};

Rgb exported(const Frame& frame) {
    const TestFolder folder;
    const Finished finished =
        run_program({{SKAV_EXPORT, "-q", "--data", DATA_DIRECTORY, "--language", "en", "--fps", "1",
                      "--still", frame.time, "--supersample", "2", "-o", folder / "still.png"}});
    EXPECT_EQ(0, finished.status) << finished.err;
    return read_png(folder / "still.png");
}

Rgb to_rgb(const Pixels& pixels) {
    Rgb picture = {pixels.width(), pixels.height(), {}};
    for (int y = 0; y < pixels.height(); ++y) {
        for (int x = 0; x < pixels.width(); ++x) {
            const Color color = pixels.at(x, y);
            for (const int value : {color.red, color.green, color.blue}) {
                picture.pixels.push_back(static_cast<std::uint8_t>(value));
            }
        }
    }
    return picture;
}

// Both run every frame up to that one, so that all that the show has made of them is the same.
TEST_P(SamePicture, IsShownAtScale2AsTheExporterWritesWithSupersampling) {
    const Rgb expected = exported(GetParam());
    const auto server = DisplayServer::virtual_screen(1024, 768);
    const Viewer screen(server->name());
    Process show({{SKAV_ON_CLOCK_PROGRAM, "--scale", "2"},
                  {{"DISPLAY", server->name()},
                   {"TEST_CLOCK_STEP_MS", "1000"},
                   {"TEST_CLOCK_LAST", std::to_string(GetParam().number)}},
                  DATA_DIRECTORY,
                  false,
                  "e\n"});
    const bool same =
        eventually([&] { return to_rgb(screen.picture()) == expected; }, std::chrono::minutes(4));
    EXPECT_TRUE(same) << show.errors();
    if (!same) write_png_file(to_rgb(screen.picture()), "same-picture-" + GetParam().time + ".png");
}

// The gyroscope's room; and the scroller, which is drawn with points and with a texture copied from the screen.
INSTANTIATE_TEST_SUITE_P(Frames, SamePicture, testing::Values(Frame{47, "47"}, Frame{80, "80.3"}));

} // namespace
