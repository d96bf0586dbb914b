#include "show/stage/language.h"

int g_english = 0;
