#include "hosts/desktop/sound/output.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

namespace desktop {

namespace {

constexpr double kRate = common::kSoundRate;
constexpr double kWaiting = 2.0;       // seconds until it is silent without a device
constexpr double kStopped = 1.0;       // seconds without a call: the process was stopped
constexpr double kContinues = 1.0;     // seconds between two sounds of which the second continues the first
constexpr double kLongestPause = 0.02; // seconds that one step may count against the device
constexpr double kLostAfter = 0.8;     // seconds without a sign of life
constexpr double kWarmFor = 5.0;       // seconds that a new device may take until it tells its position
constexpr double kImpossible = 0.25;   // seconds in which a new device may be ahead of what it asked for
constexpr int kWarmMoves = 8;          // times that its position has to move on first
constexpr double kAskWithin = 0.03;    // seconds after the device's last request; see watch_device
constexpr double kLongestLine = 0.2;   // seconds that a position runs on without a step
constexpr double kMostBehind = 0.4 * kRate; // frames; with what it takes to notice, half a second
constexpr double kCatchUp = 0.5;            // seconds in which silence makes up for being behind, to 1/e
constexpr std::uint64_t kBlock = 512;       // frames

// How many frames too early the first segment of a sound begins: frames that nobody hears are taken a little late, so a
// sound may seem to begin before it was played.
double too_early(const Segment& segment, double begin, double started) {
    return segment.music <= begin ? std::max(0.0, started - segment.device) : 0;
}

} // namespace

Output::Output(Mixer& mixer, Devices& devices, double now)
    : mixer_(mixer), devices_(devices), begun_(now),
      stopped_at_(-std::numeric_limits<double>::infinity()), line_{now, 0, 0}, seen_(now) {}

Output::~Output() {
    if (!watch_.device) return;
    watch_.device->disconnect();
    devices_.give_back(std::move(watch_.device));
}

double Output::audible(double now) const {
    const std::lock_guard<std::mutex> lock(mutex_);
    run_clock(now);
    const double frame = line_.at(std::min(now, line_.time + kLongestLine));
    if (!limited_) return frame;
    // A device that stalls is noticed a little later than it does.
    return std::min(frame, std::max(line_.position, static_cast<double>(mixer_.handed_out())));
}

void Output::publish(const Line& line, bool limited) {
    const std::lock_guard<std::mutex> lock(mutex_);
    line_ = line;
    limited_ = limited;
}

// Counts the time of the process on to `now`. The mutex is held.
void Output::run_clock(double now) const {
    const double passed = std::max(0.0, now - seen_);
    seen_ += passed;
    if (passed > kStopped)
        was_stopped_ = true;
    else
        ran_ += passed;
}

void Output::play(StreamedSound& sound, double now) {
    begin_ = position_ = static_cast<double>(sound.begin());
    started_ = audible(now);
    const double held = std::max(0.0, static_cast<double>(mixer_.handed_out()) - started_); // is heard first
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        const double since = ran_ - stopped_at_;
        const double behind = since < kContinues ? behind_ + since * kRate : -held;
        playing_ = {++plays_, begin_, static_cast<double>(sound.length()), started_, ran_ - behind / kRate};
    }
    mixer_.play(sound, plays_);
}

void Output::stop(double now) {
    if (mixer_.play_number() == 0) return;
    const double here = position(now);
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        const bool ended = here >= playing_.length;
        behind_ = playing_.begin + (ran_ - playing_.due) * kRate - here;
        stopped_at_ = ended ? -std::numeric_limits<double>::infinity() : ran_;
        playing_ = Playing{};
    }
    mixer_.stop();
}

double Output::position(double now) {
    const double here = audible(now);
    const std::optional<Segment> segment = mixer_.segments().at(here);
    if (!segment || segment->play != plays_) return position_;
    return position_ = std::max(position_, segment->music_at(here) - too_early(*segment, begin_, started_));
}

void Output::step(double now) {
    bool stopped = false;
    double passed = 0;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        run_clock(now);
        stopped = std::exchange(was_stopped_, false);
        passed = ran_ - last_step_;
        last_step_ = ran_;
        if (state_ == State::waiting) playing_.due += passed;
    }
    mixer_.segments().collect();

    if (watch_.device) {
        watch_device(now, passed);
        if (stopped || is_lost(now)) lose_device(now);
    } else {
        take_device(now);
    }
    if (state_ == State::playing) {
        run_with_device(now);
        catch_up(now);
    } else if (!watch_.device || !connect(now)) {
        run_without(now);
    }
}

void Output::take_device(double now) {
    std::unique_ptr<Device> device = devices_.take();
    if (!device) return;
    watch_ = Watch{};
    watch_.device = std::move(device);
    watch_.since = now;
}

// Measures the device's position, and for how long it has given no sign of life.
void Output::watch_device(double now, double passed) {
    Watch& w = watch_;
    const double pause = std::min(passed, kLongestPause); // the program's own absence is not the device's
    const std::uint64_t asked_for = w.device->asked_for();
    w.asks = asked_for > w.last_asked;
    w.last_asked = asked_for;
    w.without_request = w.asks ? 0 : w.without_request + pause;
    w.without_position += pause;
    w.clock.limit(now, static_cast<double>(asked_for));

    // The library estimates the position between two reports of a sound server. When the device stalls, its estimate
    // runs on, and later stands until the device has caught up. So it is not asked then.
    if (w.without_request >= kAskWithin) return;
    const double position = w.device->position();
    w.clock.measure(now, position);
    const bool impossible = position > static_cast<double>(asked_for);
    w.impossible = impossible ? w.impossible + pause : 0;
    if (impossible || position <= w.last_position) return;
    w.last_position = position;
    w.without_position = 0;
    ++w.moves;
}

bool Output::is_lost(double now) const {
    const Watch& w = watch_;
    if (w.device->failed()) return true;
    if (w.connected) return w.without_position > kLostAfter || w.without_request > kLostAfter;
    return now - w.since > kWarmFor || w.impossible > kImpossible;
}

void Output::lose_device(double now) {
    const double here = audible(now);
    watch_.device->disconnect();
    devices_.give_back(std::move(watch_.device));
    if (state_ != State::playing) return;
    state_ = State::silent;
    publish({now, here, 0}, false);
}

// Connects a device that tells its position, so that what it plays is in time. True while that is under way.
bool Output::connect(double now) {
    Watch& w = watch_;
    if (w.connected) {
        const std::optional<double> offset = w.device->offset();
        if (!offset) return true;
        const bool waited = state_ == State::waiting;
        state_ = State::playing;
        run_with_device(now);
        if (!waited) return true;
        const double late = progress(now).behind;
        const std::lock_guard<std::mutex> lock(mutex_);
        playing_.due += late / kRate;
        return true;
    }
    if (w.moves < kWarmMoves) return false;
    if (state_ == State::silent) { // what the device holds is heard before what it gets now
        const double held = static_cast<double>(w.device->asked_for()) - w.clock.line().at(now);
        take_unheard(audible(now) + held);
    }
    w.device->connect(mixer_);
    w.connected = true;
    return true;
}

// The position without a device: it stands or runs with real time.
void Output::run_without(double now) {
    const double here = audible(now);
    if (state_ == State::waiting && (devices_.failed() || now - begun_ > kWaiting)) state_ = State::silent;
    if (state_ == State::waiting) {
        publish({now, here, 0}, false);
        return;
    }
    publish({now, here, kRate + std::max(0.0, progress(now).behind) / kCatchUp}, false);
    take_unheard(here);
}

// The position with one: what the device says, but never less than before.
void Output::run_with_device(double now) {
    const double here = audible(now);
    const Line device = watch_.clock.line();
    const double heard = device.at(now) + *watch_.device->offset();
    const double slope = here - heard < 1 ? device.slope : 0;
    publish({now, std::max(here, heard), slope}, true);
}

// Skips forward where what is heard is too late.
void Output::catch_up(double now) {
    const Progress play = progress(now);
    // A device that does not ask may be about to be lost: without it, nothing has to be skipped.
    if (play.behind > kMostBehind && watch_.asks) mixer_.skip_to(play.number, play.next + play.behind);
}

Output::Progress Output::progress(double now) const {
    const double here = audible(now);
    const auto handed_out = static_cast<double>(mixer_.handed_out());
    const std::optional<Segment> segment = mixer_.segments().at(handed_out);
    const std::lock_guard<std::mutex> lock(mutex_);
    const Playing& p = playing_;
    if (p.number == 0) return {0, 0, 0};
    const bool begun = segment && segment->play == p.number;
    const Segment last = begun ? *segment : Segment{handed_out, p.begin, p.number, false};
    const double next = last.music_at(handed_out);
    const double heard = next - (handed_out - here) - too_early(last, p.begin, p.started);
    return {p.number, next, std::min(p.begin + (ran_ - p.due) * kRate, p.length) - heard};
}

// Takes what nobody hears from the mixer, up to the frame `until`.
void Output::take_unheard(double until) {
    std::array<float, 2 * kBlock> unheard;
    const auto target = static_cast<std::uint64_t>(std::max(0.0, until));
    while (mixer_.handed_out() < target)
        mixer_.render(unheard.data(), std::min(target - mixer_.handed_out(), kBlock));
}

} // namespace desktop
