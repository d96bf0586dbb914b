// Where the pictures go. A sink takes the wanted pictures in the order of the show; what it has made becomes
// visible under its final name only when it is whole.
#pragma once

#include "hosts/offscreen/picture.h"

class Sink {
public:
    virtual ~Sink() = default; // without finish: leaves nothing half-written behind

    // Throws Failure when the picture cannot be written.
    virtual void take(const Picture& picture) = 0;

    // No more pictures will come. Throws Failure when the result cannot be completed.
    virtual void finish() = 0;
};
