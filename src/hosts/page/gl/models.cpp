#include "hosts/page/gl/models.h"

#include <cstddef>

namespace page::gl {

namespace {

enum Call { kTexCoord = 1, kNormal = 2, kColor = 4, kVertex = 8 };

// A vertex and what was called since the one before. The last of a command may have no vertex.
struct alignas(kCommandAlignment) Kept {
    GLuint calls;
    GLfloat position[3], tex_coord[2], normal[3], color[4];
};

void run_kept(const void* command, std::size_t bytes) {
    const Kept* end = static_cast<const Kept*>(command) + bytes / sizeof(Kept);
    for (const Kept* k = static_cast<const Kept*>(command); k != end; ++k) {
        if (k->calls & kTexCoord) tex_coord(k->tex_coord[0], k->tex_coord[1]);
        if (k->calls & kNormal) normal(k->normal[0], k->normal[1], k->normal[2]);
        if (k->calls & kColor) color(k->color[0], k->color[1], k->color[2], k->color[3]);
        if (k->calls & kVertex) vertex(k->position[0], k->position[1], k->position[2]);
    }
}

// Keeps a call: in the last element of the list's last command, if that has no vertex yet.
template <std::size_t kCount>
bool keep(Call call, GLfloat (Kept::*member)[kCount], const GLfloat (&values)[kCount]) {
    Kept* kept = static_cast<Kept*>(end_of_command(run_kept));
    if (kept && !(kept[-1].calls & kVertex)) {
        --kept;
    } else {
        kept = static_cast<Kept*>(extend_command(run_kept, sizeof(Kept)));
        kept->calls = 0;
    }
    kept->calls |= call;
    for (std::size_t i = 0; i < kCount; ++i) (kept->*member)[i] = values[i];
    return g_compiling == Compiling::and_executing;
}

} // namespace

bool keep_vertex(GLfloat x, GLfloat y, GLfloat z) { return keep(kVertex, &Kept::position, {x, y, z}); }
bool keep_tex_coord(GLfloat s, GLfloat t) { return keep(kTexCoord, &Kept::tex_coord, {s, t}); }
bool keep_normal(GLfloat x, GLfloat y, GLfloat z) { return keep(kNormal, &Kept::normal, {x, y, z}); }
bool keep_color(GLfloat red, GLfloat green, GLfloat blue, GLfloat alpha) {
    return keep(kColor, &Kept::color, {red, green, blue, alpha});
}

} // namespace page::gl
