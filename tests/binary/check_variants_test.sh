#!/bin/bash
# usage: check_variants_test.sh CHECKER WORK OPTIONS; the compiler comes from CXX. OPTIONS has a line for each column: its name
# and the compiler's options for its kernels.
# Feeds tools/check_variants.sh one wrong object after another: each must be found, by the rule it breaks, and the right
# objects must pass. Instructions above the level of a column must not get into an object at all.
set -euo pipefail
checker=$1 work=$2 options=$3
columns=$(cut -d ' ' -f 1 "$options")
failures=0
rm -rf "$work"

# compile TAG NAME FLAGS: the source on standard input becomes an object of the variant.
compile() {
    mkdir -p "$tree/zep_$1.dir"
    "$CXX" -std=c++20 -O2 -fPIC -fno-plt ${3:-} -x c++ - -c -o "$tree/zep_$1.dir/$2.o"
}

right_tree() {
    local variant
    tree=$work/tree
    rm -rf "$tree"
    if [ -d "$work/right" ]; then
        cp -r "$work/right" "$tree"
        return
    fi
    for variant in $columns; do
        compile "$variant" right <<< "
            extern \"C\" void* memcpy(void*, const void*, unsigned long);
            namespace zep { bool fromCore(); }
            namespace zep::$variant { int other(int); int right(float* d, const float* s, int n) {
                memcpy(d, s, n * sizeof(float)); return fromCore() ? other(n) : n; } }"
    done
    cp -r "$tree" "$work/right"
}

expect() {  # description, pattern of the line that must be printed; empty: the check must pass
    local output status=0
    output=$("$checker" "$tree" $columns 2>&1) || status=$?
    if [ -z "$2" ] && [ $status -eq 0 ]; then
        echo "ok: $1"
    elif [ -n "$2" ] && [ $status -eq 1 ] && grep -qE "$2" <<< "$output"; then
        echo "ok: $1"
    else
        printf 'FAILED: %s (exit %d)\n%s\n' "$1" "$status" "$output"
        failures=$((failures + 1))
    fi
}

# wrong DESCRIPTION PATTERN TAG FLAGS: the source on standard input joins the right objects.
wrong() {
    right_tree
    compile "$3" wrong "${4:-}"
    expect "$1" "$2"
}
# assemble COLUMN TEXT: with the options of the column's kernels.
assemble() {
    local line
    line=$(grep "^$1 " "$options")
    "$CXX" -std=c++20 ${line#* } -x c++ - -c -o /dev/null 2> "$work/log" <<< "void f() { asm volatile(\"$2\"); }"
}
# An instruction that the column must not hold.
refused() {
    if assemble "$1" "$2" || ! grep -q "Error: .*\(not supported on\|unsupported\|no such instruction\|mismatch for\|bad register name\)" "$work/log"; then
        echo "FAILED: $1: $2 is not refused"
        cat "$work/log"
        failures=$((failures + 1))
    else
        echo "ok: $1: $2 is refused"
    fi
}
harmless() {
    if assemble "$1" "$2"; then
        echo "ok: $1: $2 is allowed"
    else
        echo "FAILED: $1: $2 is refused"
        cat "$work/log"
        failures=$((failures + 1))
    fi
}

right_tree
expect "right objects pass" ""

wrong "an inline function outside the variant" "rule 1: .*zep_e9.dir/wrong.o: .*shared" e9 <<< "
    namespace zep { inline __attribute__((noinline)) int shared(int n) { return n * 3; } }
    namespace zep::e9 { int wrong(int n) { return shared(n); } }"
wrong "a template of the standard library" "rule 1: .*zep_e9.dir/wrong.o: .*vector" e9 <<< "
    #include <vector>
    template class std::vector<int>;"
wrong "an inline variable outside the variant" "rule 1: .*: .*table" y8 <<< "
    namespace zep { inline int table[4]; }
    namespace zep::y8 { int* wrong() { return zep::table; } }"
wrong "an inline function of the variant is allowed" "" y8 <<< "
    namespace zep::y8 { inline __attribute__((noinline)) int mine(int n) { return n * 3; }
    int wrong(int n) { return mine(n); } }"

wrong "a call through a stub" "rule 2: .*zep_u8.dir/wrong.o: .*zepsAdd_32f" u8 <<< "
    extern \"C\" int zepsAdd_32f(const float*, const float*, float*, int);
    namespace zep::u8 { int wrong(float* p) { return zepsAdd_32f(p, p, p, 1); } }"

# Clang reads assembly by itself; what GCC's build of the same sources lets pass is right for both.
if grep -q 'Free Software Foundation' <<< "$("$CXX" --version)"; then
    below_avx="m7 u8 n8 y8" below_avx2="$below_avx e9" below_avx512="$below_avx2 e9_avx2"
    for column in $below_avx; do
        refused $column "vaddps %xmm0, %xmm1, %xmm2"
        refused $column "popcnt %rax, %rcx"
        refused $column "pcmpgtq %xmm0, %xmm1"
    done
    refused m7 "haddps %xmm0, %xmm1"
    refused m7 "pshufb %xmm0, %xmm1"
    for column in u8 n8; do
        refused $column "pmovsxbw %xmm0, %xmm1"
        refused $column "roundps \$1, %xmm0, %xmm1"
        refused $column "pextrw \$1, %xmm0, (%rax)"
        harmless $column "pextrw \$1, %xmm0, %eax"
        harmless $column "palignr \$4, %xmm0, %xmm1"
    done
    for column in m7 u8 y8 e9; do refused $column "movbe (%rax), %ecx"; done
    for column in n8 e9_avx2 e9_avx512; do harmless $column "movbe (%rax), %ecx"; done
    harmless y8 "blendvps %xmm0, %xmm1, %xmm2"
    v3=("vpaddd %ymm0, %ymm1, %ymm2" "vbroadcastss %xmm0, %ymm1" "vpermps %ymm0, %ymm1, %ymm2"
        "vpblendd \$1, %xmm0, %xmm1, %xmm2" "vgatherdps %ymm0, (%rax,%ymm1), %ymm2" "vfmadd231ps %ymm0, %ymm1, %ymm2"
        "vfnmsub213sd %xmm0, %xmm1, %xmm2" "vcvtph2ps %xmm0, %ymm1" "shlx %rax, %rcx, %rdx" "andn %rax, %rcx, %rdx"
        "lzcnt %rax, %rcx")
    for text in "${v3[@]}"; do
        refused e9 "$text"
        harmless e9_avx2 "$text"
        harmless e9_avx512 "$text"
    done
    v4=("vaddps %zmm0, %zmm1, %zmm2" "vaddps %ymm16, %ymm1, %ymm2" "vpermb %zmm0, %zmm1, %zmm2"
        "vpcompressb %zmm0, %zmm1{%k1}")
    for text in "${v4[@]}"; do
        refused e9_avx2 "$text"
        harmless e9_avx512 "$text"
    done
    for text in "vpopcntb %zmm0, %zmm1" "vpdpbusd %zmm0, %zmm1, %zmm2" "vaesenc %zmm0, %zmm1, %zmm2"; do
        refused e9_avx512 "$text"
    done
    for column in $columns; do
        refused $column "paddd %mm0, %mm1"
        refused $column "aesenc %xmm0, %xmm1"
        harmless $column "rep bsf %rax, %rcx"
        harmless $column "endbr64"
    done
    for text in "vaddps %ymm0, %ymm1, %ymm2" "vbroadcastss (%rax), %ymm1" "vpermilps \$1, %ymm0, %ymm1" \
        "vperm2f128 \$1, %ymm0, %ymm1, %ymm2" "vptest %ymm0, %ymm1" "vpaddd %xmm0, %xmm1, %xmm2" "popcnt %rax, %rcx"; do
        harmless e9 "$text"
    done
fi

wrong "a C function off the list" "rule 3: .*zep_n8.dir/wrong.o: refers to pow" n8 <<< "
    extern \"C\" double pow(double, double);
    namespace zep::n8 { double wrong(double x) { return pow(x, x); } }"
# call FROM TO: however the names begin.
call() {
    wrong "a call from $1 into $2" "rule 3: .*zep_$1.dir/wrong.o: refers to .*$2" "$1" <<< "
        namespace zep::$2 { int kernel(int); }
        namespace zep::$1 { int wrong(int n) { return $2::kernel(n) + 1; } }"
}
call m7 e9
call m7 e9_avx2
call e9 e9_avx2
call e9_avx2 e9
call e9_avx512 e9_avx2
wrong "a call into another column with an argument of its own" "rule 3: .*zep_e9.dir/wrong.o: refers to .*e9_avx2" e9 <<< "
    namespace zep::e9 { struct Own; }
    namespace zep::e9_avx2 { int kernel(e9::Own*); }
    namespace zep::e9 { int wrong(Own* p) { return e9_avx2::kernel(p) + 1; } }"
mkdir -p "$work"
right_tree
mv "$tree/zep_e9.dir" "$tree/zep_e9-group.dir"
expect "the files of a group are the column's" ""

wrong "a static constructor" "rule 4: .*zep_y8.dir/wrong.o" y8 <<< "
    namespace zep::y8 { int compute(); int wrong = compute(); }"

right_tree
rm -r "$tree/zep_n8.dir"
status=0
"$checker" "$tree" $columns > "$work/log" || status=$?
[ $status -eq 2 ] && echo "ok: a missing variant" || { echo "FAILED: a missing variant (exit $status)"; failures=$((failures + 1)); }

[ $failures -eq 0 ]
