#!/bin/bash
# usage: check_variants.sh BUILD
#
# Checks that the objects of each variant in a release build hold that variant and nothing else. One source is compiled
# five times; whatever the linker could merge across the copies, or whatever leaves a copy, would run code of one instruction
# level on a processor of another. The rules:
#   1  no weak or unique symbol without the variant's namespace in its name: the linker keeps one copy of such a symbol
#   2  no reference to a dispatched export: the call would leave the variant through the stub
#   3  no instruction above the variant's level
#   4  no other reference but to the variant itself, to the core, and to a short list of C functions
#   5  no static initialiser: nothing may run before the variant has been selected
# Prints one line for each offence and fails if there is any.
set -euo pipefail
export LC_ALL=C
build=${1:?usage: check_variants.sh BUILD}
source=$(cd "$(dirname "$0")/.." && pwd)

# What compilers emit for copies and fills, what set-up computes with, where memory comes from.
permitted="memcpy memmove memset memcmp bcmp malloc calloc realloc free
           sin cos sincos exp log fabs floor sqrt sqrtf _GLOBAL_OFFSET_TABLE_
           __stack_chk_fail __memcpy_chk __memmove_chk __memset_chk"

dispatched=$(sed -nE 's/^ZEP_EXPORT(_N8)?\((\w+)\).*/\2/p' "$source/src/core/exports.def")
core=$(grep -v '^#' "$source/src/core/core_exports.txt")

check_symbols() {  # tag objects...
    local tag=$1
    shift
    nm -A "$@" | awk -v tag="$tag" -v dispatched="$dispatched" -v core="$core" -v permitted="$permitted" '
        function set(list, into,   words, n) {
            n = split(list, words)
            for (; n > 0; --n) into[words[n]] = 1
        }
        BEGIN {
            set(dispatched, isDispatched)
            set(core " " permitted, isPermitted)
            own = "3zep2" tag
        }
        {
            name = $NF
            type = $(NF - 1)
            object = $1
            sub(/:[^:]*$/, "", object)
            if (type ~ /^[WVu]$/ && index(name, own) == 0)
                print "rule 1: " object ": weak symbol outside the variant: " name
            if (type !~ /^[Uwv]$/ || index(name, own) > 0) next
            if (name in isDispatched)
                print "rule 2: " object ": calls through the stub: " name
            else if (name in isPermitted)
                next
            else if (name !~ /^_ZN3zep[0-9]/ || name ~ /3zep2(m7|u8|n8|y8|e9)/)
                print "rule 4: " object ": refers to " name
        }'
}

check_instructions() {  # tag objects...
    local tag=$1
    shift
    objdump -d --no-show-raw-insn "$@" | awk -F '\t' -v tag="$tag" '
        # The extension beyond SSE2 that an instruction belongs to; empty for SSE2 and below. TZCNT is not looked for: it is
        # the REP BSF that compilers emit at every level, where both give the same.
        function extension(m, operands) {
            if (operands ~ /%zmm|%k[0-7]|%[xy]mm(1[6-9]|2[0-9]|3[01])/) return "AVX-512"
            if (m ~ /^v/ && m !~ /^ver[rw]$/) {
                if (m ~ /^vfn?m(add|sub)/) return "FMA"
                if (m ~ /^vcvtp(h2ps|s2ph)/) return "F16C"
                if (m ~ /^v(aes|pclmul)/) return "AES"
                if (m ~ /^v(broadcast|extract|insert)i128|^vpbroadcast|^vperm([dq]|p[sd])$|^vp?gather/) return "AVX2"
                if (m ~ /^vp(sllv|srlv|srav)[dq]|^vpblendd|^vpmaskmov/) return "AVX2"
                if (m ~ /^vbroadcasts[sd]/ && operands ~ /^%xmm/) return "AVX2"
                if (operands ~ /%ymm/ && m ~ /^v(p|movntdqa|mpsadbw)/ && m !~ /^vp(ermilp[sd]|erm2f128|test)$/)
                    return "AVX2"
                return "AVX"
            }
            if (m ~ /^(andn|bextr|bls(i|r|msk)|bzhi|mulx|pdep|pext|rorx|sarx|shlx|shrx)[lq]?$/) return "BMI"
            if (m ~ /^(lzcnt|adcx|adox|rdrand|rdseed)[wlq]?$/) return "BMI"
            if (m ~ /^movbe[wlq]?$/) return "MOVBE"
            if (m ~ /^popcnt[wlq]?$/) return "POPCNT"
            if (m ~ /^(crc32[bwlq]?|pcmp[ei]str[im][lq]?|pcmpgtq)$/) return "SSE4.2"
            if (m ~ /^(aes|pclmul|sha1|sha256)/) return "AES"
            if (m ~ /^(blendv?p[sd]|dpp[sd]|extractps|insertps|movntdqa|mpsadbw|packusdw|pblend(vb|w))$/) return "SSE4.1"
            if (m ~ /^(pcmpeqq|pextr[bdq]|phminposuw|pinsr[bdq]|pm(ax|in)(s[bd]|u[wd]))$/) return "SSE4.1"
            if (m ~ /^(pmov[sz]x(b[wdq]|w[dq]|dq)|pmuldq|pmulld|ptest|round[ps][sd])$/) return "SSE4.1"
            if (m == "pextrw" && operands ~ /\)$/) return "SSE4.1"
            if (m ~ /^(pabs[bwd]|palignr|ph(add|sub)(w|d|sw)|pmaddubsw|pmulhrsw|pshufb|psign[bwd])$/) return "SSSE3"
            if (m ~ /^(addsubp[sd]|h(add|sub)p[sd]|lddqu|movddup|movs[hl]dup|fisttp[sl]*|monitor|mwait)$/) return "SSE3"
            if (m ~ /^(extrq|insertq|movnts[sd])$/) return "SSE4a"
            if (operands ~ /%mm[0-7]/ || m == "emms") return "MMX"
            if (m == "(bad)") return "an unknown extension"
            return ""
        }
        BEGIN {
            levels["m7"] = ""
            levels["u8"] = "SSE3 SSSE3"
            levels["n8"] = "SSE3 SSSE3 MOVBE"
            levels["y8"] = "SSE3 SSSE3 SSE4.1"
            levels["e9"] = "SSE3 SSSE3 SSE4.1 SSE4.2 POPCNT AVX"
            n = split(levels[tag], words, " ")
            for (; n > 0; --n) allowed[words[n]] = 1
        }
        / file format / { object = $0; sub(/: +file format .*/, "", object); next }
        /^[0-9a-f]+ <.*>:$/ { place = $0; sub(/^[0-9a-f]+ /, "", place); sub(/:$/, "", place); next }
        NF >= 2 {
            instruction = $2
            while (instruction ~ /^(rep[a-z]*|lock|bnd|notrack|data16|rex[.A-Z]*|[cdefgs]s) +[a-z]/) sub(/^[^ ]+ +/, "", instruction)
            mnemonic = instruction
            sub(/[ ,].*/, "", mnemonic)
            operands = instruction
            if (!sub(/^[^ ]+ +/, "", operands)) operands = ""
            sub(/ *#.*| *<.*/, "", operands)
            needs = extension(mnemonic, operands)
            if (needs != "" && !(needs in allowed))
                print "rule 3: " object ": " place ": " mnemonic " " operands " needs " needs
        }'
}

check_sections() {  # objects...
    local object
    for object in "$@"; do
        if objdump -h "$object" | grep -E ' \.(init_array|ctors|preinit_array)' > /dev/null; then
            echo "rule 5: $object: static initialiser"
        fi
    done
}

offences=$(mktemp)
trap 'rm -f "$offences"' EXIT
count=0
for tag in m7 u8 n8 y8 e9; do
    mapfile -t objects < <(find "$build" -path "*/zep_$tag.dir/*" -name '*.o' | sort)
    if [ ${#objects[@]} -eq 0 ]; then
        echo "no objects of variant $tag below $build"
        exit 2
    fi
    count=$((count + ${#objects[@]}))
    {
        check_symbols "$tag" "${objects[@]}"
        check_instructions "$tag" "${objects[@]}"
        check_sections "${objects[@]}"
    } >> "$offences"
done
head -n 60 "$offences"
echo "$count objects of 5 variants, $(wc -l < "$offences") offences"
[ ! -s "$offences" ]
