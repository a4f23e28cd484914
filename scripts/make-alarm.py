#!/usr/bin/env python3
"""Writes data/alarm.wav, the reminder chime: two soft bell tones, a fourth apart.

Standard library only, and the same bytes on every run. Usage: make-alarm.py [output]
"""
import math
import struct
import sys
import wave
from pathlib import Path

RATE = 22050
LENGTH = 1.1  # seconds

# (start in seconds, fundamental in Hz, loudness)
NOTES = [(0.0, 783.99, 0.55), (0.22, 1046.50, 0.45)]  # G5, then C6
# A bell's partials: mostly the fundamental, a little of its octave and twelfth.
PARTIALS = [(1.0, 1.0, 3.2), (2.0, 0.28, 5.5), (3.0, 0.12, 8.0)]  # (ratio, level, decay/s)


def sample(t):
    value = 0.0
    for start, freq, loud in NOTES:
        u = t - start
        if u < 0:
            continue
        attack = min(1.0, u / 0.004)  # 4 ms, so the note starts without a click
        for ratio, level, decay in PARTIALS:
            value += loud * level * attack * math.exp(-decay * u) * math.sin(
                2 * math.pi * freq * ratio * u)
    fade = min(1.0, (LENGTH - t) / 0.05)  # the last 50 ms fade to silence
    return value * fade


def main():
    out = Path(sys.argv[1]) if len(sys.argv) > 1 else Path(__file__).resolve().parent.parent / "data" / "alarm.wav"
    frames = bytearray()
    for n in range(int(RATE * LENGTH)):
        v = max(-1.0, min(1.0, 0.8 * sample(n / RATE)))
        frames += struct.pack("<h", int(round(v * 32767)))
    with wave.open(str(out), "wb") as w:
        w.setnchannels(1)
        w.setsampwidth(2)
        w.setframerate(RATE)
        w.writeframes(bytes(frames))


if __name__ == "__main__":
    main()
