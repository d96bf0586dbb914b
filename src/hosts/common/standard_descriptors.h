#pragma once

namespace common {

// Opens /dev/null on those of the descriptors 0, 1 and 2 that the process was started without, so that no file,
// pipe or socket that is opened later is taken for one of them. It is opened the wrong way round: reading
// standard input and writing the other two still fail with EBADF, as on a closed descriptor. The first thing that
// a program does.
void open_standard_descriptors();

} // namespace common
