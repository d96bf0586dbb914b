// How large the show is drawn for a window, as plain numbers.
#pragma once

#include "hosts/common/geometry.h"

namespace desktop {

// Where the picture stands in a window: as large as fits with its aspect kept, centred. At least one pixel each way;
// the window's sizes must be positive.
common::Box picture_place(common::Extent window);

// Whether OpenGL draws without a graphics card, by the name of its renderer (GL_RENDERER): one of Mesa's renderers in
// software or Windows' own, also behind a layer that translates for it or passes it on. The card of a virtual machine
// counts as a card.
bool draws_in_software(const char* renderer);

// At which multiple of its size the show is drawn.
struct Sharpness {
    int forced = 0; // the multiple, in every window; 0: the smallest that covers the picture's place in the
                    // window, 1..4, and 1 in software
    bool smooth = false;      // one more than that
    bool in_software = false; // see draws_in_software

    int multiple_for(common::Extent window) const;
};

} // namespace desktop
