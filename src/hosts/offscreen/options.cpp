#include "hosts/offscreen/options.h"

#include <getopt.h>
#include <unistd.h>

#include <filesystem>

#include "hosts/offscreen/failure.h"
#include "hosts/offscreen/output/output_file.h"

namespace offscreen {

const char kHelp[] =
    R"(Exports the show as video, stills or storyboard: drawn without a display, frame by frame, with its music.

  skav-export -o show.mp4                       the whole show
  skav-export --still 12.5 -o picture.png       one picture; several --still go to a folder
  skav-export --sheet sheet.png                 a storyboard
  skav-export --frames folder                   every frame as a PNG file
  skav-export -o - | player -                   frames on standard output
  skav-export --chapters > chapters.txt         the list of chapters

What to make:
  -o, --output PATH   .mp4 (AAC sound), .mkv (FLAC) or .mov (PCM); a PNG file or a folder with --still; - for
                      standard output
      --still TIME    the picture on screen at TIME ("loading": the loading screen); may be given many times
      --sheet FILE    a PNG file with a small picture of every cue and moment
      --frames FOLDER frame-000000.png and so on, counted over the whole show
      --chapters      print the chapters that a video of the range has, as ffmpeg reads them ("ffmetadata")
      --format FORMAT what goes to standard output: y4m (default) or rgb (raw, 3 bytes a pixel)

How much of it (times are show times, in seconds or m:ss, up to 162):
      --from TIME     begin with the first frame at TIME or later
      --to TIME       end before the first frame at TIME or later: ranges that meet join without a seam
      --fps RATE      frames per second: 60 (default), 29.97, 30000/1001, ...

How it looks:
      --scale N       draw at N times 1024x768, text and geometry sharp: 1 (default) to 4
      --supersample N smooth edges: draw at N times the size and average, 2 or 4
      --crf N         quality of the video, 0 (lossless) to 51: 18 (default)
      --preset NAME   effort of the video's encoder, x264: veryfast (default); faster, fast, medium, slow, slower and
                      veryslow take longer, superfast and ultrafast less
      --language LANG en or de; without it the show asks on standard input

      --data FOLDER   where the music and the fonts are (default: here, else ./data)
      --force         replace existing files without asking
  -q, --quiet         print nothing unless something fails
  -h, --help          this text

Ctrl-C ends an export early; a video then holds what was drawn so far. The exit status is 0 when all is written,
1 when something failed, 2 for a bad command line and 128 + n after signal n.
)";

namespace {

enum LongOption {
    kStill = 256,
    kSheet,
    kFrames,
    kChapterList,
    kFormat,
    kFrom,
    kTo,
    kFps,
    kScale,
    kSupersample,
    kCrf,
    kPreset,
    kLanguage,
    kData,
    kForce
};

const option kLongOptions[] = {
    {"output", required_argument, nullptr, 'o'},
    {"still", required_argument, nullptr, kStill},
    {"sheet", required_argument, nullptr, kSheet},
    {"frames", required_argument, nullptr, kFrames},
    {"chapters", no_argument, nullptr, kChapterList},
    {"format", required_argument, nullptr, kFormat},
    {"from", required_argument, nullptr, kFrom},
    {"to", required_argument, nullptr, kTo},
    {"fps", required_argument, nullptr, kFps},
    {"scale", required_argument, nullptr, kScale},
    {"supersample", required_argument, nullptr, kSupersample},
    {"crf", required_argument, nullptr, kCrf},
    {"preset", required_argument, nullptr, kPreset},
    {"language", required_argument, nullptr, kLanguage},
    {"data", required_argument, nullptr, kData},
    {"force", no_argument, nullptr, kForce},
    {"quiet", no_argument, nullptr, 'q'},
    {"help", no_argument, nullptr, 'h'},
    {nullptr, 0, nullptr, 0},
};

[[noreturn]] void fail(const std::string& message) {
    throw Failure(message + " (--help lists all options)", kStatusUsage);
}

common::ShowTime show_time(const std::string& option, const std::string& text) {
    const auto time = common::parse_time(text);
    if (!time) fail(option + ": '" + text + "' is not a time such as 12.5 or 1:14.3");
    if (*time > common::kShowEnd) fail(option + ": the show ends at 162 s, before " + text);
    return *time;
}

int whole_number(const std::string& option, const std::string& text, int least, int most) {
    for (int value = least; value <= most; ++value) {
        if (text == std::to_string(value)) return value;
    }
    fail(option + ": '" + text + "' is not a whole number from " + std::to_string(least) + " to " +
         std::to_string(most));
}

common::FrameRate frame_rate(const std::string& text) {
    const auto rate = common::parse_rate(text);
    if (!rate) fail("--fps: '" + text + "' is not a rate from 1 to 1000 such as 60, 29.97 or 30000/1001");
    return *rate;
}

template <typename Value>
Value one_of(const std::string& option, const std::string& text,
             std::initializer_list<std::pair<const char*, Value>> choices) {
    std::string known;
    for (const auto& [name, value] : choices) {
        if (text == name) return value;
        known += (known.empty() ? "" : " or ") + std::string(name);
    }
    fail(option + ": '" + text + "' is not " + known);
}

// The option that getopt rejected, as the user wrote it.
std::string offending(char** argv, int index) {
    if (optopt > 0 && optopt < kStill && argv[index][1] != '-') {
        return std::string("-") + static_cast<char>(optopt);
    }
    return argv[index];
}

// What the command line gave, as far as the checks at its end need it.
struct Targets {
    std::string output;
    std::string sheet;
    std::string frames;
    bool format = false;
    bool range = false;
    bool crf = false;
    bool preset = false;
};

// `path` from the root on.
std::string absolute(const std::string& path) {
    std::error_code error;
    const std::string whole = std::filesystem::absolute(path, error).string();
    if (error) throw Failure("cannot find '" + path + "': the current folder: " + error.message());
    return whole;
}

// Decides what is to be made, and rejects options that do not fit together.
void choose_job(Options& options, const Targets& targets) {
    const bool stills = !options.stills.empty();
    const bool stream = targets.output == "-";
    if (stills + !targets.sheet.empty() + !targets.frames.empty() + options.chapters > 1) {
        fail("--still, --sheet, --frames and --chapters are made one at a time");
    }
    if (options.from >= options.to) fail("--from and --to: nothing lies between them");
    if (options.chapters) {
        if (!targets.output.empty()) fail("-o does not go with --chapters, which prints");
        return;
    }
    if (!targets.sheet.empty() || !targets.frames.empty()) {
        options.job = targets.sheet.empty() ? Job::frames : Job::sheet;
        if (!targets.output.empty())
            fail("-o does not go with --sheet or --frames, which name their own output");
        options.output = targets.sheet.empty() ? targets.frames : targets.sheet;
    } else {
        if (targets.output.empty()) fail("-o is missing: it names the file or folder to write");
        if (stills && stream) fail("--still: stills are PNG files, -o - is for a stream of frames");
        options.job = stills ? Job::stills : stream ? Job::stream : Job::video;
        options.output = targets.output;
        if (options.job == Job::video && !is_video_name(options.output)) {
            fail("-o: '" + options.output + "' ends in none of .mp4, .mkv, .mov");
        }
    }
    const bool one_png =
        options.job == Job::sheet || (stills && options.stills.size() == 1 && !is_folder(options.output));
    if (one_png && extension_of(options.output) != ".png") {
        fail("'" + options.output + "' does not end in .png, which is what it would be");
    }
    if (options.job == Job::stream && isatty(STDOUT_FILENO)) {
        fail("-o -: standard output is a terminal; send the frames to a program or a file");
    }
    const bool pictures_only = options.job == Job::stills || options.job == Job::sheet;
    if (targets.range && pictures_only) fail("--from and --to: stills and the storyboard have no range");
    if (targets.format && options.job != Job::stream) fail("--format is for -o - only");
    if (targets.crf && options.job != Job::video) fail("--crf is for video files only");
    if (targets.preset && options.job != Job::video) fail("--preset is for video files only");
}

} // namespace

Options parse_options(int argc, char** argv) {
    Options options;
    Targets targets;
    opterr = 0;
    optind = 1;
    for (;;) {
        const int index = optind;
        const int found = getopt_long(argc, argv, ":o:qh", kLongOptions, nullptr);
        if (found == -1) break;
        const std::string value = optarg ? optarg : "";
        switch (found) {
        case 'o':
            targets.output = value;
            break;
        case kStill:
            options.stills.push_back(value == "loading" ? common::kLoadingTime : show_time("--still", value));
            break;
        case kSheet:
            targets.sheet = value;
            break;
        case kFrames:
            targets.frames = value;
            break;
        case kChapterList:
            options.chapters = true;
            break;
        case kFormat:
            targets.format = true;
            options.format = one_of<StreamFormat>("--format", value,
                                                  {{"y4m", StreamFormat::y4m}, {"rgb", StreamFormat::rgb}});
            break;
        case kFrom:
            targets.range = true;
            options.from = show_time("--from", value);
            break;
        case kTo:
            targets.range = true;
            options.to = show_time("--to", value);
            break;
        case kFps:
            options.rate = frame_rate(value);
            break;
        case kScale:
            options.scale = whole_number("--scale", value, 1, 4);
            break;
        case kSupersample:
            options.supersample = one_of<int>("--supersample", value, {{"1", 1}, {"2", 2}, {"4", 4}});
            break;
        case kCrf:
            targets.crf = true;
            options.quality.crf = whole_number("--crf", value, 0, 51);
            break;
        case kPreset:
            targets.preset = true;
            options.quality.preset = one_of<const char*>("--preset", value,
                                                         {{"ultrafast", "ultrafast"},
                                                          {"superfast", "superfast"},
                                                          {"veryfast", "veryfast"},
                                                          {"faster", "faster"},
                                                          {"fast", "fast"},
                                                          {"medium", "medium"},
                                                          {"slow", "slow"},
                                                          {"slower", "slower"},
                                                          {"veryslow", "veryslow"}});
            break;
        case kLanguage:
            options.language =
                one_of<Language>("--language", value, {{"en", Language::english}, {"de", Language::german}});
            break;
        case kData:
            options.data = value;
            break;
        case kForce:
            options.force = true;
            break;
        case 'q':
            options.quiet = true;
            break;
        case 'h':
            options.help = true;
            return options;
        case ':':
            fail(offending(argv, index) + " needs a value");
        default:
            fail("unknown option " + offending(argv, index));
        }
    }
    if (optind < argc) fail(std::string("unexpected argument '") + argv[optind] + "'");
    choose_job(options, targets);
    if (options.job != Job::stream && !options.chapters) {
        options.output = absolute(options.output); // the show runs in another folder
    }
    return options;
}

} // namespace offscreen
