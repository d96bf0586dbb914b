// What the tests of the sound calls need to know of the host that they are linked with.
#pragma once

// Lets the host's sounds play for `seconds`.
void let_pass(double seconds);
