// One run of the show for one export: which frames are wanted, where their pictures go, and the end.
#pragma once

#include <memory>

#include "hosts/offscreen/clock.h"
#include "hosts/offscreen/egl_screen.h"
#include "hosts/offscreen/failure.h"
#include "hosts/offscreen/frame_reader.h"
#include "hosts/offscreen/frame_set.h"
#include "hosts/offscreen/options.h"
#include "hosts/offscreen/output_thread.h"
#include "hosts/offscreen/progress.h"
#include "hosts/offscreen/retry.h"
#include "hosts/offscreen/show_frames.h"
#include "hosts/offscreen/sink.h"

class Run {
public:
    explicit Run(const Options& options);

    // The show has asked its question and starts in earnest. Returns in a process made for it, see retry.h.
    void begin();

    // The show opens its display, `width` x `height` pixels as it counts them.
    void open_screen(int width, int height);

    // The show's display call is about to be made; it has returned; and, in between, a picture is complete.
    void begin_display();
    void swap_buffers();
    void end_display();

    // The show ends by itself with `status`.
    [[noreturn]] void show_ended(int status);

    // Says what failed and ends the process.
    [[noreturn]] void fail(const Failure& failure);

private:
    std::int64_t frame() const { return loading_ ? kLoadingFrame : clock_.frame(); }
    void make_sink();
    void take_picture();
    [[noreturn]] void start_over();
    void check_music() const;
    void stop_if_asked();
    void complete();
    [[noreturn]] void end(int status);
    [[noreturn]] void leave(int status);

    Options options_;
    ShowFrames frames_;
    Clock clock_;
    bool loading_ = true; // until the music has started and the call that started it has returned
    int calls_before_music_ = 0;
    Attempt attempt_;
    std::int64_t frames_to_drop_ = 0; // wanted pictures that an earlier attempt has delivered
    FrameSet wanted_;
    FrameSet drawn_; // the wanted ones, and what they are made of
    std::unique_ptr<Progress> progress_;
    std::unique_ptr<EglScreen> screen_;
    std::unique_ptr<Sink> sink_;
    std::unique_ptr<OutputThread> output_;
    std::unique_ptr<FrameReader> reader_;
};

// The run that this process is for. Main makes it before the show starts; the show's calls find it here.
Run& the_run();
void start_run(const Options& options);

// Does `work` for an entry point of the show, which no exception may leave. A failure ends the process.
template <typename Work>
void for_show(Work work) {
    try {
        work();
    } catch (const Failure& failure) {
        the_run().fail(failure);
    } catch (const std::exception& error) {
        the_run().fail(Failure(error.what()));
    }
}
