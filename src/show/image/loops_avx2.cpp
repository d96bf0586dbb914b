// The inner loops for x86-64 with AVX2.
#define LOOPS_TABLE loops_avx2
#define LOOPS_NAME "avx2"
#define LOOPS_BYTES 32

#include "show/image/loops_body.h"
