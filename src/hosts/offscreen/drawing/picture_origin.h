// Whether the picture in the framebuffer shows anything of a skipped frame.
//
// A skipped frame leaves no picture. A later frame shows that when it does not clear everything, or when it draws
// with a texture that a skipped frame copied from the framebuffer. This class records it for the colour buffer, the
// depth buffer and every copied texture:
//
//     full clear of colour or depth   depends on this frame alone
//     drawing                         adds what the depth buffer and the sampled texture depend on
//     copy to a texture               the texture depends on what the colour buffer depends on
#pragma once

#include <map>

namespace offscreen {

class PictureOrigin {
public:
    // A frame begins: it will be drawn, or skipped.
    void begin_frame(bool drawn) {
        drawn_ = drawn;
        if (!drawn) color_ = depth_ = false;
    }

    void cleared_color() { color_ = drawn_; }
    void cleared_depth() { depth_ = drawn_; }

    // Something is drawn: what is hidden depends on the depth buffer, and the other way round.
    void drew() { color_ = depth_ = color_ && depth_; }

    // The whole image of `texture`, or only a part of it, is copied from the framebuffer.
    void copied_whole(unsigned texture) { textures_[texture] = color_; }
    void copied_part(unsigned texture) { textures_.try_emplace(texture, true).first->second &= color_; }

    // Whether any texture was copied so far.
    bool any_copies() const { return !textures_.empty(); }

    // Something is drawn with `texture`, copied or not.
    void sampled(unsigned texture) {
        const auto copy = textures_.find(texture);
        if (copy != textures_.end() && !copy->second) color_ = depth_ = false; // depth: by an alpha test
    }

    // Something is drawn with unknown textures.
    void sampled_any() {
        for (const auto& [texture, drawn] : textures_) sampled(texture);
    }

    // Whether every frame that the picture depends on was drawn.
    bool all_drawn() const { return color_; }

private:
    // True: depends on drawn frames only.
    bool drawn_ = false; // the current frame
    bool color_ = false;
    bool depth_ = false;
    std::map<unsigned, bool> textures_; // those copied from the framebuffer
};

} // namespace offscreen
