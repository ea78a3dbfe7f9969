#!/usr/bin/env python3
"""A program's --help and its man page name the same options (and for telvanectl, the
same actions).

usage: check_man_options.py MAN_SOURCE PROGRAM [--actions]
With --actions, PROGRAM is telvanectl: the actions come from `PROGRAM --help` and the
options from every `PROGRAM ACTION --help`.
"""
import re
import subprocess
import sys

OPTION = re.compile(r"(?<![\w-])(--?[a-zA-Z][\w-]*)")


def run(*command):
    result = subprocess.run(command, capture_output=True, text=True, timeout=60)
    if result.returncode != 0:
        sys.exit(f"{' '.join(command)} exited with {result.returncode}: {result.stderr}")
    return result.stdout


def help_options(text):
    """Options of the indented rows: the left column, before the first wide gap."""
    found = set()
    for line in text.splitlines():
        if re.match(r"^ {2,}-", line):
            found.update(OPTION.findall(re.split(r"\s{2,}", line.strip())[0]))
    return found


def help_actions(text):
    body = text.split("Actions:", 1)[1] if "Actions:" in text else ""
    return {m.group(1) for m in re.finditer(r"(?m)^  ([a-z][a-z-]*)\s", body)}


def man_sections(path):
    sections, name = {}, None
    for line in open(path, encoding="utf-8"):
        heading = re.match(r"^# (.+)", line)
        if heading:
            name = heading.group(1).strip()
            sections[name] = []
        elif name:
            sections[name].append(line.rstrip("\n"))
    return sections


def man_terms(lines):
    """The terms of a section's definition list: lines that start with *term*."""
    terms = set()
    for line in lines:
        if line.startswith("*"):
            terms.update(re.findall(r"\*([^*]+)\*", line))
    return terms


def main():
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    man, program = sys.argv[1], sys.argv[2]
    sections = man_sections(man)
    man_options = {t for t in man_terms(sections.get("OPTIONS", [])) if t.startswith("-")}
    overview = run(program, "--help")
    problems = []
    if "--actions" in sys.argv[3:]:
        actions = help_actions(overview)
        options = set()
        for action in sorted(actions):
            options |= help_options(run(program, action, "--help"))
        man_actions = man_terms(sections.get("ACTIONS", []))
        if actions != man_actions:
            problems.append(f"actions only in --help: {sorted(actions - man_actions)}, "
                            f"only in the man page: {sorted(man_actions - actions)}")
    else:
        options = help_options(overview)
    if not options:
        problems.append("--help lists no options")
    if options != man_options:
        problems.append(f"options only in --help: {sorted(options - man_options)}, "
                        f"only in the man page: {sorted(man_options - options)}")
    for problem in problems:
        print(f"{program}: {problem}")
    if not problems:
        print(f"{program}: --help and {man} agree on {len(options)} options")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
