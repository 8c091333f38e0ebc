#!/usr/bin/env python3
"""Checks that folders include each other only downward, as the house is planned, and in no circle."""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
# A folder may include from itself and from the folders named here.
ALLOWED = {
    "core": [],
    "dsp": ["core"],
    "audio": ["core", "dsp"],
    "spatial": ["audio"],
    "analysis": ["core", "dsp", "audio"],
    "upmix": ["core", "audio", "spatial"],
    "settings": ["audio", "upmix"],
    "platform": ["core", "audio"],
    "edits": ["core", "dsp", "audio", "analysis"],
    "library": ["audio", "settings", "platform"],
    "mix": ["core", "dsp", "audio", "spatial", "upmix", "settings", "platform"],
    "app": ["core", "dsp", "audio", "spatial", "analysis", "upmix", "settings", "platform", "edits", "library", "mix"],
    "ui": ["core", "dsp", "audio", "spatial", "analysis", "upmix", "settings", "platform", "edits", "library", "mix", "app"],
    "tools": ["core", "dsp", "audio", "spatial", "analysis", "upmix", "settings", "platform", "edits", "library", "mix", "app", "ui"],
}
ALLOWED["app/main"] = ALLOWED["app"] + ["app", "ui"]
# Folders that stay free of Qt.
PURE = ["core", "dsp", "audio", "spatial", "upmix", "analysis", "edits"]

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^">]+)[">]', re.M)


def folder_of(path: pathlib.Path) -> str:
    parts = path.relative_to(ROOT).parts
    return "app/main" if parts[:2] == ("app", "main") else parts[0]


def main() -> int:
    faults = []
    edges: dict[str, set[str]] = {}
    for top in sorted({name.split("/")[0] for name in ALLOWED}):
        for path in sorted((ROOT / top).rglob("*")):
            if path.suffix not in (".h", ".cpp"):
                continue
            here = folder_of(path)
            for kind, target in INCLUDE.findall(path.read_text(encoding="utf-8")):
                there = target.split("/")[0]
                if kind == "<":
                    if here in PURE and re.match(r"Q[A-Z]", target):
                        faults.append(f"{path.relative_to(ROOT)}: <{target}>: {here}/ knows nothing of Qt")
                    continue
                if "/" not in target or there not in ALLOWED or there == here:
                    continue
                edges.setdefault(here, set()).add(there)
                if there not in ALLOWED[here]:
                    faults.append(f"{path.relative_to(ROOT)}: \"{target}\": {here}/ may not include {there}/")
    for start in edges:
        seen, queue = set(), list(edges[start])
        while queue:
            node = queue.pop()
            if node == start:
                faults.append(f"{start}/ is part of an include circle")
                break
            if node not in seen:
                seen.add(node)
                queue += edges.get(node, ())
    for fault in faults:
        print(fault)
    print(f"include graph: {sum(map(len, edges.values()))} arrows between folders, {len(faults)} faults")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
