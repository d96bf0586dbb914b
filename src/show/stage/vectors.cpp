#include "show/stage/vectors.h"

#include <cmath>

float* vec3_cross(float out[3], const float a[3], const float b[3]) {
    const double ax = a[0], ay = a[1], az = a[2];
    const double bx = b[0], by = b[1], bz = b[2];
    out[0] = static_cast<float>(ay * bz - az * by);
    out[1] = static_cast<float>(az * bx - ax * bz);
    out[2] = static_cast<float>(ax * by - ay * bx);
    return out;
}

float* vec3_scale_by_length(float out[3], const float v[3]) {
    const double x = v[0], y = v[1], z = v[2];
    const float length = static_cast<float>(std::sqrt(x * x + y * y + z * z));
    out[0] = v[0] * length;
    out[1] = v[1] * length;
    out[2] = v[2] * length;
    return out;
}
