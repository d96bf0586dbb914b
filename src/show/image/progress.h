// The progress hook: image operations call it when they are done, so that a program can update its display between
// them. The image library never sets it.
#pragma once

// Called once at the end of an image operation, unless null. Statically null.
extern void (*g_progress_hook)();

// Calls the hook, if it is set.
inline void report_progress() {
    if (g_progress_hook) g_progress_hook();
}
