#include "hosts/page/gl/matrices.h"

#include <cmath>

#include "hosts/page/gl/errors.h"
#include "hosts/page/gl/same_bytes.h"

namespace page::gl {

namespace {

constexpr int kMostDepth = 32;

struct Stack {
    int limit;
    int top;
    Matrix entries[kMostDepth];
};

Stack g_modelview = {32, 0, {kIdentity}};
Stack g_projection = {32, 0, {kIdentity}};
Stack g_texture = {10, 0, {kIdentity}};

GLenum g_mode = GL_MODELVIEW;
Stack* g_current = &g_modelview;

// Whether a matrix may differ from those that the following were made of.
bool g_changed = true;
Matrix g_used_modelview, g_used_projection;
Matrix g_clip;
Float4 g_normal[3];
bool g_normal_is_old = true;

Matrix& top() { return g_current->entries[g_current->top]; }

void matrix_changed() { g_changed = true; }

void reset(Stack& stack) {
    stack.top = 0;
    stack.entries[0] = kIdentity;
}

Float4 cross(Float4 a, Float4 b) {
    return Float4{a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0], 0};
}

// Fills the columns of the inverse transpose of the upper left 3x3 of m; those of the identity where there is none.
void invert_transpose(const Matrix& m, Float4 (&result)[3]) {
    const Float4 *a = m.column, *b = a + 1, *c = a + 2;
    const Float4 bc = cross(*b, *c), ca = cross(*c, *a), ab = cross(*a, *b);
    const float determinant = (*a)[0] * bc[0] + (*a)[1] * bc[1] + (*a)[2] * bc[2];
    if (std::fabs(determinant) < 1e-25f) {
        for (int i = 0; i < 3; ++i) result[i] = kIdentity.column[i];
        return;
    }
    const float scale = 1 / determinant;
    result[0] = bc * scale;
    result[1] = ca * scale;
    result[2] = ab * scale;
}

// Multiplies the current matrix by the one with these elements, column by column.
void mult_elements(const float (&m)[16]) { mult_matrix(matrix_of(m)); }

} // namespace

Matrix operator*(const Matrix& a, const Matrix& b) {
    Matrix product;
    for (int i = 0; i < 4; ++i) {
        const Float4& from = b.column[i];
        product.column[i] =
            a.column[0] * from[0] + a.column[1] * from[1] + a.column[2] * from[2] + a.column[3] * from[3];
    }
    return product;
}

void matrix_mode(GLenum mode) {
    if (!outside_begin()) return;
    switch (mode) {
    case GL_MODELVIEW:
        g_current = &g_modelview;
        break;
    case GL_PROJECTION:
        g_current = &g_projection;
        break;
    case GL_TEXTURE:
        g_current = &g_texture;
        break;
    default:
        return set_error(GL_INVALID_ENUM);
    }
    g_mode = mode;
}

void push_matrix() {
    if (!outside_begin()) return;
    if (g_current->top + 1 == g_current->limit) return set_error(GL_STACK_OVERFLOW);
    ++g_current->top;
    g_current->entries[g_current->top] = g_current->entries[g_current->top - 1];
}

void pop_matrix() {
    if (!outside_begin()) return;
    if (g_current->top == 0) return set_error(GL_STACK_UNDERFLOW);
    --g_current->top;
    matrix_changed();
}

void load_identity() {
    if (!outside_begin()) return;
    top() = kIdentity;
    matrix_changed();
}

void mult_matrix(Matrix m) {
    if (!outside_begin()) return;
    top() = top() * m;
    matrix_changed();
}

void translate(float x, float y, float z) {
    if (!outside_begin()) return;
    top().column[3] = transform(top(), x, y, z);
    matrix_changed();
}

void scale(float x, float y, float z) {
    if (!outside_begin()) return;
    top().column[0] *= x;
    top().column[1] *= y;
    top().column[2] *= z;
    matrix_changed();
}

void rotate(float degrees, float x, float y, float z) {
    if (!outside_begin()) return;
    if (degrees == 0) return;
    const float radians = static_cast<float>(degrees * 3.14159265358979323846 / 180.0);
    const float s = std::sin(radians), c = std::cos(radians);
    // Turns about an axis of coordinates have exact zeros.
    if (x == 0 && y == 0 && z != 0) {
        const float turn = z < 0 ? -s : s;
        return mult_elements({c, turn, 0, 0,  //
                              -turn, c, 0, 0, //
                              0, 0, 1, 0,     //
                              0, 0, 0, 1});
    }
    if (x == 0 && y != 0 && z == 0) {
        const float turn = y < 0 ? -s : s;
        return mult_elements({c, 0, -turn, 0, //
                              0, 1, 0, 0,     //
                              turn, 0, c, 0,  //
                              0, 0, 0, 1});
    }
    if (x != 0 && y == 0 && z == 0) {
        const float turn = x < 0 ? -s : s;
        return mult_elements({1, 0, 0, 0,     //
                              0, c, turn, 0,  //
                              0, -turn, c, 0, //
                              0, 0, 0, 1});
    }
    const float length = std::sqrt(x * x + y * y + z * z);
    if (length <= 1e-4f) return; // no axis: no rotation
    x /= length;
    y /= length;
    z /= length;
    const float rest = 1 - c;
    const float xy = rest * (x * y), yz = rest * (y * z), zx = rest * (z * x);
    mult_elements({rest * (x * x) + c, xy + z * s, zx - y * s, 0, //
                   xy - z * s, rest * (y * y) + c, yz + x * s, 0, //
                   zx + y * s, yz - x * s, rest * (z * z) + c, 0, //
                   0, 0, 0, 1});
}

void ortho(float left, float right, float bottom, float top_edge, float near, float far) {
    if (!outside_begin()) return;
    if (left == right || bottom == top_edge || near == far) return set_error(GL_INVALID_VALUE);
    const float width = right - left, height = top_edge - bottom, depth = far - near;
    mult_elements({2 / width, 0, 0, 0,  //
                   0, 2 / height, 0, 0, //
                   0, 0, -2 / depth, 0, //
                   -(right + left) / width, -(top_edge + bottom) / height, -(far + near) / depth, 1});
}

GLenum current_matrix_mode() { return g_mode; }
int modelview_depth() { return g_modelview.top + 1; }
int projection_depth() { return g_projection.top + 1; }

const Matrix& modelview() { return g_modelview.entries[g_modelview.top]; }
const Matrix& projection() { return g_projection.entries[g_projection.top]; }
const Matrix& texture_matrix() { return g_texture.entries[g_texture.top]; }

// The show often pops a matrix and then makes the same one again.
const Matrix& clip_matrix() {
    if (!g_changed) return g_clip;
    g_changed = false;
    if (same_bytes(modelview(), g_used_modelview) && same_bytes(projection(), g_used_projection))
        return g_clip;
    g_used_modelview = modelview();
    g_used_projection = projection();
    g_clip = projection() * modelview();
    g_normal_is_old = true;
    return g_clip;
}

const Float4* normal_matrix() {
    clip_matrix(); // sees changes
    if (g_normal_is_old) invert_transpose(g_used_modelview, g_normal);
    g_normal_is_old = false;
    return g_normal;
}

void reset_matrices() {
    reset(g_modelview);
    reset(g_projection);
    reset(g_texture);
    matrix_mode(GL_MODELVIEW);
    matrix_changed();
}

} // namespace page::gl
