#!/bin/bash
# usage: check_format.sh
# Fails where a source of the tree is not laid out as .clang-format says, and shows what should be there.
set -euo pipefail
cd "$(dirname "$0")/.."
git ls-files '*.cpp' '*.h' '*.c' | xargs clang-format-14 --dry-run --Werror
