#!/usr/bin/env python3
"""Checks the include graph against the plan in the top CMakeLists.txt: folders include only what USES names, rooms
only the rooms before them in ROOMS, and folders without Qt no header of Qt. With the word "dot" it prints the plan for
Graphviz instead."""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^">]+)[">]', re.M)
CALL = re.compile(r"^brindlehum_(?:library|program)\(([^)]*)\)", re.M)
KEYWORDS = ("USES", "ROOMS", "PUBLIC", "PRIVATE", "OUTPUT")


def plan() -> dict[str, dict[str, list[str]]]:
    """Of each folder, the words behind each keyword of its call."""
    folders = {}
    for call in CALL.findall((ROOT / "CMakeLists.txt").read_text(encoding="utf-8")):
        words = call.split()
        lists: dict[str, list[str]] = {keyword: [] for keyword in KEYWORDS}
        keyword = ""
        for word in words[1:]:
            if word in KEYWORDS:
                keyword = word
            else:
                lists[keyword].append(word)
        folders[words[0]] = lists
    return folders


def room_of(path: pathlib.Path, folder: str, rooms: list[str]) -> str | None:
    """audio/src/decode/x.cpp and audio/include/audio/decode/x.h stand in decode."""
    inner = path.relative_to(ROOT / folder).parts
    inner = inner[2:] if inner[0] == "include" else inner[1:]
    return inner[0] if len(inner) > 1 and inner[0] in rooms else None


def picture(folders: dict[str, dict[str, list[str]]]) -> str:
    """The folders and their arrows for Graphviz; an arrow that others imply is left out."""
    below: dict[str, set[str]] = {}
    lines = ["digraph house {", '  rankdir=TB; bgcolor="white"; nodesep=0.35; ranksep=0.42;',
             '  node [shape=box, style="rounded,filled", fillcolor="#eef2f7", color="#5b6b80", fontname="DejaVu Sans", fontsize=11];',
             '  edge [color="#8a97a8", arrowsize=0.6];']
    for folder, lists in folders.items():
        uses = set(lists["USES"])
        implied = set().union(*(below[use] for use in uses))
        below[folder] = uses | implied
        rooms = "".join("\\n" + " · ".join(lists["ROOMS"][at : at + 4]) for at in range(0, len(lists["ROOMS"]), 4))
        real_time = ', fillcolor="#fde9d9", color="#b8722c"' if folder == "core" else ""
        lines.append(f'  "{folder}" [label="{folder}{rooms}"{real_time}];')
        lines += [f'  "{folder}" -> "{use}";' for use in sorted(uses - implied)]
    return "\n".join(lines + ["}"])


def main() -> int:
    folders = plan()
    if sys.argv[1:] == ["dot"]:
        print(picture(folders))
        return 0
    faults = []
    arrows: set[tuple[str, str]] = set()
    unused = {(folder, use) for folder in folders for use in folders[folder]["USES"]}
    for folder, lists in folders.items():
        rooms = lists["ROOMS"]
        pure = not any(word.startswith("Qt6::") for word in lists["PUBLIC"] + lists["PRIVATE"]) and not lists["OUTPUT"]
        for path in sorted((ROOT / folder).rglob("*")):
            if path.suffix not in (".h", ".cpp") or (folder == "app" and "main" in path.relative_to(ROOT).parts):
                continue
            name = path.relative_to(ROOT)
            here = room_of(path, folder, rooms)
            if rooms and here is None:
                faults.append(f"{name}: stands in no room of {folder}/")
                continue
            for kind, target in INCLUDE.findall(path.read_text(encoding="utf-8")):
                if kind == "<":
                    if pure and re.match(r"Q[A-Z]", target):
                        faults.append(f"{name}: <{target}>: {folder}/ knows nothing of Qt")
                    continue
                parts = target.split("/")
                if parts[0] in folders and parts[0] != folder:
                    arrows.add((folder, parts[0]))
                    unused.discard((folder, parts[0]))
                    if parts[0] not in lists["USES"]:
                        faults.append(f'{name}: "{target}": {folder}/ may not include {parts[0]}/')
                    continue
                there = parts[1] if parts[0] == folder and len(parts) > 2 else parts[0]
                if here is not None and there in rooms and there != here:
                    arrows.add((f"{folder}/{here}", f"{folder}/{there}"))
                    if rooms.index(there) > rooms.index(here):
                        faults.append(f'{name}: "{target}": {folder}/{here} may not include {folder}/{there}')
    faults += [f"CMakeLists.txt: {folder}/ names {use}/ and includes nothing of it" for folder, use in sorted(unused)]
    below: list[str] = []
    for folder, lists in folders.items():
        faults += [f"CMakeLists.txt: {folder}/ uses {use}/, which stands above it" for use in lists["USES"] if use not in below]
        below.append(folder)
    for fault in faults:
        print(fault)
    print(f"include graph: {len(arrows)} arrows between folders and rooms, {len(faults)} faults")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
