#include "hosts/page/gl/lists.h"

#include <map>
#include <vector>

#include "hosts/page/gl/errors.h"

namespace page::gl {

Compiling g_compiling = Compiling::no;

namespace {

constexpr int kMostNested = 64;

// Stands before each command. A command has a whole number of kCommandAlignment bytes.
struct alignas(kCommandAlignment) Header {
    Run run;
    std::size_t bytes; // of the command
};

// Headers, each followed by its command.
using List = std::vector<unsigned char>;

std::map<GLuint, List> g_lists;
GLuint g_name;          // of the list being compiled
List g_list;            // it replaces an older one of that name when it is complete
std::size_t g_last = 0; // where the last header of g_list is
int g_nested = 0;

std::size_t aligned(std::size_t bytes) {
    return (bytes + kCommandAlignment - 1) / kCommandAlignment * kCommandAlignment;
}

Header& last_header() { return *reinterpret_cast<Header*>(g_list.data() + g_last); }

} // namespace

void* keep_command(Run run, std::size_t bytes) {
    g_last = g_list.size();
    g_list.resize(g_last + sizeof(Header));
    last_header() = {run, 0};
    return extend_command(run, bytes);
}

void* extend_command(Run run, std::size_t bytes) {
    if (!end_of_command(run)) return keep_command(run, bytes);
    const std::size_t at = g_list.size();
    g_list.resize(at + aligned(bytes));
    last_header().bytes += aligned(bytes);
    return g_list.data() + at;
}

void* end_of_command(Run run) {
    if (g_list.empty() || last_header().run != run) return nullptr;
    return g_list.data() + g_list.size();
}

bool is_list_called() { return g_nested > 0; }

GLuint gen_lists(GLsizei count) {
    if (!outside_begin()) return 0;
    if (count < 0) set_error(GL_INVALID_VALUE);
    if (count <= 0) return 0;
    GLuint first = 1;
    const GLuint number = static_cast<GLuint>(count);
    for (auto used = g_lists.lower_bound(first); used != g_lists.end() && used->first < first + number;
         ++used) {
        first = used->first + 1;
    }
    for (GLuint i = 0; i < number; ++i) g_lists[first + i];
    return first;
}

void new_list(GLuint name, GLenum mode) {
    if (!outside_begin()) return;
    if (name == 0) return set_error(GL_INVALID_VALUE);
    if (mode != GL_COMPILE && mode != GL_COMPILE_AND_EXECUTE) return set_error(GL_INVALID_ENUM);
    if (g_compiling != Compiling::no) return set_error(GL_INVALID_OPERATION);
    g_name = name;
    g_list.clear();
    g_compiling = mode == GL_COMPILE ? Compiling::only : Compiling::and_executing;
}

void end_list() {
    if (!outside_begin()) return;
    if (g_compiling == Compiling::no) return set_error(GL_INVALID_OPERATION);
    g_compiling = Compiling::no;
    g_lists[g_name].swap(g_list);
    g_list = {};
}

// A name without a list, and lists nested too deeply, are ignored.
void call_list(GLuint name) {
    const auto found = g_lists.find(name);
    if (found == g_lists.end() || g_nested == kMostNested) return;
    ++g_nested;
    const Compiling compiling = g_compiling; // the commands in the list are not kept once more
    g_compiling = Compiling::no;
    const unsigned char* at = found->second.data();
    const unsigned char* end = at + found->second.size();
    while (at != end) {
        const Header& header = *reinterpret_cast<const Header*>(at);
        at += sizeof header;
        header.run(at, header.bytes);
        at += header.bytes;
    }
    g_compiling = compiling;
    --g_nested;
}

void reset_lists() {
    g_compiling = Compiling::no;
    g_lists.clear();
    g_list.clear();
    g_nested = 0;
}

} // namespace page::gl
