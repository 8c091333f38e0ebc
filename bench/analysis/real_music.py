#!/usr/bin/env python3
"""The analysis on real music that carries its own truth, beside aubio and libebur128.

Tempo: Hydrogen's demo songs and LMMS's demo projects state theirs, and the songs are bars of four from the start. The rhythmic loops of sonic-pi-samples hold whole bars of four, so their
beats are a power of two: the one that puts the tempo between 75 and 150 BPM. Tempo x length / 60 has to come out as
that, or as its half, third, double or triple. Loops are repeated to half a minute. aubio loses beats in digital
silence, so both trackers get the same file with noise of -50 dB RMS under it.

The tempo is that of the grid, which weighs the bars with it; in brackets the first guess of the tempo alone.

Loudness: against libebur128, on the songs and loops as they are.

    bench/analysis/real_music.py [--program build/bench/bin/bench_figures] [--projects FOLDER]

LMMS needs some twenty minutes to render: its projects are measured when a folder is given that keeps what is rendered.
Exit status 1 when a limit below is missed.
"""

import argparse
import json
import math
import os
import re
import subprocess
import sys
import tempfile
import zlib
from pathlib import Path

SONGS = Path("/usr/share/hydrogen/data/demo_songs")
LOOPS = Path("/usr/share/sonic-pi/samples")
PROJECTS = Path("/usr/share/lmms/projects")
NO_RHYTHM = {"loop_drone_g_97", "loop_3d_printer"}  # a held note, and a machine at work
FACTORS = (1 / 3, 1 / 2, 1, 2, 3)
TOLERANCE = 0.04
SHARE_RIGHT = 0.81  # measured: 19 of 22
SHARE_RIGHT_BUT_FOR_A_FACTOR = 0.95  # measured: 21 of 22
LOUDNESS_LIMITS = {"integrated": 0.05, "momentary": 0.1, "short-term": 0.1}  # LU


class Piece:
    """A piece as it is (`source`), what the trackers hear (`heard`), its true tempo, a loop's length in seconds, and how
    many bars of four it has, where they start with the file."""

    def __init__(self, name, source, heard, bpm, loop=None, bars=None):
        self.name, self.source, self.heard, self.bpm, self.loop, self.bars = name, source, heard, bpm, loop, bars

    def has_bars(self, found):
        """Whether nine of ten bar lines are found, and nine of ten found ones are true, within 70 ms."""
        bar = 240 / self.bpm
        lines = [t for t in found["downbeats"] if t < (self.bars - 0.5) * bar]
        hits = sum(abs(t - bar * round(t / bar)) < 0.07 for t in lines)
        return found["beats_per_bar"] == 4 and hits >= 0.9 * max(len(lines), self.bars)

    def is_right(self, bpm, factors=(1,)):
        return any(abs(bpm / (self.bpm * factor) - 1) <= TOLERANCE for factor in factors)


def run(*command):
    return subprocess.run([str(c) for c in command], check=True, capture_output=True, text=True).stdout


def seconds(path):
    return float(run("soxi", "-D", path))


def render_song(song, out, home):
    """h2cli may not exit once it has rendered, and without a home of its own it may not even begin."""
    for attempt in range(3):
        fresh = home / f"{song.stem}-{attempt}"
        fresh.mkdir()
        command = ["h2cli", "-d", "alsa", "-r", "44100", "-s", str(song), "-o", str(out)]
        try:
            subprocess.run(command, env={"HOME": str(fresh), "PATH": "/usr/bin:/bin"}, timeout=60,
                           stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        except subprocess.TimeoutExpired:
            pass
        if out.exists() and seconds(out) > 10:
            return
    raise RuntimeError(f"h2cli renders nothing of {song.name}")


def add_noise(source, out):
    noise = out.with_suffix(".noise.wav")
    # White noise of sox is even over -1 to 1, 4.77 dB below full scale.
    run("sox", "-R", "-n", "-r", run("soxi", "-r", source).strip(), "-c", run("soxi", "-c", source).strip(), noise,
        "synth", seconds(source), "whitenoise", "vol", "-45.23dB")
    run("sox", "-R", "-m", "-v", "0.89", source, "-v", "1", noise, "-b", "16", out)
    noise.unlink()


def songs(folder):
    for song in sorted(SONGS.glob("*.h2song")):
        source, heard = folder / f"{song.stem}.wav", folder / f"{song.stem}.heard.wav"
        render_song(song, source, folder)
        add_noise(source, heard)
        text = song.read_text(errors="replace")
        bpm = float(re.search(r"<bpm>([^<]+)</bpm>", text).group(1))
        bars = re.search(r"<patternSequence>.*</patternSequence>", text, re.S).group(0).count("<group>")
        yield Piece(song.stem, source, heard, bpm, bars=bars)


def projects(kept):
    """LMMS runs as root only when told so."""
    kept.mkdir(parents=True, exist_ok=True)
    allowed = ["--allowroot"] if os.geteuid() == 0 else []
    for project in sorted(p for kind in ("demos", "shorties") for p in (PROJECTS / kind).rglob("*.mmp*")):
        source, heard = kept / f"{project.stem}.wav", kept / f"{project.stem}.heard.wav"
        if not source.exists():
            subprocess.run(["lmms", *allowed, "render", str(project), "-f", "wav", "-o", str(source)], check=True,
                           env={**os.environ, "QT_QPA_PLATFORM": "offscreen"}, stdin=subprocess.DEVNULL,
                           stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        if not heard.exists():
            add_noise(source, heard)
        data = project.read_bytes()
        text = (zlib.decompress(data[4:]) if project.suffix == ".mmpz" else data).decode(errors="replace")
        yield Piece(project.stem[:22], source, heard, float(re.search(r'<head[^>]* bpm="([^"]+)"', text).group(1)))


def loops(folder):
    for loop in sorted(LOOPS.glob("loop_*.flac")):
        if loop.stem in NO_RHYTHM:
            continue
        source, heard = folder / f"{loop.stem}.wav", folder / f"{loop.stem}.heard.wav"
        length = seconds(loop)
        run("sox", "-R", loop, "-b", "16", source, "repeat", math.ceil(30 / length) - 1)
        add_noise(source, heard)
        beats = 2 ** math.floor(math.log2(150 * length / 60))
        yield Piece(loop.stem, source, heard, 60 * beats / length, length)


def figures(program, files):
    lines = run(program, *files).splitlines()
    return [json.loads(line) for line in lines]


def aubio(path):
    words = run("aubio", "tempo", path).split()
    return float(words[0]) if words and words[0][0].isdigit() else 0.0


def verdict(piece, bpm):
    return "right" if piece.is_right(bpm) else "factor" if piece.is_right(bpm, FACTORS) else "-"


def compare_tempo(title, pieces, program):
    """The counts of tempi that are right, and of those that are right but for a factor."""
    print(f"{title:22}{'true':>8}{'ours':>8}  {'':8}{'guess':>8}  {'':8}{'aubio':>8}  {'':8}  ours, as beats a loop")
    verdicts = {"ours": [], "the first guess": [], "aubio": []}
    named, with_bars = 0, 0
    for piece, found in zip(pieces, figures(program, [p.heard for p in pieces])):
        tempo = found.get("tempo") or {"bpm": 0.0, "grid_bpm": 0.0, "twin": None, "alternatives": [], "downbeats": [],
                                       "beats_per_bar": 0}
        tempi = [tempo["grid_bpm"], tempo["bpm"], aubio(piece.heard)]
        for list_, bpm in zip(verdicts.values(), tempi):
            list_.append(verdict(piece, bpm))
        related = [*tempi[:2], *([tempo["twin"]] if tempo["twin"] else []), *tempo["alternatives"]]
        names_it = any(piece.is_right(bpm) for bpm in related)
        named += names_it
        notes = [f"{tempi[0] * piece.loop / 60:6.2f} of {piece.bpm * piece.loop / 60:.0f}"] if piece.loop else []
        notes += [] if names_it else ["not among the related"]
        if piece.bars:
            with_bars += piece.has_bars(tempo)
            notes.append("bars right" if piece.has_bars(tempo) else "bars wrong")
        print(f"{piece.name:22}{piece.bpm:8.2f}" + "".join(f"{bpm:8.2f}  {list_[-1]:8}" for list_, bpm in
                                                          zip(verdicts.values(), tempi)) + "  " + ", ".join(notes))
    count = len(pieces)
    print("right within 4 %: " + ", ".join(f"{who} {v.count('right')}" for who, v in verdicts.items()) + f" of {count}")
    print("right up to a factor of 2 or 3: " +
          ", ".join(f"{who} {count - v.count('-')}" for who, v in verdicts.items()) + f" of {count}")
    print(f"true tempo among ours, the twin and the related tempi: {named} of {count}")
    if any(p.bars for p in pieces):
        print(f"bars right: {with_bars} of {sum(bool(p.bars) for p in pieces)}")
    return verdicts["ours"].count("right"), count - verdicts["ours"].count("-")


def compare_loudness(pieces, program):
    worst = dict.fromkeys([*LOUDNESS_LIMITS, "true peak"], 0.0)
    for piece, found in zip(pieces, figures(program, [p.source for p in pieces])):
        differences = [a - b for a, b in zip(found["loudness"], found["ebur128"])]
        print(f"{piece.name:22}" + "".join(f"{a:9.2f}{d:+8.3f}" for a, d in zip(found["loudness"], differences)))
        for key, difference in zip(worst, differences):
            worst[key] = max(worst[key], abs(difference))
    print("largest difference: " + ", ".join(f"{key} {value:.4f}" for key, value in worst.items()))
    return all(worst[key] <= limit for key, limit in LOUDNESS_LIMITS.items())


def main():
    root = Path(__file__).resolve().parents[2]
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--program", type=Path, default=root / "build/bench/bin/bench_figures")
    parser.add_argument("--projects", type=Path)
    options = parser.parse_args()
    with tempfile.TemporaryDirectory(prefix="brindlehum-bench-") as name:
        folder = Path(name)
        pieces = [*songs(folder), *loops(folder)]
        if not pieces:
            sys.exit("no music: run ci/install-packages.sh measure first")
        right, family = compare_tempo("song or loop", pieces, options.program)
        good_tempo = right >= SHARE_RIGHT * len(pieces) and family >= SHARE_RIGHT_BUT_FOR_A_FACTOR * len(pieces)
        if options.projects:
            compare_tempo("\nproject", list(projects(options.projects)), options.program)
        print("\nLUFS integrated, momentary, short-term, and dBTP, each with its difference to libebur128's")
        good_loudness = compare_loudness(pieces, options.program)
    if not good_tempo:
        print("FAILED: fewer tempi are right than before")
    if not good_loudness:
        print("FAILED: loudness differs from libebur128's")
    sys.exit(0 if good_tempo and good_loudness else 1)


if __name__ == "__main__":
    main()
