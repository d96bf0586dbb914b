// What an image operation calls when it is done, so that whoever waits for many of them can show a sign of
// life. The library never sets it.
#pragma once

// Called once at the end of an image operation, when set. Statically none.
extern void (*g_progress_hook)();

// Calls the hook, when there is one.
inline void report_progress() {
    if (g_progress_hook) g_progress_hook();
}
