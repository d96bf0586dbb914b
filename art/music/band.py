"""The band: what each player does with a beat, a pitch and a strength."""

import math

from notation import Part, pitch, pitches, seconds

show = Part()       # every note of the show, both halves


# ---------------------------------------------------------------- drums

def kick(beat, v=1.0, freq=46, drive=2.2, duck=1.0):
    show.note(beat, "Kick", 0.75, v, freq, drive)
    if duck:
        show.note(beat, "Duck", 0.52, duck * min(1, v + 0.1))


def soft_kick(beat, v=1.0):
    kick(beat, v * 0.7, 50, 1.3, 0.6)


def hard_kick(beat, v=1.0):
    kick(beat, v, 48, 4.5)


def snare(beat, v=1.0, wires=0.17, room=0.14, body=188):
    show.note(beat, "Snare", 0.6, v * 0.8, body, wires, room)


def big_snare(beat, v=1.0):
    snare(beat, v, 0.26, 0.4, 172)
    show.note(beat, "Clap", 0.6, v * 0.5, 0.3)


def clap(beat, v=1.0):
    show.note(beat, "Clap", 0.6, v * 0.72, 0.2)


def human(beat, v):
    """Strength with a random-looking deviation of up to 15 %, always the same at the same beat."""
    return v * (0.85 + 0.3 * (math.sin(beat * 12.9898) * 43758.5453 % 1.0))


def hat(beat, v=1.0):
    v = human(beat, v)
    show.note(beat, "Hat", 0.2, v * 0.85, 0.035 + 0.02 * v, 0.58)


def open_hat(beat, v=1.0):
    show.note(beat, "Hat", 0.6, v * 0.75, 0.20, 0.45)


def ride(beat, v=1.0):
    show.note(beat, "Hat", 1.0, human(beat, v) * 0.42, 0.42, 0.35)


def shaker(beat, v=1.0):
    show.note(beat, "Shaker", 0.25, human(beat, v) * 0.9, 0.3)


def rim(beat, v=1.0, freq=1720, pan=0.6, room=0.12):
    show.note(beat, "Tick", 0.3, v * 0.5, freq, pan, room)


def crash(beat, v=1.0, beats=5, pan=0.4):
    show.note(beat, "Crash", beats, v * 0.5, pan)


def tom(beat, freq, v=1.0, pan=0.5):
    show.note(beat, "Tom", 0.6, v * 0.6, freq, pan)


def drums(beat, **lines):
    """One or more bars: drums(beat, kick='X...', snare='....X...')."""
    for player, steps in lines.items():
        show.pattern(beat, steps, globals()[player])


def toms(beat, steps, v=0.9):
    """A run around the kit: letters a (high) .. d (low) in sixteenths."""
    place = {"a": (210, 0.25), "b": (158, 0.42), "c": (118, 0.6), "d": (86, 0.75)}
    for i, letter in enumerate(steps):
        if letter in place:
            freq, pan = place[letter]
            tom(beat + i * 0.25, freq, v, pan)


def roll(beat, beats, v0=0.25, v1=0.95, fast_from=0.5):
    """Snare roll: eighths, then sixteenths from the given fraction on, swelling. It leaves the last
    sixteenth to the accent it leads to."""
    at = 0.0
    while at < beats - 0.3:
        share = at / beats
        snare(beat + at, v0 + (v1 - v0) * share, 0.12, 0.1, 188 + 50 * share)
        at += 0.25 if share >= fast_from else 0.5


# ---------------------------------------------------------------- effects

def blow(time, v=1.0, girder="d3", debris=1.1, sub=1.0, length=2.2):
    """The accent under a flash; its time is in seconds, because the flashes' are."""
    show.at(time, "Blow", length, v * 0.85, pitch(girder), debris, sub)


def hush(time, depth=0.72, length=0.085):
    """A short gap before an accent: everything is turned down just before that second."""
    show.at(time - length, "Hush", length - 0.0004, depth)


def wind(beat, beats, f0, f1, v=1.0, curve=2.5, end=1.0):
    show.note(beat, "Wind", beats, v * 0.5, f0, f1, curve, end)


def climb(beat, beats, low, high, v=1.0):
    show.note(beat, "Climb", beats, v * 0.34, pitch(low), pitch(high))


# ---------------------------------------------------------------- basses

def bass_note(beat, beats, p, before=None, v=0.9, cut=180, reach=1500, reso=2.0):
    show.note(beat, "Bass", beats, v, p, before if before is not None else p, cut, reach, reso)


def bass_riff(beat, root, steps, beats=0.22, cut=180, reach=1500, reso=2.0, v=0.92):
    """Sixteenth riff on a root: 0 root, 1 octave, 5 fifth, 7 seventh, s = slide up to the octave,
    - = tie."""
    step_pitch = {"0": 0, "1": 12, "5": 7, "7": 10, "s": 12}
    root = pitch(root)
    for i, s in enumerate(steps.replace(" ", "")):
        if s in step_pitch:
            long = beats
            for tie in steps.replace(" ", "")[i + 1:]:
                if tie != "-":
                    break
                long += 0.25
            p = root + step_pitch[s]
            strength = v if i % 4 == 0 or s == "1" else v * 0.86
            bass_note(beat + i * 0.25, long, p, root if s == "s" else None, strength, cut, reach, reso)


def acid(beat, root, steps, cut0=300, cut1=300, reso=9, v=0.8):
    """Acid sixteenths: words are semitones over the root; an apostrophe after the number accents it, a
    tilde before it slides into it, '.' rests."""
    root, at, before = pitch(root), 0, None
    words = steps.split()
    for word in words:
        if word == ".":
            before = None
        else:
            accent = 1 if word.endswith("'") else 0
            slide = word.startswith("~")
            p = root + int(word.strip("~'"))
            cut = cut0 + (cut1 - cut0) * at / len(words)
            show.note(beat + at * 0.25, "Acid", 0.25 if accent else 0.2, v * (1.0 if accent else 0.8), p,
                      before if slide and before is not None else p, cut, accent, reso)
            before = p
        at += 1


def octaves(beat, root, steps="0.1.", v=0.9, cut=220, reach=1500):
    """The oldskool bass: root and octave in eighths or as the steps say."""
    bass_riff(beat, root, steps, 0.2, cut, reach, 2.0, v)


# ---------------------------------------------------------------- keys and strings

def pad(beat, beats, chord, v=1.0, f0=900, f1=1600, attack=0.3, room=0.3):
    for p in pitches(chord):
        show.note(beat, "Pad", beats, v * 0.26, p, f0, f1, attack, room)


def stab(beat, chord, v=1.0, beats=0.3, cut=5200, decay=0.22, room=0.15, echo=0.0):
    for p in pitches(chord):
        show.note(beat, "Stab", beats, v * 0.30, p, cut, decay, room, echo)


def pluck(beat, p, v=1.0, beats=0.24, bright=4200, pan=0.5, echo=0.25, decay=0.22):
    show.note(beat, "Pluck", beats, v * 0.5, pitch(p), bright, pan, echo, decay)


def arpeggio(beat, beats, chord, steps="0123", v=0.8, bright0=2500, bright1=2500, step=0.25, echo=0.22,
             wide=0.3):
    """Broken chord; steps index the chord's notes (an index past the end is an octave higher)."""
    notes, at, i = pitches(chord), 0.0, 0
    while at < beats - 1e-6:
        s = steps[i % len(steps)]
        if s != ".":
            n = int(s)
            p = notes[n % len(notes)] + 12 * (n // len(notes))
            share = at / beats
            pan = 0.5 + wide * (1 if i % 2 else -1)
            pluck(beat + at, p, v * (1.0 if i % 4 == 0 else 0.8), 0.24,
                  bright0 + (bright1 - bright0) * share, pan, echo)
        at += step
        i += 1


def chip(beat, beats, chord, v=1.0, width=0.3, where=0.5, echo=0.1):
    notes = pitches(chord)
    a, b, c = (notes + notes + notes)[:3] if len(notes) < 3 else notes[:3]
    show.note(beat, "Chip", beats, v * 0.26, a, b, c, width, where, echo)


def bell(beat, p, v=1.0, beats=5, ratio=3.51, bright=1.6, pan=0.5, echo=0.3):
    show.note(beat, "Bell", beats, v * 0.34, pitch(p), ratio, bright, pan, echo)


def glass(beat, v=1.0, p=91, pan=0.5):
    """Two glasses meet."""
    show.note(beat, "Bell", 2.2, v * 0.24, p, 2.76, 2.6, pan, 0.12)
    show.note(beat + 0.03, "Bell", 1.8, v * 0.18, p + 4.3, 3.91, 2.2, 1 - pan, 0.12)


def piano(beat, beats, chord, v=0.7, apart=13, room=0.14):
    for p in pitches(chord) if isinstance(chord, (str, list)) else [chord]:
        show.note(beat, "Piano", beats, v, p, apart, min(1, max(0, (p - 36) / 60)), room)


def lead(beat, line, v=0.9, octave=0, bright=3400, vibrato=22, echo=0.3, slide=0.11, shift=0):
    """A melody; notes that follow each other closely are played legato, with a little overlap."""
    def play(at, beats, p, before):
        show.note(at, "Lead", beats * 0.97, v, p + 12 * octave + shift,
                  (before if before is not None else p) + 12 * octave + shift,
                  slide if before is not None else 0.0, bright, vibrato if beats >= 0.75 else 0, echo)
    return show.melody(beat, line, play)


def chip_lead(beat, line, v=1.0, octave=0, width=0.35, where=0.5, echo=0.3, shift=0):
    def play(at, beats, p, before):
        q = p + 12 * octave + shift
        show.note(at, "Chip", beats * 0.94, v * 0.30, q, q, q, width, where, echo)
    return show.melody(beat, line, play)


def bell_line(beat, line, v=1.0, octave=0, echo=0.4, ratio=3.51, bright=1.4, shift=0):
    def play(at, beats, p, before):
        bell(at, p + 12 * octave + shift, v, max(4, beats * 2), ratio, bright, 0.35 + 0.3 * (at % 2) / 2, echo)
    return show.melody(beat, line, play)


def piano_line(beat, line, v=0.7, octave=0, apart=13, room=0.14):
    def play(at, beats, p, before):
        piano(at, beats, p + 12 * octave, v, apart, room)
    return show.melody(beat, line, play)
