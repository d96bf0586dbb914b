// The show's question for the language, which it asks on standard output and reads from standard input before
// anything else.
#pragma once

#include "hosts/offscreen/options.h"

namespace offscreen {

// Prepares standard input and output for the question: a known language is fed in and the question discarded;
// otherwise it is asked, on standard error where standard output takes the pictures. Throws Failure.
void begin_prompt(Language language, bool output_is_pictures);

// The question has been answered: restores standard output.
void end_prompt();

} // namespace offscreen
