"""A small notation for the score: beats, patterns, melodies and chords become Csound notes.

Time is written in beats of the show (120 per minute, beat 0 is where the show begins), so that a
picture's cue at 34.0 s stands at beat 68. Sixteenths swing: the second one of each pair comes at
60 % of the pair.
"""

BEAT = 0.5          # seconds
SWING = 0.6         # place of the off sixteenth within its eighth; 0.5 is straight

STEP = {"X": 1.0, "x": 0.8, "o": 0.6, "-": 0.4, "'": 0.25}     # pattern letters -> strength
NOTE = {"c": 0, "d": 2, "e": 4, "f": 5, "g": 7, "a": 9, "b": 11}


def seconds(beat):
    """Show time of a beat, with swing."""
    eighth, inside = divmod(beat * 2.0, 1.0)
    if inside < 0.5:
        inside *= SWING / 0.5
    else:
        inside = SWING + (inside - 0.5) * (1.0 - SWING) / 0.5
    return (eighth + inside) * BEAT / 2.0


def pitch(name):
    """'a4' -> 69, 'c#5' -> 73, 'bb3' -> 58; numbers pass through."""
    if isinstance(name, (int, float)):
        return name
    step, rest = NOTE[name[0].lower()], name[1:]
    while rest[0] in "#b":
        step += 1 if rest[0] == "#" else -1
        rest = rest[1:]
    return step + 12 * (int(rest) + 1)


def pitches(names):
    """'d3 f3 a3' -> [50, 53, 57]; lists of numbers pass through."""
    return [pitch(n) for n in names.split()] if isinstance(names, str) else list(names)


def raised(names, semitones):
    """A chord or a single pitch, transposed."""
    moved = [p + semitones for p in pitches(names)]
    return moved if len(moved) > 1 else moved[0]


class Part:
    """A sheet of notes: (show time, length, instrument, fields)."""

    def __init__(self):
        self.notes = []

    def at(self, time, instrument, length, *fields):
        """One note at a show time in seconds."""
        self.notes.append((time, length, instrument, fields))

    def note(self, beat, instrument, beats, *fields):
        """One note at a beat; its length is in beats."""
        start = seconds(beat)
        self.at(start, instrument, seconds(beat + beats) - start, *fields)

    def pattern(self, beat, steps, strike):
        """Sixteenth steps: calls strike(beat, strength) for each letter. '.' is a rest; ' ' and '|' are ignored."""
        for i, letter in enumerate(steps.replace(" ", "").replace("|", "")):
            if letter != ".":
                strike(beat + i * 0.25, STEP[letter])

    def melody(self, beat, line, play):
        """'d5:1.5 e5:.5 r:1 ~f5:1': calls play(beat, beats, pitch, previous pitch or None).

        A tilde slides into the note from the one before.
        """
        previous = None
        for word in line.replace("|", " ").split():
            name, beats = word.split(":")
            beats = float(beats)
            if name != "r":
                slide = name.startswith("~")
                p = pitch(name.lstrip("~"))
                play(beat, beats, p, previous if slide else None)
                previous = p
            beat += beats
        return beat

    def csound(self, origin, begin, end):
        """The notes that start in [begin, end) of the show as Csound score; origin is time 0."""
        lines = []
        for time, length, instrument, fields in sorted(self.notes, key=lambda n: (n[0], n[2])):
            if begin <= time < end:
                values = " ".join(v if isinstance(v, str) else f"{v:.5g}" for v in fields)
                lines.append(f'i "{instrument}" {time - origin:.6f} {length:.6f} {values}')
        return "\n".join(lines) + "\n"
