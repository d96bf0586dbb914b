// The inner loops for x86-64 with AVX-512.
#define LOOPS_TABLE loops_avx512
#define LOOPS_NAME "avx512"
#define LOOPS_BYTES 64

#include "show/image/loops_body.h"
