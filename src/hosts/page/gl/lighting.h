// Lights and materials.
#pragma once

#include <GL/gl.h>

namespace page::gl {

constexpr int kMostLights = 8;

// As the vertex shader reads it: an array of vec4.
struct LightingBlock {
    struct Material {
        GLfloat emission[4], ambient[4], diffuse[4], specular[4]; // the last of specular: shininess
    };
    struct Light {
        GLfloat position[4]; // in eye coordinates; the last is 0 for a light at infinity
        GLfloat ambient[4], diffuse[4], specular[4];
        GLfloat spot[4];        // its direction, and the exponent
        GLfloat attenuation[4]; // constant, linear, quadratic; cosine of the cutoff, -1 for none
    };

    GLfloat scene_ambient[4];
    // Number of lights; whether the viewer is local; which colours of the front and the back material are the
    // vertex's: 1 emission, 2 ambient, 4 diffuse, 8 specular.
    GLfloat switches[4];
    Material materials[2]; // front, back
    Light lights[kMostLights];
};

// The lights that are switched on, materials and the rest, for drawing. Where it changed since the last call,
// `changed` becomes true.
const LightingBlock& lighting_block(bool& changed);

// Commands.
void enable_light(GLenum light, bool on);
void enable_color_material(bool on);
void light(GLenum light, GLenum name, const GLfloat* values);
void light_model(GLenum name, const GLfloat* values);
void material(GLenum face, GLenum name, const GLfloat* values);
void color_material(GLenum face, GLenum mode);

void reset_lighting();

} // namespace page::gl
