// The inner loops for any processor.
#define LOOPS_TABLE loops_plain
#define LOOPS_NAME "plain"
#define LOOPS_BYTES 16

#include "show/image/loops_body.h"
