// Matrices and their stacks. Single precision, in the order of operations that the reference renderer (Mesa) has: of
// two surfaces in one plane the show draws many, and which of them is seen depends on the last bit of their depths.
#pragma once

#include <GL/gl.h>

namespace page::gl {

// Four floats that are computed with at once.
typedef float Float4 __attribute__((vector_size(16)));
typedef int Int4 __attribute__((vector_size(16)));

inline Int4 as_ints(Float4 values) { return reinterpret_cast<Int4>(values); }

struct Matrix {
    Float4 column[4];
};

constexpr Matrix kIdentity = {{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}};

// The matrix with those 16 elements, column by column.
template <class Number>
Matrix matrix_of(const Number* elements) {
    Matrix m;
    for (int i = 0; i < 16; ++i) m.column[i / 4][i % 4] = static_cast<float>(elements[i]);
    return m;
}

Matrix operator*(const Matrix& a, const Matrix& b);

// The vector (x, y, z, 1), transformed.
inline Float4 transform(const Matrix& m, float x, float y, float z) {
    return m.column[0] * x + m.column[1] * y + m.column[2] * z + m.column[3];
}

// Commands.
void matrix_mode(GLenum mode);
void push_matrix();
void pop_matrix();
void load_identity();
void mult_matrix(Matrix m);
void translate(float x, float y, float z);
void scale(float x, float y, float z);
void rotate(float degrees, float x, float y, float z);
void ortho(float left, float right, float bottom, float top, float near, float far);

GLenum current_matrix_mode();
int modelview_depth();
int projection_depth();

const Matrix& modelview();
const Matrix& projection();
const Matrix& texture_matrix();

// From the vertex to clip coordinates.
const Matrix& clip_matrix();

// Three columns, of the inverse transpose of the modelview matrix; their last lanes are 0.
const Float4* normal_matrix();

void reset_matrices();

} // namespace page::gl
