#include "hosts/common/prompt.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>

namespace common {

namespace {

int g_saved_output = -1;

void check(bool good) {
    if (good) return;
    throw std::runtime_error(std::string("cannot redirect standard input and output: ") +
                             std::strerror(errno));
}

// Makes standard input read `answer` and nothing more.
void feed(const char* answer) {
    int ends[2];
    check(pipe(ends) == 0);
    const bool written =
        write(ends[1], answer, std::strlen(answer)) == static_cast<ssize_t>(std::strlen(answer));
    close(ends[1]);
    check(written && dup2(ends[0], STDIN_FILENO) == STDIN_FILENO);
    close(ends[0]);
}

// Makes standard output go to `descriptor` until end_prompt.
void divert_output(int descriptor) {
    g_saved_output = dup(STDOUT_FILENO);
    check(g_saved_output >= 0 && dup2(descriptor, STDOUT_FILENO) == STDOUT_FILENO);
}

} // namespace

Language language_of_locale() {
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* value = std::getenv(name);
        if (!value || !*value) continue;
        const std::string locale = value;
        return locale.substr(0, locale.find_first_of("_.@")) == "de" ? Language::german : Language::english;
    }
    return Language::english;
}

void begin_prompt(Language language, bool output_is_pictures) {
    if (language == Language::ask) {
        std::setvbuf(stdout, nullptr, _IONBF, 0); // the question is seen at once, also through a pipe
        if (output_is_pictures) divert_output(STDERR_FILENO);
        return;
    }
    feed(language == Language::english ? "e\n" : "g\n");
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    check(nowhere >= 0);
    divert_output(nowhere);
    close(nowhere);
}

void end_prompt() {
    std::fflush(stdout);
    if (g_saved_output < 0) return;
    check(dup2(g_saved_output, STDOUT_FILENO) == STDOUT_FILENO);
    close(g_saved_output);
    g_saved_output = -1;
}

} // namespace common
