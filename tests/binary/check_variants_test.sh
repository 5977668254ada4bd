#!/bin/bash
# usage: check_variants_test.sh CHECKER WORK; the compiler comes from CXX.
# Feeds tools/check_variants.sh one wrong object after another: each must be found, by the rule it breaks, and the right
# objects must pass.
set -euo pipefail
checker=$1 work=$2
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
    for variant in m7 u8 n8 y8 e9; do
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
    output=$("$checker" "$tree" 2>&1) || status=$?
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
# instruction TAG TEXT EXTENSION: an instruction that the variant must not hold.
instruction() {
    wrong "$1: $2" "rule 3: .*zep_$1.dir/wrong.o: .* needs $3" "$1" <<< "
        namespace zep::$1 { void wrong() { asm volatile(\"$2\"); } }"
}
harmless() {
    wrong "$1: $2 is allowed" "" "$1" <<< "namespace zep::$1 { void wrong() { asm volatile(\"$2\"); } }"
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

for tag in m7 u8 n8 y8; do
    instruction $tag "vaddps %xmm0, %xmm1, %xmm2" AVX
    instruction $tag "andn %rax, %rcx, %rdx" BMI
    instruction $tag "popcnt %rax, %rcx" POPCNT
    instruction $tag "pcmpgtq %xmm0, %xmm1" SSE4.2
done
instruction m7 "haddps %xmm0, %xmm1" SSE3
instruction m7 "pshufb %xmm0, %xmm1" SSSE3
instruction m7 "movbe (%rax), %ecx" MOVBE
instruction u8 "movbe (%rax), %ecx" MOVBE
for tag in u8 n8; do
    instruction $tag "pmovsxbw %xmm0, %xmm1" SSE4.1
    instruction $tag "roundps \$1, %xmm0, %xmm1" SSE4.1
    instruction $tag "pextrw \$1, %xmm0, (%rax)" SSE4.1
    harmless $tag "pextrw \$1, %xmm0, %eax"
    harmless $tag "palignr \$4, %xmm0, %xmm1"
done
harmless n8 "movbe (%rax), %ecx"
instruction y8 "movbe %eax, (%rcx)" MOVBE
harmless y8 "blendvps %xmm0, %xmm1, %xmm2"
instruction e9 "vpaddd %ymm0, %ymm1, %ymm2" AVX2
instruction e9 "vbroadcastss %xmm0, %ymm1" AVX2
instruction e9 "vpermps %ymm0, %ymm1, %ymm2" AVX2
instruction e9 "vpblendd \$1, %xmm0, %xmm1, %xmm2" AVX2
instruction e9 "vgatherdps %ymm0, (%rax,%ymm1), %ymm2" AVX2
instruction e9 "vfmadd231ps %ymm0, %ymm1, %ymm2" FMA
instruction e9 "vfnmsub213sd %xmm0, %xmm1, %xmm2" FMA
instruction e9 "vcvtph2ps %xmm0, %ymm1" F16C
instruction e9 "vaddps %zmm0, %zmm1, %zmm2" AVX-512
instruction e9 "vaddps %ymm16, %ymm1, %ymm2" AVX-512
instruction e9 "shlx %rax, %rcx, %rdx" BMI
instruction e9 "lzcnt %rax, %rcx" BMI
instruction e9 "paddd %mm0, %mm1" MMX
for text in "vaddps %ymm0, %ymm1, %ymm2" "vbroadcastss (%rax), %ymm1" "vpermilps \$1, %ymm0, %ymm1" \
    "vperm2f128 \$1, %ymm0, %ymm1, %ymm2" "vptest %ymm0, %ymm1" "vpaddd %xmm0, %xmm1, %xmm2" "popcnt %rax, %rcx"; do
    harmless e9 "$text"
done
for tag in m7 e9; do harmless $tag "rep bsf %rax, %rcx"; done

wrong "a C function off the list" "rule 4: .*zep_n8.dir/wrong.o: refers to pow" n8 <<< "
    extern \"C\" double pow(double, double);
    namespace zep::n8 { double wrong(double x) { return pow(x, x); } }"
wrong "a call into another variant" "rule 4: .*zep_m7.dir/wrong.o: refers to .*e9" m7 <<< "
    namespace zep::e9 { int kernel(int); }
    namespace zep::m7 { int wrong(int n) { return e9::kernel(n) + 1; } }"

wrong "a static constructor" "rule 5: .*zep_y8.dir/wrong.o" y8 <<< "
    namespace zep::y8 { int compute(); int wrong = compute(); }"

right_tree
rm -r "$tree/zep_n8.dir"
status=0
"$checker" "$tree" > "$work/log" || status=$?
[ $status -eq 2 ] && echo "ok: a missing variant" || { echo "FAILED: a missing variant (exit $status)"; failures=$((failures + 1)); }

[ $failures -eq 0 ]
