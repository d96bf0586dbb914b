#include "hosts/offscreen/run.h"

#include "hosts/offscreen/gl_next.h"
#include "hosts/offscreen/gl_scale.h"
#include "hosts/offscreen/gl_skip.h"
#include "hosts/offscreen/stills.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

// The C library's exit, behind the one that the show calls (see __wrap_exit).
extern "C" [[noreturn]] void __real_exit(int status);

namespace {

std::unique_ptr<Run> g_run;

Picture read_picture(const EglScreen& screen) {
    Picture picture;
    picture.width = screen.width();
    picture.height = screen.height();
    picture.pixels.resize(picture.stride() * static_cast<std::size_t>(picture.height));
    glReadPixels(0, 0, picture.width, picture.height, GL_RGBA, GL_UNSIGNED_BYTE, picture.pixels.data());
    return picture;
}

} // namespace

void start_run(const Options& options) { g_run = std::make_unique<Run>(options); }
Run& the_run() { return *g_run; }

Run::Run(const Options& options) : options_(options), frames_(options.rate), clock_(options.rate) {
    for (ShowTime time : options_.stills) wanted_.push_back(frames_.frame_on_screen_at(time));
    std::sort(wanted_.begin(), wanted_.end());
    sink_ = std::make_unique<Stills>(options_.stills, frames_, options_.output);
    set_clock(&clock_);
    set_gl_scale(options_.scale);
}

void Run::open_screen(int width, int height) {
    if (screen_) return;
    screen_ = std::make_unique<EglScreen>(width * options_.scale, height * options_.scale);
}

void Run::begin_display() { set_gl_skip(!clock_.running() || !wants(clock_.frame())); }

void Run::swap_buffers() {
    if (!clock_.running() || !wants(clock_.frame())) return;
    Picture picture = read_picture(*screen_);
    picture.frame = clock_.frame();
    picture.time = frames_.time_of(picture.frame);
    sink_->take(picture);
}

void Run::end_display() {
    if (clock_.running() && clock_.frame() >= wanted_.back()) end(EXIT_SUCCESS);
    clock_.next_frame();
}

bool Run::wants(std::int64_t frame) const {
    return std::binary_search(wanted_.begin(), wanted_.end(), frame);
}

void Run::end(int status) {
    try {
        sink_->finish();
    } catch (const Failure& failure) {
        fail(failure);
    }
    g_run.reset();
    __real_exit(status);
}

void Run::fail(const Failure& failure) {
    std::fprintf(stderr, "skav-export: %s\n", failure.what());
    const int status = failure.status();
    g_run.reset();
    __real_exit(status);
}

// The show ends the process by itself; what it drew until then is completed first.
extern "C" [[noreturn]] void __wrap_exit(int status);
extern "C" void __wrap_exit(int status) { the_run().end(status); }
