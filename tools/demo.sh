#!/bin/bash
# usage: demo.sh [FILE.wav]
# Builds the library and its program, after installing what is missing; shows what the library made of this processor, and
# the spectrum of a recording.
set -euo pipefail
cd "$(dirname "$0")/.."
source tools/packages.sh

need "${build_packages[@]}" "${tool_packages[@]}" alsa-utils
recording=${1:-/usr/share/sounds/alsa/Front_Center.wav}
picture=$PWD/build/demo/spectrum.svg

cmake -S . -B build/demo -G Ninja -DCMAKE_BUILD_TYPE=Release -DMOZEP_TOOLS=ON
cmake --build build/demo
mozep=build/demo/tools/mozep/mozep

echo
"$mozep" info
echo
"$mozep" spectrum "$recording" --plot "$picture"
echo
echo "The picture of the spectrum: $picture"
