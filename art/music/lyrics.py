"""What the choir sings, line by line. Beats are beats of the show; syllables are espeak-ng phonemes.

    Coats on the wall and the neon light,
    blue on our faces all through the night.

      Back in the old bar - the screens were our stars -
      one more for the road, and - Prost! Prost!

    Freitag um zehn, und die Tür geht auf,
    noch eine Runde, die geht aufs Haus.

    (whispered) The glow of the screens ... in der Nacht ...

    Good night, old bar. (whispered) Gute Nacht.
"""

from notation import pitches
from voice import Choir, Phrase, Voice

EN, DE = "en-gb+m3", "de+m3"

# The hook's four lines, from the first beat of their bar: syllable:beat:length.
BACK = "b'ak:0:.5 In:.5:.5 D@:1:.5 'oUld:1.5:1 bA::2.5:1"
STARS = "D@:-.5:.5 skr'i:nz:0:1 w3::1:.5 aU@:1.5:.5 st'A:z:2:1.4"
ROAD = "w'0n:0:.5 m'O::.5:.5 fO::1:.5 D@:1.5:.5 r'oUd:2:1.4"
PROST = "and:-.5:.5 pr'oUst:0:1.6"
PROST_AGAIN = "pr'o:st:2:1.7"


def hook_line(beat, line, melody, high, low, voice=EN, level=1.0):
    """The lead voice in the middle with its lower octave, and another voice to each side."""
    down = [p - 12 for p in pitches(melody)]
    return Phrase(beat, voice, line,
                  Voice(melody, 0.150 * level),
                  Voice(down, 0.060 * level, 0.5, (-4, 5), 0.95),
                  Voice(high, 0.075 * level, 0.16, (-9, 6), 1.06, 0.011),
                  Voice(low, 0.075 * level, 0.84, (-6, 9), 0.96, 0.017))


def hook(beat, level=1.0, lines="1234"):
    """The hook in F; the choir transposes it."""
    all_lines = {
        "1": [hook_line(beat, BACK, "d4 e4 f4 a4 g4", "f4 g4 a4 c5 c5", "bb3 c4 d4 f4 e4", EN, level)],
        "2": [hook_line(beat + 4, STARS, "a4 c5 a4 g4 f4", "c5 e5 c5 c5 a4", "e4 g4 e4 e4 d4", EN, level)],
        "3": [hook_line(beat + 8, ROAD, "d4 e4 f4 a4 c5", "f4 g4 a4 d5 e5", "bb3 c4 d4 f4 g4", EN, level)],
        "4": [hook_line(beat + 12, PROST, "c5 a4", "e5 c5", "g4 f4", EN, level),
              hook_line(beat + 12, PROST_AGAIN, "c#5", "e5", "a4", DE, level)],
    }
    return [phrase for line in lines for phrase in all_lines[line]]


def chant(beat, voice, line, melody, level=0.135):
    """A verse line: one voice, its lower octave, and two detuned, delayed copies at the sides."""
    down = [p - 12 for p in pitches(melody)]
    return Phrase(beat, voice, line,
                  Voice(melody, level, 0.5, (-5, 6), 1.0, 0, 12),
                  Voice(down, level * 0.55, 0.5, (-4, 4), 0.94, 0, 8),
                  Voice(melody, level * 0.3, 0.1, (-14,), 1.04, 0.019, 20),
                  Voice(melody, level * 0.3, 0.9, (13,), 0.97, 0.026, 20))


VERSE_1 = (
    chant(176, EN, "k'oUts:0:.5 0n:.5:.5 D@:1:.5 w'O:l:1.5:1.25 and:3:.5 D@:3.5:.5 n'i::4:.5 0n:4.5:.5 l'aIt:5:2",
          "d4 d4 e4 f4 e4 d4 d4 c4 d4"),
    chant(184, EN, "bl'u::0:.5 0n:.5:.5 aU@:1:.5 f'eI:1.5:.5 sIz:2:.9 'O:l:3:.5 Tru::3.5:.5 D@:4:.5 n'aIt:4.5:2.2",
          "f4 f4 g4 a4 g4 f4 g4 a4 g4"),
)

VERSE_2 = (
    chant(220, DE, "fr'aI:0:.5 ta:k:.5:.5 Um:1:.5 ts'e:n:1.5:1.25 Unt:3:.5 di::3.5:.5 t'y:r:4:.5 ge:t:4.5:.5 'aUf:5:2",
          "d4 d4 e4 f4 e4 d4 d4 c4 d4"),
    chant(228, DE, "nOx:0:.5 'aI:.5:.5 n@:1:.5 r'Un:1.5:.5 d@:2:.9 di::3:.5 ge:t:3.5:.5 aUfs:4:.5 h'aUs:4.5:2.4",
          "f4 f4 g4 a4 g4 f4 g4 a4 c5"),
)


def whisper(beat, voice, line, level=0.085):
    count = len(line.split())
    return Phrase(beat, voice, line,
                  Voice("d4 " * count, level, 0.25, (0,), 1.0, 0.0, whisper=True),
                  Voice("d4 " * count, level, 0.75, (0,), 1.08, 0.021, whisper=True))


WHISPERS = (
    whisper(236, EN, "D@:-.5:.5 gl'oU:0:1 0v:1:.5 D@:1.5:.5 skr'i:nz:2:1.5"),
    whisper(240, DE, "In:-.5:.5 d@:0:.5 n'axt:.5:1.2"),
    whisper(320.5, DE, "gu::0:.5 t@:.5:.5 n'axt:1:1.3"),
)

# An early, stuttered start of the toast.
STUTTER = Phrase(266, DE, "pr'o:0:.22 pr'o:.5:.22 pr'o:1:.2 pr'o:1.25:.2 pr'o:1.5:.2",
                 Voice("c4 e4 g4 bb4 c5", 0.12), Voice("e4 g4 bb4 c5 e5", 0.08, 0.2, (-8, 6), 1.06),
                 Voice("g3 c4 e4 g4 bb4", 0.08, 0.8, (-6, 8), 0.95))


def prost(beat, chord, level=1.0, length=1.7):
    """The toast, sung by seven voices."""
    parts, spread = [], ((0.5, 1.0, 0.0), (0.2, 1.07, 0.008), (0.8, 0.93, 0.012), (0.08, 0.88, 0.022),
                         (0.92, 1.13, 0.018), (0.35, 1.02, 0.027), (0.65, 0.97, 0.03))
    for i, (pan, head, late) in enumerate(spread):
        p = chord.split()[i % len(chord.split())]
        parts.append(Voice(p, (0.13 if i == 0 else 0.075) * level, pan, (-9 - i, 7 + i), head, late, 15, 0.08))
    return Phrase(beat, DE, f"pr'o:st:0:{length}", *parts)


CHEERS = (
    prost(268, "g4 bb4 e4 c4 c3 e5 g3"), prost(272, "a4 c5 f4 c4 f3 f5 a3"),
    prost(274, "a4 d5 f#4 d4 d3 f#5 a3", 0.9), prost(280, "a4 c5 f#4 d4 d3 d5 a3", 0.8, 1.2),
)

FAREWELL = Phrase(314, EN, "g'Ud:0:.9 n'aIt:1:.95 'oUld:2:1.9 b'A::4:4.5",
                  Voice("c5 c5 c5 b4", 0.08), Voice("g4 g4 g4 g4", 0.053, 0.2, (-8, 6), 1.05, 0.012),
                  Voice("e4 e4 eb4 d4", 0.053, 0.8, (-6, 8), 0.96, 0.016),
                  Voice("c4 c4 c4 g3", 0.045, 0.5, (-4, 5), 0.94))


def sing(path, origin, length):
    choir = Choir(length)
    for phrase in (*VERSE_1, *hook(196), *VERSE_2, *WHISPERS, STUTTER, *CHEERS):
        choir.sing(origin, phrase)
    for phrase in (*hook(282), *hook(290, lines="34")):
        choir.sing(origin, phrase, 2)
    choir.sing(origin, FAREWELL)
    choir.write(path)
