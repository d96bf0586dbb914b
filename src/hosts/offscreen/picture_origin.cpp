#include "hosts/offscreen/picture_origin.h"

#include <algorithm>

void PictureOrigin::Origin::add(const Origin& other) {
    since = std::min(since, other.since);
    drawn = drawn && other.drawn;
}

void PictureOrigin::begin_frame(std::int64_t frame, bool drawn) {
    frame_ = frame;
    drawn_ = drawn;
    if (drawn) return;
    color_.drawn = false;
    depth_.drawn = false;
}

void PictureOrigin::drew() {
    color_.add(depth_);
    depth_ = color_;
}

void PictureOrigin::copied_part(unsigned texture) {
    const auto known = textures_.find(texture);
    if (known == textures_.end()) {
        textures_[texture] = color_;
    } else {
        known->second.add(color_);
    }
}

void PictureOrigin::sampled(unsigned texture) {
    const auto known = textures_.find(texture);
    if (known == textures_.end()) return;
    color_.add(known->second);
    depth_.add(known->second); // an alpha test may have kept fragments from it
}

void PictureOrigin::sampled_any() {
    for (const auto& [texture, origin] : textures_) sampled(texture);
}
