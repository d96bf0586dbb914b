#include "hosts/common/standard_descriptors.h"

#include <fcntl.h>
#include <unistd.h>

#include <initializer_list>

namespace common {

void open_standard_descriptors() {
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(descriptor, F_GETFD) >= 0) continue;
        open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY); // takes the lowest free number
    }
}

} // namespace common
