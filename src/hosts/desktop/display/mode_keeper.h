// A second, tiny process that outlives the show and sees to it that the desktop has its display mode back,
// however the show ended: killed and crashed processes run no exit handlers.
#pragma once

#include "hosts/desktop/display/display_mode.h"

namespace desktop {

// Forks the keeper. It sleeps until this process is gone, then puts `mode` in force through a connection of
// its own unless it is already, and ends. Call it once, while the process has one thread and no GL context.
// Returns false where no process can be had.
bool keep_display_mode(const DisplayMode& mode);

// Sends the keeper away: the mode has been put back, and what is in force from now on is another's business.
void dismiss_mode_keeper();

} // namespace desktop
