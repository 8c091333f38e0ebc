#!/usr/bin/env python3
"""Fits and scores the weights of analysis/src/bars/weights.h.

    bar_evidence FOLDER/*.flac > FOLDER/evidence.jsonl          (for each folder)
    fit_bars.py FOLDER... [--score FOLDER...] [--only NAME,...] [--without NAME,...]

A folder holds truth.json (per file: bpm, beatsPerBar, bars as times of their starts, groove as the name of the style) and
evidence.jsonl. A hypothesis is right when its tempo is within 4 %, its meter is the true one and the F-measure of its bar
lines within 70 ms is at least 0.9. The weights maximise the softmax likelihood of the right hypotheses, less 1.5 times
their squares (evidence in units of its deviation), which keeps the confidence honest on styles that the fit hasn't seen.
Folders before --score are scored by styles in six parts, each by weights that were fitted on the other five; folders after
it by the weights fitted on all before it. For both it is told how often each confidence is right, and the divisor of the
sums that would make it truest (1: the confidence is true; more: it is too high). Needs numpy and scipy.
"""
import json, os, sys

import numpy as np
from scipy.optimize import minimize

RIDGE = 3


def f_measure(found, true, within=0.07):
    hits = i = j = 0
    while i < len(found) and j < len(true):
        if abs(found[i] - true[j]) <= within:
            hits, i, j = hits + 1, i + 1, j + 1
        elif found[i] < true[j]:
            i += 1
        else:
            j += 1
    return 2 * hits / max(1, len(found) + len(true))


def bars_score(grid, truth):
    end = truth['bars'][-1] + truth['beatsPerBar'] * 60 / truth['bpm']
    return f_measure([d for d in grid['downbeats'] if d < end - 0.07], truth['bars'])


def is_right(h, truth):
    return abs(h['bpm'] / truth['bpm'] - 1) < 0.04 and h['beatsPerBar'] == truth['beatsPerBar'] \
        and bars_score(h, truth) >= 0.9


class Piece:
    def __init__(self, found, truth, names):
        self.name, self.truth, self.found = found['file'], truth, found
        order = [found['names'].index(n) for n in names]
        self.all = found['hypotheses']
        self.values = np.array([h['evidence'] for h in self.all]).reshape(-1, len(found['names']))[:, order]
        self.right = np.array([is_right(h, truth) for h in self.all], bool)


def load(folder, names):
    truth = json.load(open(os.path.join(folder, 'truth.json')))
    found = [json.loads(line) for line in open(os.path.join(folder, 'evidence.jsonl'))]
    return [Piece(f, truth[f['file']], names) for f in found if 'hypotheses' in f and f['file'] in truth]


def fit(pieces, scale):
    data = [(p.values / scale, p.right) for p in pieces if p.right.any()]

    def loss(w):
        value, slope = 0.5 * RIDGE * w @ w, RIDGE * w
        for x, right in data:
            s = x @ w
            e = np.exp(s - s.max())
            q, er = e / e.sum(), e * right
            value -= np.log(max(er.sum(), 1e-300) / e.sum())
            slope -= x.T @ (er / max(er.sum(), 1e-300) - q)
        return value, slope

    return minimize(loss, np.zeros(len(scale)), jac=True, method='L-BFGS-B', options=dict(maxiter=500)).x


def score(pieces, w, scale):
    rows = []
    for p in pieces:
        if len(p.all) == 0:
            g = p.found['grid']
            rows.append((p, is_right(g, p.truth), 0.0, g))
            continue
        s = p.values / scale @ w
        e = np.exp(s - s.max())
        k = int(np.argmax(s))
        p.sums = s - s.max()
        rows.append((p, bool(p.right[k]), 1 / e.sum(), p.all[k]))
    return rows


def report(title, rows):
    print(f'{title}: {sum(r for _, r, _, _ in rows)} of {len(rows)} right, at best {sum(p.right.any() for p, *_ in rows)}; '
          f'wrong at 0.5 or more {sum(not r and c >= 0.5 for _, r, c, _ in rows)}; '
          f'tempo {sum(abs(h["bpm"] / p.truth["bpm"] - 1) < 0.04 for p, _, _, h in rows)}, '
          f'meter {sum(h["beatsPerBar"] == p.truth["beatsPerBar"] for p, _, _, h in rows)}')
    for p, right, sure, h in rows:
        if not right:
            t = p.truth
            print(f'   {p.name:28s} {t["bpm"]} {t["beatsPerBar"]}/4 found {h["bpm"]:.1f} {h["beatsPerBar"]}/4 '
                  f'sure {sure:.2f}' + ('' if p.right.any() else ', no right hypothesis'))


def reliability(rows):
    for lo, hi in ((0, 0.4), (0.4, 0.6), (0.6, 0.8), (0.8, 0.9), (0.9, 1.01)):
        some = [(r, c) for _, r, c, _ in rows if lo <= c < hi]
        if some:
            print(f'  confidence {lo} to {min(hi, 1)}: {sum(r for r, _ in some)} of {len(some)} right, '
                  f'mean confidence {np.mean([c for _, c in some]):.2f}')
    judged = [(p.sums, right) for p, right, _, _ in rows if len(p.all)]

    def loss(divisor):  # of the confidences, in nats a piece
        sure = [min(1 / np.exp(sums / divisor).sum(), 1 - 1e-9) for sums, _ in judged]
        return -np.mean([np.log(c if right else 1 - c) for c, (_, right) in zip(sure, judged)])

    best = min(np.arange(0.5, 2.01, 0.05), key=loss)
    print(f'  sums as they are: {loss(1):.3f} nats a piece, at best divided by {best:.2f}: {loss(best):.3f}')


def main():
    args = sys.argv[1:]
    options = {}
    for key in ('--only', '--without'):
        if key in args:
            at = args.index(key)
            options[key] = args[at + 1].split(',')
            del args[at:at + 2]
    at = args.index('--score') if '--score' in args else len(args)
    folders, others = args[:at], args[at + 1:]
    if not folders:
        sys.exit(__doc__)
    names = json.loads(open(os.path.join(folders[0], 'evidence.jsonl')).readline())['names']
    names = [n for n in options.get('--only', names) if n not in options.get('--without', [])]
    sets = {f: load(f, names) for f in folders}
    pieces = sum(sets.values(), [])
    scale = np.vstack([p.values for p in pieces if len(p.all)]).std(0) + 1e-9
    for f in folders + others:
        some = sets.get(f) or load(f, names)
        for which in ('guess', 'grid'):
            print(f, which, sum(is_right(p.found[which], p.truth) for p in some), 'of', len(some), 'right as shipped')

    styles = sorted({p.truth['groove'] for p in pieces})
    part = {s: i % 6 for i, s in enumerate(styles)}
    rows = []
    for k in range(6):
        w = fit([p for p in pieces if part[p.truth['groove']] != k], scale)
        rows += score([p for p in pieces if part[p.truth['groove']] == k], w, scale)
    for f in folders:
        report(f + ', by other styles', [r for r in rows if r[0] in sets[f]])
    reliability(rows)
    w = fit(pieces, scale)
    rows = []
    for f in others:
        some = score(load(f, names), w, scale)
        report(f, some)
        rows += some
    reliability(rows)
    for name, weight, s in zip(names, w, scale):
        print(f'    {{"{name}", {weight / s:.4g}}},  // {weight:+.2f} in deviations of {s:.3g}')


if __name__ == '__main__':
    main()
