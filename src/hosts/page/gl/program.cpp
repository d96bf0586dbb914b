#include "hosts/page/gl/program.h"

#include <GL/glext.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "hosts/page/gl/driver.h"
#include "hosts/page/gl/errors.h"

namespace page::gl {

namespace {

constexpr char kHead[] = "#version 300 es\n";

// Attributes: see Vertex. u_lighting: see LightingBlock.
constexpr char kVertexShader[] = R"(
precision highp float;
precision highp int;

layout(location = 0) in vec4 a_clip;
layout(location = 1) in vec4 a_eye_s;
layout(location = 2) in vec4 a_normal_t;
layout(location = 3) in vec4 a_color;

uniform ivec4 u_switches;      // lighting, normalize, points, environment
uniform vec4 u_points[2];      // width and height of the viewport in pixels (z, w); size in pixels, a whole number
uniform vec4 u_lighting[58];

VARYING out vec4 v_color;
#ifdef TWO_SIDED
VARYING out vec4 v_back_color;
#endif
out vec3 v_s_t_fog;

struct Material { vec4 emission, ambient, diffuse, specular; };

Material material(int face) {
    int tracked = int(u_lighting[1][2 + face]);
    int at = 2 + 4 * face;
    Material m = Material(u_lighting[at], u_lighting[at + 1], u_lighting[at + 2], u_lighting[at + 3]);
    if ((tracked & 1) != 0) m.emission = a_color;
    if ((tracked & 2) != 0) m.ambient = a_color;
    if ((tracked & 4) != 0) m.diffuse = a_color;
    if ((tracked & 8) != 0) m.specular.rgb = a_color.rgb;
    return m;
}

// The colour of the vertex, lit; `normal` points to the side that is seen.
vec4 lit(Material m, vec3 normal) {
    vec3 color = m.emission.rgb + u_lighting[0].rgb * m.ambient.rgb;
    int count = int(u_lighting[1].x);
    bool local_viewer = u_lighting[1].y != 0.0;
    for (int i = 0; i < count; ++i) {
        int at = 10 + 6 * i;
        vec4 position = u_lighting[at];
        vec4 spot = u_lighting[at + 4];
        vec4 attenuation = u_lighting[at + 5];
        vec3 to_light = position.xyz;
        float strength = 1.0;
        if (position.w != 0.0) {
            to_light = position.xyz / position.w - a_eye_s.xyz;
            float d = length(to_light);
            to_light /= d;
            strength = 1.0 / (attenuation.x + attenuation.y * d + attenuation.z * d * d);
        } else {
            to_light = normalize(to_light);
        }
        if (attenuation.w != -1.0) {
            float angle = dot(-to_light, normalize(spot.xyz));
            strength *= angle < attenuation.w ? 0.0 : spot.w == 0.0 ? 1.0 : pow(angle, spot.w);
        }
        vec3 to_viewer = local_viewer ? -normalize(a_eye_s.xyz) : vec3(0.0, 0.0, 1.0);
        vec3 halfway = normalize(to_light + to_viewer);
        float diffuse = max(dot(normal, to_light), 0.0);
        float specular = 0.0;
        if (diffuse > 0.0) {
            float shine = max(dot(normal, halfway), 0.0);
            specular = m.specular.a == 0.0 ? 1.0 : shine == 0.0 ? 0.0 : pow(shine, m.specular.a);
        }
        color += strength * (u_lighting[at + 1].rgb * m.ambient.rgb +
                             diffuse * u_lighting[at + 2].rgb * m.diffuse.rgb +
                             specular * u_lighting[at + 3].rgb * m.specular.rgb);
    }
    return clamp(vec4(color, m.diffuse.a), 0.0, 1.0);
}

// Moves a point that is not clipped to where its square covers whole pixels: the corner nearest to its place for an
// even size, the middle of the pixel it lies in for an odd one.
vec4 snapped(vec4 clip) {
    if (any(greaterThan(abs(clip.xyz), vec3(clip.w)))) return clip;
    vec2 place = (clip.xy / clip.w * 0.5 + 0.5) * u_points[0].zw;
    place = floor(place * 256.0 + 0.5) / 256.0;
    bool odd = mod(u_points[1].x, 2.0) == 1.0;
    place = odd ? floor(place) + 0.5 : floor(place + 0.5);
    vec2 moved = (place / u_points[0].zw * 2.0 - 1.0) * clip.w;
    return vec4(clamp(moved, -clip.w, clip.w), clip.zw);
}

void main() {
    gl_Position = a_clip;
    gl_PointSize = 1.0;
    if (u_switches.z != 0) {
        gl_Position = snapped(a_clip);
        gl_PointSize = u_points[1].x;
    }
    v_s_t_fog = vec3(a_eye_s.w, a_normal_t.w, abs(a_eye_s.z));
    v_color = clamp(a_color, 0.0, 1.0);
#ifdef TWO_SIDED
    v_back_color = v_color;
#endif
    if (u_switches.x != 0) {
        vec3 normal = u_switches.y != 0 ? normalize(a_normal_t.xyz) : a_normal_t.xyz;
        v_color = lit(material(0), normal);
#ifdef TWO_SIDED
        v_back_color = lit(material(1), -normal);
#endif
    }
}
)";

constexpr char kFragmentShader[] = R"(
precision highp float;
precision highp int;

VARYING in vec4 v_color;
#ifdef TWO_SIDED
VARYING in vec4 v_back_color;
#endif
in vec3 v_s_t_fog;

// Lighting, normalize, points; texture environment: 0 none, 1 modulate, 2 decal, 3 blend, 4 replace.
uniform ivec4 u_switches;
// Parts, axes with a border, when the border is reached; levels: 0 one, 1 the nearest, 2 interpolated.
uniform ivec4 u_texture;
uniform vec4 u_fog;       // 0 none, 1 linear, 2 exponential, 3 of the square; factors
uniform vec4 u_fog_color;
uniform sampler2D u_image;

out vec4 color;

// How much of what is sampled there, at a place in 0..1 on an axis of that many texels, is not border.
float inside(float place, float texels) {
    float at = place * texels;
    return clamp(min(at, texels - at) + 0.5, 0.0, 1.0);
}

// The share of the image in a sample of one level.
float image_share(vec2 place, float level) {
    vec2 texels = vec2(textureSize(u_image, int(level)));
    float share = 1.0;
    if ((u_texture.y & 1) != 0) share *= inside(place.x, texels.x);
    if ((u_texture.y & 2) != 0) share *= inside(place.y, texels.y);
    return share;
}

// A sample of one level; the image is sampled as if its edge went on. The border is black and clear; where a texture
// has no alpha, none is used.
vec4 level_sample(vec2 place, float level) {
    return textureLod(u_image, place, level) * image_share(place, level);
}

// A sample with GL_CLAMP: coordinates end at 0 and 1, where half of an interpolated sample is border.
vec4 bordered_sample(vec2 place) {
    if ((u_texture.y & 1) != 0) place.x = clamp(place.x, 0.0, 1.0);
    if ((u_texture.y & 2) != 0) place.y = clamp(place.y, 0.0, 1.0);
    vec4 plain = texture(u_image, place);
    vec2 size = vec2(textureSize(u_image, 0));
    vec2 across = dFdx(v_s_t_fog.xy) * size, up = dFdy(v_s_t_fog.xy) * size;
    float level = 0.5 * log2(max(dot(across, across), dot(up, up)));
    if (level <= 0.0) return (u_texture.z & 1) != 0 ? plain * image_share(place, 0.0) : plain;
    if ((u_texture.z & 2) == 0) return plain;
    if (u_texture.w == 0) return plain * image_share(place, 0.0);
    float last = floor(log2(max(size.x, size.y)) + 0.5);
    level = min(level, last);
    if (u_texture.w == 1) return level_sample(place, floor(level + 0.5));
    float low = floor(level), high = min(low + 1.0, last);
    if (image_share(place, high) == 1.0 && image_share(place, low) == 1.0) return plain;
    return mix(level_sample(place, low), level_sample(place, high), level - low);
}

vec4 textured(vec4 before) {
    vec4 texel = u_texture.y != 0 && u_texture.z != 0 ? bordered_sample(v_s_t_fog.xy)
                                                      : texture(u_image, v_s_t_fog.xy);
    bool has_color = (u_texture.x & 1) != 0, has_alpha = (u_texture.x & 2) != 0;
    vec4 after = before;
    if (has_alpha) after.a = u_switches.w == 4 ? texel.a : u_switches.w == 2 ? before.a : before.a * texel.a;
    if (!has_color) return after;
    if (u_switches.w == 1) after.rgb = before.rgb * texel.rgb;
    if (u_switches.w == 2) after.rgb = has_alpha ? mix(before.rgb, texel.rgb, texel.a) : texel.rgb;
    if (u_switches.w == 3) after.rgb = before.rgb * (1.0 - texel.rgb); // towards the environment's colour, black
    if (u_switches.w == 4) after.rgb = texel.rgb;
    return after;
}

void main() {
#ifdef TWO_SIDED
    color = gl_FrontFacing ? v_color : v_back_color;
#else
    color = v_color;
#endif
    if (u_switches.w != 0) color = textured(color);
    if (u_fog.x != 0.0) {
        float distance = v_s_t_fog.z;
        float clear = u_fog.x == 1.0 ? distance * u_fog.y + u_fog.z
                    : u_fog.x == 2.0 ? exp(-u_fog.y * distance)
                                     : exp(-u_fog.y * u_fog.y * distance * distance);
        color.rgb = mix(u_fog_color.rgb, color.rgb, clamp(clear, 0.0, 1.0));
    }
}
)";

// A shader of that kind. Whether it could be compiled, linking tells.
GLuint compiled(GLenum kind, const char* definitions, const char* source) {
    const GLuint shader = driver().CreateShader(kind);
    const char* parts[] = {kHead, definitions, source};
    driver().ShaderSource(shader, 3, parts, nullptr);
    driver().CompileShader(shader);
    return shader;
}

// The number by which the shaders call the texture environment; 0: no texture.
GLint environment_number(const State& s) {
    if (s.texture == 0) return 0;
    switch (s.environment) {
    case GL_DECAL:
        return 2;
    case GL_BLEND:
        return 3;
    case GL_REPLACE:
        return 4;
    default:
        return 1;
    }
}

// Whether a sample may come from one level, the nearest, or two.
GLint levels_number(GLenum minification) {
    switch (minification) {
    case GL_NEAREST:
    case GL_LINEAR:
        return 0;
    case GL_NEAREST_MIPMAP_NEAREST:
    case GL_LINEAR_MIPMAP_NEAREST:
        return 1;
    default:
        return 2;
    }
}

} // namespace

bool Program::make(Variant variant) {
    char definitions[100];
    std::snprintf(definitions, sizeof definitions, "#define VARYING %s\n%s", variant.flat ? "flat" : "smooth",
                  variant.two_sided ? "#define TWO_SIDED\n" : "");
    const GLuint shaders[] = {compiled(GL_VERTEX_SHADER, definitions, kVertexShader),
                              compiled(GL_FRAGMENT_SHADER, definitions, kFragmentShader)};
    name_ = driver().CreateProgram();
    for (const GLuint shader : shaders) {
        driver().AttachShader(name_, shader);
        driver().DeleteShader(shader); // when the program goes
    }
    driver().LinkProgram(name_);
    GLint linked = 0;
    driver().GetProgramiv(name_, GL_LINK_STATUS, &linked);
    if (!linked) {
        char line[1000] = "OpenGL on WebGL: the shaders do not link: ";
        const std::size_t length = std::strlen(line);
        driver().GetProgramInfoLog(name_, static_cast<GLsizei>(sizeof line - length), nullptr, line + length);
        report(line);
        release();
        return false;
    }
    switches_ = driver().GetUniformLocation(name_, "u_switches");
    texture_ = driver().GetUniformLocation(name_, "u_texture");
    fog_ = driver().GetUniformLocation(name_, "u_fog");
    fog_color_ = driver().GetUniformLocation(name_, "u_fog_color");
    points_ = driver().GetUniformLocation(name_, "u_points");
    lighting_ = driver().GetUniformLocation(name_, "u_lighting");
    return true;
}

void Program::release() {
    if (name_ != 0) driver().DeleteProgram(name_);
    *this = Program();
}

void Program::bind() const { driver().UseProgram(name_); }

void Program::set_state(const State& s, const common::Box& viewport, GLfloat point_size) {
    Values wanted = {{s.lighting, s.normalize, point_size > 0, environment_number(s)},
                     {s.texture_parts, s.border_axes, s.border_when, levels_number(s.minification)},
                     {},
                     {},
                     {}};
    if (s.fog && s.fog_mode == GL_LINEAR) {
        const GLfloat scale = s.fog_start == s.fog_end ? 1.0f : 1.0f / (s.fog_end - s.fog_start);
        wanted.fog[0] = 1;
        wanted.fog[1] = -scale;
        wanted.fog[2] = s.fog_end * scale;
    } else if (s.fog) {
        wanted.fog[0] = s.fog_mode == GL_EXP ? 2.0f : 3.0f;
        wanted.fog[1] = s.fog_density;
    }
    if (s.fog) std::copy(s.fog_color, s.fog_color + 4, wanted.fog_color);
    if (point_size > 0) {
        wanted.points[2] = static_cast<GLfloat>(viewport.width);
        wanted.points[3] = static_cast<GLfloat>(viewport.height);
        wanted.points[4] = point_size;
    }
    const auto update = [](const auto& from, auto& to, auto upload) {
        if (std::memcmp(&from, &to, sizeof from) == 0) return;
        std::memcpy(&to, &from, sizeof from);
        upload();
    };
    update(wanted.switches, values_.switches, [&] { driver().Uniform4iv(switches_, 1, values_.switches); });
    update(wanted.texture, values_.texture, [&] { driver().Uniform4iv(texture_, 1, values_.texture); });
    update(wanted.fog, values_.fog, [&] { driver().Uniform4fv(fog_, 1, values_.fog); });
    update(wanted.fog_color, values_.fog_color,
           [&] { driver().Uniform4fv(fog_color_, 1, values_.fog_color); });
    update(wanted.points, values_.points, [&] { driver().Uniform4fv(points_, 2, values_.points); });
}

void Program::set_lighting(const LightingBlock& block, unsigned number) {
    if (number == lighting_number_) return;
    lighting_number_ = number;
    driver().Uniform4fv(lighting_, sizeof block / (4 * sizeof(GLfloat)),
                        reinterpret_cast<const GLfloat*>(&block));
}

} // namespace page::gl
