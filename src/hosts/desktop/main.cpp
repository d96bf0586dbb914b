// The program's entry, ahead of the show's own: the linker gives `main` to the first of these and the show's to the
// second (--wrap=main).
#include <cstdio>

#include "hosts/common/show_files.h"
#include "hosts/common/standard_descriptors.h"
#include "hosts/desktop/message.h"
#include "hosts/desktop/options.h"

extern "C" {
int __wrap_main(int argc, char** argv);
int __real_main(int argc, char** argv);
}

// Says what is wrong with the show's files; whether the show has all that it needs.
static bool check_files() {
    bool complete = true;
    for (const common::FileProblem& problem : common::show_file_problems(".")) {
        desktop::say(common::to_line(problem));
        complete = complete && problem.optional;
    }
    return complete;
}

int __wrap_main(int argc, char** argv) {
    common::open_standard_descriptors();
    std::vector<char*> remaining = desktop::read_options(argc, argv);
    if (!check_files() && desktop::options().strict) return 1;
    std::setvbuf(stdout, nullptr, _IONBF, 0); // the show's question is seen at once, also through a pipe
    const int count = static_cast<int>(remaining.size());
    remaining.push_back(nullptr);
    return __real_main(count, remaining.data());
}
