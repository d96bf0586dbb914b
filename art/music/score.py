"""Writes the Csound scores of both files: score.py <folder>."""

import sys
from pathlib import Path

import first_half
import second_half
from band import show

# File: (show time of its position 0, notes that start from .. to, its length), seconds.
FILES = {
    "zev": (0.0, 0.0, 74.95, 76.5),
    "zev_voc": (74.3, 74.3, 200.0, 92.5),
}


def main(folder):
    first_half.play()
    first = show.notes
    show.notes = []
    second_half.play()
    notes = {"zev": first, "zev_voc": show.notes}
    for name, (origin, begin, end, length) in FILES.items():
        show.notes = notes[name]
        desk = "".join(f"i {n} 0 {length}\n" for n in (900, 901, 999))
        (Path(folder) / f"{name}.sco").write_text(desk + show.csound(origin, begin, end) + "e\n")


main(sys.argv[1])
