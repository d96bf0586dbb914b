#include "hosts/offscreen/run.h"

#include <unistd.h>

#include <cinttypes>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "hosts/offscreen/frame_folder.h"
#include "hosts/offscreen/gl_scale.h"
#include "hosts/offscreen/gl_skip.h"
#include "hosts/offscreen/running_order.h"
#include "hosts/offscreen/sheet.h"
#include "hosts/offscreen/stills.h"
#include "hosts/offscreen/stream_writer.h"
#include "hosts/offscreen/video_writer.h"

// The linker gives the show's exit to the first and the C library's own to the second (--wrap=exit).
extern "C" [[noreturn]] void __wrap_exit(int status);
extern "C" [[noreturn]] void __real_exit(int status);

namespace {

std::unique_ptr<Run> g_run;

constexpr int kMostCallsBeforeMusic = 10'000; // display calls; the show needs about a hundred

volatile std::sig_atomic_t g_signal = 0; // the one that asked to stop

void note_signal(int signal) { g_signal = signal; }

void note_signals() {
    for (int signal : {SIGINT, SIGTERM, SIGHUP}) std::signal(signal, note_signal);
    std::signal(SIGPIPE, SIG_IGN); // writing to a pipe that nobody reads fails and is told
}

} // namespace

void start_run(const Options& options) { g_run = std::make_unique<Run>(options); }
Run& the_run() { return *g_run; }

void __wrap_exit(int status) { the_run().show_ended(status); }

Run::Run(const Options& options) : options_(options), frames_(options.rate), clock_(options.rate) {
    set_clock(&clock_);
    set_gl_scale(options_.scale * options_.supersample);
}

void Run::begin() {
    attempt_ = begin_attempts();
    note_signals();
    make_sink();
    drawn_.add(wanted_);
    drawn_.add(attempt_.must_draw);
    frames_to_drop_ = attempt_.delivered;
    std::int64_t to_draw = 0;
    for (std::int64_t frame = 0; frame <= wanted_.last(); ++frame) to_draw += drawn_.contains(frame);
    progress_ = std::make_unique<Progress>(options_.quiet, to_draw, wanted_.last() + 1 - to_draw);
}

void Run::make_sink() {
    switch (options_.job) {
    case Job::stills: {
        auto stills = std::make_unique<Stills>(options_.stills, frames_, options_.output);
        wanted_ = stills->frames();
        sink_ = std::move(stills);
        return;
    }
    case Job::sheet: {
        auto sheet = std::make_unique<Sheet>(options_.output, frames_);
        wanted_ = sheet->frames();
        sink_ = std::move(sheet);
        return;
    }
    case Job::frames:
        sink_ = std::make_unique<FrameFolder>(options_.output);
        break;
    case Job::video:
        sink_ = std::make_unique<VideoWriter>(options_.output, frames_, options_.crf);
        break;
    case Job::stream:
        sink_ = std::make_unique<StreamWriter>(STDOUT_FILENO, options_.format, options_.rate,
                                               attempt_.delivered > 0);
        break;
    }
    wanted_.add(frames_.first_frame_at(options_.from), frames_.first_frame_at(options_.to));
    if (wanted_.empty()) throw Failure("no frame begins between --from and --to at this rate", kStatusUsage);
}

void Run::open_screen(int width, int height) {
    if (screen_) return;
    screen_ =
        std::make_unique<EglScreen>(width * options_.scale, height * options_.scale, options_.supersample);
    output_ = std::make_unique<OutputThread>(*sink_);
    reader_ = std::make_unique<FrameReader>(
        *screen_, [this] { return output_->blank(); },
        [this](PicturePtr picture) { output_->deliver(std::move(picture)); });
}

void Run::begin_display() {
    if (loading_ && ++calls_before_music_ > kMostCallsBeforeMusic) {
        throw Failure("the show does not start its music");
    }
    if (frame() > frames_.count()) throw Failure("the show goes on after the end that running_order.h tells");
    begin_gl_frame(frame(), drawn_.contains(frame()));
}

void Run::swap_buffers() {
    stop_if_asked();
    if (!loading_ && wanted_.contains(frame())) take_picture();
}

void Run::end_display() {
    stop_if_asked();
    check_music();
    if (loading_) {
        if (!clock_.running()) return;
        if (wanted_.contains(frame())) take_picture();
    } else {
        progress_->frame(frames_.time_of(frame()), drawn_.contains(frame()), wanted_.contains(frame()));
    }
    // The show's last frame is followed by the show's own end.
    if (frame() == wanted_.last() && frame() + 1 < frames_.count()) end(EXIT_SUCCESS);
    if (!loading_) clock_.next_frame();
    loading_ = false;
}

// Hands the picture on the screen on to the sink, if the frames that it is made of were drawn.
void Run::take_picture() {
    if (!picture_origin().all_drawn()) start_over();
    if (frames_to_drop_ > 0) {
        --frames_to_drop_;
        return;
    }
    reader_->read({frame(), frames_.time_of(frame()), clock_.playing()});
}

void Run::start_over() {
    const std::int64_t since = picture_origin().since();
    const std::int64_t end = frame() + 1;
    std::int64_t delivered = 0;
    if (options_.job == Job::stream) {
        reader_->drain();
        output_->finish();
        delivered = attempt_.delivered + output_->taken();
    }
    progress_->note(
        "The picture at " + seconds_text(frames_.time_of(frame())) + " s shows what was drawn " +
        (since == kLoadingFrame ? "while loading" : "at " + seconds_text(frames_.time_of(since)) + " s") +
        ": starting over, with all frames in between drawn");
    g_run.reset();
    try_again(since, end, delivered);
}

// The clock's jump is told in running_order.h; a show that has moved it must not be exported with the old
// one.
void Run::check_music() const {
    const auto playing = clock_.playing();
    if (!playing || playing->from_frame == 0 || playing->from_frame == frames_.switch_frame()) return;
    throw Failure("the show starts " + playing->file + " at another time than running_order.h tells");
}

void Run::stop_if_asked() {
    if (g_signal == 0) return;
    const int status = 128 + g_signal;
    const std::int64_t pictures = progress_->pictures();
    if (pictures == 0) throw Failure("stopped by a signal before the first picture", status);
    complete();
    progress_->clear();
    std::fprintf(stderr, "skav-export: stopped by a signal after %" PRId64 " of %" PRId64 " pictures: %s\n",
                 pictures, wanted_.size(), options_.output.c_str());
    leave(status);
}

void Run::show_ended(int status) {
    for_show([&] {
        if (loading_ || frame() <= wanted_.last()) {
            throw Failure("the show ended by itself before the last wanted frame");
        }
        end(status);
    });
    leave(status);
}

void Run::complete() {
    if (reader_) reader_->drain();
    if (output_) output_->finish();
    sink_->finish();
}

void Run::end(int status) {
    complete();
    progress_->complete(options_.job == Job::stream ? "standard output" : options_.output);
    leave(status);
}

void Run::fail(const Failure& failure) {
    if (progress_) progress_->clear();
    const std::string kept = sink_ ? "; " + sink_->after_failure() : "";
    std::fprintf(stderr, "skav-export: %s%s\n", failure.what(), kept.c_str());
    leave(failure.status());
}

void Run::leave(int status) {
    g_run.reset();
    __real_exit(status);
}
