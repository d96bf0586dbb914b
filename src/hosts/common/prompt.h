// The show's question for the language, which it asks on standard output and reads from standard input before
// anything else.
#pragma once

namespace common {

enum class Language { ask, german, english };

// The language of the locale for messages ($LC_ALL, $LC_MESSAGES or $LANG, the first that is not empty): German where
// it is de or de_..., else English. The locale need not be installed.
Language language_of_locale();

// Prepares standard input and output for the question: a known language is fed in and the question discarded;
// otherwise it is asked, on standard error where standard output takes pictures. Throws std::runtime_error.
void begin_prompt(Language language, bool output_is_pictures = false);

// The question has been answered: restores standard output. Throws std::runtime_error.
void end_prompt();

} // namespace common
