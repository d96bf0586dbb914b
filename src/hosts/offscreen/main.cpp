// skav-export: the show, unchanged, on a display that nobody sees and a clock that counts frames. This is the
// program's entry; it prepares the run and then calls the show's own.
#include <cstdio>

#include "hosts/offscreen/data_folder.h"
#include "hosts/offscreen/failure.h"
#include "hosts/offscreen/options.h"
#include "hosts/offscreen/prompt.h"
#include "hosts/offscreen/run.h"

// The linker gives the program's entry to the first and the show's to the second (--wrap=main).
extern "C" int __wrap_main(int argc, char** argv);
extern "C" int __real_main(int argc, char** argv);

int __wrap_main(int argc, char** argv) {
    try {
        const Options options = parse_options(argc, argv);
        if (options.help) {
            std::fputs(kHelp, stdout);
            return 0;
        }
        enter_data_folder(options.data);
        start_run(options);
        begin_prompt(options.language, options.job == Job::stream);
    } catch (const Failure& failure) {
        std::fprintf(stderr, "skav-export: %s\n", failure.what());
        return failure.status();
    }
    return __real_main(argc, argv);
}
