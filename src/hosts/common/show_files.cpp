#include "hosts/common/show_files.h"

#include <ft2build.h>
#include FT_FREETYPE_H

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <memory>
#include <optional>
#include <stdexcept>

#include "hosts/common/mp3_decoder.h"
#include "hosts/common/times.h"

namespace common {

namespace {

constexpr double seconds(ShowTime time) { return static_cast<double>(time) / kSecond; }

struct MusicFile {
    const char* name;
    double needed; // seconds
    const char* effect;
};

constexpr MusicFile kMusic[] = {
    {"zev.mp3", seconds(kPieces[1].from), "the show stands still or falls silent before 74 s"},
    {"zev_voc.mp3", seconds(kShowEnd - kPieces[1].clock), "the show stands still or falls silent after 74 s"},
};

struct FontFile {
    const char* name;
    bool optional;
    const char* effect;
};

constexpr FontFile kFonts[] = {
    {"Vera.ttf", false, "the show has no text"},
    {"Arial", true, "a heading is drawn without it"},
};

std::string seconds_text(double seconds) {
    char text[32];
    std::snprintf(text, sizeof text, "%.1f s", std::floor(seconds * 10 + 1e-6) / 10);
    return text;
}

// What is wrong with a music file, or nothing.
std::optional<std::string> music_problem(const std::string& path, double needed) {
    Mp3Error error = Mp3Error::none;
    const std::unique_ptr<Mp3Decoder> decoder = Mp3Decoder::open(path.c_str(), error);
    switch (error) {
    case Mp3Error::none:
        break;
    case Mp3Error::not_found:
        return "is missing";
    case Mp3Error::unreadable:
        return "cannot be read or is empty";
    case Mp3Error::not_mp3:
        return "is not an MP3 file";
    case Mp3Error::no_memory:
        return "cannot be opened for lack of memory";
    }
    const double length = static_cast<double>(decoder->length()) / decoder->rate();
    if (length < needed)
        return "ends or breaks off at " + seconds_text(length) + " of the " + seconds_text(needed) +
               " needed";
    if (const std::optional<double> damage = decoder->find_damage(needed))
        return "is damaged at " + seconds_text(*damage);
    return {};
}

struct FreeTypeDeleter {
    void operator()(FT_Library library) const { FT_Done_FreeType(library); }
    void operator()(FT_Face face) const { FT_Done_Face(face); }
};

// What is wrong with a font, or nothing.
std::optional<std::string> font_problem(const std::string& path) {
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    if (!std::filesystem::exists(status)) return "is missing";
    if (!std::filesystem::is_regular_file(status)) return "is not a file"; // a pipe would be waited for
    if (std::filesystem::file_size(path, error) == 0) return "is empty";
    FT_Library library = nullptr;
    if (FT_Init_FreeType(&library) != 0) return "cannot be opened for lack of memory";
    const std::unique_ptr<FT_LibraryRec_, FreeTypeDeleter> library_owner(library);
    FT_Face face = nullptr;
    const FT_Error why = FT_New_Face(library, path.c_str(), 0, &face);
    if (why == FT_Err_Cannot_Open_Resource) return "cannot be read";
    if (why != 0) return "is not a font";
    const std::unique_ptr<FT_FaceRec_, FreeTypeDeleter> face_owner(face);
    if (FT_Set_Pixel_Sizes(face, 20, 20) != 0) return "has no letters of any size";
    for (FT_ULong letter = '!'; letter <= '~';
         ++letter) { // a letter that lies behind a cut loads without outlines
        if (FT_Load_Char(face, letter, FT_LOAD_DEFAULT) != 0 || face->glyph->outline.n_contours == 0)
            return "is damaged";
    }
    return {};
}

// `path` from the root on; as it is where there is no working directory.
std::filesystem::path absolute(const std::filesystem::path& path) {
    std::error_code no_working_directory;
    const std::filesystem::path whole = std::filesystem::absolute(path, no_working_directory);
    return no_working_directory ? path : (whole / "").lexically_normal().parent_path();
}

// Whether the folder has a music file of the show, usable or not.
bool has_music(const std::string& folder) {
    return std::any_of(std::begin(kMusic), std::end(kMusic), [&](const MusicFile& file) {
        std::error_code unknown;
        return std::filesystem::exists(std::filesystem::path(folder) / file.name, unknown);
    });
}

// "/a, /b or /c"
std::string alternatives(const std::vector<std::string>& folders) {
    std::string text;
    for (const std::string& folder : folders)
        text += (text.empty() ? "" : &folder == &folders.back() ? " or " : ", ") + absolute(folder).string();
    return text;
}

} // namespace

std::string to_line(const FileProblem& problem) {
    const std::string remedy = problem.problem == "is missing"
                                   ? "Name the folder of the show's files with --data, or put the file there"
                                   : "Put the show's own file there";
    return problem.name + ": " + problem.path + " " + problem.problem + ": " + problem.effect + ". " +
           remedy + " (in a checkout: git checkout -- data/" + problem.name + ").";
}

std::vector<FileProblem> show_file_problems(const std::string& folder) {
    std::vector<FileProblem> problems;
    for (const MusicFile& file : kMusic) {
        const std::string path = absolute(folder) / file.name;
        if (const auto problem = music_problem(path, file.needed))
            problems.push_back({file.name, path, *problem, file.effect, false});
    }
    for (const FontFile& file : kFonts) {
        const std::string path = absolute(folder) / file.name;
        if (const auto problem = font_problem(path))
            problems.push_back({file.name, path, *problem, file.effect, file.optional});
    }
    return problems;
}

std::vector<std::string> data_folders() {
    std::error_code unknown;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", unknown).parent_path();
    return {".", "data", program, program / "data", SKAV_DATA_FOLDER};
}

DataFolder enter_data_folder(const std::string& given) {
    const std::vector<std::string> folders = given.empty() ? data_folders() : std::vector<std::string>{given};
    const auto found =
        given.empty() ? std::find_if(folders.begin(), folders.end(), has_music) : folders.begin();
    if (found == folders.end())
        return {false,
                {"the show's files are not in " + alternatives(folders) +
                 ": the show stands still without them. Name their folder with --data."}};
    if (chdir(found->c_str()) != 0)
        throw std::runtime_error("cannot enter '" + *found + "': " + std::strerror(errno));
    DataFolder data{true, {}};
    for (const FileProblem& problem : show_file_problems(".")) {
        data.complete = data.complete && problem.optional;
        data.problems.push_back(to_line(problem));
    }
    return data;
}

double needed_seconds(const std::string& name) {
    for (const MusicFile& file : kMusic)
        if (name == file.name) return file.needed;
    return 0;
}

} // namespace common
