#!/usr/bin/env python3
"""Runs clang-tidy with the checks of .clang-tidy over the product's sources: tidy.py [FILE...], all by default.
Needs the release build's compile commands."""
import concurrent.futures
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent


def commands(folder: str) -> list[dict]:
    """The compile commands of the product for clang: its own warnings are left to g++, and a precompiled header is made
    anew in `folder`, since clang can't read that of g++."""
    header = pathlib.Path(folder) / "widgets.pch"
    known = json.loads((ROOT / "build/release/compile_commands.json").read_text(encoding="utf-8"))
    kept = []
    for entry in known:
        path = pathlib.Path(entry["file"]).relative_to(ROOT)
        if path.parts[0] in ("tests", "bench", "build", "cmake"):
            continue
        command = re.sub(r"-Winvalid-pch|-fpch-preprocess|-W\S+", "", entry["command"]) + " -w"
        widgets = "precompiled_widgets.dir/cmake_pch.hxx" in command
        command = re.sub(r"-include \S*cmake_pch\.hxx", "", command)
        if widgets:
            if not header.exists():
                flags = re.sub(r"^.*?c\+\+ | -o \S+| -c \S+| -M\S+( \S+\.o(\.d)?)?", " ", command)
                subprocess.run(f"clang++ {flags} -x c++-header {ROOT}/cmake/precompiled_widgets.h -o {header}", shell=True,
                               cwd=entry["directory"], check=True)
            command += f" -include-pch {header}"
        kept.append(entry | {"command": command})
    return kept


def main() -> int:
    with tempfile.TemporaryDirectory() as folder:
        entries = commands(folder)
        files = [os.path.relpath(entry["file"], ROOT) for entry in entries]
        if len(sys.argv) > 1:
            files = [name for name in files if name in sys.argv[1:]]
        (pathlib.Path(folder) / "compile_commands.json").write_text(json.dumps(entries), encoding="utf-8")

        def check(name: str) -> tuple[int, str]:
            done = subprocess.run(["clang-tidy", "-p", folder, "--quiet", name], cwd=ROOT, capture_output=True, text=True)
            return done.returncode, done.stdout + (done.stderr if done.returncode and not done.stdout else "")

        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            results = list(pool.map(check, files))
    faulty = [text for code, text in results if code]
    print("\n".join(faulty), end="")
    print(f"clang-tidy: {len(files)} files, {len(faulty)} with faults")
    return 1 if faulty else 0


if __name__ == "__main__":
    sys.exit(main())
