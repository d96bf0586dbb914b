"""The second half, from 74 s: the oldskool part and the credits. F major, from 141 s on G major.

Pictures: bars 79.5, plasma 88.0, full screen 97.2, plasma 102.4, sprites 109.5, stars 117.2,
sprites 121 to 134, the sign 134 to 138, the cube 141, the sheet 145, credits 153, the end 162.
"""

from band import (arpeggio, bass_note, bell, bell_line, blow, chip, chip_lead, clap, climb, crash, drums, glass, hush,
                  kick, lead, octaves, pad, piano, piano_line, roll, show, snare, soft_kick, stab, toms, wind)
from notation import pitch, raised, seconds

# The hook as the chip and the lead play it; the choir's words are in lyrics.py.
HOOK = ("d5:.5 e5:.5 f5:.5 a5:1 g5:1 a5:.5 | c6:1 a5:.5 g5:.5 f5:2 | d5:.5 e5:.5 f5:.5 a5:.5 c6:1.5 c6:.5 | "
        "a5:1.5 r:.5 c#6:1.5 r:.5")

# Chords of the hook, two beats each: bass, close voicing, wide voicing.
HOOK_CHORDS = (("bb1", "d4 f4 bb4", "bb3 d4 f4 a4"), ("c2", "e4 g4 c5", "c4 e4 g4 d5"),
               ("a1", "c4 e4 a4", "a3 c4 e4 g4"), ("d2", "d4 f4 a4", "a3 d4 f4 c5"),
               ("bb1", "d4 f4 bb4", "bb3 d4 f4 c5"), ("c2", "e4 g4 c5", "c4 e4 g4 bb4"),
               ("f1", "c4 f4 a4", "a3 c4 f4 g4"), ("a1", "c#4 e4 a4", "a3 c#4 e4 g4"))

VERSE_CHORDS = (("d2", "a3 d4 f4 c5"), ("bb1", "bb3 d4 f4 a4"), ("f1", "a3 c4 f4 g4"), ("c2", "g3 c4 e4 bb4"))

# Four bars of break, none like the other.
BREAKS = (dict(kick="X.x.......xx....", snare="....X..-.-..X..-"),
          dict(kick="X.x.......x..x..", snare="....X..-.o....X."),
          dict(kick="X..x..x.x.x.....", snare="....X..-.-..X.-."),
          dict(kick="X.x....x..xx..x.", snare="....X..-.-o.X-xo"))
PIANO_RHYTHM = ("X..x..X.", "x..X..xX", ".xX.x.X.", "X..X.xx.")


def arrival():
    """74.3 to 80 s: the platter spins up, the break picks up, the chip wakes."""
    show.at(74.3, "Platter", 0.26, 1.3, 0.2, 1.0)
    show.at(74.3, "Wind", 0.6, 0.9, 7000, 1500, -1.0, 0.3)
    show.at(74.3, "Crash", 1.8, 0.45, 0.5)
    kick(149)
    crash(149, 0.8)
    stab(149, "f3 a3 c4 f4", 1.0, 0.6, 6500, 0.4, 0.3, 0.3)
    bass_note(149, 0.8, 29)
    drums(149, kick="..x...x.x.x.", snare="....X..oX.xx", hat="x.x.x.x.x.x.")
    toms(151, "abcd")
    for bar in range(2):
        beat = 152 + bar * 4
        drums(beat, hat="x.x.x.x.x.x.x.xo", **BREAKS[bar])
        for half in range(2):
            root, close, _ = HOOK_CHORDS[bar * 2 + half]
            at = beat + half * 2
            octaves(at, root, "0.1.0.1." if bar == 0 else "0.10.01.", 0.9, 150 + 60 * bar, 700 + 500 * bar)
            for i in range(8):
                if (i + half) % 4 != 3:
                    chip(at + i * 0.25, 0.2, close, 0.65 + 0.03 * (bar * 16 + half * 8 + i), 0.25, 0.3 + 0.4 * (i % 2))
    crash(152, 0.9)
    for i, p in enumerate(("c5", "d5", "e5", "g5")):           # the bars light up
        chip_lead(159 + i * 0.25, f"{p}:.25", 0.9, 0, 0.25, 0.2 + 0.2 * i)


def hook_band(beat, shift, energy, bars=range(4)):
    """The accompaniment of the hook; energy 1 is the chip alone, 3 everything."""
    for bar in bars:
        at = beat + 4 * (bar - bars[0])
        lines = dict(BREAKS[bar])
        if energy > 1:
            lines["kick"] = ("X...X...X.x.X...", "X...X..xX...X.x.", "X...X...X..xX...", "X..xX...X...X..x")[bar]
            lines["clap"] = "....x.......x..."
            lines["open_hat"] = "..x...x...x...x."
        if energy > 2:
            lines["ride"] = "x...x...x...x..."
        drums(at, hat=("x.xox.xox.xox.xo", "xoxox.xoxoxox.xo")[bar % 2], **lines)
        for half in range(2):
            root, close, wide = HOOK_CHORDS[bar * 2 + half]
            root, close, wide = raised(root, shift), raised(close, shift), raised(wide, shift)
            here = at + 2 * half
            octaves(here, root, ("0.1.0.1.", "0.1.0.10", "0.100.1.", "0.1.01.1")[bar], 0.92, 200, 1300 + 300 * energy)
            chip(here, 1.95, close, 0.45 if energy > 1 else 0.85, 0.2 + 0.06 * bar, 0.25 + 0.5 * half)
            if energy > 1:
                pad(here, 2, wide, 0.55, 1500, 2200, 0.03)
                show.pattern(here, PIANO_RHYTHM[(bar + half) % 4],
                             lambda b, v, chord=wide: piano(b, 0.45, chord, 0.42 * v + 0.1))
                show.pattern(here, "..x...x.", lambda b, v, chord=close: stab(b, chord, 0.45 * v, 0.3, 6000, 0.16))
            if energy > 2:
                arpeggio(here, 2, wide, "01234543", 0.5, 3800, 4600, wide=0.45)


def first_statement():
    """80 to 88 s: red and green bars; the chip plays the hook before it is sung for the first time."""
    crash(160, 1.0)
    hook_band(160, 0, 1)
    chip_lead(160, HOOK, 1.6, 0, 0.32, 0.42)
    chip_lead(160, HOOK, 0.6, -1, 0.5, 0.62, 0)
    for i in range(4):
        piano(160 + 4 * i + 3.5, 0.4, HOOK_CHORDS[2 * i + 1][2], 0.4)
    toms(175, "aabc", 0.8)
    wind(173, 3, 400, 7000, 0.5)


def verse(beat, second):
    """A verse: half-time, room for the words. The second one glitters."""
    for bar, (root, chord) in enumerate(VERSE_CHORDS):
        at = beat + 4 * bar
        beats = 2 if second and bar == 3 else 4
        steps = beats * 4
        pad(at, beats + 0.1, chord, 0.95, 700 + 150 * bar, 1100 + 200 * bar, 0.1, 0.4)
        bass_note(at, 1.4, pitch(root), None, 0.9, 150, 900)
        bass_note(at + 1.5, 0.4, pitch(root) + 12, pitch(root), 0.75, 180, 1100)
        if beats == 4:
            bass_note(at + 2.5, 0.9, pitch(root), None, 0.8, 150, 900)
            bass_note(at + 3.5, 0.4, pitch(root) + 7, None, 0.75, 180, 1100)
        kit = (dict(kick="X.....x...x.....", snare="........X.....-.", hat="..x...x...x...x."),
               dict(kick="X..x......x..x..", snare="........X..-....", hat="..x..ox...x..ox."),
               dict(kick="X.....x...x...x.", snare="........X.....-o", hat="x.x.x.xox.x.x.xo"),
               dict(kick="X..x..x.........", snare="........X......-", hat="x.x.xoxox.x.xoxo"))[bar]
        drums(at, rim="...'..'....'..'."[:steps], **{k: v[:steps] for k, v in kit.items()})
        if second:
            drums(at, ride="x.x.x.x.x.x.x.x."[:steps])
            for i in range(beats * 2):                          # sprites
                notes = raised(chord, 24)
                bell(at + i * 0.5 + 0.25 * (i % 3 == 1), notes[(i * 3 + bar) % 4], 0.28 + 0.12 * (i % 2), 3, 2.0, 0.9,
                     0.15 + 0.7 * ((i * 5) % 7) / 6, 0.3)
        else:
            arpeggio(at, beats, chord, "0..2..1..3..2.1.", 0.6, 1800 + 400 * bar, 2200 + 400 * bar)
        chip(at + 1.5, 0.25, chord, 0.5, 0.25, 0.8, 0.35)
        chip(at + 3.25, 0.2, chord, 0.4, 0.25, 0.2, 0.35) if beats == 4 else None


def into_full_screen():
    """96 to 98 s: the build-up stops in the air; the blow comes on the off-beat, as the picture fills."""
    pad(192, 2.4, "g3 bb3 c4 f4", 0.9, 1200, 5000, 0.02)
    roll(192, 2.4, 0.4, 1.0, 0.3)
    climb(188, 6.45, "c3", "c5", 0.7)
    wind(188, 6.45, 300, 9000, 0.8)
    kick(192)
    kick(193)
    kick(194)
    blow(seconds(194.5), 0.9, "c2", 1.0)
    crash(194.5, 0.9)
    stab(194.5, "c3 g3 bb3 e4 c5", 1.0, 0.8, 7000, 0.5, 0.4, 0.3)
    bass_note(194.5, 0.9, 36)
    toms(195, "abcd", 1.0)
    drums(195, snare="..xX")


def first_chorus():
    """98 to 110 s: the choir sings the hook; then the band alone leads to the sprites."""
    crash(196, 1.0)
    hook_band(196, 0, 2)
    crash(204.75, 0.9)                                            # second plasma
    stab(204.75, "bb3 d4 f4 bb4 d5", 0.9, 0.5, 8000, 0.35, 0.35, 0.3)
    clap(211.5, 0.8)
    snare(211.75, 0.7)
    crash(212, 0.9)
    for i, (beats, root, chord) in enumerate(((2, "bb1", "bb3 d4 f4 a4"), (2, "c2", "c4 e4 g4 bb4"),
                                              (2, "d2", "a3 d4 f4 c5"), (1, "c2", "g3 c4 e4 bb4"))):
        at = 212 + 2 * i
        octaves(at, root, "0.1.0.10"[:beats * 4])
        pad(at, beats, chord, 0.6, 1500, 2200, 0.03)
        show.pattern(at, PIANO_RHYTHM[i][:beats * 4], lambda b, v, c=chord: piano(b, 0.45, c, 0.42 * v + 0.1))
        chip(at, beats * 0.97, chord, 0.4, 0.3, 0.7)
    drums(212, hat="x.xox.xox.xox.xo", open_hat="..x...x...x...x.", clap="....x.......x...", **BREAKS[0])
    drums(216, kick="X...X...X...", snare="....X..-XoXX", hat="x.xox.xox.x.")
    lead(212, "f5:1.5 d5:.5 ~c5:1 ~e5:1 | ~f5:1 a5:1 ~c6:1", 0.75, 0, 3200, 26)
    toms(218, "abcd", 0.9)


def sprites():
    """109.5 to 117.25 s: glowing things drift; the second verse, in German."""
    crash(219, 0.8)
    for i, p in enumerate((81, 84, 88, 89, 93, 96, 101, 105)):
        bell(219 + i * 0.125, p, 0.4, 4, 2.0, 1.0, i / 7, 0.3)
    bass_note(219, 0.8, 36)
    drums(219, kick="X...", hat="..xo")
    verse(220, True)
    roll(232, 2.4, 0.2, 0.9, 0.4)
    drums(232, kick="X...X.x.X")
    wind(230, 4.45, 400, 9000, 0.7)


def stars():
    """117.25 to 121 s: space. A heartbeat, a wide chord, somebody whispers; the wall's theme from afar."""
    blow(seconds(234.5), 0.85, "bb1", 1.4, 1.0, 3.5)
    crash(234.5, 0.8, 8)
    pad(234.5, 4.5, "bb2 f3 c4 d4 a4", 1.0, 2600, 900, 0.02, 0.5)
    pad(239, 3.1, "c3 g3 bb3 d4 f4", 1.0, 900, 3200, 0.2, 0.5)
    bass_note(234.5, 4.3, 34, None, 0.7, 100, 300)
    bass_note(239, 2.8, 36, None, 0.75, 120, 700)
    for beat in (236, 236.5, 238, 238.5, 240, 240.5):
        soft_kick(beat, 0.9 if beat % 1 == 0 else 0.6)
    bell_line(235, "d6:.75 e6:.25 f6:.5 a6:1.5 g6:1 | d6:.75 e6:.25 f6:.5 c7:1.5", 0.5)
    drums(238, hat="..'...'...'.-.-x")
    climb(238, 3.95, "c3", "c5", 0.6)
    wind(237, 4.95, 300, 9000, 0.9)
    roll(240, 1.9, 0.3, 0.9, 0.4)


SOLO = ("d5:1 ~f5:.5 a5:.5 ~c6:1.5 bb5:.25 a5:.25 | g5:1 ~e5:.5 g5:.5 ~f5:2 | "
        "f5:.5 g5:.25 a5:.25 ~bb5:1 c6:.5 ~d6:1 c6:.25 bb5:.25 | a5:1 ~c6:.5 a5:.5 ~e6:1 c#6:.5 ~a5:.5 | "
        "g5:.75 a5:.25 ~bb5:1 a5:.75 bb5:.25 ~c6:1 | bb5:.75 c6:.25 ~d6:1 ~e6:.5 d6:.5 ~e6:.5 g6:.5 | ~g6:1.8")


def solo():
    """121 to 134 s: a hundred sprites dance and the lead sings without words."""
    blow(121.0, 0.7, "bb1", 0.9)
    crash(242, 1.0)
    hook_band(242, 0, 3)
    lead(242, SOLO, 1.15, 0, 4200, 34, 0.35, 0.12)
    crash(258, 0.9)
    for i, (root, chord) in enumerate((("g1", "g3 bb3 d4 f4"), ("a1", "a3 c4 e4 g4"), ("bb1", "bb3 d4 f4 a4"),
                                       ("c2", "c4 e4 g4 bb4"))):
        at = 258 + 2 * i
        octaves(at, root, "0.100.1." if i % 2 else "0.1.0.1.", 0.92, 240, 2000 + 200 * i)
        pad(at, 2, chord, 0.7, 1600 + 300 * i, 2200 + 300 * i, 0.03)
        arpeggio(at, 2, chord, "01234543", 0.6, 4200 + 300 * i, 4800 + 300 * i, wide=0.45)
        show.pattern(at, "X..X..X.", lambda b, v, c=chord: stab(b, c, 0.6 * v, 0.3, 6500))
        drums(at, kick="X...X...", snare="....X.-.", hat="xoxoxoxo", open_hat="..x...x.", ride="x...x...")
    octaves(266, "c2", "00001010", 0.92, 260, 2800)
    pad(266, 2, "c4 e4 g4 bb4", 0.8, 2600, 5000, 0.02)
    for beat in (266, 266.5, 267, 267.25, 267.5, 267.75):
        kick(beat, 0.85, duck=0.5)
    roll(264, 3.95, 0.35, 1.0, 0.4)
    climb(260, 7.95, "c3", "c6", 0.8)
    wind(260, 7.95, 400, 10000, 0.9)


def cheers():
    """134 to 141 s: PROST. The whole bar stands up; then the drummer is alone."""
    blow(134.0, 1.0, "c2", 1.2)
    for beat, root, chord, v in ((268, "c2", "c3 g3 bb3 e4 g4 c5", 1.0), (272, "f1", "f3 a3 c4 f4 a4 c5", 1.0),
                                 (274, "d2", "d3 a3 c4 f#4 a4 d5", 1.0)):
        crash(beat, v)
        stab(beat, chord, v, 1.2, 7500, 0.6, 0.35, 0.2)
        piano(beat, 1.8, chord, 0.75)
        bass_note(beat, 1.6, pitch(root), None, 1.0, 200, 1500)
    for i, beat in enumerate((268, 268.5, 269.25, 270.25, 271, 272, 272.75, 273.5, 274, 274.5, 275.25)):
        glass(beat, 0.9 - 0.3 * (i % 3) / 2, 88 + (i * 5) % 9, 0.15 + 0.7 * ((i * 3) % 5) / 4)
    drums(268, kick="X.....x.X..x..x.", snare="....X..-....X..-", hat="x.x.x.x.x.x.x.xo", open_hat="......x.......x.",
          clap="....X.......X...")
    drums(272, kick="X.....x.X...x.x.", snare="....X..-....X.xX", hat="x.x.x.x.x.x.x.xo", open_hat="......x.........",
          clap="....X.......X...")
    # The honky-tonk answers between the toasts.
    piano_line(269, "e5:.5 g5:.5 bb5:.5 g5:.5 | c6:.25 bb5:.25 g5:.25 e5:.25 ", 0.55)
    piano_line(273, "a5:.25 c6:.25 a5:.25 f5:.25 r:1 f#5:.25 a5:.25 c6:.25 a5:.25", 0.55)
    # The drummer.
    crash(276, 0.8)
    drums(276, kick="X..x..x.X.x...x.X...x.x.", snare="....x.-o.-x.x..o.-x.x-x.", hat="x.x.x.x.x.x.x.x.x.x.x.x.")
    toms(279, "ab.ccd..", 0.9)
    for i in range(12):
        bass_note(276 + i * 0.5, 0.25, 38, None, 0.6 + 0.03 * i, 140 + 25 * i, 500 + 150 * i)
    arpeggio(276, 6, "d4 f#4 a4 c5", "01234321", 0.55, 800, 5500, wide=0.45)
    pad(276, 6, "c4 d4 f#4 a4", 0.6, 400, 4000, 0.3)
    climb(277, 4.95, "d3", "d5", 0.7)
    wind(276, 5.95, 300, 9500, 0.9)


def last_chorus():
    """141 to 153 s: a tone higher, with everything; the cube spins, the sheet returns."""
    blow(141.0, 1.2, "g2", 1.2)
    stab(282, "c3 g3 c4 e4 g4 c5", 1.2, 0.8, 7500, 0.5, 0.35, 0.2)
    crash(282, 1.0)
    hook_band(282, 2, 3)
    lead(282, "d5:2 ~e5:2 | ~d5:1.5 e5:.5 ~g5:2 | ~g5:1 a5:1 ~b5:2 | ~b5:2 ~d#6:2", 0.5, 0, 2400, 28, 0.3)
    crash(290, 0.9)
    blow(145.0, 0.6, "g2", 0.8)
    crash(298, 1.0)
    hook_band(298, 2, 3, range(2, 4))
    chip_lead(298, "e5:.5 f#5:.5 g5:.5 b5:.5 d6:1.5 d6:.5 | b5:1.5 r:.5 ", 0.7, 0, 0.3, 0.6, 0.3)
    toms(304, "abcd.bc.", 0.9)
    roll(304, 1.9, 0.4, 0.8, 0.3)
    glass(294, 0.8)
    glass(296, 0.8, 93)
    glass(302, 0.9)
    glass(304, 0.9, 95)


def credits():
    """153 to 162 s: the lights go on. The wall's theme, now at peace, and the last chord."""
    blow(153.0, 0.8, "c3", 1.2, 0.8)
    crash(306, 0.8, 8)
    chords = ((306, 2, "c2", "c4 e4 g4 b4"), (308, 2, "d2", "d4 f#4 a4 c5"), (310, 2, "b1", "b3 d4 f#4 a4"),
              (312, 2, "e2", "b3 e4 g4 d5"), (314, 2, "c2", "c4 e4 g4 d5"), (316, 2, "c2", "c4 eb4 g4 a4"),
              (318, 5.5, "g1", "b3 d4 g4 a4"))
    for beat, beats, root, chord in chords:
        last = beat == 318
        pad(beat, beats + 0.1, chord, 1.0, 1500 if not last else 1300, 1100 if not last else 500, 0.06, 0.45)
        bass_note(beat, beats * 0.9, pitch(root), None, 0.85 if not last else 0.7, 120, 500)
        piano(beat, min(beats, 4), chord, 0.45)
        if not last:
            arpeggio(beat, beats, chord, "0213", 0.5, 2600 - 200 * (beat - 306) / 2, 2400, wide=0.4)
        piano(beat + 1.25, 0.6, chord, 0.28) if not last else None
    drums(306, kick="X.....x...x.....", rim="....x.......x..'", shaker="x.xox.xox.xox.xo", ride="x.x.x.x.x.x.x.x.")
    drums(310, kick="X.....x...x...x.", rim="....x..'....x...", shaker="x.xox.xox.xox.xo", ride="x.x.x.x.x.x.x.x.")
    drums(314, kick="X.......x.......", rim="....x.......'...", shaker="x.x.x.x.o.o.-.-.", ride="x...x...o...-...")
    soft_kick(318)
    crash(318, 0.45, 8)
    lead(306, "e5:.75 f#5:.25 g5:.5 ~b5:.5 | a5:2 | f#5:.75 e5:.25 ~d5:1 | ~e5:1.5 ~g5:.5", 0.5, 0, 2000, 26, 0.4)
    bell_line(318, "d6:.75 e6:.25 f#6:.5 a6:1.5 g6:2", 0.55, 0, 0.45)
    piano_line(320, "b4:.5 d5:.5 g5:.5 a5:.5 ~b5:1", 0.3, 0, 9, 0.3)
    # 162.0 s: the last chord.
    kick(324, 0.9, 49, 1.6, 0)
    crash(324, 0.7, 8)
    bass_note(324, 3.2, 31, None, 0.9, 150, 700)
    piano(324, 6, "g2 d3 g3 b3 d4 g4 b4", 0.7, 9, 0.3)
    pad(324, 3.6, "g3 b3 d4 g4", 1.0, 2200, 400, 0.01, 0.5)
    stab(324, "g3 b3 d4 g4 b4", 0.7, 1.5, 5000, 0.8, 0.4, 0.2)
    for i, p in enumerate((79, 83, 86, 91)):
        bell(324 + 0.06 * i, p, 0.5, 8, 3.51, 1.4, 0.2 + 0.2 * i, 0.3)
    glass(324.5, 0.7, 95)


def play():
    for time in (80.0, 88.0, 98.0, 121.0, 134.0, 141.0, 145.0, 153.0):
        hush(time)
    hush(seconds(194.5), 0.7, 0.07)
    arrival()
    first_statement()
    crash(176, 0.9)
    blow(88.0, 0.55, "d2", 0.9)
    verse(176, False)
    into_full_screen()
    first_chorus()
    sprites()
    stars()
    solo()
    cheers()
    last_chorus()
    credits()
