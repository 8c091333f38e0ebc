#!/usr/bin/env python3
"""Writes what is made from the programs' own help, the changelog and the version: manual pages, completions, metainfo.

pages.py BIN VERSION SHARE [SCREENSHOTS]: the programs in the folder BIN are asked for their help; SHARE is the folder share/
of the installation; SCREENSHOTS is the address of docs/images on the web, without which the metainfo has no pictures.
"""
import os
import pathlib
import re
import subprocess
import sys
import textwrap
import time
from xml.sax.saxutils import escape

here = pathlib.Path(__file__).resolve().parent
root = here.parent
pictures = {"main-dark.png": "The library, searched for a word", "editor-song-dark.png": "A piece of music in the editor",
            "monitor-dark.png": "The monitor with a 9.1.6 bus"}


class Section:
    """One part of the help: its heading, the commands it belongs to, and rows of words with their meaning."""

    def __init__(self, heading):
        self.heading = heading
        named, _, besides = heading.partition(", besides those of ")
        self.commands = re.findall(r"[a-z]+", named.split(" of ", 1)[1].split(",")[0].replace(" and ", " "))
        self.includes = "analyze" if besides == "analyze" or "besides those" in heading else ""
        self.rows = []

    def words(self):
        """Each word once, with the values it takes if they are listed as a|b."""
        found = {}
        for left, right in self.rows:
            alike = "as for" in right
            for part in left.split(","):
                tokens = part.split()
                if not tokens or not re.fullmatch(r"[a-z][a-z0-9-]*", tokens[0]):
                    continue
                values = tokens[1].split("|") if len(tokens) > 1 and "|" in tokens[1] else []
                if not alike or tokens[0] not in found:
                    found[tokens[0]] = [value for value in values if value.islower()]
        return found


class Help:
    """What `brindlehum-cli help` prints, taken apart."""

    def __init__(self, text):
        self.commands, self.sections, self.notes = [], [], []
        for line in text.splitlines():
            command = re.match(r"brindlehum-cli ([a-z]+) ?(.*?): (.*)$", line)
            row = re.match(r"  (\S.*?)(?: {2,}(.*))?$", line)
            if command:
                self.commands.append(command.groups())
            elif re.match(r"(Words|Steps) of .*:$", line):
                self.sections.append(Section(line[:-1]))
            elif line.startswith("    ") or (row and row.group(2) is None and not self.sections[-1].rows):
                self.continue_row(line.strip())
            elif row:
                self.add_row(row.group(1), row.group(2))
            elif line:
                self.notes.append(line)

    def add_row(self, left, right):
        rows = self.sections[-1].rows
        # A list of words that is broken at a comma goes on in the next line.
        if rows and rows[-1][0].endswith(",") and not rows[-1][1]:
            left = rows.pop()[0] + " " + left
        rows.append((left, right or ""))

    def continue_row(self, text):
        left, right = self.sections[-1].rows.pop()
        self.sections[-1].rows.append((left, (right + " " + text).strip()))

    def words_of(self, command):
        found = {}
        for section in self.sections:
            if command in section.commands:
                found.update(section.words())
                if section.includes:
                    found.update(self.words_of(section.includes))
        return found


def roff(text):
    return text.replace("\\", r"\e").replace("-", r"\-").replace("'", r"\(aq").replace('"', r"\(dq")


def short_lines(page):
    """A page whose text lines are short, as those who read its source expect."""
    return "".join(line + "\n" if line.startswith(".") or len(line) < 80
                   else textwrap.fill(line, 79, break_on_hyphens=False, break_long_words=False) + "\n"
                   for line in page.splitlines())


def manual_page(help_, version, date):
    out = [f'.TH BRINDLEHUM-CLI 1 "{date}" "Brindlehum {version}" "User Commands"', ".SH NAME",
           r"brindlehum\-cli \- the headless companion of Brindlehum, for scripts", ".SH SYNOPSIS",
           r".B brindlehum\-cli", r".I WORD", ".RI [ ARGUMENTS ...]", ".br", r".B brindlehum\-cli help",
           ".SH DESCRIPTION", "One word is one job.", *[roff(note) for note in help_.notes], ".SH COMMANDS"]
    for word, usage, meaning in help_.commands:
        out += [".TP", f'.B "{roff((word + " " + usage).strip())}"', roff(meaning)]
    for section in help_.sections:
        out.append(f'.SH "{roff(section.heading.upper())}"')
        for left, right in section.rows:
            out += [".TP", f'.B "{roff(left)}"', roff(right)]
    out += [".SH EXIT STATUS", "0 when all was done, 1 when something failed.", ".SH SEE ALSO", ".BR brindlehum (1)"]
    return "\n".join(out) + "\n"


def first_words(usage):
    """The ways of a command that has several: "matrix ... | run ..."."""
    return [way.split()[0] for way in usage.split(" | ")] if " | " in usage else []


def choices(help_):
    """What may follow, in the syntax of case: for a word that lists its values, and for any other word."""
    found = []
    for command, usage, _ in help_.commands:
        words = help_.words_of(command)
        found += [(f"{command},{word}", values) for word, values in words.items() if values]
        listed = dict.fromkeys(first_words(usage) + list(words) + (["catalog"] if "catalog" in usage else []))
        if listed:
            found.append((f"{command},*", list(listed)))
    return found


def bash_completion(help_):
    cases = [f"        {pattern}) words='{' '.join(words)}' ;;" for pattern, words in choices(help_)]
    return "\n".join([
        "# Completion of brindlehum-cli for bash.", "_brindlehum_cli()", "{",
        "    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]} words= IFS=$' \\n'",
        '    if [ "$COMP_CWORD" -eq 1 ]; then',
        f"        COMPREPLY=($(compgen -W '{' '.join(c[0] for c in help_.commands)} help' -- \"$word\"))",
        "        return", "    fi", "    case ${COMP_WORDS[1]},$before in", *cases, "    esac",
        '    COMPREPLY=($(compgen -W "$words" -- "$word"))', "    local IFS=$'\\n'", "    compopt -o filenames",
        '    COMPREPLY+=($(compgen -f -- "$word"))', "}", "complete -F _brindlehum_cli brindlehum-cli", ""])


def zsh_completion(help_):
    quoted = [f"    '{word}:{meaning.replace(chr(39), '’')}'" for word, _, meaning in help_.commands]
    cases = [f"    {pattern}) listed=({' '.join(words)}) ;;" for pattern, words in choices(help_)]
    return "\n".join([
        "#compdef brindlehum-cli", "local -a commands listed", "commands=(", *quoted, "    'help:all words'", ")",
        "if (( CURRENT == 2 )); then", "    _describe command commands", "    return", "fi",
        "case ${words[2]},${words[CURRENT-1]} in", *cases, "esac", "compadd -a listed", "_files", ""])


def options(text):
    """The options of `brindlehum --help`: names and meaning."""
    return [(names.split(", "), meaning) for names, meaning in re.findall(r"^ +(-\S+(?:, --\S+)?) {2,}(.*)$", text, re.M)]


def option_rows(found):
    rows = []
    for names, meaning in found:
        rows += [".TP", f'.B "{roff(", ".join(names))}"', roff(meaning)]
    return "\n".join(rows)


def bash_options(found):
    names = " ".join(name for each, _ in found for name in each if len(name) > 2)
    return "\n".join([
        "# Completion of brindlehum for bash.", "_brindlehum()", "{",
        "    local word=${COMP_WORDS[COMP_CWORD]}", "    case $word in",
        f"        -*) COMPREPLY=($(compgen -W '{names}' -- \"$word\")) ;;", "    esac", "}",
        "complete -o default -F _brindlehum brindlehum", ""])


def zsh_options(found):
    rows = [f"    '{name}[{meaning}]' \\".replace("doesn't", "doesn’t")
            for each, meaning in found for name in each if len(name) > 2]
    return "\n".join(["#compdef brindlehum", "_arguments \\", *rows, "    '*:sound:_files'", ""])


def screenshots(address):
    if not address:
        return ""
    shots = [f'    <screenshot{" type=" + chr(34) + "default" + chr(34) if i == 0 else ""}>\n'
             f"      <caption>{escape(caption)}</caption>\n      <image>{escape(address.rstrip('/') + '/' + name)}</image>\n"
             "    </screenshot>\n" for i, (name, caption) in enumerate(pictures.items())]
    return "  <screenshots>\n" + "".join(shots) + "  </screenshots>\n"


def releases(date):
    """The versions of the changelog; one that isn't released yet has the date of what is built."""
    listed = re.findall(r"^## (\d+\.\d+\.\d+) - (\S+)$", (root / "CHANGELOG.md").read_text(), re.M)
    rows = [f'    <release version="{version}" date="{date if day == "unreleased" else day}"'
            f'{" type=" + chr(34) + "development" + chr(34) if day == "unreleased" else ""}/>\n' for version, day in listed]
    return "  <releases>\n" + "".join(rows) + "  </releases>\n"


def main():
    programs, version, share = pathlib.Path(sys.argv[1]), sys.argv[2], pathlib.Path(sys.argv[3])
    seconds = int(os.environ.get("SOURCE_DATE_EPOCH", time.time()))
    date = time.strftime("%Y-%m-%d", time.gmtime(seconds))

    def told(*command):
        return subprocess.run([programs / command[0], *command[1:]], check=True, capture_output=True, text=True).stdout

    def write(name, text):
        (share / name).parent.mkdir(parents=True, exist_ok=True)
        (share / name).write_text(text)

    help_ = Help(told("brindlehum-cli", "help"))
    found = options(told("brindlehum", "--help"))
    page = (here / "brindlehum.1.in").read_text().replace("@OPTIONS@", option_rows(found))
    write("man/man1/brindlehum.1", short_lines(page.replace("@DATE@", date).replace("@VERSION@", version)))
    resident = share / "man/man1/brindlehum-resident.1"
    resident.unlink(missing_ok=True)
    resident.symlink_to("brindlehum.1")
    write("man/man1/brindlehum-cli.1", short_lines(manual_page(help_, version, date)))
    write("bash-completion/completions/brindlehum-cli", bash_completion(help_))
    write("bash-completion/completions/brindlehum", bash_options(found))
    write("zsh/vendor-completions/_brindlehum-cli", zsh_completion(help_))
    write("zsh/vendor-completions/_brindlehum", zsh_options(found))
    info = (here / "org.brindlehum.brindlehum.metainfo.xml.in").read_text()
    info = info.replace("@SCREENSHOTS@", screenshots(sys.argv[4] if len(sys.argv) > 4 else ""))
    write("metainfo/org.brindlehum.brindlehum.metainfo.xml", info.replace("@RELEASES@", releases(date)))


if __name__ == "__main__":
    main()
