"""The second half, from 74 s: the oldskool part and the credits. F major, at the end G."""

from band import *      # the whole band plays here


BARS = ((0, "bb1", "d4 f4 bb4"), (2, "c2", "e4 g4 c5"), (4, "a1", "c4 e4 a4"), (6, "d2", "d4 f4 a4"),
        (8, "bb1", "d4 f4 bb4"), (10, "c2", "e4 g4 c5"), (12, "f1", "c4 f4 a4"), (14, "a1", "c#4 e4 a4"))


def groove(beat):
    for off, root, chord in BARS:
        bass_riff(beat + off, root, "0.1.0.1.")
        chip(beat + off, 2, chord)
        stab(beat + off + 0.5, chord)
    for bar in range(4):
        drums(beat + bar * 4, kick="X..x..x.X.x.....", snare="....X..-.-..X...", hat="x.x.x.x.x.x.x.xo", crash="X" if bar == 0 else ".")


def play():
    wind(148.6, 0.4, 800, 6000, 1.0, 0)
    toms(149, "aabbccdd")
    for start in range(152, 304, 16):
        groove(start)
    pad(306, 18, "f3 a3 c4")
    pad(324, 6, "f2 c3 f3 a3 c4 f4")
    kick(324)
    blow(162.0)
