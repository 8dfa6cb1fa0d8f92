"""Fails when the units of a source folder include each other, directly or in a ring.

Usage: /usr/bin/python3 check_layering.py FOLDER

A unit is a header with its source file (X.h and X.cpp); it depends on the units whose headers its
files include by name.
"""

import os
import re
import sys

INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)\.h"', re.MULTILINE)


def units(folder):
    deps = {}
    for name in os.listdir(folder):
        stem, ext = os.path.splitext(name)
        if ext not in (".h", ".cpp"):
            continue
        with open(os.path.join(folder, name), encoding="utf-8") as f:
            deps.setdefault(stem, set()).update(INCLUDE.findall(f.read()))
    return {unit: {d for d in used if d in deps and d != unit} for unit, used in deps.items()}


def find_cycle(deps):
    state = {}  # 1 while on the path, 2 when done

    def visit(unit, path):
        state[unit] = 1
        for d in sorted(deps[unit]):
            if state.get(d) == 1:
                return path[path.index(d):] + [d]
            if d not in state:
                found = visit(d, path + [d])
                if found:
                    return found
        state[unit] = 2
        return None

    for unit in sorted(deps):
        if unit not in state:
            found = visit(unit, [unit])
            if found:
                return found
    return None


if __name__ == "__main__":
    cycle = find_cycle(units(sys.argv[1]))
    if cycle:
        print("include cycle: " + " -> ".join(cycle))
        sys.exit(1)
    print("no include cycle")
