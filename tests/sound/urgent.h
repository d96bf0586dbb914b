// Scheduling ahead of everything else on a busy machine, where the system allows it. What the sound tests
// measure are delays; on a machine that starves them they would measure the machine.
#pragma once

#include <sys/types.h>

// Puts the calling thread, or the first thread of another process, ahead or back in line, and with it every
// thread that it starts from then on.
void make_urgent(bool urgent, pid_t process = 0);

// Whether the calling thread is ahead in line, and whether the system would allow it.
bool is_urgent();
bool urgency_is_allowed();
