// skav-export: the show on an off-screen display and a clock that counts frames. The linker makes this the program's
// entry (--wrap=main); it prepares the run and then calls the show's main.
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>

#include "hosts/common/show_files.h"
#include "hosts/common/signals.h"
#include "hosts/common/standard_descriptors.h"
#include "hosts/offscreen/failure.h"
#include "hosts/offscreen/frames/chapters.h"
#include "hosts/offscreen/options.h"
#include "hosts/offscreen/output/output_file.h"
#include "hosts/offscreen/prompt.h"
#include "hosts/offscreen/run.h"

extern "C" int __wrap_main(int argc, char** argv);
extern "C" int __real_main(int argc, char** argv);

using namespace offscreen;

namespace {

// Where the show's music and fonts are: here, or in the subfolder data where there is one and no music here.
std::string find_data_folder() {
    std::error_code none;
    const bool below = access("zev.mp3", F_OK) != 0 && std::filesystem::is_directory("data", none);
    return below ? "data" : ".";
}

// Changes to the folder with the show's music and fonts, since the show opens them by name alone: `given`, or the one
// found where that is empty. Prints a line for every file that cannot be used. Throws Failure when the show needs one
// of them.
void enter_data_folder(const std::string& given) {
    const std::string folder = given.empty() ? find_data_folder() : given;
    bool usable = true;
    for (const common::FileProblem& problem : common::show_file_problems(folder)) {
        std::fprintf(stderr, "skav-export: %s\n", common::to_line(problem).c_str());
        usable = usable && problem.optional;
    }
    if (!usable)
        throw Failure("nothing was drawn; --data FOLDER gives the folder of the music and the fonts");
    if (chdir(folder.c_str()) != 0) throw Failure("cannot enter " + folder + ": " + std::strerror(errno));
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
        if (options.help) {
            std::fputs(kHelp, stdout);
            return 0;
        }
        if (options.chapters) {
            print_chapters(options);
            return 0;
        }
        enter_data_folder(options.data);
        start_run(options);
        begin_prompt(options.language, options.job == Job::stream);
    } catch (const Failure& failure) {
        std::fprintf(stderr, "skav-export: %s\n", failure.what());
        return failure.status();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "skav-export: %s\n", error.what());
        return kStatusFailed;
    }
    return __real_main(argc, argv);
}
