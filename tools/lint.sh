#!/bin/bash
# usage: lint.sh BUILD [BASE]
# Runs clang-tidy on the sources (not the tests) that differ from the commit BASE, the one before this by default, with the
# commands of a Clang build that has written them (preset clang). A kernel is looked at in its widest column.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:?usage: lint.sh BUILD [BASE]}
base=${2:-HEAD~1}
work=$build/lint
mkdir -p "$work"
git rev-parse -q --verify "$base" > /dev/null || { echo "no commit $base to compare with"; exit 0; }
git diff --name-only --diff-filter=d "$base" -- 'src/*.cpp' 'tools/*.cpp' 'fuzz/*.cpp' > "$work/changed"
python3 - "$build/compile_commands.json" "$work" <<'END'
import json, os, sys
database, work = sys.argv[1:]
changed = {os.path.realpath(line.strip()) for line in open(work + "/changed")}
# The last command of a file is that of the last column.
commands = {c["file"]: c for c in json.load(open(database)) if os.path.realpath(c["file"]) in changed}
json.dump(list(commands.values()), open(work + "/compile_commands.json", "w"))
open(work + "/files", "w").write("\n".join(commands))
END
xargs -r -a "$work/files" -n 1 -P "$(nproc)" clang-tidy-14 -p "$work" --quiet
echo "$(grep -c . "$work/files" || true) files looked at"
