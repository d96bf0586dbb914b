// Which frames the picture in the frame buffer is made of.
//
// A frame that is skipped leaves no picture. That matters when a later one shows it: because that frame
// clears nothing, or clears only a part, or because it draws with a texture that was copied from the frame
// buffer. This keeps, for the frame buffer and for every texture copied from it, the first frame that
// contributed and whether all of them were drawn.
//
//     full clear of colour and depth   made of this frame alone
//     drawing                          adds what the depth buffer and the sampled texture are made of
//     copy to a texture                the texture is made of what the frame buffer is made of
#pragma once

#include <cstdint>
#include <map>

#include "hosts/offscreen/show_frames.h"

class PictureOrigin {
public:
    void begin_frame(std::int64_t frame, bool drawn);

    void cleared_color() { color_ = {frame_, drawn_}; }
    void cleared_depth() { depth_ = {frame_, drawn_}; }

    // Something is drawn: what is hidden depends on the depth buffer, and the other way round.
    void drew();

    // The whole image of `texture`, or only a part of it, is copied from the frame buffer.
    void copied_whole(unsigned texture) { textures_[texture] = color_; }
    void copied_part(unsigned texture);

    // Whether any texture was copied so far, and whether this one was.
    bool any_copies() const { return !textures_.empty(); }
    bool is_copy(unsigned texture) const { return textures_.count(texture) != 0; }

    // Something is drawn with `texture`, or with textures that cannot be told.
    void sampled(unsigned texture);
    void sampled_any();

    // Whether every frame that the picture is made of was really drawn, and the first of them.
    bool all_drawn() const { return color_.drawn; }
    std::int64_t since() const { return color_.since; }

private:
    struct Origin {
        std::int64_t since = kLoadingFrame;
        bool drawn = false;
        void add(const Origin& other);
    };

    std::int64_t frame_ = kLoadingFrame;
    bool drawn_ = false;
    Origin color_;
    Origin depth_;
    std::map<unsigned, Origin> textures_;
};
