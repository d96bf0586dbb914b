// The program's entry, ahead of the show's own: the linker gives `main` to the first of these and the show's to the
// second (--wrap=main).
#include "hosts/common/options.h"
#include "hosts/common/prompt.h"
#include "hosts/common/show_files.h"
#include "hosts/common/skip_ahead.h"
#include "hosts/common/standard_descriptors.h"
#include "hosts/desktop/message.h"
#include "hosts/desktop/options.h"

extern "C" {
int __wrap_main(int argc, char** argv);
int __real_main(int argc, char** argv);
}

using namespace desktop;

int __wrap_main(int argc, char** argv) {
    common::open_standard_descriptors();
    try {
        const std::string answer = read_options(argc, argv);
        if (!answer.empty()) return common::print_answer(answer);
        const common::DataFolder data = common::enter_data_folder(options().data);
        for (const std::string& problem : data.problems) say(problem);
        if (!data.complete && options().strict) return 1;
        common::skip_to(options().from);
        common::begin_prompt(options().language);
    } catch (const common::UsageError& error) {
        say(error.what());
        return 2;
    } catch (const std::exception& error) {
        say(error.what());
        return 1;
    }
    char* program[] = {argv[0], nullptr}; // all options have been read
    return __real_main(argc > 0 ? 1 : 0, program);
}
