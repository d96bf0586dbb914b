#include "hosts/offscreen/options.h"

#include <unistd.h>

#include <filesystem>

#include "hosts/common/options.h"
#include "hosts/offscreen/failure.h"
#include "hosts/offscreen/output/output_file.h"

namespace offscreen {

using common::UsageError;

namespace {

const char kAbout[] =
    R"(Exports the show as video, stills or storyboard: drawn without a display, frame
by frame, with its music.

  skav-export -o show.mp4                   the whole show
  skav-export --still 12.5 -o picture.png   one picture; several go to a folder
  skav-export --sheet sheet.png             a storyboard
  skav-export --frames folder               every frame as a PNG file
  skav-export -o - | player -               frames on standard output
  skav-export --chapters > chapters.txt     the list of chapters

Times are those of the show, in seconds or m:ss, up to 162.
)";

const char kNotes[] =
    R"(Ctrl-C ends an export early; a video then holds what was drawn so far. The exit
status is 0 when all is written, 1 when something failed, 2 for a bad command
line and 128 + n after signal n.
)";

common::FrameRate frame_rate(const std::string& text) {
    const auto rate = common::parse_rate(text);
    if (!rate)
        throw std::invalid_argument("'" + text +
                                    "' is not a rate from 1 to 1000 such as 60, 29.97 or 30000/1001");
    return *rate;
}

common::ShowTime still_time(const std::string& text) {
    return text == "loading" ? common::kLoadingTime : common::show_time(text);
}

// What the command line names to be made.
struct Targets {
    std::string output;
    std::string sheet;
    std::string frames;
};

common::CommandLine command_line(Options& options, Targets& targets) {
    using common::one_of;
    using common::set;
    using common::whole_number;
    using Value = const std::string&;
    return {
        kAbout,
        {{"What to make:",
          {{"output", 'o', "PATH",
            "the file to write: .mp4 (AAC sound), .mkv (FLAC) or .mov (PCM); a PNG file or a folder with "
            "--still; - "
            "for standard output",
            set(targets.output)},
           {"still", 0, "TIME",
            "the picture on screen at TIME (\"loading\": the loading screen); may be given many times",
            [&](Value value) { options.stills.push_back(still_time(value)); }},
           {"sheet", 0, "FILE", "a PNG file with a small picture of every cue and moment",
            set(targets.sheet)},
           {"frames", 0, "FOLDER", "frame-000000.png and so on, counted over the whole show",
            set(targets.frames)},
           {"chapters", 0, "",
            "print the chapters that a video of the range has, as ffmpeg reads them (\"ffmetadata\")",
            set(options.chapters)},
           {"format", 0, "FORMAT",
            "what goes to standard output: y4m (default) or rgb (raw, 3 bytes a pixel)",
            [&](Value value) {
                options.format =
                    one_of<StreamFormat>(value, {{"y4m", StreamFormat::y4m}, {"rgb", StreamFormat::rgb}});
            }}}},
         {"How much of it:",
          {{"from", 0, "TIME", "begin with the first frame at TIME or later",
            [&](Value value) { options.from = common::show_time(value); }},
           {"to", 0, "TIME",
            "end before the first frame at TIME or later: ranges that meet join without a seam",
            [&](Value value) { options.to = common::show_time(value); }},
           {"fps", 0, "RATE", "frames per second: 60 (default), 29.97, 30000/1001, ...",
            [&](Value value) { options.rate = frame_rate(value); }}}},
         {"How it looks:",
          {common::language_option(options.language),
           {"scale", 0, "N", "draw at N times 1024x768, text and geometry sharp: 1 (default) to 4",
            [&](Value value) { options.scale = whole_number(value, 1, 4); }},
           {"supersample", 0, "N", "smooth edges: draw at N times the size and average, 2 or 4",
            [&](Value value) {
                options.supersample = one_of<int>(value, {{"1", 1}, {"2", 2}, {"4", 4}});
            }},
           {"crf", 0, "N", "quality of the video, 0 (lossless) to 51: 18 (default)",
            [&](Value value) { options.quality.crf = whole_number(value, 0, 51); }},
           {"preset", 0, "NAME",
            "effort of the video's encoder, x264: veryfast (default); faster, fast, medium, slow, slower and "
            "veryslow take longer, superfast and ultrafast less",
            [&](Value value) {
                options.quality.preset = one_of<const char*>(value, {{"ultrafast", "ultrafast"},
                                                                     {"superfast", "superfast"},
                                                                     {"veryfast", "veryfast"},
                                                                     {"faster", "faster"},
                                                                     {"fast", "fast"},
                                                                     {"medium", "medium"},
                                                                     {"slow", "slow"},
                                                                     {"slower", "slower"},
                                                                     {"veryslow", "veryslow"}});
            }}}},
         {"Other:",
          {common::data_option(options.data),
           {"force", 0, "", "replace existing files without asking", set(options.force)},
           {"quiet", 'q', "", "print nothing unless something fails", set(options.quiet)}}}},
        kNotes};
}

// `path` from the root on.
std::string absolute(const std::string& path) {
    std::error_code error;
    const std::string whole = std::filesystem::absolute(path, error).string();
    if (error) throw Failure("cannot find '" + path + "': the current folder: " + error.message());
    return whole;
}

// Decides what is to be made, and rejects options that do not fit together.
void choose_job(Options& options, const Targets& targets, const std::set<std::string>& given) {
    const auto has = [&](const char* option) { return given.count(option) != 0; };
    const bool stills = !options.stills.empty();
    const bool stream = targets.output == "-";
    if (stills + !targets.sheet.empty() + !targets.frames.empty() + options.chapters > 1) {
        throw UsageError("--still, --sheet, --frames and --chapters are made one at a time");
    }
    if (options.from >= options.to) throw UsageError("--from and --to: nothing lies between them");
    if (options.chapters) {
        if (!targets.output.empty()) throw UsageError("-o does not go with --chapters, which prints");
        return;
    }
    if (!targets.sheet.empty() || !targets.frames.empty()) {
        options.job = targets.sheet.empty() ? Job::frames : Job::sheet;
        if (!targets.output.empty())
            throw UsageError("-o does not go with --sheet or --frames, which name their own output");
        options.output = targets.sheet.empty() ? targets.frames : targets.sheet;
    } else {
        if (targets.output.empty()) throw UsageError("-o is missing: it names the file or folder to write");
        if (stills && stream)
            throw UsageError("--still: stills are PNG files, -o - is for a stream of frames");
        options.job = stills ? Job::stills : stream ? Job::stream : Job::video;
        options.output = targets.output;
        if (options.job == Job::video && !is_video_name(options.output)) {
            throw UsageError("-o: '" + options.output + "' ends in none of .mp4, .mkv, .mov");
        }
    }
    const bool one_png =
        options.job == Job::sheet || (stills && options.stills.size() == 1 && !is_folder(options.output));
    if (one_png && extension_of(options.output) != ".png") {
        throw UsageError("'" + options.output + "' does not end in .png, which is what it would be");
    }
    if (options.job == Job::stream && isatty(STDOUT_FILENO)) {
        throw UsageError("-o -: standard output is a terminal; send the frames to a program or a file");
    }
    const bool pictures_only = options.job == Job::stills || options.job == Job::sheet;
    if ((has("from") || has("to")) && pictures_only)
        throw UsageError("--from and --to: stills and the storyboard have no range");
    if (has("format") && options.job != Job::stream) throw UsageError("--format is for -o - only");
    if (has("crf") && options.job != Job::video) throw UsageError("--crf is for video files only");
    if (has("preset") && options.job != Job::video) throw UsageError("--preset is for video files only");
}

} // namespace

Options parse_options(int argc, char** argv) {
    Options options;
    Targets targets;
    const common::Given given = common::read_options(argc, argv, command_line(options, targets));
    options.answer = given.answer;
    if (!options.answer.empty()) return options;
    choose_job(options, targets, given.options);
    if (options.job != Job::stream && !options.chapters) {
        options.output = absolute(options.output); // the show runs in another folder
    }
    return options;
}

} // namespace offscreen
