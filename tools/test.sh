#!/bin/bash
# usage: test.sh [PRESET]
# Builds with the preset (release by default) and runs all tests, after installing what is missing.
set -euo pipefail
cd "$(dirname "$0")/.."
source tools/packages.sh
preset=${1:-release}

need "${build_packages[@]}" "${tool_packages[@]}" "${test_packages[@]}"
export ZEP_TEST_NEED_PEERS=1  # they have been installed: a test that misses one fails
cmake --preset "$preset"
cmake --build --preset "$preset"
ctest --preset "$preset" -j "$(nproc)"
