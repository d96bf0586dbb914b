#include "hosts/page/gl/textures.h"

#include <GL/glext.h>

#include <algorithm>
#include <map>
#include <vector>

#include "hosts/page/gl/driver.h"
#include "hosts/page/gl/errors.h"
#include "hosts/page/gl/renderer.h"

namespace page::gl {

namespace {

// What an image has: the bits of State::texture_parts.
enum Parts { kNone = 0, kColor = 1, kAlpha = 2 };

struct Level {
    GLsizei width, height; // 0: no image
    GLint internal_format; // as given
    int parts;
};

constexpr int kMostLevels = 16;

struct Texture {
    GLuint driver_name = 0;
    Level levels[kMostLevels] = {};
    GLenum minification = GL_NEAREST_MIPMAP_LINEAR, magnification = GL_LINEAR;
    GLenum wrap_s = GL_REPEAT, wrap_t = GL_REPEAT;
    common::Box copied = {}; // the size of level 0 in the driver, if it was copied from the framebuffer
};

struct PixelStore {
    GLint swap_bytes, lsb_first, row_length, skip_rows, skip_pixels, alignment;
};

std::map<GLuint, Texture> g_textures; // by the show's name; 0 is the texture that is bound at the start
GLuint g_bound;
Texture* g_texture;
PixelStore g_unpack, g_pack;
Level g_proxy[kMostLevels];

// Makes texture `name` the bound one; a name that was not used yet becomes a new texture.
void bind(GLuint name) {
    g_bound = name;
    g_texture = &g_textures[name];
    if (g_texture->driver_name == 0) driver().GenTextures(1, &g_texture->driver_name);
}

bool is_linear(GLenum filter) {
    return filter == GL_LINEAR || filter == GL_LINEAR_MIPMAP_NEAREST || filter == GL_LINEAR_MIPMAP_LINEAR;
}

bool has_mipmaps(GLenum filter) { return filter != GL_NEAREST && filter != GL_LINEAR; }

bool is_complete(const Texture& texture) {
    const Level& base = texture.levels[0];
    if (base.width == 0 || base.height == 0) return false;
    if (!has_mipmaps(texture.minification)) return true;
    GLsizei width = base.width, height = base.height;
    for (int i = 1; width > 1 || height > 1; ++i) {
        width = std::max(width / 2, 1);
        height = std::max(height / 2, 1);
        const Level& level = texture.levels[i];
        if (level.width != width || level.height != height || level.internal_format != base.internal_format)
            return false;
    }
    return true;
}

// The parts of an internal format; kNone if it is none, or one that the layer does not have.
int parts_of_internal(GLint format) {
    switch (format) {
    case 1:
    case 3:
    case GL_LUMINANCE:
    case GL_LUMINANCE8:
    case GL_RGB:
    case GL_RGB8:
        return kColor;
    case 2:
    case 4:
    case GL_LUMINANCE_ALPHA:
    case GL_LUMINANCE8_ALPHA8:
    case GL_RGBA:
    case GL_RGBA8:
        return kColor | kAlpha;
    case GL_ALPHA:
    case GL_ALPHA8:
        return kAlpha;
    default:
        return kNone;
    }
}

// Bytes per pixel of a format of pixels in memory; 0 if it is none, or one that the layer does not read.
int components_of(GLenum format) {
    switch (format) {
    case GL_LUMINANCE:
    case GL_ALPHA:
        return 1;
    case GL_LUMINANCE_ALPHA:
        return 2;
    case GL_RGB:
        return 3;
    case GL_RGBA:
        return 4;
    default:
        return 0;
    }
}

// The format of pixels that an image of that internal format is given to the driver in.
GLenum driver_format(GLint internal_format) {
    switch (internal_format) {
    case 1:
    case GL_LUMINANCE8:
        return GL_LUMINANCE;
    case 2:
    case GL_LUMINANCE8_ALPHA8:
        return GL_LUMINANCE_ALPHA;
    case 3:
    case GL_RGB8:
        return GL_RGB;
    case 4:
    case GL_RGBA8:
        return GL_RGBA;
    case GL_ALPHA8:
        return GL_ALPHA;
    default:
        return static_cast<GLenum>(internal_format);
    }
}

// Converts pixels in memory from one format to another, rows without gaps.
std::vector<GLubyte> converted(const GLubyte* pixels, GLenum from, GLenum to, GLsizei width, GLsizei height) {
    const int components = components_of(from);
    const int row_pixels = g_unpack.row_length > 0 ? g_unpack.row_length : width;
    const int row =
        (row_pixels * components + g_unpack.alignment - 1) / g_unpack.alignment * g_unpack.alignment;
    const bool has_color = from != GL_ALPHA, is_grey = components < 3;
    const bool has_alpha = from == GL_ALPHA || components == 2 || components == 4;
    const int kept = components_of(to);
    std::vector<GLubyte> result(static_cast<std::size_t>(width) * static_cast<std::size_t>(height * kept));
    GLubyte* out = result.data();
    for (GLsizei y = 0; y < height; ++y) {
        const GLubyte* in = pixels + (y + g_unpack.skip_rows) * row + g_unpack.skip_pixels * components;
        for (GLsizei x = 0; x < width; ++x, in += components, out += kept) {
            const GLubyte alpha = has_alpha ? in[components - 1] : 255;
            if (kept != 1 || to == GL_LUMINANCE) out[0] = has_color ? in[0] : 0;
            if (kept > 2) {
                out[1] = has_color ? in[is_grey ? 0 : 1] : 0;
                out[2] = has_color ? in[is_grey ? 0 : 2] : 0;
            }
            if (to == GL_ALPHA || kept == 2 || kept == 4) out[kept - 1] = alpha;
        }
    }
    return result;
}

// The largest level that a texture of the most size has.
GLint most_level() {
    GLint level = 0;
    while (most_texture_size() >> (level + 1)) ++level;
    return std::min(level, kMostLevels - 1);
}

// Whether target, level, size and border are such as OpenGL takes for an image; sets the error if not. The borders
// that a width of 1 adds are left out, as the reference renderer does.
bool is_image_size(GLint level, GLsizei width, GLsizei height, GLint border) {
    const GLsizei most = most_texture_size() + 2 * border;
    const bool valid = level >= 0 && level <= most_level() && (border == 0 || border == 1) &&
                       width >= 2 * border && height >= 2 * border && width <= most && height <= most;
    if (!valid) set_error(GL_INVALID_VALUE);
    return valid;
}

void set_driver_parameter(GLenum name, GLenum value) {
    draw_queue();
    bind_driver_texture(g_texture->driver_name);
    driver().TexParameteri(GL_TEXTURE_2D, name,
                           static_cast<GLint>(value == GL_CLAMP ? GL_CLAMP_TO_EDGE : value));
    change_state();
}

bool is_minification(GLenum filter) {
    return filter == GL_NEAREST || filter == GL_LINEAR ||
           (filter >= GL_NEAREST_MIPMAP_NEAREST && filter <= GL_LINEAR_MIPMAP_LINEAR);
}

bool is_wrap(GLenum wrap) {
    return wrap == GL_CLAMP || wrap == GL_REPEAT || wrap == GL_CLAMP_TO_EDGE || wrap == GL_MIRRORED_REPEAT;
}

// The member of a glPixelStore name; null if it is none.
GLint* pixel_store_member(GLenum name) {
    switch (name) {
    case GL_UNPACK_SWAP_BYTES:
        return &g_unpack.swap_bytes;
    case GL_UNPACK_LSB_FIRST:
        return &g_unpack.lsb_first;
    case GL_UNPACK_ROW_LENGTH:
        return &g_unpack.row_length;
    case GL_UNPACK_SKIP_ROWS:
        return &g_unpack.skip_rows;
    case GL_UNPACK_SKIP_PIXELS:
        return &g_unpack.skip_pixels;
    case GL_UNPACK_ALIGNMENT:
        return &g_unpack.alignment;
    case GL_PACK_SWAP_BYTES:
        return &g_pack.swap_bytes;
    case GL_PACK_LSB_FIRST:
        return &g_pack.lsb_first;
    case GL_PACK_ROW_LENGTH:
        return &g_pack.row_length;
    case GL_PACK_SKIP_ROWS:
        return &g_pack.skip_rows;
    case GL_PACK_SKIP_PIXELS:
        return &g_pack.skip_pixels;
    case GL_PACK_ALIGNMENT:
        return &g_pack.alignment;
    default:
        return nullptr;
    }
}

} // namespace

void fill_texture_state(State& s) {
    const Texture& texture = *g_texture;
    if (!is_complete(texture)) return;
    s.texture = texture.driver_name;
    s.texture_parts = texture.levels[0].parts;
    s.border_axes = (texture.wrap_s == GL_CLAMP) + 2 * (texture.wrap_t == GL_CLAMP);
    // Without interpolation between texels the border is never reached.
    s.border_when = is_linear(texture.magnification) + 2 * is_linear(texture.minification);
    s.minification = texture.minification;
}

void gen_textures(GLsizei count, GLuint* names) {
    if (!outside_begin()) return;
    if (count < 0) return set_error(GL_INVALID_VALUE);
    GLuint name = 1;
    for (GLsizei i = 0; i < count; ++i) {
        while (g_textures.count(name) != 0) ++name;
        g_textures[name]; // reserves the name
        names[i] = name;
    }
}

void bind_texture(GLenum target, GLuint name) {
    if (!outside_begin()) return;
    if (target == GL_TEXTURE_1D) return report_missing("a one-dimensional texture");
    if (target != GL_TEXTURE_2D) return set_error(GL_INVALID_ENUM);
    if (name == g_bound) return;
    bind(name);
    change_state();
}

void tex_parameter(GLenum target, GLenum name, GLint value) {
    if (!outside_begin()) return;
    if (target == GL_TEXTURE_1D) return report_missing("a one-dimensional texture");
    if (target != GL_TEXTURE_2D) return set_error(GL_INVALID_ENUM);
    const GLenum mode = static_cast<GLenum>(value);
    GLenum* member = nullptr;
    bool valid = false;
    switch (name) {
    case GL_TEXTURE_MIN_FILTER:
        member = &g_texture->minification;
        valid = is_minification(mode);
        break;
    case GL_TEXTURE_MAG_FILTER:
        member = &g_texture->magnification;
        valid = mode == GL_NEAREST || mode == GL_LINEAR;
        break;
    case GL_TEXTURE_WRAP_S:
        member = &g_texture->wrap_s;
        valid = is_wrap(mode);
        break;
    case GL_TEXTURE_WRAP_T:
        member = &g_texture->wrap_t;
        valid = is_wrap(mode);
        break;
    case GL_TEXTURE_PRIORITY: // what stays in memory: the driver decides
        return;
    }
    if (!valid) return set_error(GL_INVALID_ENUM);
    if (*member == mode) return;
    *member = mode;
    set_driver_parameter(name, mode);
}

void tex_image(GLenum target, GLint level, GLint internal_format, GLsizei width, GLsizei height, GLint border,
               GLenum format, GLenum type, const void* pixels) {
    if (!outside_begin()) return;
    const bool proxy = target == GL_PROXY_TEXTURE_2D;
    if (!proxy && target != GL_TEXTURE_2D) return set_error(GL_INVALID_ENUM);
    const int parts = parts_of_internal(internal_format);
    if (parts == kNone) {
        report_missing("glTexImage2D with such an internal format");
        return set_error(GL_INVALID_VALUE);
    }
    if (proxy) {
        if (level < 0 || level > most_level()) return;
        const bool fits = border == 0 && width >= 0 && height >= 0 && width <= most_texture_size() &&
                          height <= most_texture_size();
        g_proxy[level] = fits ? Level{width, height, internal_format, parts} : Level{};
        return;
    }
    if (!is_image_size(level, width, height, border)) return;
    if (components_of(format) == 0 || type != GL_UNSIGNED_BYTE || g_unpack.swap_bytes) {
        report_missing("glTexImage2D with such a format of pixels");
        return set_error(GL_INVALID_ENUM);
    }
    if (border != 0) {
        report_missing("glTexImage2D with a border");
        return set_error(GL_INVALID_VALUE);
    }
    draw_queue();
    bind_driver_texture(g_texture->driver_name);
    const GLenum kept = driver_format(internal_format);
    std::vector<GLubyte> image;
    if (pixels) image = converted(static_cast<const GLubyte*>(pixels), format, kept, width, height);
    driver().PixelStorei(GL_UNPACK_ALIGNMENT, 1);
    driver().TexImage2D(GL_TEXTURE_2D, level, static_cast<GLint>(kept), width, height, 0, kept,
                        GL_UNSIGNED_BYTE, pixels ? image.data() : nullptr);
    g_texture->levels[level] = {width, height, internal_format, parts};
    if (level == 0) g_texture->copied = {};
    change_state();
}

// The framebuffer has no alpha: it counts as 1, with which also a texture without alpha is sampled.
void copy_tex_image(GLenum target, GLint level, GLenum internal_format, GLint x, GLint y, GLsizei width,
                    GLsizei height, GLint border) {
    if (!outside_begin()) return;
    if (target != GL_TEXTURE_2D) return set_error(GL_INVALID_ENUM);
    const GLint internal = static_cast<GLint>(internal_format);
    if (internal >= 1 && internal <= 4) return set_error(GL_INVALID_ENUM);
    const int parts = parts_of_internal(internal);
    if (parts == kNone || parts == kAlpha) {
        report_missing("glCopyTexImage2D with such an internal format");
        return set_error(GL_INVALID_ENUM);
    }
    if (!is_image_size(level, width, height, border)) return;
    if (border != 0) {
        report_missing("glCopyTexImage2D with a border");
        return set_error(GL_INVALID_VALUE);
    }
    draw_queue();
    bind_driver_texture(g_texture->driver_name);
    const common::Box box = to_pixels(x, y, width, height);
    const common::Box& old = g_texture->copied;
    const Level& before = g_texture->levels[level];
    const GLenum format = driver_format(internal);
    const bool is_grey = format == GL_LUMINANCE || format == GL_LUMINANCE_ALPHA;
    if (level == 0 && old.width == box.width && old.height == box.height &&
        before.internal_format == internal) {
        driver().CopyTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, box.x, box.y, box.width, box.height);
    } else {
        driver().CopyTexImage2D(GL_TEXTURE_2D, level, is_grey ? GL_LUMINANCE : GL_RGB, box.x, box.y,
                                box.width, box.height, 0);
    }
    if (level == 0) g_texture->copied = box;
    g_texture->levels[level] = {width, height, internal, parts};
    change_state();
}

void pixel_store(GLenum name, GLint value) {
    if (!outside_begin()) return;
    GLint* member = pixel_store_member(name);
    if (!member) return set_error(GL_INVALID_ENUM);
    const bool alignment = name == GL_UNPACK_ALIGNMENT || name == GL_PACK_ALIGNMENT;
    const bool valid = alignment ? value == 1 || value == 2 || value == 4 || value == 8 : value >= 0;
    if (!valid) return set_error(GL_INVALID_VALUE);
    const bool is_switch = member == &g_unpack.swap_bytes || member == &g_unpack.lsb_first ||
                           member == &g_pack.swap_bytes || member == &g_pack.lsb_first;
    *member = is_switch ? value != 0 : value;
}

bool get_pixel_store(GLenum name, GLint& value) {
    const GLint* member = pixel_store_member(name);
    if (member) value = *member;
    return member;
}

void get_tex_level_parameter(GLenum target, GLint level, GLenum name, GLint* value) {
    if (!outside_begin()) return;
    if (target != GL_TEXTURE_2D && target != GL_PROXY_TEXTURE_2D) return set_error(GL_INVALID_ENUM);
    if (level < 0 || level > most_level()) return set_error(GL_INVALID_VALUE);
    const Level& image = target == GL_TEXTURE_2D ? g_texture->levels[level] : g_proxy[level];
    switch (name) {
    case GL_TEXTURE_WIDTH:
        *value = image.width;
        return;
    case GL_TEXTURE_HEIGHT:
        *value = image.height;
        return;
    case GL_TEXTURE_BORDER:
        *value = 0;
        return;
    case GL_TEXTURE_INTERNAL_FORMAT:
        *value = image.internal_format;
        return;
    default:
        report_missing("glGetTexLevelParameteriv of that name");
        set_error(GL_INVALID_ENUM);
    }
}

GLuint bound_texture() { return g_bound; }

void reset_textures() {
    g_textures.clear();
    std::fill(g_proxy, g_proxy + kMostLevels, Level{});
    g_unpack = g_pack = {0, 0, 0, 0, 0, 4};
    bind(0);
}

void delete_textures() {
    for (const auto& [name, texture] : g_textures) {
        if (texture.driver_name != 0) driver().DeleteTextures(1, &texture.driver_name);
    }
    g_textures.clear();
}

} // namespace page::gl
