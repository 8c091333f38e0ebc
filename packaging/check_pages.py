#!/usr/bin/env python3
"""Fails unless the installed manual pages and completions have exactly what the programs' help has: check_pages.py PREFIX"""
import pathlib
import re
import subprocess
import sys

prefix = pathlib.Path(sys.argv[1])
share = prefix / "share"
problems = []


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def squeezed(text):
    return " ".join(text.split())


def page(name):
    return output("mandoc", "-T", "utf8", "-O", "width=1000", share / "man/man1" / name).replace("\u2019", "'")


def plain(text):
    return re.sub(".\b", "", text)


def check_page(name, help_text):
    text = squeezed(plain(page(name)).replace("\u2010", "-").replace("\u2212", "-"))
    for line in help_text.splitlines():
        for piece in re.split(r" {2,}|(?<=[\w.\]]): ", line.strip()):
            piece = squeezed(piece.removeprefix("brindlehum-cli ").rstrip(":"))
            if piece.lower() not in text.lower():
                problems.append(f"{name} lacks: {piece}")


cli = prefix / "bin/brindlehum-cli"
help_text = output(cli, "help")
check_page("brindlehum-cli.1", help_text)
check_page("brindlehum.1", "\n".join(line for line in output(prefix / "bin/brindlehum", "--help").splitlines()
                                     if line.startswith("  ")))

commands = re.findall(r"^brindlehum-cli ([a-z]+)", help_text, re.M)
listed = plain(page("brindlehum-cli.1")).split("COMMANDS")[1].split("WORDS OF")[0]
of_page = re.findall(r"^ {4,8}([a-z]+)\b", listed, re.M)
if of_page != commands:
    problems.append(f"commands of the page: {of_page}, of the help: {commands}")

completion = share / "bash-completion/completions/brindlehum-cli"
for before, wanted in [([], [*commands, "help"]), (["analyze"], ["bpm", "meter", "downbeat"]),
                       (["picture", "a.wav", "theme"], ["light", "dark"])]:
    words = " ".join(["brindlehum-cli", *before, "''"])
    offered = output("bash", "-c", f"compopt() {{ :; }}; cd {share}/applications; . {completion}; COMP_WORDS=({words}); "
                     f"COMP_CWORD={len(before) + 1}; _brindlehum_cli; printf '%s\\n' \"${{COMPREPLY[@]}}\"").split("\n")
    offered = [word for word in offered if word and ".desktop" not in word]
    if offered != wanted:
        problems.append(f"completed after {before}: {offered}")

print("\n".join(problems), end="\n" if problems else "")
sys.exit(1 if problems else 0)
