"""The singer: turns syllables spoken by espeak-ng into sung ones.

Of each spoken syllable two things are kept, here called the mouth: the spectral envelope (linear prediction) and the
degree of voicing. The mouth is stretched to the note's length (consonants keep their speed, the vowel is held) and used
as a filter for a new source, here called the cords: pulse trains at the melody's pitch with portamento and vibrato, and
noise for the breath. One mouth can filter several pitches, which makes the choir.
"""

import subprocess
import tempfile
from pathlib import Path

import numpy as np
from scipy.io import wavfile
from scipy.linalg import solve_toeplitz
from scipy.ndimage import gaussian_filter1d

from notation import pitches, seconds

RATE = 44100
HOP = 128                   # samples between two states of the mouth in the sung voice
SIZE = 512                  # window of the filter
SPEECH = 22050              # espeak-ng's rate
ORDER = 24                  # of the linear prediction
BINS = SIZE // 2 + 1
STEP = HOP / RATE           # seconds per state


def speak(phonemes, voice, cache={}):
    """espeak-ng's rendering of one syllable; '[[..]]' are its phoneme names, else plain text."""
    key = (phonemes, voice)
    if key not in cache:
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder) / "syllable.wav"
            subprocess.run(["espeak-ng", "-v", voice, "-s", "120", "-p", "35", "-a", "120", "-w", str(path), phonemes],
                           check=True)
            rate, x = wavfile.read(path)
        if rate != SPEECH:
            raise SystemExit(f"espeak-ng speaks at {rate} Hz, expected {SPEECH}")
        x = x.astype(np.float64) / 32768
        loud = np.flatnonzero(np.abs(x) > 0.004)
        cache[key] = x[max(0, loud[0] - 60):loud[-1] + 60]
    return cache[key]


def mouth(x):
    """Envelope (states x BINS, magnitude) and voicing (0..1) of a spoken syllable, one state every STEP seconds."""
    size, hop = 560, STEP * SPEECH
    x = np.concatenate([np.zeros(size // 2), x, np.zeros(size)])
    emphasised = np.append(x[0], x[1:] - 0.95 * x[:-1])
    window = np.hanning(size)
    count = int((len(x) - size) / hop)
    envelope, voiced = np.zeros((count, BINS)), np.zeros(count)
    freq = np.arange(BINS) * RATE / SIZE
    z = np.exp(-2j * np.pi * np.minimum(freq, SPEECH / 2 - 200)[:, None] / SPEECH * np.arange(ORDER + 1))
    undo = 1 / np.abs(1 - 0.95 * np.exp(-2j * np.pi * np.minimum(freq, SPEECH / 2) / SPEECH))
    above = np.clip((freq - 9800) / 7000, 0, 1)
    for n in range(count):
        i = int(n * hop)
        frame = emphasised[i:i + size] * window
        r = np.correlate(frame, frame, "full")[size - 1:size + ORDER]
        if r[0] < 1e-7:
            continue
        r[0] *= 1.0005
        a = np.concatenate([[1], solve_toeplitz(r[:-1], -r[1:])])
        gain = np.sqrt(max(np.dot(a, r), 1e-12))
        envelope[n] = gain / np.abs(z @ a) * undo * 10 ** (-above * 24 / 20)
        plain = x[i:i + size] * window
        ac = np.correlate(plain, plain, "full")[size - 1:]
        lag = ac[55:330] / (np.arange(size, 0, -1)[55:330] / size)
        voiced[n] = np.clip((lag.max() / (ac[0] + 1e-9) - 0.42) / 0.25, 0, 1)
    return envelope, np.clip(gaussian_filter1d(voiced, 1.0), 0, 1)


class Syllable:
    """A mouth, with the states at which the vowel starts, can be held (from, to) and ends."""

    def __init__(self, phonemes, voice):
        self.envelope, self.voiced = mouth(speak(phonemes, voice))
        power = (self.envelope[:, 3:42] ** 2).sum(axis=1) * (self.voiced > 0.3)
        power = gaussian_filter1d(power, 2)
        top = power.argmax()
        start = end = top
        while start > 0 and power[start - 1] > power[top] * 0.22:
            start -= 1
        while end < len(power) - 1 and power[end + 1] > power[top] * 0.16:
            end += 1
        self.start, self.end = start, end
        self.hold = start + 0.30 * (end - start), start + 0.52 * (end - start)

    def lead_in(self):
        """Duration of the consonants before the vowel as sung, in seconds."""
        return min(self.start * STEP, 0.13)

    def frames(self, count):
        """The positions in the spoken mouth for `count` states of the sung one."""
        opening = int(min(self.start, 0.13 / STEP))
        closing = len(self.voiced) - self.end
        vowel_in, vowel_out = self.hold[0] - self.start, self.end - self.hold[1]
        rest = count - opening
        scale = min(1.0, 0.8 * rest / max(1.0, vowel_in + vowel_out + closing))
        points_t = np.cumsum([0, opening, vowel_in * scale,
                              max(1.0, rest - (vowel_in + vowel_out + closing) * scale),
                              vowel_out * scale, closing * scale])
        points_f = [0, self.start, self.hold[0], self.hold[1], self.end, len(self.voiced) - 1]
        return np.interp(np.arange(count), points_t, points_f)


def between(table, at):
    """Rows of a table at fractional positions, interpolated linearly."""
    low = np.minimum(at.astype(int), len(table) - 1)
    high = np.minimum(low + 1, len(table) - 1)
    part = at - low
    if table.ndim == 2:
        part = part[:, None]
    return table[low] * (1 - part) + table[high] * part


def phrase_mouth(syllables, times, ends):
    """The mouth of a whole phrase, whose vowels start at `times`. Returns its start (s), envelope and voicing."""
    begin = times[0] - syllables[0].lead_in() - 0.02
    count = int((ends[-1] + 0.25 - begin) / STEP)
    envelope, voiced = np.zeros((count, BINS)), np.zeros(count)
    for i, syllable in enumerate(syllables):
        start = times[i] - syllable.lead_in()
        stop = ends[i]
        if i + 1 < len(syllables):
            stop = min(stop, times[i + 1] - syllables[i + 1].lead_in())
        n0, n1 = int(round((start - begin) / STEP)), int(round((stop - begin) / STEP))
        at = syllable.frames(n1 - n0)
        part = between(syllable.envelope, at)
        level = np.sqrt((between(syllable.envelope, np.array([sum(syllable.hold) / 2])) ** 2).sum())
        envelope[n0:n1] += part / level
        voiced[n0:n1] = np.maximum(voiced[n0:n1], between(syllable.voiced, at))
    return begin, gaussian_filter1d(envelope, 0.8, axis=0), voiced


def cords(midi, voiced, rng, detune, breath):
    """The source: pulse trains a few cents apart where the mouth is voiced, noise elsewhere."""
    count = len(midi) * HOP
    place = np.arange(count) / HOP
    curve = np.interp(place, np.arange(len(midi)), midi)
    mix = np.interp(place, np.arange(len(midi)), voiced)
    pulses = np.zeros(count)
    for cents in detune:
        f = 440 * 2 ** ((curve + cents / 100 - 69) / 12)
        phase = np.cumsum(f) / RATE + rng.random()
        harmonics = int(15000 / f.max())
        # A band-limited pulse train in closed form (sum of all harmonics with equal level).
        x = np.pi * phase
        s = np.sin(x)
        safe = np.where(np.abs(s) < 1e-6, 1e-6, s)
        train = np.where(np.abs(s) < 1e-6, 2 * harmonics, np.sin((2 * harmonics + 1) * x) / safe - 1)
        pulses += train / np.sqrt(2.0 * harmonics)
    pulses /= np.sqrt(len(detune))
    noise = rng.standard_normal(count)
    return pulses * np.sqrt(mix) + noise * (np.sqrt(1 - mix) * 0.9 + breath)


def through(envelope, source):
    """The source, filtered by the moving mouth."""
    window = np.hanning(SIZE + 1)[:-1]
    out = np.zeros(len(source) + SIZE)
    padded = np.concatenate([np.zeros(SIZE // 2), source, np.zeros(SIZE)])
    for n in range(len(envelope)):
        i = n * HOP
        out[i:i + SIZE] += np.fft.irfft(np.fft.rfft(padded[i:i + SIZE] * window) * envelope[n])
    return out[SIZE // 2:] * (HOP / (SIZE / 2))


def melody(begin, count, times, notes, vibrato):
    """Pitch of every state: each note slides in over 70 ms around its vowel, then gets a vibrato."""
    t = begin + np.arange(count) * STEP
    curve = np.full(count, float(notes[0]))
    for i in range(1, len(notes)):
        share = np.clip((t - times[i] + 0.05) / 0.07, 0, 1)
        curve += (notes[i] - notes[i - 1]) * (3 * share ** 2 - 2 * share ** 3)
    since = t - np.array(times)[np.clip(np.searchsorted(times, t) - 1, 0, len(times) - 1)]
    depth = np.clip((since - 0.3) / 0.4, 0, 1) * vibrato / 100
    curve -= 0.9 * np.exp(-((t - times[0]) / 0.04).clip(0)) * (t < times[0] + 0.3)       # scoop into the phrase
    return curve + depth * np.sin(2 * np.pi * 5.3 * t)


def shifted(envelope, factor):
    """The envelope scaled in frequency: of a larger (factor below 1) or smaller head."""
    if factor == 1.0:
        return envelope
    place = np.arange(BINS) / factor
    low = np.minimum(place.astype(int), BINS - 2)
    part = np.clip(place - low, 0, 1)
    return envelope[:, low] * (1 - part) + envelope[:, low + 1] * part


class Choir:
    """Collects phrases into one stereo track."""

    def __init__(self, length):
        self.track = np.zeros((int(length * RATE), 2))
        self.rng = np.random.default_rng(74)

    def add(self, second, sound, level, pan):
        """Adds a sound; level is its root mean square where it sounds."""
        active = np.abs(sound) > np.abs(sound).max() * 0.05
        sound = sound * level / np.sqrt(np.mean(sound[active] ** 2))
        i = int(round(second * RATE))
        sound = sound[max(0, -i):]
        i = max(0, i)
        n = min(len(sound), len(self.track) - i)
        self.track[i:i + n, 0] += sound[:n] * np.cos(pan * np.pi / 2)
        self.track[i:i + n, 1] += sound[:n] * np.sin(pan * np.pi / 2)

    def sing(self, origin, phrase, transpose=0):
        """Sings a phrase (see Phrase), transposed by semitones."""
        syllables = [Syllable(s, phrase.voice) for s in phrase.syllables]
        times = [seconds(phrase.beat + b) - origin for b in phrase.beats]
        ends = [seconds(phrase.beat + b + d) - origin - 0.02 for b, d in zip(phrase.beats, phrase.lengths)]
        begin, envelope, voiced = phrase_mouth(syllables, times, ends)
        for part in phrase.parts:
            notes = [p + transpose for p in part.notes]
            late = part.late
            curve = melody(begin, len(envelope), times, notes, part.vibrato)
            breathy = voiced * (0 if part.whisper else 1)
            source = cords(curve, breathy, self.rng, part.detune, part.breath)
            self.add(begin + late, through(shifted(envelope, part.head), source), part.level, part.pan)

    def write(self, path):
        wavfile.write(path, RATE, self.track.astype(np.float32))


class Voice:
    """One voice of a phrase: a note per syllable, as names ('d4 e4') or MIDI numbers."""

    def __init__(self, notes, level=0.1, pan=0.5, detune=(-7, 0, 8), head=1.0, late=0.0, vibrato=22, breath=0.03,
                 whisper=False):
        self.notes = pitches(notes) if isinstance(notes, str) else list(notes)
        self.level, self.pan, self.detune, self.head, self.late = level, pan, detune, head, late
        self.vibrato, self.breath, self.whisper = vibrato, breath, whisper


class Phrase:
    """A line: 'phonemes:beat:length' words, sung by one or more voices."""

    def __init__(self, beat, voice, line, *parts):
        words = [w.rsplit(":", 2) for w in line.split()]
        self.beat, self.voice, self.parts = beat, voice, parts
        self.syllables = [f"[[{w[0]}]]" for w in words]
        self.beats = [float(w[1]) for w in words]
        self.lengths = [float(w[2]) for w in words]
        for part in parts:
            if len(part.notes) != len(words):
                raise SystemExit(f"'{line}' has {len(words)} syllables, a voice has {len(part.notes)} notes")
