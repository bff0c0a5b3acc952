#!/usr/bin/env python3
"""Makes the program's two shutter sounds (Capture.wav, 1356.wav): short bursts of filtered
noise with a fast decay, like a camera's shutter opening and closing. Run it from this folder
to make them again; the WAV files are committed."""
import math
import random
import struct
import wave

RATE = 44100


def burst(samples, at, length, decay, brightness, gain, rng):
    """Adds a noise burst at `at` seconds; a higher brightness keeps more treble."""
    start = int(at * RATE)
    low = 0.0
    for i in range(int(length * RATE)):
        white = rng.uniform(-1.0, 1.0)
        low += (white - low) * brightness  # one-pole low-pass
        envelope = math.exp(-i / (decay * RATE))
        if start + i < len(samples):
            samples[start + i] += gain * low * envelope


def write(name, bursts, seconds, seed):
    rng = random.Random(seed)
    samples = [0.0] * int(seconds * RATE)
    for b in bursts:
        burst(samples, *b, rng=rng)
    peak = max(abs(s) for s in samples) or 1.0
    with wave.open(name, "wb") as out:
        out.setnchannels(1)
        out.setsampwidth(2)
        out.setframerate(RATE)
        out.writeframes(b"".join(struct.pack("<h", int(s / peak * 0.7 * 32767)) for s in samples))


# The screenshot: one crisp click, then a softer one as the shutter closes.
write("Capture.wav", [(0.0, 0.05, 0.008, 0.6, 1.0), (0.09, 0.06, 0.012, 0.35, 0.7)], 0.2, 1)
# The clip: a longer, lower double click with a little wind-on after it.
write("1356.wav", [(0.0, 0.06, 0.01, 0.45, 1.0), (0.12, 0.07, 0.015, 0.3, 0.8),
                   (0.2, 0.12, 0.04, 0.08, 0.25)], 0.34, 2)
