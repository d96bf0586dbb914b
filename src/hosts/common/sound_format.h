// The format that all sound inside the hosts has: interleaved stereo floats, left then right, nominally -1..1.
#pragma once

constexpr int kSoundRate = 44100; // frames per second
constexpr int kSoundChannels = 2;
