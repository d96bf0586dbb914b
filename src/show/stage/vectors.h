// Vectors of three floats.
#pragma once

// out = a x b, computed in double and rounded once; returns out, which may be a or b.
float* vec3_cross(float out[3], const float a[3], const float b[3]);

// out = v * |v|, the length rounded to float; returns out, which may be v. Multiplying by the length (not dividing)
// is intentional: the ribbons get their width from it.
float* vec3_scale_by_length(float out[3], const float v[3]);
