// Where the pictures go. A sink takes the wanted pictures in the order of the show; what it makes becomes
// visible under its final name only when it is whole.
#pragma once

#include <string>

#include "hosts/offscreen/picture.h"

class Sink {
public:
    virtual ~Sink() = default; // without finish: leaves nothing half-written behind

    // Throws Failure when the picture cannot be written.
    virtual void take(const Picture& picture) = 0;

    // No more pictures will come, though perhaps fewer came than were wanted. Throws Failure when the result
    // cannot be completed.
    virtual void finish() = 0;

    // What is there after a failure, for the message: "nothing was kept".
    virtual std::string after_failure() const { return "nothing was kept"; }
};
