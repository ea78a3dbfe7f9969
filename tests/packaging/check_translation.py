#!/usr/bin/env python3
"""Under a German locale, a program's help shows no English line.

usage: check_translation.py [--ignore REGEX] PROGRAM [ARGS] [-- ARGS ...]
Each `--`-separated argument list is one run (for telvanectl: --help, then every
action's --help). A line counts as text when it has a word of three or more letters
that is not an option, a command or a placeholder; each such English line must be gone
from the German output. --ignore names lines that are Qt's own (QCommandLineParser's
"Usage:" and "Options:"), translated only where Qt's translations are installed.
"""
import os
import re
import subprocess
import sys


def output(program, arguments, language):
    env = dict(os.environ)
    for key in ("LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"):
        env.pop(key, None)
    if language == "de":
        env.update(LANGUAGE="de", LANG="de_DE.UTF-8")
    else:
        env.update(LANGUAGE="en", LANG="C.UTF-8")
    result = subprocess.run([program] + arguments, capture_output=True, timeout=60, env=env)
    if result.returncode != 0:
        sys.exit(f"{program} {' '.join(arguments)} exited with {result.returncode}")
    return result.stdout.decode("utf-8")


def is_text(line, names):
    for word in re.findall(r"(?<![-\w</.~])[A-Za-z][A-Za-z']{2,}", line):
        if word not in names and not word.isupper():
            return True
    return False


def main():
    arguments = sys.argv[1:]
    ignore = None
    if arguments[:1] == ["--ignore"]:
        ignore = re.compile(arguments[1])
        arguments = arguments[2:]
    program, rest = arguments[0], arguments[1:]
    runs, current = [], []
    for argument in rest:
        if argument == "--":
            runs.append(current)
            current = []
        else:
            current.append(argument)
    runs.append(current)

    # Program and command names stay as they are in every language.
    names = {os.path.basename(program), "telvanectl", "telvane", "Telvane"}
    names.update(a for run in runs for a in run if not a.startswith("-"))
    untranslated = []
    checked = 0
    for run in runs:
        english = output(program, run, "en")
        german = output(program, run, "de").splitlines()
        for line in english.splitlines():
            if not is_text(line, names) or (ignore and ignore.search(line)):
                continue
            checked += 1
            if line in german:
                untranslated.append(f"{' '.join(run)}: {line.strip()}")
    for line in untranslated:
        print(f"untranslated: {line}")
    print(f"{program}: {checked} lines checked, {len(untranslated)} untranslated")
    return 1 if untranslated or checked == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
