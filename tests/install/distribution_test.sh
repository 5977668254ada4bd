#!/bin/bash
# usage: distribution_test.sh SOURCE WORK; the compilers come from CC and CXX, a compiler launcher from LAUNCHER.
# Builds the library in two columns as distributions do, with no build type and their flags for hardening and for
# optimising at link time, and uses it.
set -euo pipefail
source=$1 work=$2
flags="-O2 -g -flto=auto -ffat-lto-objects -fcf-protection=full -D_FORTIFY_SOURCE=2 -fstack-protector-strong"
rm -rf "$work"
cmake -S "$source" -B "$work" -G Ninja -DCMAKE_BUILD_TYPE=None -DMOZEP_WERROR=ON "-DMOZEP_COLUMNS=m7;e9_avx512" \
    -DCMAKE_C_COMPILER="${CC:-cc}" -DCMAKE_CXX_COMPILER="${CXX:-c++}" ${LAUNCHER:+-DCMAKE_CXX_COMPILER_LAUNCHER="$LAUNCHER"} \
    -DCMAKE_C_FLAGS="$flags" -DCMAKE_CXX_FLAGS="$flags" -DCMAKE_SHARED_LINKER_FLAGS="-Wl,-z,relro" > /dev/null
cmake --build "$work"

fail() { echo "$1"; exit 1; }
objects=$(find "$work/src" -name '*.o')
for object in $objects; do
    # Where one object does not say that its branch targets are marked, the linker takes the protection off all of them.
    readelf -n "$object" | grep 'x86 feature: .*IBT' > /dev/null || fail "$object: not marked for branch tracking"
    ! readelf -S --wide "$object" | grep gnu.lto || fail "$object: made for optimising at link time"
done
# The stubs too begin with a marker.
objdump -d --no-show-raw-insn --disassemble=zepsAdd_32f "$work/src/libmozep.so" | grep -A1 '<zepsAdd_32f>:' |
    grep endbr64 || fail "zepsAdd_32f: no endbr64"
python3 -B "$source/tests/binary/binary_test.py" "$work/src/libmozep.so" "$source" "$work/src/generated/core/columns_built.h"
"$source/tools/check_variants.sh" "$work/src" m7 e9_avx512

# shellcheck disable=SC2086
for library in "-L$work/src -lmozep -Wl,-rpath,$work/src" "$work/src/libmozep.a -lstdc++ -lm"; do
    "${CC:-cc}" -std=c11 $flags "$source/examples/quickstart.c" -I"$source/include" $library -o "$work/quickstart"
    "$work/quickstart"
done
