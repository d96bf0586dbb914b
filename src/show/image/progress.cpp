#include "show/image/progress.h"

void (*g_progress_hook)() = nullptr;
