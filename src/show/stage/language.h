// The language of the on-screen texts.
#pragma once

// 1 when English was chosen, else 0 (German). Written once by main, before anything reads it.
extern int g_english;
