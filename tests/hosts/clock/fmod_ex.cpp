// A player on a steady clock instead of sound, for tests that need a given show time quickly.
//
//   TEST_CLOCK_START_MS   where the clock stands when the first file starts to play, milliseconds of show
//                         time (0); a show that starts in the middle starts there
//   TEST_CLOCK_SPEED      milliseconds of show time per millisecond from then on (1); 0: it stands still
//   TEST_CLOCK_STEP_MS    instead of both, whole milliseconds: the clock stands still but for one step from each
//                         reading to the next; a piece begins at the time last read
//   TEST_CLOCK_STARTED    a file to create when the first file starts to play: loading is over
//
// No file is opened, and a sound has no end. The vocal file's position is the clock's minus 74300 ms, its place in
// the show, so that show time is the clock's before and after the switch.
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <string>

#include "hosts/common/skip_ahead.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr unsigned kEndless = std::numeric_limits<unsigned>::max();

double environment_number(const char* name, double otherwise) {
    const char* value = std::getenv(name);
    return value ? std::strtod(value, nullptr) : otherwise;
}

// A sound whose position 0 is at `start_ms` of the show.
class File : public common::Sound {
public:
    explicit File(double start_ms) : Sound(kEndless), start_ms_(start_ms) {}

    double start_ms() const { return start_ms_; }

private:
    double start_ms_;
};

class ClockPlayer : public common::Player {
public:
    std::unique_ptr<common::Sound> open(const char* name, FMOD_RESULT&) override {
        return std::make_unique<File>(std::string(name) == "zev_voc.mp3" ? 74300.0 : 0.0);
    }

    void play(common::Sound& sound, unsigned from_ms) override {
        file_ = static_cast<File*>(&sound);
        first_reading_ = std::max(0, reading_);
        if (started_) return;
        started_ = true;
        if (from_ms > 0) start_ms_ = file_->start_ms() + from_ms;
        start_ = Clock::now();
        if (const char* name = std::getenv("TEST_CLOCK_STARTED")) std::ofstream(name) << "playing\n";
    }

    void stop() override {}

    unsigned position_ms() override {
        if (step_ms_ > 0) return stepped_position();
        const std::chrono::duration<double, std::milli> elapsed = Clock::now() - start_;
        const double show_time = start_ms_ + speed_ * elapsed.count();
        return static_cast<unsigned>(std::max(0.0, show_time - file_->start_ms()));
    }

    FMOD_RESULT seek_ms(unsigned) override { return FMOD_ERR_UNSUPPORTED; }

private:
    unsigned stepped_position() {
        ++reading_;
        return static_cast<unsigned>((reading_ - first_reading_) * step_ms_);
    }

    int step_ms_ = static_cast<int>(environment_number("TEST_CLOCK_STEP_MS", 0));
    int reading_ = -1;      // the last one
    int first_reading_ = 0; // at which what plays began
    double start_ms_ = environment_number("TEST_CLOCK_START_MS", 0.0);
    double speed_ = environment_number("TEST_CLOCK_SPEED", 1.0);
    bool started_ = false;
    Clock::time_point start_;
    const File* file_ = nullptr; // what was last played
};

} // namespace

std::unique_ptr<common::Player> common::make_player() {
    return skipping_player(std::make_unique<ClockPlayer>());
}
