#!/usr/bin/env python3
"""How far the beats of steady pieces lie from the truth, in the first minute and in the tenth.

    steady_beats.py [--program build/bench/bin/bar_evidence] [FOLDER...]

Measured are clicks of ten minutes from 60 to 214 BPM, plain and soft, made here, and the pieces of each FOLDER (the set
`long` of render_pieces.py). A grid may have another tempo than the truth: its beats are compared with the nearest beat
of the truth, or with the nearest part of a beat where it divides them. Notes of instruments need time to speak, so
pieces are given twice: as they are, and less their own median. Needs numpy.
"""
import argparse
import json
import subprocess
import sys
import tempfile
import wave
from fractions import Fraction
from pathlib import Path

import numpy as np

RATE = 22050
SECONDS = 600
TEMPI = (60, 66.7, 75.2, 83, 91.3, 96.7, 104, 112.5, 120, 127.9, 136, 144.4, 151, 160, 166.6, 175, 182, 189.4, 196, 203,
         207.3, 214)
# Hz, seconds of attack and of decay, and whether each fourth is louder with a bass note.
CLICKS = {
    "clicks": (2500, 0, 0.02, False),
    "accented clicks": (2500, 0, 0.02, True),
    "notes of 10 ms": (440, 0.01, 0.1, False),
}


def tone(hz, attack, decay):
    t = np.arange(int(6 * decay * RATE)) / RATE
    rise = np.minimum(t / attack, 1) if attack else 1
    return rise * np.exp(-t / decay) * np.sin(2 * np.pi * hz * t)


def write_clicks(path, bpm, hz, attack, decay, accented, start):
    x = np.zeros(SECONDS * RATE)
    click, bass = tone(hz, attack, decay), tone(80, 0.02, 0.06)

    def add(sound, at, gain):
        x[at:at + len(sound)] += gain * sound[:len(x) - at]

    for i, t in enumerate(np.arange(start, SECONDS, 60 / bpm)):
        at = round(t * RATE)
        add(click, at, 0.45 if accented and i % 4 == 0 else 0.3)
        if accented and i % 4 == 0:
            add(bass, at, 0.4)
    with wave.open(str(path), "wb") as out:
        out.setparams((1, 2, RATE, 0, "NONE", ""))
        out.writeframes((32767 * np.clip(x, -1, 1)).astype("<i2").tobytes())


def errors(beats, bpm, start, found_bpm):
    """Signed, in seconds, to the lattice of the truth."""
    ratio = Fraction(found_bpm / bpm).limit_denominator(4)
    step = 60 / bpm / max(ratio.numerator, 1)
    off = np.asarray(beats) - start
    return off - step * np.round(off / step)


class Tally:
    def __init__(self, title):
        self.title, self.rows, self.steady, self.count = title, [], 0, 0

    def add(self, name, grid, bpm, start, end):
        beats = np.array([b for b in grid["beats"] if start - 0.03 <= b <= end])
        off = 1000 * errors(beats, bpm, start, grid["bpm"])
        parts = [off[beats < 60], off[beats >= 540]]
        middle = np.median(off)
        self.count += 1
        self.steady += grid["steady"]
        self.rows.append(parts + [p - middle for p in parts])
        p95 = [np.percentile(abs(p), 95) if len(p) else float("nan") for p in parts]
        print(f"   {name:28s}{bpm:7.1f} found {grid['bpm']:8.3f}{'' if grid['steady'] else ' not steady'}"
              f"  middle {middle:+6.1f}  95 % within {p95[0]:5.1f} and {p95[1]:5.1f} ms")

    def report(self):
        first, tenth, first_moved, tenth_moved = (np.percentile(abs(np.concatenate(c)), 95) for c in zip(*self.rows))
        print(f"{self.title}: {self.steady} of {self.count} steady; 95 % of the beats within {first:.1f} ms in the first "
              f"minute and {tenth:.1f} ms in the tenth; less each piece's median, {first_moved:.1f} and {tenth_moved:.1f} ms")


def analysed(program, files):
    for file in files:
        out = subprocess.run([program, str(file)], check=True, capture_output=True, text=True).stdout
        yield json.loads(out)


def clicks(program):
    rng = np.random.default_rng(5)
    with tempfile.TemporaryDirectory(prefix="brindlehum-bench-") as name:
        for title, sound in CLICKS.items():
            tally = Tally(title)
            for bpm in TEMPI:
                start, file = rng.uniform(0.05, 0.6), Path(name) / "clicks.wav"
                write_clicks(file, bpm, *sound, start)
                for found in analysed(program, [file]):
                    if "grid" not in found:
                        print(f"   {title} at {bpm}: no tempo")
                        continue
                    tally.add(title, found["grid"], bpm, start, SECONDS)
            tally.report()


def pieces(program, folder):
    truth = json.loads((folder / "truth.json").read_text())
    tally = Tally(folder.name)
    for found in analysed(program, [folder / name for name in truth]):
        t = truth[found["file"]]
        tally.add(found["file"], found["grid"], t["bpm"], t["bars"][0], t["bars"][-1])
    tally.report()


def main():
    root = Path(__file__).resolve().parents[2]
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--program", type=Path, default=root / "build/bench/bin/bar_evidence")
    parser.add_argument("--no-clicks", action="store_true", help="measure the folders only")
    parser.add_argument("folders", type=Path, nargs="*")
    options = parser.parse_args()
    if not options.no_clicks:
        clicks(options.program)
    for folder in options.folders:
        pieces(options.program, folder)


if __name__ == "__main__":
    main()
