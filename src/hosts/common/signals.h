// Ending in order on a signal, for every host. The first signal is only noted: the host looks for it between two
// steps of its work, undoes what has to be undone and exits with 128 + its number. Waiting and writing end early.
#pragma once

#include <cstddef>

namespace common {

// From here on SIGINT, SIGTERM, SIGHUP and SIGQUIT are noted. One that the process was started to ignore (nohup)
// stays ignored. A second signal ends the process at once with status 128 + n and without exit handlers; the same
// request sent twice within a tenth of a second, as timeout(1) does, counts once. Writing to a pipe that nobody
// reads fails with EPIPE from here on and sends no SIGPIPE.
void handle_signals();

// The number of the noted signal, 0 without one. From any thread.
int noted_signal();

// Waits until `descriptor` is ready for `events` (POLLIN, POLLOUT) or has failed: true. False when a signal has been
// noted and it is not ready. A negative descriptor never is. From any thread.
bool wait_until_ready(int descriptor, short events);

// Writes all of `data`, waiting for a slow reader. False when that fails, with the reason in errno: EINTR says that a
// signal has been noted while the reader kept it waiting. From any thread.
bool write_all(int descriptor, const void* data, std::size_t size);

} // namespace common
