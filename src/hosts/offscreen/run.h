// One run of the show for one export: which frames are wanted, where their pictures go, and the end.
#pragma once

#include "hosts/offscreen/clock.h"
#include "hosts/offscreen/egl_screen.h"
#include "hosts/offscreen/failure.h"
#include "hosts/offscreen/options.h"
#include "hosts/offscreen/show_frames.h"
#include "hosts/offscreen/sink.h"

#include <memory>
#include <vector>

class Run {
public:
    explicit Run(const Options& options);

    // The show opens its display, `width` x `height` pixels as it counts them.
    void open_screen(int width, int height);

    // The show's display call is about to be made; returned; and, in between, its picture is complete.
    void begin_display();
    void swap_buffers();
    void end_display();

    // Completes what was written and ends the process with `status`, or with that of a failure on the way.
    [[noreturn]] void end(int status);

    // Says what failed and ends the process. Nothing half-written stays behind.
    [[noreturn]] void fail(const Failure& failure);

private:
    bool wants(std::int64_t frame) const;

    Options options_;
    ShowFrames frames_;
    std::vector<std::int64_t> wanted_; // ascending
    Clock clock_;
    std::unique_ptr<EglScreen> screen_;
    std::unique_ptr<Sink> sink_;
};

// The run that this process is for. Main makes it before the show starts; the show's calls find it here.
Run& the_run();
void start_run(const Options& options);

// Does `work` for an entry point of the show, on which no exception may leave. A failure ends the process.
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
