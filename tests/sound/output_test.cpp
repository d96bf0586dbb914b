// What is audible when devices come, stall, go and come back: stand-ins for devices, on a clock of the test's own.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <thread>

#include "hosts/desktop/sound/output.h"
#include "tests/sound/test_music.h"
#include "tests/support/files.h"
#include "tests/support/mp3.h"

namespace {

using desktop::Device;
using desktop::Mixer;
using desktop::Output;
using desktop::StreamedSound;

constexpr double kRate = common::kSoundRate;
constexpr double kStep = 0.005;

// A device that plays at a pace of its own and keeps what it played.
class FakeDevice : public Device {
public:
    double pace = 1;       // parts of real time
    double latency = 0.04; // seconds that it asks ahead
    bool asks = true;
    bool moves = true; // plays, and says so
    bool fails = false;
    double claims = 0; // says that it has played at least that much

    double position() override { return std::max(played_, claims); }
    bool failed() const override { return fails; }

    // Lets `seconds` of real time pass.
    void run(double seconds) {
        constexpr std::size_t kRequest = 441;
        const double held = static_cast<double>(asked_for()) - played_;
        if (moves) played_ += std::min(seconds * pace * kRate, held);
        while (asks && static_cast<double>(asked_for()) < played_ + latency * kRate) {
            samples_.resize(2 * (asked_for() + kRequest));
            fill(samples_.data() + 2 * asked_for(), kRequest);
        }
    }

    // The frames from the audible one on.
    const float* audible(std::int64_t frames) const {
        const auto from = static_cast<std::int64_t>(played_);
        return from + frames <= static_cast<std::int64_t>(asked_for()) ? samples_.data() + 2 * from : nullptr;
    }

private:
    double played_ = 0;
    std::vector<float> samples_;
};

// Devices that are plugged in by the test.
class FakeDevices : public desktop::Devices {
public:
    std::unique_ptr<FakeDevice> next; // to be taken
    FakeDevice* device = nullptr;     // the one taken
    bool no_device = false;           // attempts to open one fail
    int returned = 0;

    std::unique_ptr<Device> take() override {
        if (next) device = next.get();
        return std::move(next);
    }
    bool failed() const override { return no_device; }
    void give_back(std::unique_ptr<Device> given) override {
        EXPECT_EQ(given.get(), device);
        device = nullptr;
        ++returned;
    }

    FakeDevice& plug_in() {
        next = std::make_unique<FakeDevice>();
        no_device = false;
        return *next;
    }
};

class OutputTest : public ::testing::Test {
protected:
    static constexpr double kLength = 40; // seconds of music

    static void SetUpTestSuite() {
        folder_ = new TestFolder;
        write_mp3(*folder_ / "a.mp3", noise(kLength, 1));
        music_ = new std::vector<float>(read_mp3(*folder_ / "a.mp3"));
    }
    static void TearDownTestSuite() {
        delete music_;
        delete folder_;
    }

    OutputTest() { open(); }
    ~OutputTest() override { output_.stop(now_); }

    void play() {
        output_.play(*sound_, now_);
        ++plays_;
        played_at_ = now_;
        before_ = position_ = 0;
    }

    // Plays the sound again in place of itself, `seconds` after it is stopped. late() goes on.
    void play_another(double seconds) {
        look();
        output_.stop(now_);
        run(seconds);
        open();
        output_.play(*sound_, now_);
        ++plays_;
        before_ += position_;
        position_ = 0;
    }

    // Lets `seconds` of real time pass, and checks at every step that the position does not fall and that what is heard
    // is where it says.
    void run(double seconds) {
        for (const double end = now_ + seconds; now_ < end - kStep / 2;) {
            wait_for_decoder();
            now_ += kStep;
            if (devices_.device) devices_.device->run(kStep);
            output_.step(now_);
            look();
        }
    }

    // Seconds of music that have been heard, or would have been.
    double position() const { return position_; }

    // Seconds that the music is behind real time since it was first played.
    double late() const { return now_ - played_at_ - before_ - position_; }

    // Expects that the device plays the music where the position says, to within `tolerance` seconds.
    void expect_in_time(double tolerance = 0.006) {
        constexpr std::int64_t kPiece = 300;
        ASSERT_TRUE(devices_.device);
        const float* heard = devices_.device->audible(kPiece);
        ASSERT_TRUE(heard);
        const auto told = static_cast<std::int64_t>(position_ * kRate);
        const std::int64_t found = find_piece(*music_, heard, kPiece, told - 4410, told + 4410);
        ASSERT_GE(found, 0) << "not heard at " << position_;
        EXPECT_NEAR(static_cast<double>(found) / kRate, position_, tolerance);
    }

    double now_ = 100;
    double least_step_ = 1; // of the position in one step, since the last call of forget()
    double most_step_ = 0;
    FakeDevices devices_;
    std::unique_ptr<StreamedSound> sound_;
    Mixer mixer_;
    Output output_{mixer_, devices_, now_};

    void forget() {
        least_step_ = 1;
        most_step_ = 0;
    }

private:
    // Waits until more is decoded than the longest step takes, or all there is: the decoder works in real time, the test
    // does not.
    void wait_for_decoder() const {
        constexpr std::int64_t kEnough = 50000; // frames
        const auto taken_up_to = static_cast<double>(mixer_.handed_out());
        const auto segment = mixer_.segments().at(taken_up_to);
        const double taken = segment && segment->play == plays_ ? segment->music_at(taken_up_to)
                                                                : static_cast<double>(sound_->begin());
        const std::int64_t left = sound_->length() - static_cast<std::int64_t>(taken);
        const auto wanted = static_cast<std::size_t>(std::min(left, kEnough));
        while (sound_->decoded() < wanted) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }

    void look() {
        const double audible = output_.audible(now_);
        EXPECT_GE(audible, last_audible_);
        last_audible_ = audible;
        const auto segment = mixer_.segments().at(audible);
        if (!segment || segment->play != plays_ || mixer_.play_number() == 0) return;
        const double position = output_.position(now_) / kRate;
        least_step_ = std::min(least_step_, position - position_);
        most_step_ = std::max(most_step_, position - position_);
        EXPECT_GE(position, position_);
        position_ = position;
    }

    void open() {
        common::Mp3Error error = common::Mp3Error::none;
        sound_ = StreamedSound::open((*folder_ / "a.mp3").c_str(), error);
    }

    static TestFolder* folder_;
    static std::vector<float>* music_;
    std::uint64_t plays_ = 0;
    double played_at_ = 0;
    double before_ = 0;   // seconds of music that were played before this sound
    double position_ = 0; // in this one
    double last_audible_ = 0;
};

TestFolder* OutputTest::folder_ = nullptr;
std::vector<float>* OutputTest::music_ = nullptr;

TEST_F(OutputTest, WithoutADeviceThePositionRunsAtOnceWithRealTime) {
    devices_.no_device = true;
    run(0.1);
    play();
    run(10);
    EXPECT_NEAR(late(), 0, 0.006);
    EXPECT_LT(most_step_, 2 * kStep);
    EXPECT_GT(least_step_, 0);
}

TEST_F(OutputTest, WhileADeviceIsBeingOpenedThePositionStandsForTwoSecondsAndThenRuns) {
    play();
    run(1.9);
    EXPECT_EQ(position(), 0);
    run(5.1);
    EXPECT_NEAR(position(), 5, 0.02);
}

TEST_F(OutputTest, ADeviceThatIsThereIsHeardFromTheFirstFrameOn) {
    devices_.plug_in();
    run(0.5);
    play();
    run(0.03);
    EXPECT_EQ(position(), 0) << "nothing is audible before the device has played what it held";
    run(2);
    EXPECT_NEAR(late(), 0.04, 0.02);
    expect_in_time();
}

TEST_F(OutputTest, ADeviceThatIsOpenedWithinTwoSecondsLosesNoMusic) {
    play();
    run(1);
    devices_.plug_in();
    run(0.1);
    EXPECT_LT(position(), 0.1);
    run(1);
    expect_in_time();
    EXPECT_GT(late(), 1) << "the show begins with the sound";
}

TEST_F(OutputTest, ADeviceThatComesLateIsTakenOverInTime) {
    for (const double latency : {0.02, 0.4}) {
        SCOPED_TRACE(latency);
        devices_.no_device = true;
        run(0.1);
        if (position() == 0) play();
        run(3);
        devices_.plug_in().latency = latency;
        forget();
        run(1);
        expect_in_time();
        EXPECT_NEAR(late(), 0, 0.03);
        EXPECT_LT(most_step_, 0.03) << "no jump";
        devices_.device->fails = true;
        run(0.2);
        EXPECT_EQ(devices_.device, nullptr);
    }
}

TEST_F(OutputTest, ADeviceThatReportsAnErrorIsReplacedWithoutAJump) {
    devices_.plug_in();
    run(0.5);
    play();
    run(3);
    devices_.device->fails = true;
    forget();
    run(0.7);
    EXPECT_EQ(devices_.returned, 1);
    EXPECT_GT(least_step_, 0);
    devices_.plug_in();
    run(1);
    expect_in_time();
    EXPECT_LT(most_step_, 0.03);
    EXPECT_NEAR(late(), 0.04, 0.03);
}

TEST_F(OutputTest, ADeviceThatStallsIsLostWithinASecondAndTheTimeIsMadeUpFor) {
    for (const bool asks : {false, true}) {
        SCOPED_TRACE(asks ? "plays nothing" : "asks for nothing");
        const int before = devices_.returned;
        devices_.plug_in();
        run(1);
        if (position() == 0) play();
        run(2);
        expect_in_time();
        devices_.device->asks = asks;
        devices_.device->moves = !asks;
        forget();
        run(1.1);
        EXPECT_EQ(devices_.returned, before + 1);
        run(3);
        EXPECT_NEAR(late(), 0, 0.06);
        EXPECT_LT(most_step_, 0.03) << "no jump";
    }
}

TEST_F(OutputTest, ADeviceThatDoesNotMoveIsNotTakenOverBeforeItDoes) {
    devices_.no_device = true;
    run(0.1);
    play();
    run(1);
    devices_.plug_in().moves = false;
    forget();
    run(3);
    EXPECT_NEAR(late(), 0, 0.01);
    devices_.device->moves = true;
    run(0.5);
    expect_in_time();
    EXPECT_LT(most_step_, 0.03);
}

TEST_F(OutputTest, ADeviceThatClaimsMoreThanItAskedForIsReplaced) {
    devices_.no_device = true;
    run(0.1);
    play();
    run(1);
    FakeDevice& suspended = devices_.plug_in();
    suspended.asks = suspended.moves = false;
    run(3);
    suspended.claims = 3 * kRate; // as a server's estimate does that runs on
    suspended.asks = suspended.moves = true;
    forget();
    run(0.5);
    EXPECT_EQ(devices_.returned, 1);
    devices_.plug_in();
    run(0.5);
    expect_in_time();
    EXPECT_LT(most_step_, 0.03);
    EXPECT_NEAR(late(), 0, 0.02);
}

TEST_F(OutputTest, ADeviceThatNeverMovesIsGivenBack) {
    devices_.plug_in().moves = false;
    run(6);
    EXPECT_EQ(devices_.returned, 1);
}

TEST_F(OutputTest, AStoppedProcessGoesOnWhereItWasWithAFreshDevice) {
    devices_.plug_in();
    run(0.5);
    play();
    run(3);
    const double before = position();
    now_ += 10;
    run(0.1);
    EXPECT_NEAR(position(), before + 0.1, 0.1);
    EXPECT_EQ(devices_.returned, 1);
    devices_.plug_in();
    forget();
    run(1.8);
    expect_in_time();
    EXPECT_LT(most_step_, 0.03);
    EXPECT_NEAR(position(), before + 1.9, 0.1);
}

TEST_F(OutputTest, AStoppedProcessWithoutADeviceGoesOnWhereItWas) {
    devices_.no_device = true;
    run(0.1);
    play();
    run(3);
    const double before = output_.audible(now_);
    EXPECT_LT(output_.audible(now_ + 10), before + 0.25 * kRate);
    now_ += 10;
    run(1);
    EXPECT_LT(position(), 4.3);
    EXPECT_GT(position(), 3.9);
}

TEST_F(OutputTest, AThreadThatIsLateLosesNoTime) {
    devices_.no_device = true;
    run(0.1);
    play();
    run(0.1);
    for (int i = 0; i < 20; ++i) {
        now_ += 0.4; // no step meanwhile
        run(0.05);
        EXPECT_LT(late(), 0.5);
    }
    run(2);
    EXPECT_NEAR(late(), 0, 0.02);
}

TEST_F(OutputTest, AThreadThatAloneGetsNoProcessorIsNoStoppedProcess) {
    devices_.no_device = true;
    run(0.1);
    play();
    run(1);
    for (int i = 0; i < 8; ++i) {
        now_ += 0.5;
        output_.audible(now_); // another thread runs
    }
    run(3);
    EXPECT_NEAR(late(), 0, 0.02);
}

TEST_F(OutputTest, ASoundThatFollowsAnotherTakesOverHowLateThatWas) {
    devices_.plug_in().pace = 0.9;
    run(0.5);
    play();
    run(3);
    EXPECT_GT(late(), 0.25);
    play_another(0.1);
    for (int i = 0; i < 40; ++i) {
        run(0.5);
        EXPECT_LT(late(), 0.5) << i;
        EXPECT_GT(late(), -0.05) << i;
    }
}

TEST_F(OutputTest, WithoutADeviceTheTimeBetweenTwoSoundsIsMadeUpFor) {
    devices_.no_device = true;
    run(0.1);
    play();
    run(3);
    forget();
    play_another(0.3);
    EXPECT_GT(late(), 0.28);
    run(4);
    EXPECT_NEAR(late(), 0, 0.01);
    EXPECT_LT(most_step_, 2 * kStep);
}

TEST_F(OutputTest, ASoundThatIsPlayedLongAfterTheLastStepIsNotLate) {
    devices_.no_device = true;
    run(0.1);
    now_ += 0.15;
    play();
    run(3);
    EXPECT_NEAR(late(), 0, 0.001);
    now_ += 0.15;
    play_another(0);
    run(3);
    EXPECT_NEAR(late(), 0, 0.001);
}

TEST_F(OutputTest, ASoundThatIsPlayedLaterThanASecondAfterAnotherIsNotLate) {
    devices_.plug_in();
    run(0.5);
    play();
    run(1);
    play_another(1.5);
    run(5);
    EXPECT_NEAR(late(), 1.54, 0.04);
    EXPECT_LT(most_step_, 0.03) << "no jump";
}

TEST_F(OutputTest, ASoundThatFollowsOneThatHasEndedIsNotLate) {
    devices_.plug_in();
    run(0.5);
    sound_->seek(static_cast<std::int64_t>((kLength - 1) * kRate));
    play();
    run(3);
    EXPECT_EQ(position(), kLength);
    forget();
    play_another(0.1);
    run(0.2);
    EXPECT_LT(position(), 0.2);
    run(3);
    EXPECT_LT(most_step_, 0.03) << "no jump";
}

TEST_F(OutputTest, ASlowDeviceIsKeptWithinHalfASecondOfRealTime) {
    devices_.plug_in().pace = 0.85;
    run(0.5);
    play();
    for (int i = 0; i < 30; ++i) {
        run(1);
        EXPECT_LT(late(), 0.6) << i;
        EXPECT_GT(late(), -0.05) << i;
    }
    expect_in_time(0.03); // a pace so wrong is followed with a small delay
    EXPECT_GT(position(), 29.4);
    EXPECT_LT(most_step_, 0.7);
}

TEST_F(OutputTest, ASoundThatHasEndedStandsAtItsLength) {
    devices_.plug_in();
    run(0.5);
    play();
    run(kLength + 1);
    EXPECT_NEAR(position(), kLength, 1e-6);
    run(1);
    EXPECT_NEAR(position(), kLength, 1e-6);
}

} // namespace
