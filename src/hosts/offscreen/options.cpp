#include "hosts/offscreen/options.h"

#include "hosts/offscreen/failure.h"
#include "hosts/offscreen/running_order.h"

#include <getopt.h>

const char kHelp[] =
    R"(usage: skav-export --still TIME [--still TIME ...] -o FILE.png|FOLDER

Pictures of the show, without a display and frame-exact. Times are show times: seconds (12.5) or m:ss (1:14.3),
up to 162.

  -o, --output PATH    where to: a PNG file for one still, a folder for several
      --still TIME     the picture on screen at TIME; may be given many times
      --fps RATE       frames per second: 60 (default), 29.97, 30000/1001, ...
      --scale N        draw at N times 1024x768, text and geometry sharp (1 to 4)
      --language LANG  en or de; without it the show asks on standard input
      --data FOLDER    where the music and the fonts are (default: here, else ./data)
  -q, --quiet          say nothing unless something fails
  -h, --help           this text
)";

namespace {

enum LongOption { kStill = 256, kFps, kScale, kLanguage, kData };

const option kLongOptions[] = {
    {"output", required_argument, nullptr, 'o'},
    {"still", required_argument, nullptr, kStill},
    {"fps", required_argument, nullptr, kFps},
    {"scale", required_argument, nullptr, kScale},
    {"language", required_argument, nullptr, kLanguage},
    {"data", required_argument, nullptr, kData},
    {"quiet", no_argument, nullptr, 'q'},
    {"help", no_argument, nullptr, 'h'},
    {nullptr, 0, nullptr, 0},
};

[[noreturn]] void fail(const std::string& message) {
    throw Failure(message + " (--help tells all options)", kStatusUsage);
}

ShowTime show_time(const char* option, const std::string& text) {
    const auto time = parse_time(text);
    if (!time) fail(std::string(option) + ": '" + text + "' is not a time such as 12.5 or 1:14.3");
    if (*time > kShowEnd) fail(std::string(option) + ": the show ends at 162 s, before " + text);
    return *time;
}

int whole_number(const char* option, const std::string& text, int least, int most) {
    for (int value = least; value <= most; ++value) {
        if (text == std::to_string(value)) return value;
    }
    fail(std::string(option) + ": '" + text + "' is not a whole number from " + std::to_string(least) +
         " to " + std::to_string(most));
}

Language language(const std::string& text) {
    if (text == "en") return Language::english;
    if (text == "de") return Language::german;
    fail("--language: '" + text + "' is neither en nor de");
}

// What getopt could not read, as the user wrote it.
std::string offending(char** argv, int last_option) {
    if (optopt != 0 && optopt < 256) return std::string("-") + static_cast<char>(optopt);
    return argv[last_option];
}

} // namespace

Options parse_options(int argc, char** argv) {
    Options options;
    opterr = 0;
    for (;;) {
        const int at = optind;
        const int found = getopt_long(argc, argv, ":o:qh", kLongOptions, nullptr);
        if (found == -1) break;
        const std::string value = optarg ? optarg : "";
        switch (found) {
        case 'o':
            options.output = value;
            break;
        case kStill:
            options.stills.push_back(show_time("--still", value));
            break;
        case kFps: {
            const auto rate = parse_rate(value);
            if (!rate) fail("--fps: '" + value + "' is not a rate from 1 to 1000 such as 60 or 30000/1001");
            options.rate = *rate;
            break;
        }
        case kScale:
            options.scale = whole_number("--scale", value, 1, 4);
            break;
        case kLanguage:
            options.language = language(value);
            break;
        case kData:
            options.data = value;
            break;
        case 'q':
            options.quiet = true;
            break;
        case 'h':
            options.help = true;
            return options;
        case ':':
            fail(offending(argv, at) + " needs a value");
        default:
            fail("unknown option " + offending(argv, at));
        }
    }
    if (optind < argc) fail(std::string("what is '") + argv[optind] + "' for?");
    if (options.output.empty()) fail("-o is missing: where shall the result go?");
    if (options.stills.empty()) fail("nothing to do: --still is missing");
    return options;
}
