// A host that logs every GL, GLU, GLUT and FMOD Ex call the show makes, draws nothing and plays nothing.
//
// Expected sequences are written as the calls themselves, so that their names and number types are checked by
// the compiler:
//
//     EXPECT_EQ(recording::calls_of([] { set_render_state(0x48); }),
//               recording::calls_of([] {
//                   glEnable(GL_BLEND);
//                   glBlendFunc(GL_ONE, GL_ONE);
//               }));
//
// A test program is one process with one log, one script and one set of GL names.
#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <variant>
#include <vector>

namespace recording {

using Argument = std::variant<double, std::string>; // arrays are logged element by element

struct Call {
    std::string name;
    std::vector<Argument> arguments;
};

// Same name and the same values; 0 and -0 differ.
bool operator==(const Call& a, const Call& b);
std::ostream& operator<<(std::ostream& out, const Call& call);

using Log = std::vector<Call>;

// Everything recorded since the start or the last clear.
Log& log();

// Turns the log off for measuring what the show's own code costs.
void set_logging(bool on);

// When set, sees every call as it is recorded: for what must hold at that moment.
std::function<void(const Call&)>& observer();

// What `body` calls. What was in the log before stays there; these calls are not added to it.
Log calls_of(const std::function<void()>& body);

// The calls of one name.
Log only(const Log& calls, const std::string& name);

// How many calls have that name.
int count(const Log& calls, const std::string& name);

// What the host's surroundings do. Set before the show runs.
struct Script {
    std::vector<unsigned> positions;        // ms, one per FMOD_Channel_GetPosition; the last one is repeated
    std::vector<std::string> missing_files; // FMOD_System_CreateSound does not find these
    int display_calls = 0;                  // glutMainLoop ends after so many
    int surface_width = 1024;               // what the reshape callback gets when the loop begins
    int surface_height = 768;
};
Script& script();

// Thrown out of glutMainLoop when the script's display calls are used up.
struct ScriptEnded {};

// Thrown in place of ending the process when the show calls exit.
struct Exited {
    int status;
};

// The callbacks in force.
struct Callbacks {
    void (*display)() = nullptr;
    void (*idle)() = nullptr;
    void (*reshape)(int, int) = nullptr;
};
const Callbacks& callbacks();

// The GL error that glGetError would return now. The model knows of surplus pops, unbalanced glBegin and
// glEnd, calls that are not allowed between the two, capabilities and blend factors that do not exist.
unsigned pending_error();

// GL errors since the start, by the call that provoked them, whether read or not.
Log& errors();

// Depth of the modelview and projection stacks; 1 at the start.
int modelview_depth();
int projection_depth();

// What one gluBuild2DMipmaps was given.
struct Upload {
    unsigned texture; // the one bound then
    int width;
    int height;
    unsigned format;
    std::vector<unsigned char> pixels; // rows packed without padding
    // What GL reads past them: it takes each row as a multiple of four bytes.
    std::vector<unsigned char> padding;
};

// All of them since the start.
const std::vector<Upload>& uploads();

// Everything the host keeps of GL and GLU: names, stack depths, errors and uploads. Put back with restore_gl,
// a second run of the same calls gives the same log.
struct GlModel {
    unsigned error = 0; // pending
    unsigned next_texture = 1;
    unsigned next_list = 1;
    int next_quadric = 1;
    unsigned bound_texture = 0;
    unsigned matrix_mode = 0x1700; // GL_MODELVIEW
    int modelview_depth = 1;
    int projection_depth = 1;
    bool in_begin = false;
    Log errors;
    std::vector<Upload> uploads;
};
GlModel save_gl();
void restore_gl(const GlModel& model);

} // namespace recording

// Logs are long; their code is compiled once, with the host.
extern template class std::vector<recording::Argument>;
extern template class std::vector<recording::Call>;
