"""Writes the Csound scores and the sung part of both files: score.py <folder>."""

import sys
from pathlib import Path

import first_half
import lyrics
import second_half
from band import show

# File: (its section of the show, show time of its position 0, last moment at which a note may start, its length); s.
FILES = {
    "zev": (first_half, 0.0, 76.0, 76.5),
    "zev_voc": (second_half, 74.3, 166.0, 92.5),
}


def main(folder):
    for name, (half, origin, end, length) in FILES.items():
        show.notes.clear()
        half.play()
        text = "".join(f"i {desk} 0 {length}\n" for desk in (900, 901, 999))
        if half is second_half:
            lyrics.sing(f"{folder}/choir.wav", origin, length)
            text += f'i "Singer" 0 {length} 1 "choir.wav" 0.22 0.2 140\n'
        (Path(folder) / f"{name}.sco").write_text(text + show.csound(origin, origin, end) + "e\n")


main(sys.argv[1])
