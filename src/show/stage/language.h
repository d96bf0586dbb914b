// The language of the on-screen texts.
#pragma once

// 1 for English, 0 for German. Written once by main, before anything reads it.
extern int g_english;
