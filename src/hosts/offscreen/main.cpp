// skav-export: the show on an off-screen display and a clock that counts frames. The linker makes this the program's
// entry (--wrap=main); it prepares the run and then calls the show's main.
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string>

#include "hosts/common/options.h"
#include "hosts/common/prompt.h"
#include "hosts/common/show_files.h"
#include "hosts/common/signals.h"
#include "hosts/common/standard_descriptors.h"
#include "hosts/offscreen/failure.h"
#include "hosts/offscreen/frames/chapters.h"
#include "hosts/offscreen/options.h"
#include "hosts/offscreen/output/output_file.h"
#include "hosts/offscreen/run.h"

extern "C" int __wrap_main(int argc, char** argv);
extern "C" int __real_main(int argc, char** argv);

using namespace offscreen;

namespace {

// Makes the folder with the show's music and fonts the working directory. Prints a line for everything that is wrong
// with them. Throws Failure when the show needs something of that.
void enter_data_folder(const std::string& given) {
    const common::DataFolder data = common::enter_data_folder(given);
    for (const std::string& problem : data.problems)
        std::fprintf(stderr, "skav-export: %s\n", problem.c_str());
    if (!data.complete) throw Failure("nothing was drawn");
}

// Prints the chapters of the range. Throws Failure.
void print_chapters(const Options& options) {
    const common::ShowFrames frames(options.rate);
    const std::string text =
        chapters_text(frames, frames.first_frame_at(options.from), frames.first_frame_at(options.to));
    if (!common::write_all(STDOUT_FILENO, text.data(), text.size()))
        cannot_write("to standard output", errno);
}

} // namespace

int __wrap_main(int argc, char** argv) {
    common::open_standard_descriptors();
    try {
        const Options options = parse_options(argc, argv);
        if (!options.answer.empty()) return common::print_answer(options.answer);
        if (options.chapters) {
            print_chapters(options);
            return 0;
        }
        enter_data_folder(options.data);
        start_run(options);
        common::begin_prompt(options.language, options.job == Job::stream);
    } catch (const common::UsageError& error) {
        std::fprintf(stderr, "skav-export: %s\n", error.what());
        return kStatusUsage;
    } catch (const Failure& failure) {
        std::fprintf(stderr, "skav-export: %s\n", failure.what());
        return failure.status();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "skav-export: %s\n", error.what());
        return kStatusFailed;
    }
    return __real_main(argc, argv);
}
