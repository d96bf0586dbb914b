// The show's question for the language, which it asks on standard output and reads from standard input before
// anything else. An export that knows the answer feeds it in and keeps the question to itself; one that
// writes pictures to standard output asks on standard error.
#pragma once

#include "hosts/offscreen/options.h"

// Arranges standard input and output for the question. Throws Failure.
void begin_prompt(Language language, bool output_is_pictures);

// The question has been answered: standard output is itself again.
void end_prompt();
