#!/usr/bin/python3
"""Temp edits of real music, measured in the written files by other means than those that wrote them.

The music: Hydrogen's demo songs, rendered by h2cli, and what the packages extremetuxracer-data, frozen-bubble-data and
lincity-ng-data bring, as far as they are installed. Every file is read with sox and numpy, and held against its source:

- length: to the frame where the plan has a cut, else the sum of its spans and no longer than asked;
- place: after each splice the edit has to follow its source from the bar line on, before it up to the crossfade, found
  by cross-correlation 30 ms to either side (shift 0);
- click: energy of the second difference in windows of 2 ms around the splice, against twice that of its two sides in
  the source; a splice is bad above +0.5 dB;
- wrap: the same within 10 ms of the joins of three rounds of the loop, against the source at the two ends of the loop.
  A loop with something before it in the source is bad above 6 dB. One from the start of the file can't be joined to
  anything, and is only told.

    bench/edits/real_edits.py [build/release/bin/brindlehum-cli] [FILE...]

Exit status 1 when a limit is missed.
"""

import json
import os
import subprocess
import sys
import tempfile
from pathlib import Path

import numpy as np

SONGS = Path("/usr/share/hydrogen/data/demo_songs")
MUSIC = ("/usr/share/games/etr/music/*.ogg", "/usr/share/games/frozen-bubble/snd/*zik*.ogg",
         "/usr/share/games/lincity-ng/music/default/[0-9]*")
CROSSFADE = 0.03
LOUDEST_CLICK_DB, HEARD_WRAP_DB = 0.5, 6.0
STEP = 1 / 8388607  # of 24 bits


def run(*command, **options):
    return subprocess.run([str(c) for c in command], check=True, capture_output=True, **options).stdout


def render_song(song, out):
    """h2cli may not exit once it has rendered, and without a home of its own it may not even begin."""
    with tempfile.TemporaryDirectory() as home:
        try:
            subprocess.run(["h2cli", "-d", "alsa", "-r", "44100", "-s", str(song), "-o", str(out)], timeout=60,
                           env={"HOME": home, "PATH": "/usr/bin:/bin"}, stdin=subprocess.DEVNULL,
                           stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        except subprocess.TimeoutExpired:
            pass
    return out.exists() and out.stat().st_size > 2_000_000


def collect(folder):
    for song in sorted(SONGS.glob("*.h2song")):
        out = folder / f"{song.stem}.wav"
        if any(render_song(song, out) for _ in range(3)):
            yield out
        else:
            out.unlink(missing_ok=True)
            print(f"{song.stem}: h2cli renders nothing of it")
    for pattern in MUSIC:
        for piece in sorted(Path("/").glob(pattern[1:])):
            out = folder / f"{piece.parent.parent.name} {piece.stem}.wav"
            run("ffmpeg", "-v", "error", "-nostdin", "-i", piece, "-c:a", "pcm_s24le", out)
            yield out


def read(path):
    channels = int(run("soxi", "-c", path))
    raw = run("sox", path, "-t", "raw", "-e", "signed", "-b", "32", "-")
    return np.frombuffer(raw, "<i4").reshape(-1, channels)[:, 0] / 2.0**31


def sharpness(x, start, frames):
    return float(np.sum(np.diff(x[max(start - 2, 0):start + frames], 2) ** 2))


def best_shift(edit, at, source, start, reach):
    piece, around = edit[at:at + 4096], source[start - reach:start + reach + 4096]
    product = np.correlate(around, piece, "valid")
    energy = np.convolve(around**2, np.ones(4096), "valid")
    return int(np.argmax(product / np.sqrt(energy + 1e-12))) - reach


class Report:
    def __init__(self):
        self.bad, self.splices, self.files = [], 0, 0
        self.worst_click, self.wraps = -400.0, []
        self.missing = []  # seconds that lengths fall short
        self.lengths = self.paused = self.on_beats = self.padded = 0
        self.worst_match = 1.0

    def fail(self, text):
        self.bad.append(text)
        print(f"    BAD: {text}")


def check_length(plan, edit, rate, report):
    spans = sum(s["pause"] + s["end"] - s["start"] for s in plan["spans"]) + plan["padFrames"]
    cut = plan["cutAtSec"]
    expected = spans if cut is None else int(rate * cut)
    if len(edit) != expected or abs(plan["seconds"] - len(edit) / rate) > 1e-6:
        report.fail(f"{plan['name']}: {len(edit)} frames in place of {expected}")
    if plan["targetSec"] is not None:
        short = plan["targetSec"] - len(edit) / rate
        report.lengths += 1
        if short > 1 / rate:
            report.missing.append(short)
        if short < -1 / rate:
            report.fail(f"{plan['name']}: longer than asked")
        report.paused += any(s["pause"] for s in plan["spans"])
        report.on_beats += any(s["beat"] > 1 for s in plan["spans"])
        report.padded += plan["padFrames"] > 0
        if len(plan["spans"]) > 1:
            report.worst_match = min(report.worst_match, plan["quality"])


def check_splices(plan, edit, source, rate, report):
    fade, window = int(CROSSFADE * rate), int(0.002 * rate)
    untouched = len(edit) - (rate if plan["cutAtSec"] is not None else plan["fadeOutFrames"])
    worst, at = -400.0, 0
    for before, after in zip(plan["spans"], plan["spans"][1:]):
        at += before["end"] - before["start"] + after["pause"]
        if after["pause"]:
            continue
        if at + 4096 > untouched or after["start"] < 2 * fade or before["end"] + fade > len(source):
            continue
        report.splices += 1
        later = best_shift(edit, at, source, after["start"], fade)
        room = at - fade - 4096 >= 0 and before["end"] - 2 * fade - 4096 >= 0
        earlier = best_shift(edit, at - fade - 4096, source, before["end"] - fade - 4096, fade) if room else 0
        off = np.max(np.abs(edit[at:at + 4096] - source[after["start"]:after["start"] + 4096]))
        if later != 0 or earlier != 0 or off > 1.5 * STEP:
            report.fail(f"{plan['name']} at {at / rate:.2f} s: shifted by {earlier} and {later} frames, off by {off:.1e}")
        for shift in range(-fade - window, window, window // 4):
            own = sharpness(source, before["end"] + shift, window) + sharpness(source, after["start"] + shift, window)
            # What the rounding to 24 bits alone may make.
            own += window * 6 * STEP**2
            worst = max(worst, 10 * np.log10(sharpness(edit, at + shift, window) / (2 * own) + 1e-40))
    report.worst_click = max(report.worst_click, worst)
    if worst > LOUDEST_CLICK_DB:
        report.fail(f"{plan['name']}: click of {worst:+.1f} dB")
    return worst


def check_wrap(plan, edit, source, rate, report):
    window = int(0.02 * rate)
    around = lambda x, at: sharpness(x, at - window // 2, window)
    rounds, ends = np.tile(edit, 3), plan["spans"][0]
    own = max(around(source, ends["start"]), around(source, ends["end"]), window * 6 * STEP**2)
    seam = 10 * np.log10(max(around(rounds, n * len(edit)) for n in (1, 2)) / own)
    report.wraps.append(seam)
    if seam > HEARD_WRAP_DB and ends["start"] > 0:
        report.fail(f"{plan['name']}: wrap of {seam:+.1f} dB")
    return seam


def check(made, report):
    source, rate = read(made["url"]), int(run("soxi", "-r", made["url"]))
    print(f"{Path(made['url']).name}: {len(source) / rate:.1f} s")
    for plan in made["plans"]:
        edit = read(plan["file"])
        report.files += 1
        check_length(plan, edit, rate, report)
        told = ""
        if plan["kind"] == "loop":
            told = f"  wrap {check_wrap(plan, edit, source, rate, report):+.1f} dB"
        elif len(plan["spans"]) > 1:
            told = f"  click {check_splices(plan, edit, source, rate, report):+.1f} dB  match {plan['quality']:.0%}"
        print(f"    {plan['name']:16}{plan['kind']:10}{len(edit) / rate:8.2f} s  {plan['map']}{told}")


def main():
    program = sys.argv[1] if len(sys.argv) > 1 else "build/bench/bin/brindlehum-cli"
    report = Report()
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        files = []
        for path in map(Path, sys.argv[2:]):
            files.append(folder / f"{path.stem}.wav")
            run("ffmpeg", "-v", "error", "-nostdin", "-i", path, "-c:a", "pcm_s24le", files[-1])
        files = files or list(collect(folder))
        done = subprocess.run([program, "edits", *map(str, files)], stdout=subprocess.PIPE, text=True,
                              env={**os.environ, "XDG_CONFIG_HOME": str(folder / "config")})
        for line in done.stdout.splitlines():
            check(json.loads(line), report)
    print(f"{report.files} edits of {len(files)} pieces, {report.splices} splices, worst click {report.worst_click:+.1f} dB")
    print(f"{report.lengths} lengths, {len(report.missing)} of them up to {max(report.missing, default=0):.1f} s short;"
          f" {report.padded} end in silence, {report.on_beats} enter on a beat, {report.paused} pause;"
          f" worst match {report.worst_match:.0%}")
    heard = sum(wrap > HEARD_WRAP_DB for wrap in report.wraps)
    print(f"{len(report.wraps)} wraps, {heard} above {HEARD_WRAP_DB:.0f} dB; {len(report.bad)} bad")
    return 1 if report.bad or done.returncode else 0


if __name__ == "__main__":
    sys.exit(main())
