// The exporter's sounds play frame by frame, here without an export around them.
#include <cstdlib>

#include "hosts/common/frame_clock.h"
#include "hosts/offscreen/run.h"
#include "tests/sound/hosts/let_pass.h"

namespace {

common::FrameClock g_frames{{60, 1}};
const bool g_set = (offscreen::set_clock(&g_frames), true);

} // namespace

void let_pass(double seconds) {
    for (double frame = 0; frame < 60 * seconds; ++frame) g_frames.next_frame();
}

// An export ends where its music cannot be opened, which these tests never do.
offscreen::Run& offscreen::the_run() { std::abort(); }
void offscreen::Run::fail(const offscreen::Failure&) { std::abort(); }
