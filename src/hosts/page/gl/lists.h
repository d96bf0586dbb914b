// Display lists: commands that are kept, and executed later.
#pragma once

#include <GL/gl.h>

#include <cstddef>
#include <cstring>
#include <type_traits>

namespace page::gl {

// Commands are kept in the list being compiled, and executed now or only when the list is called.
enum class Compiling { no, only, and_executing };
extern Compiling g_compiling;

constexpr std::size_t kCommandAlignment = 16;

// Executes the command at that address, of that many bytes.
using Run = void (*)(const void* command, std::size_t bytes);

// Room for a command of that many bytes, in the list being compiled.
void* keep_command(Run run, std::size_t bytes);

// The same, but if the last command of the list has the same `run` and no gap behind it, these bytes are added to it.
void* extend_command(Run run, std::size_t bytes);

// The end of the last command of the list, if it has that `run`; null otherwise. Valid until more is kept.
void* end_of_command(Run run);

// Every entry point whose call a list keeps goes through here: executes `function`, or keeps the call, or both.
template <auto function, class... Values>
inline void issue(Values... values) {
    if (g_compiling != Compiling::no) {
        const auto command = [=] { function(values...); };
        using Command = std::remove_const_t<decltype(command)>;
        static_assert(std::is_trivially_copyable_v<Command> && alignof(Command) <= kCommandAlignment);
        void* place = keep_command(
            [](const void* kept, std::size_t) { (*static_cast<const Command*>(kept))(); }, sizeof command);
        std::memcpy(place, &command, sizeof command);
        if (g_compiling == Compiling::only) return;
    }
    function(values...);
}

// Whether a command that is executed now comes from a list.
bool is_list_called();

// Commands.
GLuint gen_lists(GLsizei count);
void new_list(GLuint name, GLenum mode);
void end_list();
void call_list(GLuint name);

void reset_lists();

} // namespace page::gl
