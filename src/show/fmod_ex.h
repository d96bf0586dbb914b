// The FMOD Ex calls that the show makes, declared under the library's public names, so that the library
// itself or any host's own implementation can stand behind them. A host defines exactly these functions.
//
// All calls come from one thread. Every call returns FMOD_OK, or the error that explains why nothing was done; a host
// for which a call cannot fail in a useful way, such as one that writes a film of the music, may end the program. A
// handle that a failed call should have filled is set to null; no other result is touched. A null place for a handle
// gives FMOD_ERR_INVALID_PARAM; then a null or stale handle gives FMOD_ERR_INVALID_HANDLE; then the other arguments
// are looked at. A handle is never given out twice.
//
// A system has one channel, and each play gives it a new handle. The old handle gives FMOD_ERR_CHANNEL_STOLEN from
// then on, until its sound is released: that makes every handle of the sound stale, and stops it if it plays. A sound
// that has ended keeps its channel, whose position stays at the sound's length. The position never falls while a sound
// plays, except where FMOD_Channel_SetPosition moves it; a host whose clock cannot be moved refuses that call with
// FMOD_ERR_UNSUPPORTED.
#pragma once

extern "C" {

typedef struct FMOD_SYSTEM FMOD_SYSTEM;
typedef struct FMOD_SOUND FMOD_SOUND;
typedef struct FMOD_CHANNEL FMOD_CHANNEL;
typedef struct FMOD_CREATESOUNDEXINFO FMOD_CREATESOUNDEXINFO; // extra options; the show passes none

typedef int FMOD_BOOL;
typedef unsigned int FMOD_MODE;
typedef unsigned int FMOD_INITFLAGS;
typedef unsigned int FMOD_TIMEUNIT;

typedef enum {
    FMOD_OK = 0,
    FMOD_ERR_CHANNEL_STOLEN = 11,
    FMOD_ERR_FILE_BAD = 19, // the file cannot be read
    FMOD_ERR_FILE_NOTFOUND = 23,
    FMOD_ERR_FORMAT = 25, // not audio of a kind that can be decoded
    FMOD_ERR_INITIALIZED = 32,
    FMOD_ERR_INTERNAL = 33,
    FMOD_ERR_INVALID_HANDLE = 36,
    FMOD_ERR_INVALID_PARAM = 37,
    FMOD_ERR_INVALID_POSITION = 38,
    FMOD_ERR_MEMORY = 43,
    FMOD_ERR_UNINITIALIZED = 79,
    FMOD_ERR_UNSUPPORTED = 80,
    FMOD_RESULT_FORCEINT = 65536
} FMOD_RESULT;

typedef enum { FMOD_CHANNEL_FREE = -1, FMOD_CHANNEL_REUSE = -2 } FMOD_CHANNELINDEX;

#define FMOD_INIT_NORMAL 0x00000000u

#define FMOD_2D 0x00000008u
#define FMOD_SOFTWARE 0x00000040u
#define FMOD_CREATESTREAM 0x00000080u

#define FMOD_TIMEUNIT_MS 0x00000001u

FMOD_RESULT FMOD_System_Create(FMOD_SYSTEM** system);
FMOD_RESULT FMOD_System_Init(FMOD_SYSTEM* system, int maxchannels, FMOD_INITFLAGS flags,
                             void* extradriverdata);
FMOD_RESULT FMOD_System_CreateSound(FMOD_SYSTEM* system, const char* name_or_data, FMOD_MODE mode,
                                    FMOD_CREATESOUNDEXINFO* exinfo, FMOD_SOUND** sound);
FMOD_RESULT FMOD_System_PlaySound(FMOD_SYSTEM* system, FMOD_CHANNELINDEX channelid, FMOD_SOUND* sound,
                                  FMOD_BOOL paused, FMOD_CHANNEL** channel);
FMOD_RESULT FMOD_Channel_GetPosition(FMOD_CHANNEL* channel, unsigned int* position, FMOD_TIMEUNIT postype);
FMOD_RESULT FMOD_Channel_SetPosition(FMOD_CHANNEL* channel, unsigned int position, FMOD_TIMEUNIT postype);
FMOD_RESULT FMOD_Sound_Release(FMOD_SOUND* sound);

} // extern "C"
