#!/usr/bin/env python3
"""Renders accompaniments whose tempo, bars and key are known, to fit and to measure the music analysis with.

    render_pieces.py FOLDER [SET...]

Each set becomes a folder in FOLDER with FLAC files and truth.json, which holds per file: bpm, beatsPerBar, bars (the
starts in seconds), key, groove (the style's file), kind. All sets but the long ones are rendered when none is named: some
450 pieces of about 90 seconds. The same packages give the same samples.

A piece is intro, A, B, A and ending of a style of mma, over chords that are drawn with its tempo, its key and a silence
before it. Styles are split in two halves by a hash of their names: weights are fitted to the first half only.

Needs the Debian packages mma, fluidsynth, timgm6mb-soundfont, ffmpeg.
"""
import hashlib
import itertools
import json
import math
import random
import re
import subprocess
import sys
from pathlib import Path

STYLES = Path("/usr/share/mma/lib/stdlib")
FONT = "/usr/share/sounds/sf2/TimGM6mb.sf2"
NOTES = ["C", "Db", "D", "Eb", "E", "F", "Gb", "G", "Ab", "A", "Bb", "B"]
CHORDS = {"I": (0, ""), "ii": (2, "m"), "iii": (4, "m"), "IV": (5, ""), "V": (7, "7"), "vi": (9, "m"),
          "i": (0, "m"), "III": (3, ""), "iv": (5, "m"), "VI": (8, ""), "VII": (10, "")}
MAJOR = ["I vi IV V", "I IV I V", "vi IV I V", "I V vi IV", "ii V I I", "I iii IV V", "I I IV V", "vi ii V I"]
MINOR = ["i VI III VII", "i iv V i", "i VII VI V", "i iv VII III", "i i iv V", "VI VII i i"]

# two: a chord every two bars. half: two chords a bar. vamp: one chord throughout. pickup: from the last beat of a bar on.
# drift: a tempo that wanders by 3 %. minor: chords of natural minor. (drums: the drum tracks alone; left out where a style
# has none.)
VARIANTS = ["two", "half", "vamp", "pickup", "drift", "minor"]
# Per set: half of the styles, seed, kinds, pieces of each kind (None: one of every style).
SETS = {
    "first": (0, 1, ["plain"], None),
    "first-variants": (0, 7, VARIANTS, 8),
    "first-variants-2": (0, 11, VARIANTS, 12),
    "second": (1, 1, ["plain"], None),
    "second-variants": (1, 9, VARIANTS, 6),
    "unseen": (1, 13, ["plain"], None),
    "unseen-variants": (1, 13, VARIANTS, 12),
    "first-drums": (0, 21, ["drums"], 32),
    "second-drums": (1, 23, ["drums"], 32),
    "long": (0, 1, ["long"], 24),
    "long-second": (1, 1, ["long"], 24),
}
LONG_SECONDS = 600


class Style:
    """A file of mma with a main groove of three or four beats a bar, and what it offers for the other sections."""

    def __init__(self, path):
        text = path.read_text(errors="replace")
        time = re.search(r"^Time\s+(\d+)", text, re.M)
        self.file, self.beats = path.name, int(time.group(1)) if time else 0
        self.grooves = re.findall(r"^DefGroove\s+(\S+)", text, re.M)
        self.drums = sorted({name.upper() for name in re.findall(r"^\s*(drum(?:-\S+)?)\s", text, re.M | re.I)})
        self.half = int(hashlib.md5(path.name.encode()).hexdigest(), 16) % 2

    def usable(self):
        return self.beats in (3, 4) and self.grooves and not self.file.startswith(("none", "metronome"))

    def main(self):
        return self.grooves[0]

    def section(self, *endings):
        wanted = ((self.main() + ending).lower() for ending in endings)
        return next((groove for name in wanted for groove in self.grooves if groove.lower() == name), None)


class Piece:
    """What is drawn for a piece. The order of the draws is part of it."""

    def __init__(self, style, seed, kind):
        rng = random.Random(f"{seed} {style.main()}" if kind == "plain" else f"{seed} {kind} {style.main()}")
        self.style, self.seed, self.kind = style, seed, kind
        self.bpm = rng.randint(90, 190) if style.beats == 3 else rng.randint(66, 168)
        self.key = rng.randrange(12)
        self.silence = int(1000 * rng.choice([0, 0, round(rng.uniform(0.1, 2.5), 3)])) / 1000
        self.minor = kind == "minor"
        table = MINOR if self.minor else MAJOR
        self.a, self.b = 2 * self.chords(rng, table), self.chords(rng, table)
        if kind == "two":
            self.a, self.b = ([chord for chord in row[:n] for _ in range(2)] for row, n in ((self.a, 8), (self.b, 4)))
        if kind == "vamp":
            self.a, self.b = 16 * [NOTES[self.key]], 8 * [NOTES[self.key]]
        if kind == "long":
            self.bpm = rng.randint(60, 214)

    def chords(self, rng, table):
        line = rng.choice(table).split()
        return [NOTES[(self.key + CHORDS[c][0]) % 12] + CHORDS[c][1] for c in 2 * line]

    def sections(self):
        """Groove and chords of each section."""
        s = self.style
        main = [(s.main(), self.a), (s.section("1", "2", "Sus", "Plus") or s.main(), self.b), (s.main(), self.a)]
        if self.kind == "long":
            bars = sum(len(row) for _, row in main)
            main *= math.ceil(LONG_SECONDS / (bars * s.beats * 60 / self.bpm))
        tonic = NOTES[self.key] + ("m" if self.minor else "")
        return [(groove, row) for groove, row in
                [(s.section("Intro"), self.a[:4]), *main, (s.section("End", "Ending"), 2 * [tonic])] if groove]

    def script(self):
        """The piece in the language of mma, and the start of each bar in seconds."""
        lines, starts, at, number = [f"RndSeed {self.seed}", f"Tempo {self.bpm}"], [], 0.0, 0
        sections = self.sections()
        for i, (groove, row) in enumerate(sections):
            lines.append(f"Groove {groove}")
            ending = groove == self.style.section("End", "Ending") and i == len(sections) - 1
            for chord, following in zip(row, row[1:] + row[:1]):
                number += 1
                bpm = self.bpm
                if self.kind == "drift":
                    bpm = round(self.bpm * (1 + 0.03 * math.sin(number / 5)))
                    lines.append(f"Tempo {bpm}")
                if self.kind == "half" and not ending:
                    chord = f"{chord} / {following}" + (" /" if self.style.beats == 4 else "")
                lines.append(f"{number} {chord}")
                starts.append(at)
                at += self.style.beats * 60 / bpm
        return "\n".join(lines) + "\n", starts

    def name(self):
        return f"{self.style.main()}-{'' if self.kind == 'plain' else self.kind}{self.seed}.flac"

    def render(self, folder):
        """Writes the file and returns its truth; None where mma can't play the style."""
        text, starts = self.script()
        cut = (self.style.beats - 1) * 60 / self.bpm if self.kind == "pickup" else 0
        base = folder / self.name()
        script, midi, wav = (base.with_suffix(end) for end in (".mma", ".mid", ".wav"))
        script.write_text(text)
        trim = f"atrim=start={cut:.6f},asetpts=PTS-STARTPTS," if cut else ""
        only = ["-T", ",".join(self.style.drums)] if self.kind == "drums" else []
        done = run("mma", *only, script, "-f", midi) \
            and run("fluidsynth", "-ni", "-g", "0.6", "-r", "44100", "-F", wav, FONT, midi) \
            and run("ffmpeg", "-v", "error", "-y", "-i", wav, "-af", f"{trim}adelay={int(1000 * self.silence)}:all=1",
                    "-sample_fmt", "s16", base)
        for file in (script, midi, wav):
            file.unlink(missing_ok=True)
        bars = [round(self.silence + t - cut, 4) for t in starts if t - cut >= -1e-6]
        return dict(bpm=self.bpm, beatsPerBar=self.style.beats, bars=bars, groove=self.style.file, kind=self.kind,
                    key=NOTES[self.key] + (" minor" if self.minor else " major")) if done else None


def run(*command):
    return subprocess.run([str(c) for c in command], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                          stderr=subprocess.DEVNULL).returncode == 0


def pieces(half, seed, kinds, count):
    styles = [s for s in (Style(p) for p in sorted(STYLES.glob("*.mma"))) if s.usable() and s.half == half]
    if count is None:
        return [Piece(style, seed, kind) for kind in kinds for style in styles]
    random.Random(seed).shuffle(styles)
    threes = itertools.cycle([s for s in styles if s.beats == 3])
    fours = itertools.cycle([s for s in styles if s.beats == 4])
    return [Piece(next(threes if i % 4 == 3 else fours), seed, kind) for kind in kinds for i in range(count)]


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    for name in sys.argv[2:] or [s for s in SETS if not s.startswith("long")]:
        folder = Path(sys.argv[1]) / name
        folder.mkdir(parents=True, exist_ok=True)
        truth = {}
        for piece in pieces(*SETS[name]):
            found = piece.render(folder)
            if found:
                truth[piece.name()] = found
            print(name, piece.name(), "done" if found else "mma fails", file=sys.stderr)
        (folder / "truth.json").write_text(json.dumps(truth, indent=1))


if __name__ == "__main__":
    main()
