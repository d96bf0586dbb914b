"""The first half, 0 to 76 s: title, wall, gyroscope room, cross, text screen. D minor."""

from band import (acid, arpeggio, bass_note, bass_riff, bell, bell_line, big_snare, blow, chip, climb, crash, drums,
                  hard_kick, hush, kick, lead, pad, piano_line, pluck, rim, roll, show, stab, toms, wind)

# The theme of the wall: three bars, D minor | B flat | G minor, A.
THEME = "d5:1.5 e5:.5 f5:1 ~a5:1 | bb5:1.5 a5:.5 f5:1 ~d5:1 | g5:1.5 f5:.5 e5:1 ~c#5:1"
THEME_END = "d5:1.5 e5:.5 f5:1 ~a5:1 | bb5:1.5 c6:.5 ~d6:1 bb5:1 | g5:1.5 bb5:.5 a5:1 ~c#6:1"
ANSWER = "c5:1 a4:.5 c5:.5 ~f5:2 | e5:1 d5:.5 e5:.5 ~g5:2 | a5:1 g5:.5 ~e5:.5"

# The theme of the room: long slides over a turning accompaniment. G minor.
ROOM = "g4:1 ~d5:2 c5:.5 bb4:.5 | bb4:1 ~g5:2 f5:.5 eb5:.5 | d5:2 ~f5:1 c5:1"
ROOM_2 = "eb5:3 d5:.5 c5:.5 | d5:2 ~g5:2 | bb5:2 ~a5:1"
ROOM_HIGH = ("g5:3 f5:.5 d5:.5 | d5:1 ~bb5:2 a5:.5 g5:.5 | f5:2 ~d5:1 f5:1 | a5:3 g5:.5 f5:.5 | "
             "e5:1 ~c#5:1 ~a5:1")

# Four bars of drums for the wall, and what they turn into.
WALL_A = dict(kick="X...X...X...X..x", snare="....X.......X...", hat="x.xox.xox.xox.xo", open_hat="..x...x...x...x.")
WALL_B = dict(kick="X...X..xX...X...", snare="....X..-....X..-", hat="xoxox.xoxoxox.xo", open_hat="..x...x...x...x.")
WALL_C = dict(kick="X..xX...X.x.X...", snare="....X.......X.-.", hat="xoxoxoxoxoxoxoxo", open_hat="..x...x...x...x.",
              clap="....x.......x...")


def title():
    """0 to 10 s: one blow, a drone, fragments of the theme; from 6.2 s the line tightens."""
    blow(0.0, 1.0, "d2", 1.6, 1.0, 4.0)
    crash(0, 0.8, 8)
    pad(0, 20.2, "d3 a3 e4", 0.8, 260, 1500, 1.6, 0.45)
    bass_note(0, 12, 26, None, 0.55, 90, 200, 1)
    bass_note(12.4, 7.4, 26, None, 0.6, 90, 700, 1)
    bell(0, "d5", 0.7, 8)
    bell(0, "a5", 0.5, 8, pan=0.7)
    bell_line(3, "d5:1.5 e5:.5 f5:1 a5:3 | f5:1.5 e5:.5", 0.75)
    drums(2, rim="'...-...'...-...", hat="..'...'...'.....")
    drums(6, rim="'...-...'...-...", hat="..'...'...'...'.")
    drums(10, rim="'...-...'.", hat="..'...'...")
    show.at(6.2, "Blow", 2.0, 0.38, 62, 0.7, 0.4)
    for i in range(30):                                     # the line: one pitch, opening
        beat = 12.5 + i * 0.25
        pluck(beat, "d3" if i % 8 < 6 else "eb3", 0.25 + 0.65 * i / 30, 0.24, 500 + 190 * i, 0.3 + 0.4 * (i % 2), 0.2)
    climb(12.4, 7.5, "d3", "d5", 0.55)
    wind(12.4, 7.5, 300, 7000, 0.8, 3)
    drums(16, soft_kick="x...x...x...")
    roll(17, 2.75, 0.2, 0.9)


def wall():
    """10 to 34 s: the rise. Two-beat bars before 17.0 and 28.0 s let each blow fall on a downbeat."""
    for time, girder in ((10.0, "d2"), (17.0, "d2"), (23.0, "f2"), (28.0, "d2"), (28.5, "a2")):
        blow(time, 0.9, girder)
    blow(11.4, 0.8, "a2", 0.8, 0.8)
    for beat in (20, 34, 46, 56, 57):
        crash(beat, 0.9)

    # 10.0 s: the groove, no theme yet.
    chords = ((20, 4, "d2", "d3 a3 c4 f4"), (24, 4, "d2", "d3 a3 c4 e4"), (28, 4, "bb1", "d3 f3 bb3 c4"),
              (32, 2, "a1", "c#3 e3 a3 bb3"))
    for bar, (beat, beats, root, chord) in enumerate(chords):
        drums(beat, **{k: v[:int(beats * 4)] for k, v in (WALL_A, WALL_A, WALL_B, WALL_A)[bar].items()})
        bass_riff(beat, root, "0.01.0.01.0100.1"[:int(beats * 4)], cut=150 + bar * 40, reach=900 + 250 * bar)
        arpeggio(beat, beats, chord, "0.2.1.3.", 1.25, 1700 + bar * 800, 2500 + bar * 800)
        pad(beat, beats, chord, 1.0, 600 + 250 * bar, 850 + 250 * bar, 0.1)
    stab(22.75, "d4 f4 a4 d5", 0.9, 0.5, 6000, 0.3, 0.3, 0.3)
    big_snare(22.75, 0.8)
    roll(33, 1, 0.4, 0.9, 0)

    # 17.0 s: the theme.
    wall_chords = ((0, 4, "d2", "d3 a3 c4 f4"), (4, 4, "bb1", "d3 f3 bb3 d4"), (8, 2, "g1", "d3 g3 bb3 f4"),
                   (10, 2, "a1", "c#3 e3 a3 g4"))
    for start, kits, volume in ((34, (WALL_B, WALL_C, WALL_B), 0.8), (56, (WALL_C, WALL_B, WALL_C), 1.0)):
        for bar, kit in enumerate(kits):
            drums(start + bar * 4, **kit)
        for off, beats, root, chord in wall_chords:
            bass_riff(start + off, root, "0.01.0s-0.0100s-"[:int(beats * 4)], cut=200, reach=1900)
            arpeggio(start + off, beats, chord, "0213", 0.6, 2600, 3200)
            pad(start + off, beats, chord, 0.7, 900, 1500, 0.08)
    lead(34, THEME, 0.85)
    toms(45, "aabc")
    # 23.0 s: the answer, over F and C.
    for off, beats, root, chord in ((0, 4, "f1", "c3 f3 a3 g4"), (4, 4, "c2", "c3 e3 g3 d4"),
                                    (8, 2, "a1", "c#3 e3 g3 bb3")):
        bass_riff(46 + off, root, "0.01..010.01.5.1"[:int(beats * 4)], cut=200, reach=1700)
        arpeggio(46 + off, beats, chord, "0312", 0.65, 3000, 3600)
        pad(46 + off, beats, chord, 0.7, 1000, 1700, 0.08)
    drums(46, **WALL_B)
    drums(50, **WALL_C)
    lead(46, ANSWER, 0.85)
    roll(54, 1.9, 0.35, 1.0, 0.5)
    kick(54)
    kick(55)
    # 28.0 s: the theme above itself.
    for beat in (56, 57):
        stab(beat, "d3 a3 d4 f4 a4", 1.0, 0.7, 7000, 0.4, 0.35, 0.2)
    lead(56, THEME_END, 0.9)
    lead(56, THEME, 0.45, 0, 2200, 10)
    for beat in (64, 65, 66, 67):
        stab(beat + 0.5, "g3 bb3 d4" if beat < 66 else "a3 c#4 e4", 0.6)
    toms(66.5, "aabbcd")
    wind(62, 6, 500, 9000, 0.7)


def room():
    """34 to 55 s: turning. Arpeggios in groups of three sixteenths over a half-time beat."""
    for time, girder in ((34.0, "g2"), (40.0, "c3"), (45.5, "g2")):
        blow(time, 0.9, girder)
    for beat in (68, 80, 91):
        crash(beat, 0.9, 7)

    first = ((68, 4, "g1", "g3 bb3 d4 a4"), (72, 4, "eb2", "g3 bb3 eb4 d5"), (76, 2, "d2", "f3 bb3 d4 c5"),
             (78, 2, "f1", "f3 a3 c4 g4"), (80, 4, "c2", "g3 c4 eb4 bb4"), (84, 4, "bb1", "g3 bb3 d4 f4"),
             (88, 3, "eb2", "g3 bb3 eb4 g4"))
    for beat, beats, root, chord in first:
        pad(beat, beats + 0.1, chord, 0.9, 700, 1500, 0.2, 0.4)
        arpeggio(beat, beats, chord, "012345", 0.62, 2200, 2800, wide=0.42)
        bass_note(beat, beats * 0.62, float({"g1": 31, "eb2": 39, "d2": 38, "f1": 29, "c2": 36, "bb1": 34}[root]),
                  None, 0.9, 120, 700)
    for beat, k, s in ((68, "X.....x...x.....", "........X......."), (72, "X.....x..x......", "........X.....-."),
                       (76, "X.....x...x...x.", "........X..-..x."), (80, "X.....x...x..x..", "........X......."),
                       (84, "X..x......x.....", "........X...-.-.")):
        drums(beat, kick=k, snare=s, hat="x.-.o.-.x.-.o.-o", rim="...-..'...-..'..")
    drums(88, kick="X.....x.....", hat="x.-.o.-.xoxo")
    roll(88.5, 2.5, 0.3, 1.0, 0.4)
    wind(86, 5, 400, 8000, 0.7)
    lead(68, ROOM, 0.85, 0, 2600, 30, 0.4, 0.2)
    lead(80, ROOM_2, 0.88, 0, 3000, 30, 0.4, 0.2)

    # 45.5 s: the beat comes back and the theme climbs.
    second = ((91, 4, "g1", "g3 bb3 d4 f4"), (95, 4, "eb2", "g3 bb3 eb4 f4"), (99, 4, "bb1", "f3 bb3 d4 f4"),
              (103, 4, "f1", "f3 a3 c4 e4"), (107, 3, "a1", "e3 a3 c#4 g4"))
    kits = (WALL_A, WALL_B, WALL_C, WALL_B)
    for bar, (beat, beats, root, chord) in enumerate(second):
        steps = int(beats * 4)
        if beats == 4:
            drums(beat, **kits[bar])
        pad(beat, beats, chord, 0.8, 900, 1800, 0.1)
        arpeggio(beat, beats, chord, "012345", 0.6, 2800 + bar * 300, 3400 + bar * 300, wide=0.42)
        bass_riff(beat, root, ("0.01.0s-0.0100s-", "0.01..010.0s-.10")[bar % 2][:steps], cut=220, reach=1900)
        chip(beat, beats * 0.98, chord, 0.5, 0.25, 0.7)
    lead(91, ROOM_HIGH, 0.92, 0, 3600, 30, 0.35, 0.16)
    drums(107, kick="X...X.......", clap="....x.......")
    toms(108, "a.abbc.d")
    roll(108, 1.9, 0.4, 1.0, 0.0)
    climb(103, 6.9, "d3", "d5", 0.6)
    wind(103, 6.9, 400, 9000, 0.8)


def cross():
    """55 to 67.5 s: harder. Each whole second strikes: low on the even ones, high on the odd."""
    for time, girder in ((55.0, "d2"), (56.5, "eb2"), (62.0, "d2"), (67.5, "d2")):
        blow(time, 1.0, girder, 0.9)
    for beat in (110, 113, 124):
        crash(beat, 0.9)
    for beat in range(110, 135, 2):
        even = beat // 2 % 2 == 0
        stab(beat, "d3 a3 d4 f4" if even else "eb3 bb3 eb4 g4", 3.0, 0.6, 5200 if even else 8000, 0.34, 0.25)
        big_snare(beat, 0.75 if even else 0.9)
    line = ("0' 0 12 0 . 1' 0 ~12 0 0 ~3' 0 . 10 ~12' 0", "0' . 12 0 1' 0 . ~13 12 0 ~3' 1 0 10' ~12 0",
            "0' 0 ~12 0 15' 0 ~13 12 . 0 ~3' 1 ~0 10 12' 13")
    for beat in range(110, 113):
        hard_kick(beat)
    acid(110, "d2", "0' 0 12 0 1' 0 ~13 0 3' 0 ~12 15'", 260, 420, 8)
    for base in (113, 124):
        for beat in range(base, base + 10):
            hard_kick(beat)
        for i in range(3):
            beat = base + 4 * i
            n = 16 if i < 2 else 12
            words = " ".join(line[(i + base) % 3].split()[:n])
            c0 = (300 if base == 113 else 700) + 170 * i
            acid(beat, "d2", words, c0, c0 + 200, 9, 0.85)
            drums(beat, hat="x.xox.xox.xox.xo"[:n], open_hat="..X...X...X...X."[:n])
            for j in range(n // 4):
                bass_note(beat + j + 0.5, 0.4, 26, None, 0.85, 140, 500)
    hard_kick(134)
    drums(113, clap="....x.......x.......x.......x.......")
    toms(123, "abcd", 1.0)
    # The theme comes through, twice as fast, then screams.
    lead(124, "d5:.75 e5:.25 f5:.5 ~a5:.5 bb5:.75 a5:.25 f5:.5 ~d5:.5 | eb5:.75 f5:.25 g5:.5 ~bb5:.5 a5:1 ~d6:4.5",
         0.85, 0, 4200, 40, 0.25)
    roll(132, 2.9, 0.4, 1.0, 0.3)
    climb(128, 6.95, "d3", "d6", 0.9)
    wind(128, 6.95, 500, 10000, 0.9)


def boring():
    """67.5 to 76 s: everything drops away, somebody plinks on a piano, then the wind rises."""
    crash(135, 1.0, 10)
    bell(135, "d4", 0.6, 8)
    pad(135, 6, "d3 a3", 0.35, 900, 200, 0.02, 0.5)
    for beat in range(136, 147):
        rim(beat, 0.30 if beat % 2 else 0.42, 1250 if beat % 2 else 1500, 0.55, 0.25)
    piano_line(137, "f4:1 e4:1 f4:1 e4:1 | f4:1.5 e4:.5 d4:1 c#4:1 | c#4:2", 0.45)
    lead(142, "a4:.5 ~d4:2.5", 0.35, 0, 1500, 60, 0.4, 1.1)         # a yawn
    piano_line(137, "r:.5 d3:1 r:1 d3:1 r:.5 | a2:1 r:1 a2:1.5", 0.35)
    wind(139, 9.4, 200, 9000, 1.0, 2.0)
    climb(141, 7.4, "f2", "c5", 0.9)
    roll(145, 3, 0.2, 0.9, 0.4)
    crash(148, 0.9, 4)
    pad(148, 4, "f3 a3 c4", 0.7, 2500, 600, 0.01, 0.4)
    bass_note(148, 2.5, 29, None, 0.8)
    kick(148)


def play():
    for time in (10.0, 17.0, 23.0, 28.0, 28.5, 34.0, 40.0, 45.5, 55.0, 56.5, 62.0, 67.5):
        hush(time)
    hush(11.4, 0.6, 0.06)
    title()
    wall()
    room()
    cross()
    boring()
