// The music, which is the show's only clock: an instrumental file from the start, and a vocal file that replaces it
// at the timeline's cue. Both are opened by name from the working directory. Results of the sound calls are stored in
// g_fmod_result for a debugger and not examined: without the first file show time stays at 0, without the vocal file
// at 74.3 s.
#pragma once

#include "show/fmod_ex.h"

extern FMOD_SYSTEM* g_fmod_system;
extern FMOD_SOUND* g_music;           // the open file
extern FMOD_CHANNEL* g_music_channel; // the channel that plays it
extern FMOD_RESULT g_fmod_result;     // of the last sound call
extern int g_vocal;                   // 0 while the instrumental file plays, 1 after the switch

// Opens the sound system and the instrumental file. Nothing plays yet.
void music_open();

// Starts the open file at its position 0.
void music_play();

// Show time in milliseconds: the channel's position, plus 74300 while the vocal file plays.
float music_position_ms();

// Releases the instrumental file, then opens and starts the vocal one, whose position 0 is show time 74.3 s.
void music_switch_to_vocal();

// Releases the open file. Called by shutdown_scenes.
void music_release();

// Moves the playing channel to `seconds`. No scene calls it.
void music_seek_seconds(int seconds);
