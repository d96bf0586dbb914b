"""Mastering: master.py <in.wav> <out.wav> <loudness, LUFS>.

Low cut, one channel below 120 Hz, a little air, gentle compression, then a look-ahead limiter that works on the
four times oversampled signal. The gain before the limiter is searched until the result has the
loudness asked for. No sample is delayed: position 0 stays position 0.
"""

import sys
import warnings

import numpy as np
from scipy.io import wavfile
from scipy.ndimage import maximum_filter1d, uniform_filter1d
from scipy.signal import butter, lfilter, resample_poly, sosfilt

RATE = 44100
CEILING = 10 ** (-2.8 / 20)         # true peak; MP3 adds up to 1 dB on decoding


def k_weighted(x):
    """BS.1770 weighting, its two filters recomputed for 44.1 kHz."""
    k = np.tan(np.pi * 1681.974450955533 / RATE)
    vh, q = 10 ** (3.999843853973347 / 20), 0.7071752369554196
    vb = vh ** 0.4996667741545416
    a0 = 1 + k / q + k * k
    x = lfilter([(vh + vb * k / q + k * k) / a0, 2 * (k * k - vh) / a0, (vh - vb * k / q + k * k) / a0],
                [1, 2 * (k * k - 1) / a0, (1 - k / q + k * k) / a0], x, axis=0)
    k, q = np.tan(np.pi * 38.13547087602444 / RATE), 0.5003270373238773
    a0 = 1 + k / q + k * k
    return lfilter([1, -2, 1], [1, 2 * (k * k - 1) / a0, (1 - k / q + k * k) / a0], x, axis=0)


def loudness(x):
    """Integrated loudness (LUFS) after BS.1770-4: 400 ms blocks, absolute and relative gate."""
    y = k_weighted(x)
    block, hop = int(0.4 * RATE), int(0.1 * RATE)
    power = np.array([np.mean(y[i:i + block] ** 2, axis=0).sum() for i in range(0, len(y) - block, hop)])
    level = -0.691 + 10 * np.log10(power + 1e-12)
    power = power[level > -70]
    gate = -0.691 + 10 * np.log10(power.mean()) - 10
    return -0.691 + 10 * np.log10(power[-0.691 + 10 * np.log10(power) > gate].mean())


def mono_below(x, freq):
    """Removes the stereo difference below a frequency and widens what is above it by 2 dB."""
    mid, side = (x[:, 0] + x[:, 1]) / 2, (x[:, 0] - x[:, 1]) / 2
    side = 1.25 * sosfilt(butter(4, freq, "highpass", fs=RATE, output="sos"), side)
    return np.stack([mid + side, mid - side], axis=1)


def high_shelf(x, freq, gain):
    """Raises (dB) what is above a frequency; second order, after the Audio EQ Cookbook."""
    a, w = 10 ** (gain / 40), 2 * np.pi * freq / RATE
    alpha, c = np.sin(w) / 2 * np.sqrt(2), np.cos(w)
    r = 2 * np.sqrt(a) * alpha
    b = [a * (a + 1 + (a - 1) * c + r), -2 * a * (a - 1 + (a + 1) * c), a * (a + 1 + (a - 1) * c - r)]
    return lfilter(b, [a + 1 - (a - 1) * c + r, 2 * (a - 1 - (a + 1) * c), a + 1 - (a - 1) * c - r], x, axis=0)


def compress(x, threshold, ratio):
    """Slow stereo-linked compression of the whole mix (30 ms window, 200 ms release)."""
    power = uniform_filter1d(np.mean(x ** 2, axis=1), int(0.03 * RATE), mode="constant")
    level = 10 * np.log10(power + 1e-9)
    cut = np.maximum(level - threshold, 0) * (1 - 1 / ratio)
    a = np.exp(-1 / (0.2 * RATE))
    held = np.empty_like(cut)
    state = 0.0
    step = 32                                                    # control rate
    for i in range(0, len(cut), step):
        peak = cut[i:i + step].max()
        state = peak if peak > state else peak + (state - peak) * a ** step
        held[i:i + step] = state
    held = uniform_filter1d(held, int(0.02 * RATE))
    return x * (10 ** (-held / 20))[:, None]


def rounded(x):
    """Leaves everything below 0.6 alone and rounds what is above it towards 1.1."""
    over = np.maximum(np.abs(x) - 0.6, 0)
    return np.sign(x) * (np.minimum(np.abs(x), 0.6) + 0.5 * np.tanh(over / 0.5))


def limit(x):
    """Look-ahead limiter on true peaks: 2 ms window each way, 60 ms release."""
    over = np.abs(resample_poly(x, 4, 1, axis=0)).max(axis=1)
    peak = over[:len(x) * 4].reshape(-1, 4).max(axis=1)
    need = np.maximum(peak / CEILING, 1.0)
    window = int(0.002 * RATE)
    need = maximum_filter1d(20 * np.log10(need), 2 * window + 1)
    a = np.exp(-1 / (0.06 * RATE))
    held, state = np.empty_like(need), 0.0
    for i, n in enumerate(need.tolist()):
        state = n if n > state else n + (state - n) * a
        held[i] = state
    held = uniform_filter1d(held, window)
    return x * (10 ** (-held / 20))[:, None], held


def master(x, target):
    x = sosfilt(butter(2, 27, "highpass", fs=RATE, output="sos"), x, axis=0)
    x = mono_below(x, 130)
    x = high_shelf(x, 3500, 2.5)
    x = x * 10 ** ((-16 - loudness(x)) / 20)
    x = compress(x, -15, 2.0)
    gain = 0.0
    for _ in range(6):
        y, reduction = limit(rounded(x * 10 ** (gain / 20)))
        error = target - loudness(y)
        if abs(error) < 0.03:
            break
        gain += error
    print(f"loudness {loudness(y):.2f} LUFS, limiter at most {reduction.max():.1f} dB, mean {reduction.mean():.2f} dB")
    return y


def main(source, result, target):
    with warnings.catch_warnings():
        warnings.simplefilter("ignore", wavfile.WavFileWarning)      # Csound writes a peak chunk
        _, x = wavfile.read(source)
    y = master(x.astype(np.float64), float(target))
    rng = np.random.default_rng(1)                               # triangular dither
    y = y + (rng.random(y.shape) - rng.random(y.shape)) / 32768
    wavfile.write(result, RATE, np.round(np.clip(y, -1, 1) * 32767).astype(np.int16))


main(*sys.argv[1:])
