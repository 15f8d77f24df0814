"""The manual page and the completions hold what --help shows, and the shells that are
here take them.

    manual_test.py CONDUIT FOLDER-OF-THE-PAGES
"""

import os
import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

conduit, pages = sys.argv[1], Path(sys.argv[2]).resolve()
bash, zsh, fish = pages / "bash/conduit", pages / "zsh/_conduit", pages / "fish/conduit.fish"
failures = []


def output(*command, **options):
    done = subprocess.run(command, capture_output=True, text=True, timeout=60, **options)
    if done.returncode != 0 or done.stderr:
        failures.append(f"{command[:2]} ended with {done.returncode}: {done.stderr}")
    return done.stdout


def expect(what, wanted, found):
    if wanted != found:
        failures.append(f"{what}: wanted {sorted(wanted)}, found {sorted(found)}")


def options_of(*command):
    """The options that --help lists: each stands at the beginning of its line."""
    text = output(conduit, *command, "--help")
    listed = re.findall(r"^  (-\S+)", text, re.MULTILINE)
    return {name for names in listed for name in names.split(",")}


def in_bash(*words):
    script = (f"compopt() {{ :; }}; source {bash}; COMP_WORDS=(conduit \"$@\"); COMP_CWORD=$#;"
              "_conduit; printf '%s\\n' \"${COMPREPLY[@]}\"")
    return set(output("bash", "-uc", script, "bash", *words).split("\n")) - {""}


def in_fish(line):
    return {offered.split("\t")[0]
            for offered in output("fish", "--no-config", "-c",
                                  f"source {fish}; complete -C 'conduit {line}'").splitlines()}


commands = re.findall(r"^  (\w+) ", output(conduit, "--help").split("Subcommands:")[1]
                      .split("Examples:")[0], re.MULTILINE)
assert len(commands) >= 3, commands
manual = re.sub(r"\\-", "-", re.sub(r"\\f[BIR]", "", (pages / "man/conduit.1").read_text()))
if shutil.which("man"):
    output("man", "--warnings", "-l", str(pages / "man/conduit.1"))

expect("bash, the commands", set(commands) | {"-h", "--help", "--version"}, in_bash(""))
for command in commands:
    options = options_of(command)
    assert "--help" in options, options
    expect(f"bash, the options of {command}", options, in_bash(command, "-"))
    terms = re.findall(r"^\.TP\n(.*)", manual.split(f"\n.SS {command}\n")[1].split("\n.EX")[0],
                       re.MULTILINE)
    expect(f"the manual page, the options of {command}", options,
           {word for term in terms for word in re.findall(r"(?<!\S)-[\w-]+", term)})
    arguments = zsh.read_text().split(f"      {command})\n")[1].split(";;")[0]
    expect(f"zsh, the options of {command}", options, set(re.findall(r"'\*?(-[\w-]+)=?\[", arguments)))
    if shutil.which("fish"):
        # An option of one letter is offered alone where one has been begun.
        expect(f"fish, the options of {command}", {name for name in options if len(name) > 2},
               {name for name in in_fish(f"{command} --") if len(name) > 2})

with tempfile.TemporaryDirectory() as folder:
    os.chdir(folder)
    Path("a b.json").touch()
    Path("scans").mkdir()
    expect("bash, files", {"a b.json", "scans"}, in_bash("run", ""))
    expect("bash, an option's file", {"a b.json"}, in_bash("run", "--report", "=", "a"))
    expect("bash, folders", {"scans"}, in_bash("run", "--save", ""))
    expect("bash, words", {"BAD_CHARS"}, in_bash("run", "--refuse", "B"))
    expect("bash, nothing", set(), in_bash("run", "--set", ""))
    if shutil.which("zsh"):
        output("zsh", "-n", str(zsh))
        expect("zsh, who completes", {"_conduit"}, {output(
            "zsh", "-fc", f"fpath=({zsh.parent} $fpath); autoload -Uz compinit;"
            "compinit -u -D; print -n $_comps[conduit]")})

sys.exit("\n".join(failures) or 0)
