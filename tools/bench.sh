#!/bin/bash
# usage: bench.sh [CMAKE-OPTION...]
# Builds the benchmarks into build/bench, after installing the peers that they compare with.
set -euo pipefail
cd "$(dirname "$0")/.."
source tools/packages.sh

need "${build_packages[@]}" "${bench_packages[@]}"
cmake --preset bench "$@"
cmake --build --preset bench
