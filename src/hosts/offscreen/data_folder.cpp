#include "hosts/offscreen/data_folder.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "hosts/offscreen/failure.h"

namespace {

const char* const kFiles[] = {"zev.mp3", "zev_voc.mp3", "Vera.ttf", "Arial"};

bool readable(const std::string& path) { return access(path.c_str(), R_OK) == 0; }

} // namespace

void enter_data_folder(const std::string& folder) {
    const std::string found = !folder.empty() ? folder : readable(kFiles[0]) ? "." : "data";
    for (const char* file : kFiles) {
        const std::string path = found + "/" + file;
        if (readable(path)) continue;
        const std::string why = std::strerror(errno);
        throw Failure("cannot read " + path + ": " + why +
                      " (--data tells where the music and the fonts are)");
    }
    if (chdir(found.c_str()) != 0) throw Failure("cannot enter " + found + ": " + std::strerror(errno));
}
