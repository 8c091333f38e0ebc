#!/usr/bin/env python3
"""The analysis on real music that carries its own truth, beside aubio and libebur128.

Tempo: Hydrogen's demo songs state theirs. The rhythmic loops of sonic-pi-samples hold whole bars of four, so their
beats are a power of two: the one that puts the tempo between 75 and 150 BPM. Tempo x length / 60 has to come out as
that, or as its half, third, double or triple. Loops are repeated to half a minute. aubio loses beats in digital
silence, so both trackers get the same file with noise of -50 dB RMS under it.

Loudness: against libebur128, on the songs and loops as they are.

    bench/analysis/real_music.py [build/bench/bin/bench_figures]

Exit status 1 when a limit below is missed.
"""

import json
import math
import re
import subprocess
import sys
import tempfile
from pathlib import Path

SONGS = Path("/usr/share/hydrogen/data/demo_songs")
LOOPS = Path("/usr/share/sonic-pi/samples")
NO_RHYTHM = {"loop_drone_g_97", "loop_3d_printer"}  # a held note, and a machine at work
FACTORS = (1 / 3, 1 / 2, 1, 2, 3)
TOLERANCE = 0.04
SHARE_RIGHT = 0.59  # measured: 13 of 22
SHARE_RIGHT_BUT_FOR_A_FACTOR = 0.72  # measured: 16 of 22
LOUDNESS_LIMITS = {"integrated": 0.05, "momentary": 0.1, "short-term": 0.1}  # LU


class Piece:
    """A piece as it is (`source`), what the trackers hear (`heard`), its true tempo, and a loop's length in seconds."""

    def __init__(self, name, source, heard, bpm, loop=None):
        self.name, self.source, self.heard, self.bpm, self.loop = name, source, heard, bpm, loop

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
        bpm = float(re.search(r"<bpm>([^<]+)</bpm>", song.read_text(errors="replace")).group(1))
        yield Piece(song.stem, source, heard, bpm)


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


def compare_tempo(pieces, program):
    print(f"{'file':22}{'true':>8}{'ours':>8}  {'':8}{'aubio':>8}  {'':8}  ours, as beats a loop; related tempi")
    ours, theirs, named = [], [], 0
    for piece, found in zip(pieces, figures(program, [p.heard for p in pieces])):
        tempo = found.get("tempo") or {"bpm": 0.0, "twin": None, "alternatives": []}
        other = aubio(piece.heard)
        ours.append(verdict(piece, tempo["bpm"]))
        theirs.append(verdict(piece, other))
        related = [tempo["bpm"], *([tempo["twin"]] if tempo["twin"] else []), *tempo["alternatives"]]
        names_it = any(piece.is_right(bpm) for bpm in related)
        named += names_it
        beats = f"{tempo['bpm'] * piece.loop / 60:6.2f} of {piece.bpm * piece.loop / 60:.0f}" if piece.loop else ""
        print(f"{piece.name:22}{piece.bpm:8.2f}{tempo['bpm']:8.2f}  {ours[-1]:8}{other:8.2f}  {theirs[-1]:8}  {beats:14}"
              f"{'' if names_it else 'not among them'}")
    count = len(pieces)
    right = {who: verdicts.count("right") for who, verdicts in (("ours", ours), ("aubio", theirs))}
    family = {who: count - verdicts.count("-") for who, verdicts in (("ours", ours), ("aubio", theirs))}
    print(f"right within 4 %:                  {right['ours']} of {count}, aubio {right['aubio']}")
    print(f"right up to a factor of 2 or 3:    {family['ours']} of {count}, aubio {family['aubio']}")
    print(f"true tempo among ours, the twin and the related tempi: {named} of {count}")
    return right["ours"] >= SHARE_RIGHT * count and family["ours"] >= SHARE_RIGHT_BUT_FOR_A_FACTOR * count


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
    program = Path(sys.argv[1]) if len(sys.argv) > 1 else root / "build/bench/bin/bench_figures"
    with tempfile.TemporaryDirectory(prefix="brindlehum-bench-") as name:
        folder = Path(name)
        pieces = [*songs(folder), *loops(folder)]
        if not pieces:
            sys.exit("no music: run ci/install-packages.sh measure first")
        good_tempo = compare_tempo(pieces, program)
        print("\nLUFS integrated, momentary, short-term, and dBTP, each with its difference to libebur128's")
        good_loudness = compare_loudness(pieces, program)
    if not good_tempo:
        print("FAILED: fewer tempi are right than before")
    if not good_loudness:
        print("FAILED: loudness differs from libebur128's")
    sys.exit(0 if good_tempo and good_loudness else 1)


if __name__ == "__main__":
    main()
