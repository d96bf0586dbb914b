// Ending on a signal, in order: the handler only notes it, and the main thread ends the process at the next
// frame or buffer swap, through exit and its handlers, which give the screen its mode back.
#pragma once

namespace desktop {

// From here on SIGINT, SIGTERM, SIGHUP and SIGQUIT are noted. A signal that the process was started to ignore
// stays ignored. A second signal ends the process at once, with the same status and no exit handlers.
void note_signals();

// Ends the process with status 128 + n if signal n has been noted.
void end_if_signalled();

} // namespace desktop
