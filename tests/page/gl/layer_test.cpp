// Small programs, drawn by the layer as by the reference renderer.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <vector>

#include "hosts/page/gl/layer.h"
#include "hosts/page/gl/queue.h"
#include "tests/page/gl/both.h"

namespace {

// How many pixels may differ by more than the rounding of a colour (1/255), and then by how much.
struct Allowed {
    int pixels = 0;
    int most = 255;
};

void expect_same(const GlProgram& program, Allowed allowed = {}) {
    const Pixels reference = drawn_by_reference(program);
    const Pixels layer = drawn_by_layer(program);
    ASSERT_FALSE(layer.empty());
    const PixelDifference found = difference(reference, layer);
    EXPECT_TRUE(found.pixels <= allowed.pixels && found.most <= allowed.most)
        << found.pixels << " pixels differ by more than 1, at most by " << found.most
        << "; reference and layer " << found.where;
    // A program that draws nothing tests nothing.
    EXPECT_NE(std::adjacent_find(reference.begin(), reference.end(), std::not_equal_to<>()), reference.end());
}

void set_perspective(const Gl& gl) {
    const double f = 1.4281480067421144, near = 0.1, far = 500; // 70 degrees
    const double m[16] = {
        f / 1.3333333333333333,        0, 0, 0, 0, f, 0, 0, 0, 0, (far + near) / (near - far), -1, 0, 0,
        2 * far * near / (near - far), 0};
    gl.glMatrixMode(GL_PROJECTION);
    gl.glMultMatrixd(m);
    gl.glMatrixMode(GL_MODELVIEW);
}

// A unit square about the origin with texture coordinates 0..repeat, cut into cells.
void draw_plane(const Gl& gl, int cells = 1, double repeat = 1) {
    gl.glNormal3d(0, 0, 1);
    for (int j = 0; j < cells; ++j) {
        for (int i = 0; i < cells; ++i) {
            gl.glBegin(GL_QUADS);
            for (const auto& corner : {std::pair(0, 0), {1, 0}, {1, 1}, {0, 1}}) {
                const double s = double(i + corner.first) / cells, t = double(j + corner.second) / cells;
                gl.glTexCoord2d(s * repeat, t * repeat);
                gl.glVertex3d(s - 0.5, t - 0.5, 0);
            }
            gl.glEnd();
        }
    }
}

// A cylinder of radius and height 1 about z with smooth normals, as strips.
void draw_cylinder(const Gl& gl, int slices = 24) {
    gl.glBegin(GL_QUAD_STRIP);
    for (int i = 0; i <= slices; ++i) {
        const double angle = i * 6.283185307179586 / slices, x = std::sin(angle), y = std::cos(angle);
        gl.glNormal3d(x, y, 0);
        gl.glTexCoord2d(double(i) / slices, 0);
        gl.glVertex3d(x, y, 0);
        gl.glTexCoord2d(double(i) / slices, 1);
        gl.glVertex3d(x, y, 1);
    }
    gl.glEnd();
}

// Binds a new texture of noise with all levels, each of its own colours.
void bind_noise(const Gl& gl, GLenum format, int components, int size = 64) {
    GLuint texture = 0;
    gl.glGenTextures(1, &texture);
    gl.glBindTexture(GL_TEXTURE_2D, texture);
    unsigned seed = 1;
    for (int level = 0; size >> level; ++level) {
        const std::size_t side = static_cast<std::size_t>(size >> level);
        std::vector<GLubyte> pixels((side * static_cast<std::size_t>(components) + 3) / 4 * 4 * side);
        for (GLubyte& byte : pixels) {
            seed = seed * 1664525 + 1013904223;
            byte = static_cast<GLubyte>(seed >> 24);
        }
        gl.glTexImage2D(GL_TEXTURE_2D, level, components, GLsizei(side), GLsizei(side), 0, format,
                        GL_UNSIGNED_BYTE, pixels.data());
    }
    gl.glEnable(GL_TEXTURE_2D);
}

void tilt(const Gl& gl) {
    set_perspective(gl);
    gl.glTranslated(0, 0, -2);
    gl.glRotatef(-60, 1, 0, 0);
    gl.glRotatef(20, 0, 0, 1);
    gl.glScaled(3, 3, 1);
}

// --- Transformation and rasterisation ---

TEST(LayerMatrices, TransformAsTheReferenceDoes) {
    expect_same([](const Gl& gl) {
        set_perspective(gl);
        gl.glTranslated(0.5, 0.25, -6);
        gl.glRotatef(33, 1, 2, 3);
        gl.glScaled(3, 2, 4);
        gl.glColor3f(1, 0.5f, 0.25f);
        draw_cylinder(gl);
        gl.glPushMatrix();
        gl.glLoadIdentity();
        gl.glOrtho(0, 1024, 768, 0, -100, 100);
        gl.glPopMatrix();
        gl.glRotatef(-70, 0, -1, 0);
        gl.glColor3f(0, 0.5f, 1);
        draw_plane(gl, 3);
    });
}

// Many quads of one glBegin, from behind the viewer to beyond all sides of the picture.
TEST(LayerMatrices, CutOffWhatLiesOutsideAsTheReferenceDoes) {
    expect_same([](const Gl& gl) {
        set_perspective(gl);
        gl.glRotatef(-70, 1, 0, 0);
        gl.glRotatef(30, 0, 0, 1);
        gl.glTranslated(-20, -20, -1.5);
        gl.glBegin(GL_QUADS);
        for (int i = 0; i < 40 * 40; ++i) {
            for (const auto& corner : {std::pair(0, 0), {1, 0}, {1, 1}, {0, 1}}) {
                const int x = i % 40 + corner.first, y = i / 40 + corner.second;
                gl.glColor3f(float(x % 3) / 2, float(y % 4) / 3, 0.5f);
                gl.glVertex3d(x, y, 0);
            }
        }
        gl.glEnd();
    });
}

// Neighbours that overlap in one plane: which one a pixel shows depends on the last bit of its depth.
void draw_overlapping_ring(const Gl& gl) {
    set_perspective(gl);
    gl.glTranslated(0, 0, -80);
    gl.glRotatef(77.7f, 0.5f, 0.1f, 0.3f);
    gl.glScaled(5, 5, 5);
    gl.glEnable(GL_DEPTH_TEST);
    gl.glDepthFunc(GL_LEQUAL);
    const double step = 0.0177;
    for (int i = 0; i < 359; ++i) {
        const double s0 = std::sin(i * step), c0 = std::cos(i * step);
        const double s1 = std::sin((i + 1) * step), c1 = std::cos((i + 1) * step);
        gl.glPushMatrix();
        gl.glScaled(1, 1, 1);
        gl.glColor3f(float(i % 2), float(i / 2 % 2), float(i / 4 % 2));
        gl.glBegin(GL_QUADS);
        gl.glVertex3d(8 * s0, 8 * c0, 0);
        gl.glVertex3d(5 * s0, 5 * c1, 0);
        gl.glVertex3d(5 * s1, 5 * c1, 0);
        gl.glVertex3d(8 * s1, 8 * c0, 0);
        gl.glEnd();
        gl.glPopMatrix();
    }
}

TEST(LayerDepth, OfOverlappingCellsInOnePlaneIsTheReferences) { expect_same(draw_overlapping_ring); }

TEST(LayerDepth, TestsAndMasks) {
    expect_same([](const Gl& gl) {
        gl.glEnable(GL_DEPTH_TEST);
        gl.glColor3f(1, 0, 0);
        draw_plane(gl);
        gl.glDepthFunc(GL_GREATER);
        gl.glTranslated(0.2, 0.2, 0.1);
        gl.glColor3f(0, 1, 0);
        draw_plane(gl);
        gl.glDepthMask(GL_FALSE);
        gl.glTranslated(0.2, 0.2, 0.1);
        gl.glColor3f(0, 0, 1);
        draw_plane(gl);
        gl.glDepthFunc(GL_ALWAYS);
        gl.glTranslated(0.2, 0, 0);
        gl.glColor4f(1, 1, 0, 0.25f);
        gl.glEnable(GL_BLEND);
        gl.glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
        draw_plane(gl);
    });
}

class LayerPrimitives : public testing::TestWithParam<GLenum> {};

// Corners of many colours around a circle, in an order that makes every kind of primitive visible.
TEST_P(LayerPrimitives, AreCutAsTheReferenceDoes) {
    for (const GLenum shading : {GL_SMOOTH, GL_FLAT}) {
        for (const double size : {0.8, 1.3}) { // the larger one is clipped
            expect_same([&](const Gl& gl) {
                gl.glShadeModel(shading);
                gl.glBegin(GetParam());
                for (int i = 0; i < 14; ++i) {
                    const double angle = i * 0.4, radius = size * (i % 2 ? 1 : 0.4);
                    gl.glColor3f(float(i % 3) / 2, 1 - float(i % 4) / 3, float(i % 5) / 4);
                    gl.glVertex3d(radius * std::cos(angle), radius * std::sin(angle), 0.1 * (i % 4));
                }
                gl.glEnd();
            });
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, LayerPrimitives,
                         testing::Values(GL_POINTS, GL_LINES, GL_LINE_LOOP, GL_LINE_STRIP, GL_TRIANGLES,
                                         GL_TRIANGLE_STRIP, GL_TRIANGLE_FAN, GL_QUADS, GL_QUAD_STRIP,
                                         GL_POLYGON));

TEST(LayerPoints, HaveTheirSizeAndPlace) {
    for (const float size : {0.3f, 1.0f, 1.5f, 2.0f, 3.0f, 4.6f, 10.0f}) {
        expect_same([&](const Gl& gl) {
            gl.glPointSize(size);
            gl.glBegin(GL_POINTS);
            for (int i = 0; i < 400; ++i) {
                gl.glColor3f(float(i % 3) / 2, float(i % 4) / 3, 1);
                gl.glVertex2d(std::sin(i * 1.1) * i / 390.0, std::cos(i * 1.7) * i / 390.0);
            }
            gl.glEnd();
        });
    }
}

TEST(LayerState, CullsTheSideThatIsAsked) {
    for (const GLenum side : {GL_FRONT, GL_BACK, GL_FRONT_AND_BACK}) {
        expect_same([&](const Gl& gl) {
            gl.glEnable(GL_CULL_FACE);
            gl.glCullFace(side);
            set_perspective(gl);
            gl.glTranslated(0, 0, -4);
            gl.glRotatef(70, 1, 0.2f, 0);
            draw_cylinder(gl);
            gl.glBegin(GL_POINTS);
            gl.glVertex2d(1.5, 0);
            gl.glEnd();
        });
    }
}

TEST(LayerState, BlendsMasksAndClears) {
    expect_same([](const Gl& gl) {
        gl.glClearColor(0.2f, 2.0f, -1.0f, 0.5f);
        gl.glClear(GL_COLOR_BUFFER_BIT);
        gl.glEnable(GL_BLEND);
        const GLenum functions[][2] = {{GL_ONE, GL_ONE},
                                       {GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA},
                                       {GL_ZERO, GL_SRC_COLOR},
                                       {GL_ONE, GL_ONE_MINUS_SRC_ALPHA},
                                       {GL_DST_ALPHA, GL_ONE_MINUS_DST_ALPHA},
                                       {GL_DST_COLOR, GL_ONE_MINUS_DST_COLOR},
                                       {GL_SRC_ALPHA_SATURATE, GL_ONE}};
        double x = -0.9;
        for (const auto& function : functions) {
            gl.glBlendFunc(function[0], function[1]);
            gl.glPushMatrix();
            gl.glTranslated(x, 0, 0);
            gl.glScaled(0.4, 1, 1);
            gl.glColor4f(0.5f, 0.3f, 0.8f, 0.4f);
            draw_plane(gl);
            gl.glPopMatrix();
            x += 0.25;
        }
        gl.glColorMask(GL_FALSE, GL_TRUE, GL_FALSE, GL_TRUE);
        gl.glTranslated(0, 0.5, 0);
        gl.glColor4f(1, 0.5f, 1, 1);
        draw_plane(gl);
        gl.glBlendFunc(GL_ALPHA, GL_SRC_ALPHA); // rejected: the function stays
        gl.glTranslated(0, -1, 0);
        draw_plane(gl);
        gl.glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    });
}

// Without a stencil buffer every stencil test passes.
TEST(LayerState, HasNoStencilBuffer) {
    expect_same([](const Gl& gl) {
        gl.glEnable(GL_STENCIL_TEST);
        gl.glStencilFunc(GL_NEVER, 1, 255);
        gl.glStencilOp(GL_KEEP, GL_KEEP, GL_REPLACE);
        gl.glClear(GL_STENCIL_BUFFER_BIT);
        draw_plane(gl);
    });
}

// --- Lighting and fog ---

void set_up_light(const Gl& gl, bool positional, bool local_viewer) {
    const float position[] = {2, 3, 1, positional ? 1.0f : 0.0f}, grey[] = {0.5f, 0.5f, 0.5f, 0.5f};
    const float ambient[] = {0.2f, 0.1f, 0.3f, 1}, specular[] = {1, 1, 0.5f, 1};
    gl.glEnable(GL_LIGHTING);
    gl.glEnable(GL_LIGHT0);
    gl.glEnable(GL_LIGHT1);
    gl.glEnable(GL_NORMALIZE);
    gl.glLightModelfv(GL_LIGHT_MODEL_AMBIENT, ambient);
    gl.glLightModeli(GL_LIGHT_MODEL_LOCAL_VIEWER, local_viewer);
    gl.glLightfv(GL_LIGHT0, GL_DIFFUSE, grey);
    gl.glLightfv(GL_LIGHT0, GL_SPECULAR, specular);
    gl.glLightfv(GL_LIGHT1, GL_POSITION, position);
    gl.glLightfv(GL_LIGHT1, GL_DIFFUSE, specular);
    gl.glLightfv(GL_LIGHT1, GL_AMBIENT, ambient);
    gl.glLightfv(GL_LIGHT1, GL_SPECULAR, grey);
    gl.glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, specular);
    gl.glMateriali(GL_FRONT_AND_BACK, GL_SHININESS, 12);
}

void draw_turned_cylinder(const Gl& gl) {
    set_perspective(gl);
    gl.glTranslated(0, 0, -4);
    gl.glRotatef(60, 1, 0.3f, 0);
    gl.glScaled(1, 1, 2);
    draw_cylinder(gl);
}

TEST(LayerLighting, FromInfinityAndFromNearby) {
    for (const bool positional : {false, true}) {
        for (const bool local_viewer : {false, true}) {
            expect_same([&](const Gl& gl) {
                set_up_light(gl, positional, local_viewer);
                draw_turned_cylinder(gl);
            });
        }
    }
}

TEST(LayerLighting, OfMaterialsInTheVertexColour) {
    const GLenum modes[] = {GL_EMISSION, GL_AMBIENT, GL_DIFFUSE, GL_SPECULAR, GL_AMBIENT_AND_DIFFUSE};
    for (const GLenum mode : modes) {
        expect_same([&](const Gl& gl) {
            set_up_light(gl, true, true);
            gl.glEnable(GL_COLOR_MATERIAL);
            gl.glColorMaterial(GL_FRONT_AND_BACK, mode);
            gl.glColor4f(1.2f, 0.4f, 0.2f, 0.7f);
            gl.glEnable(GL_BLEND);
            gl.glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
            draw_turned_cylinder(gl);
            gl.glDisable(GL_COLOR_MATERIAL); // the material keeps the colour
            gl.glColor4f(0, 1, 0, 1);
            gl.glTranslated(-1.5, 0, 0);
            draw_cylinder(gl);
        });
    }
}

TEST(LayerLighting, HasSpotsAttenuationAndTwoSides) {
    expect_same([](const Gl& gl) {
        set_up_light(gl, true, true);
        const float cutoff[] = {40}, exponent[] = {3}, linear[] = {0.2f}, quadratic[] = {0.05f};
        const float direction[] = {-0.5f, -0.8f, -1}, red[] = {1, 0.2f, 0.1f, 1}, blue[] = {0.1f, 0.2f, 1, 1};
        gl.glLightfv(GL_LIGHT1, GL_SPOT_CUTOFF, cutoff);
        gl.glLightfv(GL_LIGHT1, GL_SPOT_EXPONENT, exponent);
        gl.glLightfv(GL_LIGHT1, GL_SPOT_DIRECTION, direction);
        gl.glLightfv(GL_LIGHT1, GL_LINEAR_ATTENUATION, linear);
        gl.glLightfv(GL_LIGHT1, GL_QUADRATIC_ATTENUATION, quadratic);
        gl.glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, 1);
        gl.glMaterialfv(GL_FRONT, GL_DIFFUSE, red);
        gl.glMaterialfv(GL_BACK, GL_DIFFUSE, blue);
        draw_turned_cylinder(gl);
    });
}

TEST(LayerLighting, OfNormalsThatAreNotNormalised) {
    expect_same([](const Gl& gl) {
        set_up_light(gl, false, false);
        gl.glDisable(GL_NORMALIZE);
        draw_turned_cylinder(gl);
    });
}

// The normals are such that the colours do not saturate.
void draw_two_materials(const Gl& gl) {
    const float red[] = {1, 0, 0, 1}, green[] = {0, 1, 0, 1};
    gl.glBegin(GL_QUADS);
    for (const float* color : {red, green}) {
        gl.glMaterialfv(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE, color);
        const double x = color == red ? -0.6 : 0.2;
        gl.glNormal3d(x, 0.5, 1);
        for (const auto& corner : {std::pair(0, 0), {1, 0}, {1, 1}, {0, 1}})
            gl.glVertex2d(x + 0.4 * corner.first, 0.5 * corner.second);
    }
    gl.glEnd();
}

TEST(LayerLighting, TakesAMaterialBetweenTwoQuads) {
    expect_same([](const Gl& gl) {
        set_up_light(gl, false, false);
        draw_two_materials(gl);
    });
}

TEST(LayerFog, IsAsDenseAsTheReferences) {
    for (const GLenum mode : {GL_LINEAR, GL_EXP, GL_EXP2}) {
        expect_same([&](const Gl& gl) {
            const float color[] = {0.5f, 0.6f, 0.7f, 1};
            gl.glEnable(GL_FOG);
            gl.glFogi(GL_FOG_MODE, GLint(mode));
            gl.glFogf(GL_FOG_DENSITY, 0.3f);
            gl.glFogf(GL_FOG_START, 1);
            gl.glFogf(GL_FOG_END, 4);
            gl.glFogfv(GL_FOG_COLOR, color);
            tilt(gl);
            gl.glColor3f(1, 0, 0);
            draw_plane(gl, 4);
        });
    }
}

// The distance is counted without its sign, per vertex: a plane through the viewer has less fog than it should.
TEST(LayerFog, CountsWhatIsBehindTheViewerAsBeforeHim) {
    expect_same([](const Gl& gl) {
        gl.glEnable(GL_FOG);
        gl.glFogi(GL_FOG_MODE, GL_LINEAR);
        gl.glFogf(GL_FOG_START, 0);
        gl.glFogf(GL_FOG_END, 20);
        set_perspective(gl);
        gl.glTranslated(0, -1, 0);
        gl.glRotatef(90, 1, 0, 0);
        gl.glScaled(30, 30, 1);
        draw_plane(gl);
    });
}

// --- Textures ---

// Of about 200,000 pixels of noise these few may show the texel or the level beside, where the place of the sample is
// at the limit between two.
constexpr Allowed kChosenTexels = {120};

TEST(LayerTextures, OfAllFormatsRepeat) {
    const std::pair<GLenum, int> formats[] = {
        {GL_LUMINANCE, 1}, {GL_LUMINANCE_ALPHA, 2}, {GL_RGB, 3}, {GL_RGBA, 4}};
    for (const auto& [format, components] : formats) {
        expect_same(
            [&, f = format, c = components](const Gl& gl) {
                bind_noise(gl, f, c);
                gl.glEnable(GL_BLEND);
                gl.glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
                tilt(gl);
                gl.glColor4f(1, 0.8f, 0.6f, 0.9f);
                draw_plane(gl, 3, 5);
            },
            kChosenTexels);
    }
}

TEST(LayerTextures, AreFilteredAsAsked) {
    for (const GLenum min : {GL_NEAREST, GL_LINEAR, GL_NEAREST_MIPMAP_NEAREST, GL_LINEAR_MIPMAP_NEAREST,
                             GL_NEAREST_MIPMAP_LINEAR, GL_LINEAR_MIPMAP_LINEAR}) {
        expect_same(
            [&](const Gl& gl) {
                bind_noise(gl, GL_RGB, 3);
                gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GLint(min));
                gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER,
                                   min == GL_NEAREST ? GL_NEAREST : GL_LINEAR);
                tilt(gl);
                draw_plane(gl, 1, 20);
            },
            kChosenTexels);
    }
}

TEST(LayerTextures, MixInEveryEnvironment) {
    for (const GLenum mode : {GL_MODULATE, GL_DECAL, GL_BLEND, GL_REPLACE}) {
        for (const auto& [format, components] : {std::pair(GL_RGB, 3), {GL_RGBA, 4}}) {
            expect_same([&, f = format, c = components](const Gl& gl) {
                bind_noise(gl, GLenum(f), c);
                gl.glTexEnvf(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, float(mode));
                gl.glEnable(GL_BLEND);
                gl.glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
                gl.glColor4f(1, 0.8f, 0.3f, 0.5f);
                draw_plane(gl);
            });
        }
    }
}

// Binds a new white texture with all levels that is clamped.
void bind_clamped_white(const Gl& gl, GLenum format, int components, int size) {
    const std::vector<GLubyte> pixels(static_cast<std::size_t>(size * size * components), 255);
    for (int level = 0; size >> level; ++level) {
        gl.glTexImage2D(GL_TEXTURE_2D, level, components, size >> level, size >> level, 0, format,
                        GL_UNSIGNED_BYTE, pixels.data());
    }
    gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP);
    gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP);
    gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_LINEAR);
    gl.glEnable(GL_TEXTURE_2D);
}

// At the edge half of a sample is border, which is black, and clear where the texture has alpha.
void draw_bordered(const Gl& gl, GLenum format, int components, int texels, double size) {
    gl.glClearColor(0.3f, 0.6f, 0.3f, 0);
    gl.glClear(GL_COLOR_BUFFER_BIT);
    bind_clamped_white(gl, format, components, texels);
    gl.glEnable(GL_BLEND);
    gl.glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    for (int i = 0; i < 4; ++i) {
        gl.glPushMatrix();
        gl.glTranslated(0.2 * i, -0.1 * i, 0);
        gl.glRotatef(15.0f * float(i), 0, 0, 1);
        gl.glScaled(size, size, 1);
        draw_plane(gl);
        gl.glPopMatrix();
    }
}

class LayerBorder : public testing::TestWithParam<std::pair<GLenum, int>> {};

TEST_P(LayerBorder, OfAMagnifiedTextureIsTheReferences) {
    expect_same([](const Gl& gl) { draw_bordered(gl, GetParam().first, GetParam().second, 8, 1.2); });
}

// How far a minified texture is between two of its levels, every driver estimates in its own way; that decides how
// wide the border is.
TEST_P(LayerBorder, OfAMinifiedTextureIsNearlyTheReferences) {
    for (const double size : {0.45, 0.1}) {
        expect_same([=](const Gl& gl) { draw_bordered(gl, GetParam().first, GetParam().second, 256, size); },
                    {1500, 7});
    }
}

INSTANTIATE_TEST_SUITE_P(Formats, LayerBorder,
                         testing::Values(std::pair(GL_LUMINANCE, 1), std::pair(GL_LUMINANCE_ALPHA, 2),
                                         std::pair(GL_RGB, 3), std::pair(GL_RGBA, 4)));

TEST(LayerTextures, WithoutAllLevelsAreNotSeen) {
    expect_same([](const Gl& gl) {
        const GLubyte pixels[16] = {200, 100, 50, 25, 10, 20, 30, 40, 50, 60, 70, 80, 90, 99, 150, 250};
        gl.glEnable(GL_TEXTURE_2D);
        gl.glColor3f(1, 0.5f, 0);
        draw_plane(gl); // no image at all
        gl.glTexImage2D(GL_TEXTURE_2D, 0, 1, 4, 4, 0, GL_LUMINANCE, GL_UNSIGNED_BYTE, pixels);
        gl.glTranslated(-0.6, 0, 0);
        draw_plane(gl); // one level, and the filter of the start needs all
        gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
        gl.glTranslated(1.2, 0, 0);
        draw_plane(gl);
    });
}

TEST(LayerTextures, AreReadAsTheUnpackModesSay) {
    expect_same([](const Gl& gl) {
        GLubyte pixels[400];
        for (int i = 0; i < 400; ++i) pixels[i] = GLubyte(i * 37);
        gl.glPixelStorei(GL_UNPACK_ALIGNMENT, 2);
        gl.glPixelStorei(GL_UNPACK_ROW_LENGTH, 11);
        gl.glPixelStorei(GL_UNPACK_SKIP_ROWS, 1);
        gl.glPixelStorei(GL_UNPACK_SKIP_PIXELS, 2);
        gl.glTexImage2D(GL_TEXTURE_2D, 0, 3, 8, 8, 0, GL_RGB, GL_UNSIGNED_BYTE, pixels);
        gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
        gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
        gl.glEnable(GL_TEXTURE_2D);
        draw_plane(gl);
    });
}

void draw_and_copy(const Gl& gl) {
    gl.glColor3f(1, 0.5f, 0);
    draw_plane(gl);
    GLuint texture = 0;
    gl.glGenTextures(1, &texture);
    gl.glBindTexture(GL_TEXTURE_2D, texture);
    gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    for (int i = 0; i < 2; ++i) { // the second copy replaces the first
        gl.glCopyTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 128 * i, 128, 512, 512, 0);
        gl.glTranslated(0.3, 0.3, 0);
        gl.glEnable(GL_TEXTURE_2D);
        gl.glColor3f(1, 1, 1);
        draw_plane(gl);
        gl.glDisable(GL_TEXTURE_2D);
    }
}

TEST(LayerTextures, AreCopiedFromThePicture) { expect_same(draw_and_copy); }

TEST(LayerTextures, AreMovedByTheirMatrix) {
    expect_same(
        [](const Gl& gl) {
            bind_noise(gl, GL_RGB, 3);
            gl.glMatrixMode(GL_TEXTURE);
            gl.glTranslated(0.3, 0.1, 0);
            gl.glRotatef(30, 0, 0, 1);
            gl.glScaled(0.5, 0.25, 1);
            gl.glMatrixMode(GL_MODELVIEW);
            draw_plane(gl);
        },
        kChosenTexels);
}

// --- Lists ---

TEST(LayerLists, KeepCommandsUntilTheyAreCalled) {
    expect_same([](const Gl& gl) {
        const GLuint list = gl.glGenLists(2);
        gl.glNewList(list, GL_COMPILE);
        gl.glRotatef(20, 0, 0, 1);
        const double half[16] = {0.5, 0, 0, 0, 0, 0.5, 0, 0, 0, 0, 0.5, 0, 0, 0, 0, 1};
        gl.glMultMatrixd(half);
        gl.glColor3f(0, 1, 0);
        draw_plane(gl, 2);
        gl.glEndList();
        gl.glNewList(list + 1, GL_COMPILE_AND_EXECUTE);
        gl.glScaled(0.5, 0.5, 1);
        gl.glCallList(list);
        gl.glBegin(GL_TRIANGLES);
        gl.glColor3f(1, 0, 0);
        gl.glVertex2d(0, 0);
        gl.glEnd(); // of a triangle that never was
        gl.glEndList();
        gl.glTranslated(-1, 0, 0);
        gl.glColor3f(0, 0, 1);
        gl.glCallList(list + 1);
        draw_plane(gl); // in the list's colour
        gl.glCallList(12345);
    });
}

TEST(LayerLists, KeepVerticesWithWhatIsGivenBetweenThem) {
    expect_same([](const Gl& gl) {
        bind_noise(gl, GL_RGB, 3);
        const GLuint list = gl.glGenLists(1);
        gl.glNewList(list, GL_COMPILE);
        gl.glBegin(GL_QUADS);
        for (const auto& corner :
             {std::pair(0, 0), {1, 0}, {1, 1}, {0, 1}}) { // in the colour before the call
            gl.glTexCoord2d(corner.first, corner.second);
            gl.glVertex2d(-0.9 + 0.4 * corner.first, 0.8 * corner.second);
        }
        gl.glEnd();
        gl.glColor3f(0, 0, 1);
        gl.glColor3f(1, 1, 0.2f); // instead
        gl.glBegin(GL_QUADS);
        gl.glTexCoord2d(0, 0);
        gl.glVertex2d(-0.4, 0);
        gl.glTexCoord2d(1, 0);
        gl.glVertex2d(0, 0);
        gl.glColor3f(0.2f, 1, 1);
        gl.glTexCoord2d(1, 1);
        gl.glVertex2d(0, 0.8);
        gl.glTexCoord2d(0, 1);
        gl.glVertex2d(-0.4, 0.8);
        gl.glEnd();
        gl.glTexCoord2d(0.5, 0.5);
        gl.glColor3f(0.2f, 1, 0.4f); // for what follows
        gl.glEndList();
        gl.glColor3f(1, 0.5f, 0.5f);
        gl.glTexCoord2d(0, 0);
        gl.glCallList(list);
        gl.glTranslated(0.9, -0.9, 0);
        gl.glCallList(list);
    });
}

TEST(LayerLists, TakeAMaterialBetweenTwoQuads) {
    expect_same([](const Gl& gl) {
        set_up_light(gl, false, false);
        const GLuint list = gl.glGenLists(1);
        gl.glNewList(list, GL_COMPILE);
        draw_two_materials(gl);
        gl.glEndList();
        gl.glCallList(list);
    });
}

// --- Frames ---

// The driver gets nothing of what it would throw away.
TEST(LayerFrames, LeaveOutWhatLiesOutside) {
    drawn_by_layer([](const Gl& gl) {
        const page::gl::Queue& queue = page::gl::g_queue;
        for (const double way : {-3, 3}) {
            for (int axis = 0; axis < 3; ++axis) {
                gl.glPushMatrix();
                gl.glTranslated(axis == 0 ? way : 0, axis == 1 ? way : 0, axis == 2 ? way : 0);
                draw_plane(gl, 3);
                draw_cylinder(gl);
                gl.glPopMatrix();
            }
        }
        EXPECT_EQ(queue.items.size(), 0u);
        EXPECT_EQ(queue.vertices.size(), 0u);
        EXPECT_EQ(queue.indices.size(), 0u);

        gl.glBegin(GL_POINTS);
        for (int i = 0; i < 1000; ++i) gl.glVertex2d(i, 0); // two of them are seen
        gl.glEnd();
        EXPECT_GE(queue.indices.size(), 2u);
        EXPECT_LT(queue.indices.size(), 50u);
        EXPECT_EQ(queue.vertices.size(), queue.indices.size());
    });
}

// No garbage: a frame like the one before needs no memory.
TEST(LayerFrames, ReuseTheMemoryOfTheFrameBefore) {
    drawn_by_layer([](const Gl& gl) {
        const page::gl::Vertex* vertices = nullptr;
        const GLuint* indices = nullptr;
        const page::gl::Item* items = nullptr;
        for (int frame = 0; frame < 3; ++frame) {
            set_up_light(gl, true, true);
            for (int i = 0; i < 20; ++i) {
                gl.glDepthMask(i % 2);
                draw_plane(gl, 5);
            }
            const page::gl::Queue& queue = page::gl::g_queue;
            EXPECT_EQ(queue.items.size(), 20u);
            if (frame > 0) {
                EXPECT_EQ(queue.vertices.data(), vertices);
                EXPECT_EQ(queue.indices.data(), indices);
                EXPECT_EQ(queue.items.data(), items);
            }
            vertices = queue.vertices.data();
            indices = queue.indices.data();
            items = queue.items.data();
            page::gl::finish();
            EXPECT_EQ(queue.items.size(), 0u);
        }
    });
}

// What is drawn with equal state is one call of the driver, whatever the matrices and colours.
TEST(LayerFrames, JoinWhatHasTheSameState) {
    drawn_by_layer([](const Gl& gl) {
        for (int i = 0; i < 10; ++i) {
            gl.glPushMatrix();
            gl.glRotatef(float(i), 0, 0, 1);
            gl.glColor3f(float(i) / 10, 1, 1);
            gl.glEnable(GL_BLEND);
            gl.glBegin(i % 2 ? GL_QUAD_STRIP : GL_QUADS);
            for (int j = 0; j < 4; ++j) gl.glVertex2d(j / 2, j % 2);
            gl.glEnd();
            gl.glPopMatrix();
            gl.glDisable(GL_BLEND);
        }
        EXPECT_EQ(page::gl::g_queue.items.size(), 1u);
    });
}

std::vector<std::string> g_reports;

TEST(LayerReports, WhatItDoesNotDoOnce) {
    g_reports.clear();
    page::gl::set_report([](const char* line) { g_reports.push_back(line); });
    drawn_by_layer([](const Gl& gl) {
        gl.glEnable(GL_LINE_STIPPLE);
        gl.glEnable(GL_CLIP_PLANE0);
        gl.glBindTexture(GL_TEXTURE_1D, 1);
        EXPECT_EQ(gl.glGetError(), GLenum{GL_NO_ERROR});
    });
    EXPECT_EQ(g_reports.size(), 2u);
    page::gl::set_report([](const char*) {});
}

// --- Scale ---

TEST(LayerScale, MultipliesViewportsPointsAndCopies) {
    const auto draw = [](const Gl& gl, int scale) {
        const auto viewport = [&](int x, int y, int width, int height) {
            gl.glViewport(x * scale, y * scale, width * scale, height * scale);
        };
        viewport(0, 0, 512, 512);
        gl.glColor3f(1, 0.5f, 0);
        draw_plane(gl, 2);
        gl.glPointSize(3.0f * float(scale));
        gl.glBegin(GL_POINTS);
        for (int i = 0; i < 50; ++i) gl.glVertex2d(std::sin(i) * 0.9, std::cos(i * 2) * 0.9);
        gl.glEnd();
        gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
        gl.glCopyTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 0, 0, 512 * scale, 512 * scale, 0);
        viewport(0, 76, 1024, 614);
        gl.glEnable(GL_TEXTURE_2D);
        gl.glColor3f(1, 1, 1);
        draw_plane(gl);
    };
    const Pixels reference = drawn_by_reference([&](const Gl& gl) { draw(gl, 2); }, 2);
    const Pixels from_start = drawn_by_layer([&](const Gl& gl) { draw(gl, 1); }, 2);
    const Pixels changed = drawn_by_layer(
        [&](const Gl& gl) {
            page::gl::set_size(512, 384);
            draw(gl, 1);
            gl.glDisable(GL_TEXTURE_2D);
            page::gl::set_size(2048, 1536);
            draw(gl, 1);
        },
        2);
    for (const Pixels* layer : {&from_start, &changed}) {
        const PixelDifference found = difference(reference, *layer, 2);
        EXPECT_LE(found.most, 1) << found.where;
    }
}

} // namespace
