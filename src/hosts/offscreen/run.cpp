#include "hosts/offscreen/run.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "hosts/common/prompt.h"
#include "hosts/common/signals.h"
#include "hosts/offscreen/drawing/gl_calls.h"
#include "hosts/offscreen/frames/running_order.h"

// The linker gives the show's call of exit to the first and the C library's exit to the second (--wrap=exit).
extern "C" [[noreturn]] void __wrap_exit(int status);
extern "C" [[noreturn]] void __real_exit(int status);

void __wrap_exit(int status) { offscreen::the_run().show_ended(status); }

namespace offscreen {

namespace {

std::unique_ptr<Run> g_run;

constexpr int kMostCallsBeforeMusic = 10'000; // display calls; the show needs about a hundred

} // namespace

void start_run(const Options& options) { g_run = std::make_unique<Run>(options); }
Run& the_run() { return *g_run; }

Run::Run(const Options& options)
    : options_(options), frames_(options.rate), wanted_(wanted_frames()), clock_(options.rate),
      progress_(options.quiet, frames_, wanted_), sink_(make_sink()) {
    set_clock(&clock_);
}

void Run::begin() {
    common::end_prompt();
    common::handle_signals();
}

common::FrameSet Run::wanted_frames() const {
    common::FrameSet wanted;
    if (options_.job == Job::stills) {
        for (common::ShowTime time : options_.stills) wanted.insert(frames_.frame_on_screen_at(time));
    } else if (options_.job == Job::sheet) {
        for (const Moment& moment : kMoments) wanted.insert(frames_.frame_on_screen_at(moment.time));
    } else {
        wanted = frames_.between(options_.from, options_.to);
    }
    if (wanted.empty()) throw Failure("no frame begins between --from and --to at this rate", kStatusUsage);
    return wanted;
}

std::unique_ptr<Sink> Run::make_sink() const {
    switch (options_.job) {
    case Job::stills:
        return make_stills(options_.stills, frames_, options_.output, options_.force);
    case Job::sheet:
        return make_sheet(options_.output, frames_, options_.force);
    case Job::frames:
        return make_frame_folder(options_.output, wanted_, options_.force);
    case Job::stream:
        return make_stream(STDOUT_FILENO, options_.format, options_.rate);
    case Job::video:
        break;
    }
    return make_video(options_.output, frames_, options_.quality, options_.force);
}

void Run::open_screen(int width, int height) {
    if (screen_) return;
    screen_ =
        std::make_unique<EglScreen>(common::Extent{width, height}, options_.scale, options_.supersample);
    output_ = std::make_unique<OutputThread>(*sink_);
    reader_ = std::make_unique<FrameReader>(*screen_, *output_);
}

void Run::begin_display() {
    if (loading_ && ++calls_before_music_ > kMostCallsBeforeMusic) {
        throw Failure("the show does not start its music");
    }
    if (frame() > frames_.count()) throw Failure("the show goes on after 162 s");
    begin_gl_frame(wanted(frame()));
}

void Run::swap_buffers() {
    stop_if_asked();
    if (!loading_ && wanted(frame())) take_picture();
}

void Run::end_display() {
    stop_if_asked();
    check_music();
    if (loading_) {
        if (!clock_.running()) return;
        if (wanted(frame())) take_picture();
    }
    if (!loading_ || wanted(frame())) progress_.frame(frame());
    // After its last frame the show ends by itself.
    if (frame() == last_wanted() && frame() + 1 < frames_.count()) end(EXIT_SUCCESS);
    if (!loading_) clock_.next_frame();
    loading_ = false;
}

// Passes the picture on the screen to the sink.
void Run::take_picture() {
    if (!picture_origin().all_drawn()) {
        throw Failure("the picture at " + common::seconds_text(frames_.time_of(frame())) +
                      " s shows something of an earlier frame that was skipped");
    }
    reader_->read({frame(), clock_.playing()});
}

// Checks that the show starts its pieces of music when kPieces says.
void Run::check_music() const {
    const auto playing = clock_.playing();
    if (!playing || playing->from_frame == 0 || playing->from_frame == frames_.switch_frame()) return;
    throw Failure("the show starts " + playing->file + " at another time than expected");
}

void Run::stop_if_asked() {
    if (common::noted_signal() == 0) return;
    write_all();
    const std::int64_t pictures = output_ ? output_->taken() : 0;
    if (pictures > 0) sink_->finish_early();
    throw Failure("stopped by a signal after " + std::to_string(pictures) + " of " +
                      count_of_pictures(static_cast<std::int64_t>(wanted_.size())),
                  128 + common::noted_signal());
}

void Run::show_ended(int status) {
    for_show([&] {
        if (loading_ || frame() <= last_wanted()) {
            throw Failure("the show ended by itself before the last wanted frame");
        }
        end(status);
    });
    leave(status);
}

// Writes everything that has been drawn.
void Run::write_all() {
    if (reader_) reader_->drain();
    if (output_) output_->finish();
}

void Run::end(int status) {
    write_all();
    sink_->finish();
    progress_.complete(options_.job == Job::stream ? "standard output" : options_.output, output_->taken());
    leave(status);
}

void Run::fail(const Failure& failure) {
    if (output_) output_->abandon();
    progress_.clear();
    const std::string kept = sink_->kept(output_ ? output_->taken() : 0);
    std::fprintf(stderr, "skav-export: %s; %s\n", failure.what(), kept.c_str());
    leave(failure.status());
}

void Run::leave(int status) {
    g_run.reset();
    __real_exit(status);
}

} // namespace offscreen
