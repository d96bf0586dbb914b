// One export: which frames are wanted, where their pictures go, and what happens around the show's calls.
#pragma once

#include <memory>

#include "hosts/common/frame_clock.h"
#include "hosts/offscreen/drawing/egl_screen.h"
#include "hosts/offscreen/drawing/frame_reader.h"
#include "hosts/offscreen/failure.h"
#include "hosts/offscreen/options.h"
#include "hosts/offscreen/output/output_thread.h"
#include "hosts/offscreen/output/sink.h"
#include "hosts/offscreen/progress.h"

namespace offscreen {

class Run {
public:
    // Throws Failure when the output cannot be written or no frame is wanted.
    explicit Run(const Options& options);

    // The show has asked its question.
    void begin();

    // The show opens its display, `width` x `height` pixels as it counts them.
    void open_screen(int width, int height);

    // The show's display callback is about to be called; it swaps buffers; it has returned.
    void begin_display();
    void swap_buffers();
    void end_display();

    // The show ends by itself with `status`.
    [[noreturn]] void show_ended(int status);

    // Prints what failed and ends the process.
    [[noreturn]] void fail(const Failure& failure);

private:
    std::int64_t frame() const { return loading_ ? common::kLoadingFrame : clock_.frame(); }
    bool wanted(std::int64_t frame) const { return wanted_.count(frame) != 0; }
    std::int64_t last_wanted() const { return *wanted_.rbegin(); }
    common::FrameSet wanted_frames() const;
    std::unique_ptr<Sink> make_sink() const;
    void take_picture();
    void check_music() const;
    void stop_if_asked();
    void write_all();
    [[noreturn]] void end(int status);
    [[noreturn]] void leave(int status);

    Options options_;
    common::ShowFrames frames_;
    common::FrameSet wanted_;
    common::FrameClock clock_;
    bool loading_ = true; // until the music has started and the call that started it has returned
    int calls_before_music_ = 0;
    Progress progress_;
    std::unique_ptr<Sink> sink_;
    std::unique_ptr<EglScreen> screen_; // null until open_screen, as what follows
    std::unique_ptr<OutputThread> output_;
    std::unique_ptr<FrameReader> reader_;
};

// The clock that the FMOD Ex calls of this host move and read.
void set_clock(common::FrameClock* clock);

// The run of this process. Main makes it before the show starts; the show's calls find it here.
void start_run(const Options& options);
Run& the_run();

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

} // namespace offscreen
